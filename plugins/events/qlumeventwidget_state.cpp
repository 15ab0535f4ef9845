// What an event view does with notifiers, fields, events and servers.
#include <plugins/events/qlumeventwidget.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/events/qlumeventactions.h>
#include <plugins/events/qlumeventsettings.h>
#include <plugins/events/qlumeventtable.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumtimefield.h>

#include <QAction>
#include <QDateTime>
#include <QDateTimeEdit>
#include <QDialog>
#include <QDialogButtonBox>
#include <QItemSelectionModel>
#include <QLabel>
#include <QListWidget>
#include <QListWidgetItem>
#include <QLocale>
#include <QMimeData>
#include <QModelIndex>
#include <QPersistentModelIndex>
#include <QTabWidget>
#include <QTreeView>
#include <QVBoxLayout>
#include <QVector>

#include <algorithm>

using namespace QlumEventActions;

namespace {
const QString nodeMimeType = QStringLiteral("application/UaNodeInformation");

struct AlarmCounts
{
    int high = 0, medium = 0, low = 0, unknown = 0;
    int active = 0, inactive = 0, open = 0, unacknowledged = 0, unconfirmed = 0;
};

AlarmCounts countAlarms(const QlumAlarmModel& alarms)
{
    AlarmCounts counts;
    for (int row = 0; row < alarms.rowCount(); ++row) {
        const QlumEvent& event = alarms.rowAt(row);
        const int severity = event.severity();
        ++(severity <= 0                    ? counts.unknown
           : qlumIsHighSeverity(severity)   ? counts.high
           : severity >= qlumMediumSeverity ? counts.medium
                                            : counts.low);
        counts.active += event.is(QlumField::ActiveId, true) ? 1 : 0;
        counts.inactive += event.is(QlumField::ActiveId, false) ? 1 : 0;
        counts.unacknowledged += event.is(QlumField::AckedId, false) ? 1 : 0;
        counts.unconfirmed += event.is(QlumField::ConfirmedId, false) ? 1 : 0;
        counts.open += alarms.isOpen(row) ? 1 : 0;
    }
    return counts;
}
} // namespace

// ---- notifiers

void QlumEventWidget::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasFormat(nodeMimeType))
        event->acceptProposedAction();
}

void QlumEventWidget::dropEvent(QDropEvent* event)
{
    unsigned int serverId = qlumNoServer;
    unsigned int count = 0;
    UaNodeId* ids = nullptr;
    if (!m_application.nodeIdsFromMimeData(event->mimeData(), &serverId, &count, &ids))
        return;
    const std::unique_ptr<UaNodeId[]> owned(ids);
    std::vector<QlumMonitoredItemModel::Wish> wishes;
    for (unsigned int i = 0; i < count; ++i)
        wishes.push_back({ids[i], QString()});
    event->acceptProposedAction();
    m_items->addNodes(serverId, wishes);
    notifiersAdded();
}

void QlumEventWidget::addNotifiers(std::span<const QlumToolNode> nodes)
{
    for (const QlumToolNode& node : nodes)
        m_items->addNodes(node.serverId, {{node.nodeId, node.name}});
    notifiersAdded();
}

// The fields of the newest one are shown unless the user is busy with those of another.
void QlumEventWidget::notifiersAdded()
{
    if (!m_itemView->selectionModel()->hasSelection() && m_items->rowCount() > 0)
        m_itemView->setCurrentIndex(m_items->index(m_items->rowCount() - 1, 0));
    m_application.setModified();
    updateOffline();
    updateActions();
}

std::vector<unsigned int> QlumEventWidget::selectedKeys() const
{
    std::vector<unsigned int> keys;
    for (const QModelIndex& row : m_itemView->selectionModel()->selectedRows())
        keys.push_back(m_items->rowAt(row.row()).key);
    return keys;
}

void QlumEventWidget::sltRemoveItems()
{
    QVector<int> rows;
    for (const unsigned int key : selectedKeys())
        rows.append(m_items->rowOf(key));
    m_items->removeNodes(rows);
    m_application.setModified();
    updateActions();
    updateOffline();
}

void QlumEventWidget::sltRefresh()
{
    for (const unsigned int serverId : m_items->servers())
        m_items->callRefresh(serverId);
}

// ---- fields

// The ticks of the first one that is selected; a change goes to all of them.
void QlumEventWidget::sltNodeSelected()
{
    const std::vector<unsigned int> keys = selectedKeys();
    const QlumEventNodeMonitored* const node = keys.empty() ? nullptr : m_items->node(keys.front());
    m_shownServer = node ? node->serverId : qlumNoServer;
    m_fields->setClauses(node ? node->selectClauses : QlumSelectClauses());
    m_where->setConditions(node ? node->where : QlumEventConditions(), node && node->isFilteredHere);
    m_where->setEnabled(node != nullptr);
    if (node)
        m_types.request(node->serverId);
    sltTypesChanged(m_shownServer);
    updateActions();
}

void QlumEventWidget::sltTypesChanged(unsigned int serverId)
{
    if (serverId != m_shownServer)
        return;
    m_fields->setTree(serverId == qlumNoServer ? nullptr : m_types.tree(serverId));
    for (int row = 0; row < m_fields->rowCount(); ++row)
        m_fieldView->setExpanded(m_fields->index(row, 0), true);
    QStringList names;
    for (const unsigned int key : selectedKeys())
        if (const QlumEventNodeMonitored* const node = m_items->node(key))
            names += QlumFieldNames::of(node->selectClauses)->names();
    names.removeDuplicates();
    m_where->setOffer(serverId, m_types.tree(serverId), names);
    const bool isReading = m_types.isReading(serverId);
    const QString server = m_application.serverName(serverId);
    const QString gap = m_types.gap(serverId);
    m_fieldState->setText(isReading ? tr("The event types of %1 are being read...").arg(server)
                                    : tr("The event types of %1 are not complete: %2").arg(server, gap));
    m_fieldState->setVisible(isReading || !gap.isEmpty());
    updateActions();
}

void QlumEventWidget::sltTypesFailed(unsigned int serverId, const QString& why)
{
    if (serverId != m_shownServer)
        return;
    m_fieldState->setText(
        tr("The event types of %1 could not be read: %2").arg(m_application.serverName(serverId), why));
    m_fieldState->show();
    updateActions();
}

void QlumEventWidget::sltReadTypes()
{
    if (m_shownServer == qlumNoServer)
        return;
    m_types.forget(m_shownServer);
    m_types.request(m_shownServer);
    sltTypesChanged(m_shownServer);
}

void QlumEventWidget::sltFieldsEdited()
{
    for (const unsigned int key : selectedKeys())
        m_items->setSelectClauses(key, m_fields->clauses(), m_fields->eventTypes());
    updateActions();
    updateMissing();
}

// Whoever changes conditions asks the server anew.
void QlumEventWidget::sltWhereEdited(const QlumEventConditions& conditions)
{
    for (const unsigned int key : selectedKeys())
        m_items->setWhere(key, conditions, false);
    m_where->setConditions(conditions, false);
    updateActions();
}

void QlumEventWidget::sltFilterAnswered(const QlumFilterAnswer& answer)
{
    const QlumEventNodeMonitored* const node = m_items->node(answer.key);
    if (!node || node->where.empty() || node->isFilteredHere)
        return;
    std::vector<QlumElementResult> results = qlumWhereResults(answer.result);
    if (results.empty() && OpcUa_IsGood(answer.status)) { // a server need not tell of what is right
        std::vector<int> elements;
        static_cast<void>(qlumWhereClause(node->where, &elements));
        results.resize(elements.size());
    }
    const std::vector<unsigned int> keys = selectedKeys();
    if (!keys.empty() && keys.front() == answer.key)
        m_where->setResults(results);
    const bool isRefused =
        OpcUa_IsBad(answer.status) ||
        std::any_of(results.begin(), results.end(), [](const auto& one) { return OpcUa_IsBad(one.status); });
    const QString topic = QStringLiteral("where");
    if (!isRefused) {
        m_messages->dismiss(topic);
        return;
    }
    m_messages->tell({QlumMessage::Warning, topic,
                      tr("The server refuses the conditions for %1.").arg(node->name),
                      OpcUa_IsBad(answer.status) ? qlumStatusWords(qlumStatusText(answer.status))
                                                 : tr("The Where page says which."),
                      tr("&Filter Here"), [this, key = answer.key] { filterHere(key); }});
}

void QlumEventWidget::filterHere(unsigned int key)
{
    const QlumEventNodeMonitored* const node = m_items->node(key);
    if (!node)
        return;
    m_items->setWhere(key, QlumEventConditions(node->where), true);
    sltApply();
    sltNodeSelected();
}

void QlumEventWidget::sltApply()
{
    m_items->applyChanges();
    m_application.setModified();
    updateActions();
}

void QlumEventWidget::updateMissing()
{
    const QStringList missing = m_items->missingFields();
    m_missing->setText(
        tr("Not every notifier asks for what this list needs: %1. Tick these fields and apply.")
            .arg(missing.join(QLatin1String(", "))));
    m_missing->setVisible(!missing.isEmpty());
}

// ---- events

void QlumEventWidget::sltNewEvents(const QlumEvents& events)
{
    m_log->sltNewEvents(events);
    m_alarms->sltNewEvents(events);
    takeDialogs(events);
}

// Of all fields that some notifier asks for, for the list that is shown; past events go with those of now.
void QlumEventWidget::sltChooseColumns()
{
    QlumEventTable* const table =
        m_tabs->currentIndex() == 1 ? static_cast<QlumEventTable*>(m_alarms) : m_log;
    QStringList fields;
    for (const QlumEventNodeMonitored& node : m_items->rows())
        for (const QString& name : QlumFieldNames::of(node.selectClauses)->names())
            if (!fields.contains(name))
                fields.append(name);
    fields.sort();
    const QPointer<QDialog> dialog = new QDialog(this);
    dialog->setWindowTitle(tr("Fields as Columns"));
    auto* list = new QListWidget(dialog);
    list->setObjectName(QStringLiteral("columnFields"));
    list->setAccessibleName(tr("Fields"));
    for (const QString& field : qAsConst(fields)) {
        auto* item = new QListWidgetItem(field, list);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(table->extraFields().contains(field) ? Qt::Checked : Qt::Unchecked);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, dialog);
    connect(buttons, &QDialogButtonBox::accepted, dialog.data(), &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, dialog.data(), &QDialog::reject);
    auto* layout = new QVBoxLayout(dialog);
    layout->addWidget(list);
    layout->addWidget(buttons);
    const bool isAccepted = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return; // the view has gone, and took it along
    QStringList chosen;
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row)->checkState() == Qt::Checked)
            chosen.append(list->item(row)->text());
    delete dialog;
    if (!isAccepted)
        return;
    table->setExtraFields(chosen);
    m_history->setExtraFields(m_log->extraFields());
    m_application.setModified();
}

void QlumEventWidget::sltPause(bool isPaused)
{
    m_log->setPaused(isPaused);
}

void QlumEventWidget::sltShowCounts()
{
    const AlarmCounts alarms = countAlarms(*m_alarms);
    const QLocale locale = QLocale::system();
    const auto count = [&locale](int number) { return locale.toString(number); };
    m_tabs->setTabText(0, tr("Events (%1)").arg(locale.toString(m_log->count())));
    QStringList severities;
    for (const auto& [number, text] :
         {std::pair(alarms.high, tr("%1 high")), std::pair(alarms.medium, tr("%1 medium")),
          std::pair(alarms.low, tr("%1 low"))})
        if (number > 0)
            severities.append(text.arg(count(number)));
    m_tabs->setTabText(1, m_alarms->rowCount() == 0
                              ? tr("Alarms")
                              : tr("Alarms (%1; %2 active, %3 open)")
                                    .arg(severities.isEmpty() ? count(m_alarms->rowCount())
                                                              : severities.join(QStringLiteral(", ")),
                                         count(alarms.active), count(alarms.open)));
    m_tabs->setTabToolTip(1, tr("Not acknowledged: %1; not confirmed: %2; inactive: %3; severity unknown: %4")
                                 .arg(count(alarms.unacknowledged), count(alarms.unconfirmed),
                                      count(alarms.inactive), count(alarms.unknown)));
    m_tabs->setTabText(2, tr("Event History (%1)").arg(locale.toString(m_history->count())));
    QString waiting;
    if (m_log->isPaused())
        waiting = tr("Paused, %1 waiting").arg(locale.toString(m_log->waitingCount()));
    if (m_log->isPaused() && m_log->surplusCount() > 0)
        waiting = tr("%1; the log has no room for the oldest %2")
                      .arg(waiting, locale.toString(m_log->surplusCount()));
    m_waiting->setText(waiting);
    if (const qint64 kept = m_history->rowCount();
        !m_isLengthTold && kept == maximumHistory && m_history->count() > kept) {
        m_isLengthTold = true; // once for each reading
        m_messages->tell({QlumMessage::Warning,
                          QStringLiteral("historyLength"),
                          tr("The list has the last %1 of %2 historical events.")
                              .arg(locale.toString(kept), locale.toString(m_history->count())),
                          tr("Read a shorter time to see the others."),
                          {},
                          {}});
    }
    followAlarm();
    updateActions();
}

void QlumEventWidget::sltReadHistory()
{
    m_history->clear();
    m_historyFaults.clear();
    m_isLengthTold = false;
    for (const char* topic : {"history", "historyCut", "historyLength"})
        m_messages->dismiss(QLatin1String(topic));
    m_actions[ReadHistory]->setEnabled(false);
    m_items->readEventHistory(m_start->dateTime(), m_end->dateTime());
}

void QlumEventWidget::sltEventSelected()
{
    const auto show = [this](QTreeView* view, const auto& model, const QlumEventFilterModel* filter) {
        const QModelIndex row = filter->mapToSource(view->currentIndex());
        showDetails(row.isValid() ? &model.rowAt(row.row()) : nullptr);
    };
    if (!m_detailsView)
        return;
    if (m_tabs->currentIndex() == 0)
        show(m_logView, *m_log, m_logFilter);
    if (m_tabs->currentIndex() == 1)
        m_shownEvent = currentAlarm() < 0 ? UaByteString() : m_alarms->eventId(currentAlarm());
    if (m_tabs->currentIndex() == 1)
        show(m_alarmView, *m_alarms, m_alarmFilter);
    else if (m_tabs->currentIndex() == 2)
        show(m_historyView, *m_history, m_historyFilter);
    updateActions();
}

// The alarm that is selected may have another state by now.
void QlumEventWidget::followAlarm()
{
    const int row = currentAlarm();
    if (m_tabs->currentIndex() == 1 && row >= 0 && m_alarms->eventId(row) != m_shownEvent)
        sltEventSelected();
}

// The first question about a structure may load the definitions of a whole server, for which nobody waits.
void QlumEventWidget::showDetails(const QlumEvent* event)
{
    const int request = ++m_detailsRequest; // what was asked for before belongs to another event
    if (!event) {
        m_details->clear();
        return;
    }
    const QlumEventFields fields = event->fields;
    std::vector<UaNodeId> unknown;
    for (int i = 0; i < fields.names().size(); ++i) {
        const UaVariant& value = fields.at(i);
        const UaVariant first = value.isScalar() ? value : value.at(0);
        if (value.type() == OpcUaType_ExtensionObject)
            if (const UaNodeId id = first.toExtensionObject().encodingId(); id.namespaceIndex() != 0)
                unknown.push_back(id);
    }
    const std::shared_ptr<QlumSessionServices> services = m_services(event->serverId);
    const std::shared_ptr<UaDataTypeDictionary> dictionary(services, services ? services->dataTypeDictionary()
                                                                              : nullptr);
    m_details->setEvent(fields, unknown.empty() ? dictionary : nullptr);
    if (unknown.empty() || !services)
        return;
    m_items->call(event->serverId, tr("Reading type definitions"),
                  [this, unknown, dictionary, fields, request](QlumSessionServices*) {
                      for (const UaNodeId& id : unknown)
                          static_cast<void>(dictionary->structureDefinition(id));
                      return [this, dictionary, fields, request] {
                          if (request == m_detailsRequest)
                              m_details->setEvent(fields, dictionary);
                      };
                  });
}

// ---- servers

void QlumEventWidget::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                           const NamespaceMap& namespaces)
{
    m_items->sessionStatusChanged(serverId, status, namespaces);
    const bool isUp = m_items->isUp(serverId);
    if (!isUp)
        m_log->giveUpRefresh(serverId);
    if (isUp || !m_alarms->offlineSince(serverId).isValid())
        m_alarms->setOffline(serverId, isUp ? QDateTime() : QDateTime::currentDateTime());
    if (serverId == m_shownServer && isUp)
        sltNodeSelected(); // with the ids of the session
    updateOffline();
    updateActions();
}

void QlumEventWidget::sessionRemoved(unsigned int serverId)
{
    for (const auto& [key, dialog] : std::map(m_dialogs))
        if (key.first == serverId)
            closeDialog(key);
    std::erase_if(m_questions, [&](const Question& one) { return one.serverId == serverId; });
    m_items->sessionRemoved(serverId);
    m_log->giveUpRefresh(serverId);
    m_alarms->sessionRemoved(serverId);
    m_refreshFaults.erase(serverId);
    if (m_shownServer == serverId)
        sltNodeSelected();
    updateOffline();
    updateActions();
}

void QlumEventWidget::updateOffline()
{
    QStringList lines, gaps;
    for (const unsigned int serverId : m_items->servers()) {
        const QDateTime since = m_alarms->offlineSince(serverId);
        if (m_items->isUp(serverId))
            continue;
        const QString name = m_application.serverName(serverId);
        lines.append(since.isValid()
                         ? tr("There has been no connection to %1 since %2. Its alarms are those of then.")
                               .arg(name, qlumShowDateTime(since))
                         : tr("There is no connection to %1.").arg(name));
        gaps.append(
            since.isValid()
                ? tr("There has been no connection to %1 since %2. Its events since then are not here.")
                      .arg(name, qlumShowDateTime(since))
                : lines.last());
    }
    gaps.sort();
    m_gapNote->setText(gaps.join(QLatin1Char('\n')));
    m_gapNote->setVisible(!gaps.isEmpty());
    for (const auto& [serverId, status] : m_refreshFaults)
        if (m_items->isUp(serverId))
            lines.append(
                tr("%1 does not refresh its conditions (%2). Alarms are listed as they are reported; those "
                   "of before stay marked.")
                    .arg(m_application.serverName(serverId),
                         qlumStatusWords(qlumStatusText(status.statusCode()))));
    lines.sort();
    m_offline->setText(lines.join(QLatin1Char('\n')));
    m_offline->setVisible(!lines.isEmpty());
}

void QlumEventWidget::refreshAnswered(unsigned int serverId, const UaStatus& status)
{
    if (status.isBad()) {
        m_refreshFaults[serverId] = status;
        m_log->giveUpRefresh(serverId);
    } else
        m_refreshFaults.erase(serverId);
    updateOffline();
}

void QlumEventWidget::updateActions()
{
    const bool hasItems = m_items->rowCount() > 0;
    m_actions[Apply]->setEnabled(m_items->hasChanges());
    m_actions[ReadTypes]->setEnabled(m_shownServer != qlumNoServer && !m_types.isReading(m_shownServer));
    m_actions[RemoveItem]->setEnabled(m_itemView->selectionModel()->hasSelection());
    m_actions[Refresh]->setEnabled(hasItems);
    const int current = currentAlarm();
    // whoever acknowledges what he sees must be able to know that it is so
    const int row = current >= 0 && m_items->isUp(m_alarms->projectServerId(current)) ? current : -1;
    m_actions[Acknowledge]->setEnabled(row >= 0 && m_alarms->rowAt(row).is(QlumField::AckedId, false));
    m_actions[Confirm]->setEnabled(row >= 0 && m_alarms->rowAt(row).is(QlumField::ConfirmedId, false));
    for (const Id id : {AddComment, TimedShelve, ShelveOnce, Unshelve, Enable, Disable, Suppress, Unsuppress})
        m_actions[id]->setEnabled(row >= 0);
}

// ---- project

void QlumEventWidget::saveSettings(QSettings& settings)
{
    m_items->save(settings);
    settings.setValue(QStringLiteral("Autoscroll"), m_actions[Autoscroll]->isChecked());
    settings.setValue(QStringLiteral("ShowRetainIfFalse"), m_actions[ShowRetainIfFalse]->isChecked());
    settings.setValue(QStringLiteral("ExtraColumns"), m_log->extraFields());
    settings.setValue(QStringLiteral("AlarmColumns"), m_alarms->extraFields());
    settings.setValue(QStringLiteral("Sound"), m_actions[Sound]->isChecked());
    settings.setValue(QStringLiteral("Page"), m_tabs->currentIndex());
    for (const auto& [key, edit] : {std::pair("StartTime", m_start), std::pair("EndTime", m_end)})
        settings.setValue(QLatin1String(key), edit->dateTime().toUTC().toString(Qt::ISODateWithMs));
}

void QlumEventWidget::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_actions[Autoscroll]->setChecked(settings.value(QStringLiteral("Autoscroll"), true).toBool());
    m_actions[ShowRetainIfFalse]->setChecked(
        settings.value(QStringLiteral("ShowRetainIfFalse"), false).toBool());
    m_actions[Sound]->setChecked(settings.value(QStringLiteral("Sound"), false).toBool());
    for (const auto& [key, edit] : {std::pair("StartTime", m_start), std::pair("EndTime", m_end)})
        if (const QDateTime time =
                QDateTime::fromString(settings.value(QLatin1String(key)).toString(), Qt::ISODateWithMs);
            time.isValid())
            qlumSetMoment(edit, time);
    m_log->setExtraFields(settings.value(QStringLiteral("ExtraColumns")).toStringList());
    m_history->setExtraFields(m_log->extraFields());
    m_alarms->setExtraFields(settings.value(QStringLiteral("AlarmColumns")).toStringList());
    m_items->load(settings, serverIdMap);
    m_tabs->setCurrentIndex(
        std::clamp(settings.value(QStringLiteral("Page"), 0).toInt(), 0, m_tabs->count() - 1));
    updateOffline();
    updateActions();
}
