// What the user does with rows: editing, plotting, settings, order.
#include <plugins/dataaccess/qlumdaview.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <plugins/dataaccess/qlumdadelegate.h>
#include <plugins/dataaccess/qlumdafilter.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaplot.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/editors/qlumcontextreader.h>
#include <uawidgets/editors/qlumdatafield.h>
#include <uawidgets/editors/qlumvaluedialog.h>
#include <uawidgets/editors/qlumvalueeditor.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <watching/qlumdasettingsdialog.h>

#include <QAction>
#include <QDialog>
#include <QKeySequence>
#include <QModelIndex>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QTableView>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#define DA_TEXT(text) QT_TRANSLATE_NOOP("QlumDaView", text)

namespace {

using V = QlumDaView;
const QString writeTopic = QStringLiteral("write");
constexpr int mostParts = 200; // of one value that become rows at a time

constexpr std::array<QlumActionRow, 12> commandRows{{
    {V::EditValue, "editValue", DA_TEXT("&Edit Value"), "", qlumNoKey, "",
     DA_TEXT(
         "<b>Edit Value</b><br>Opens an editor for the value of the current row and writes what is entered "
         "to the server."),
     Qt::WidgetShortcut},
    {V::OpenValue, "openValue", DA_TEXT("&Show Value in Full"), "", qlumNoKey, "",
     DA_TEXT("<b>Show Value in Full</b><br>Opens structures, arrays and pictures in a window of their own."),
     Qt::WidgetShortcut},
    {V::AddParts, "addParts", DA_TEXT("Add &Parts as Rows"), "", qlumNoKey, "",
     DA_TEXT("<b>Add Parts as Rows</b><br>Makes rows of the elements of an array and of the fields of a "
             "structure."),
     Qt::WidgetShortcut},
    {V::Plot, "plotRows", DA_TEXT("P&lot"), "", qlumNoKey, "",
     DA_TEXT("<b>Plot</b><br>Draws the values of the selected rows from now on."), Qt::WidgetShortcut},
    {V::EndPlot, "endPlot", DA_TEXT("Take out of the Plot"), "", qlumNoKey, "",
     DA_TEXT("<b>Take out of the Plot</b><br>Ends the curves of the selected rows."), Qt::WidgetShortcut},
    {V::RowSettings, "rowSettings", DA_TEXT("Se&ttings of Rows..."), "", qlumNoKey, "",
     DA_TEXT("<b>Settings of Rows</b><br>How the selected rows are watched: intervals, queue, deadband and "
             "what the server has made of them."),
     Qt::WidgetShortcut},
    {V::ViewSettings, "viewSettings", DA_TEXT("Settings of the &View..."), "", qlumNoKey, "",
     DA_TEXT("<b>Settings of the View</b><br>How all rows are watched that have no settings of their own."),
     Qt::WidgetShortcut},
    {V::AskAgain, "askAgain", DA_TEXT("Ask the Server A&gain"), "", qlumNoKey, "",
     DA_TEXT("<b>Ask the Server Again</b><br>Tries once more to have rows watched that the server has "
             "refused, or of which it only tells faults."),
     Qt::WidgetShortcut},
    {V::ResetCounts, "resetCounts", DA_TEXT("Reset Cou&nts"), "", qlumNoKey, "",
     DA_TEXT("<b>Reset Counts</b><br>Change count, minimum and maximum of the selected rows begin anew."),
     Qt::WidgetShortcut},
    {V::MoveUp, "moveRowsUp", DA_TEXT("Move &Up"), "", qlumNoKey, "",
     DA_TEXT(
         "<b>Move Up</b><br>Moves the selected rows one place up, while they are not sorted by a column."),
     Qt::WidgetShortcut},
    {V::MoveDown, "moveRowsDown", DA_TEXT("Move &Down"), "", qlumNoKey, "",
     DA_TEXT("<b>Move Down</b><br>Moves the selected rows one place down, while they are not sorted by a "
             "column."),
     Qt::WidgetShortcut},
    {V::Remove, "removeRows", DA_TEXT("&Remove"), "", QKeySequence::Delete, "",
     DA_TEXT("<b>Remove</b><br>Takes the selected rows out of this view. Nothing changes on the server."),
     Qt::WidgetShortcut},
}};

} // namespace

void QlumDaView::makeActions()
{
    m_actions = QlumActionTable(commandRows, "QlumDaView", this);
    m_actions[EditValue]->setShortcut(QKeySequence(Qt::Key_F2));
    m_actions[MoveUp]->setShortcut(QKeySequence(QStringLiteral("Ctrl+Up")));
    m_actions[MoveDown]->setShortcut(QKeySequence(QStringLiteral("Ctrl+Down")));
    const auto on = [this](Command id, std::function<void()> act) {
        m_table->addAction(m_actions[id]);
        connect(m_actions[id], &QAction::triggered, this, std::move(act));
    };
    on(
        EditValue,
        [this] {
            const QModelIndex current = m_table->currentIndex();
            const bool isNew = current.column() == QlumDaModel::NewValue;
            editCell(current.sibling(current.row(), isNew ? QlumDaModel::NewValue : QlumDaModel::Value));
        });
    on(
        OpenValue, [this] { openValues(); });
    on(AddParts, [this] { addParts(); });
    on(Plot, [this] {
        m_plot->addKeys(selectedKeys());
        showPage(m_plot);
        markModified();
    });
    on(
        EndPlot,
        [this] {
            m_plot->removeKeys(selectedKeys());
            markModified();
        });
    on(
        RowSettings, [this] { askSettings(false); });
    on(
        ViewSettings, [this] { askSettings(true); });
    on(
        AskAgain, [this] { askAgain(selectedKeys()); });
    on(ResetCounts, [this] { m_model->resetCounts(selectedKeys()); });
    on(MoveUp, [this] {
        m_model->moveKeys(selectedKeys(), -1);
        markModified();
    });
    on(
        MoveDown,
        [this] {
            m_model->moveKeys(selectedKeys(), 1);
            markModified();
        });
    on(Remove, [this] { removeKeys(selectedKeys()); });
}

// What the server has refused, and what it watches but has only faults to tell of: its node may be back.
void QlumDaView::askAgain(const std::vector<quint32>& keys)
{
    std::vector<quint32> faulty;
    for (const quint32 key : keys)
        if (const QlumDataItem* item = m_model->find(key);
            item && item->state == QlumDataState::Watched && item->value.statusCode().isBad())
            faulty.push_back(key);
    m_watch->retry(keys);
    m_watch->unwatch(faulty);
    m_watch->watch(faulty);
}

// ---- editing

// What the editor has to know is asked in the background, so that the window does not wait for a server.
void QlumDaView::editCell(const QModelIndex& index)
{
    const bool isNew = index.column() == QlumDaModel::NewValue && m_newValues != nullptr;
    const QlumDataItem* item = m_model->find(index.data(QlumDaModel::KeyRole).toUInt());
    if (item == nullptr || item->nodeId.isNull() || (index.column() != QlumDaModel::Value && !isNew))
        return;
    const std::shared_ptr<QlumSessionServices> services = m_services(item->serverId);
    if (!services || !services->isConnected()) {
        tell({QlumMessage::Warning,
              writeTopic,
              tr("The value cannot be edited without a connection."),
              tr("Connect %1 first.").arg(serverName(item->serverId)),
              {},
              {}});
        return;
    }
    const auto work = [this, services, id = item->nodeId, key = item->key,
                       column = index.column()](QlumJob& job) {
        std::vector<QlumValueContext> contexts;
        QlumContextReader reader(services, job);
        const UaStatus status = reader.read(std::span(&id, 1), contexts);
        job.post([this, key, column, status, contexts] {
            if (status.isBad() || contexts.empty())
                tell({QlumMessage::Error,
                      writeTopic,
                      tr("The value cannot be edited."),
                      qlumResultInWords(status),
                      {},
                      {}});
            else
                openEditor(key, column, contexts.front());
        });
    };
    m_pool->add({tr("Reading what an editor has to know"), item->serverId}, work);
}

void QlumDaView::openEditor(quint32 key, int column, const QlumValueContext& context)
{
    const QlumDataItem* item = m_model->find(key);
    if (item == nullptr)
        return;
    if (!context.accessFault.isEmpty()) {
        tell({QlumMessage::Warning,
              writeTopic,
              tr("%1 cannot be written.").arg(item->displayName),
              context.accessFault,
              {},
              {}});
        return;
    }
    dismiss(writeTopic);
    QlumValueContext known = item->indexRange.isEmpty() ? context : qlumElementContext(context);
    if (!item->fieldPath.isEmpty() &&
        qlumFieldOf(qlumElementOf(item->value.value(), item->indexRange), item->fieldPath, known).isNull()) {
        tell({QlumMessage::Warning,
              writeTopic,
              tr("%1 cannot be edited.").arg(item->displayName),
              tr("The value has no field \"%1\" now, or nobody knows its type.").arg(item->fieldPath),
              {},
              {}});
        return;
    }
    known.browseNode = qlumNodeChoice(item->serverId);
    const UaVariant staged = column == QlumDaModel::NewValue ? m_newValues->newValue(*item) : UaVariant();
    const UaVariant value = staged.isNull() ? m_model->shownValue(*item) : staged;
    if (!qlumWhyNoValueEditor(value, known).isEmpty()) {
        openValueWindow(key, column, value, known);
        return;
    }
    m_delegate->prepare(value, known);
    const QModelIndex cell = m_filter->mapFromSource(m_model->index(m_model->rowOf(key), column));
    if (!cell.isValid())
        return;
    m_table->setCurrentIndex(cell);
    m_table->edit(cell);
}

void QlumDaView::openValueWindow(quint32 key, int column, const UaVariant& value,
                                 const QlumValueContext& context)
{
    const QlumDataItem& item = *m_model->find(key);
    auto* dialog = new QlumValueDialog(context, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setHeading(item.displayName);
    dialog->setValue(value);
    dialog->setTaker([this, key, column](const UaVariant& entered) {
        takeEntered(key, column, entered);
        return QString();
    });
    dialog->open();
}

void QlumDaView::takeEntered(quint32 key, int column, const UaVariant& value)
{
    const QlumDataItem* item = m_model->find(key);
    if (item == nullptr)
        return;
    if (column == QlumDaModel::NewValue && m_newValues != nullptr)
        m_newValues->takeNewValue(*item, value);
    else
        write(key, value);
}

void QlumDaView::write(quint32 key, const UaVariant& value)
{
    const QlumDataItem* item = m_model->find(key);
    const std::shared_ptr<QlumSessionServices> services = item ? m_services(item->serverId) : nullptr;
    if (!services)
        return;
    const QlumPartAccess::Place place{item->nodeId, item->attributeId, item->indexRange, item->fieldPath,
                                      item->displayName};
    const auto work = [this, services, value, key, place, shown = item->value.value()](QlumJob& job) {
        const UaStatus status = QlumPartAccess(job, services, place).write(value, shown);
        job.post([this, key, name = place.name, status] {
            m_model->setWriteFault(key, status.isBad() ? qlumResultInWords(status) : QString());
            if (status.isBad())
                tell({QlumMessage::Error,
                      writeTopic,
                      tr("%1 was not written.").arg(name),
                      qlumResultInWords(status),
                      {},
                      {}});
            else
                dismiss(writeTopic);
        });
    };
    m_pool->add({tr("Writing %1").arg(item->displayName), item->serverId}, work);
}

// ---- values in full, and their parts

void QlumDaView::openValues()
{
    for (const quint32 key : selectedKeys())
        if (const QlumDataItem* item = m_model->find(key); item && item->received != 0)
            showValue(*item);
}

void QlumDaView::showValue(const QlumDataItem& item)
{
    QlumToolServices* const tools = QlumToolServices::instance();
    if (tools == nullptr)
        return;
    QlumToolNode origin;
    if (item.fieldPath.isEmpty() && item.indexRange.isEmpty() && item.attributeId == OpcUa_Attributes_Value)
        origin = {item.serverId, item.nodeId, OpcUa_NodeClass_Variable, {}, item.displayName};
    tools->showValue(item.serverId, m_model->shownValue(item),
                     item.fieldPath.isEmpty() ? item.dataType : UaNodeId(), origin);
}

// What is better looked at than typed is shown; everything else is edited.
void QlumDaView::openCell(const QModelIndex& index)
{
    const QlumToolServices* const tools = QlumToolServices::instance();
    const QlumDataItem* item = m_model->find(index.data(QlumDaModel::KeyRole).toUInt());
    const bool isShown = item != nullptr && tools != nullptr && item->received != 0 &&
                         index.column() == QlumDaModel::Value &&
                         tools->canShowInDocument(m_model->shownValue(*item),
                                                  item->fieldPath.isEmpty() ? item->dataType : UaNodeId());
    if (isShown)
        showValue(*item);
    else
        editCell(index);
}

void QlumDaView::addParts()
{
    std::vector<QlumDataItem> items;
    for (const quint32 key : selectedKeys()) {
        const QlumDataItem* item = m_model->find(key);
        if (item == nullptr || item->received == 0)
            continue;
        const std::shared_ptr<const QlumValueContext> known = m_model->typeContext(*item);
        const QlumValueContext context = known ? *known : QlumValueContext();
        const UaVariant value = m_model->shownValue(*item);
        for (const QString& path : qlumFieldsOf(value, context, mostParts)) {
            QlumDataItem part;
            part.serverId = item->serverId;
            part.nodeId = item->nodeId;
            part.namespaceUri = item->namespaceUri;
            part.attributeId = item->attributeId;
            part.displayName = item->displayName;
            part.settings = item->settings;
            part.indexRange = item->indexRange;
            const bool isElement = value.isArray() && item->fieldPath.isEmpty() && item->indexRange.isEmpty();
            if (isElement)
                part.indexRange = path.mid(1, path.size() - 2); // the server sends it alone
            else
                part.fieldPath = item->fieldPath.isEmpty() || path.startsWith(QLatin1Char('['))
                                     ? item->fieldPath + path
                                     : item->fieldPath + QLatin1Char('.') + path;
            items.push_back(std::move(part));
        }
    }
    if (items.empty())
        tell({QlumMessage::Note,
              QStringLiteral("parts"),
              tr("The selected values have no parts."),
              tr("Elements of arrays and fields of structures that are known can be rows of their own."),
              {},
              {}});
    addItems(std::move(items));
}

// ---- settings

void QlumDaView::askSettings(bool isOfView)
{
    const std::vector<quint32> keys = isOfView ? std::vector<quint32>() : selectedKeys();
    const QlumDataItem* first = keys.empty() ? nullptr : m_model->find(keys.front());
    if (!isOfView && first == nullptr)
        return;
    std::optional<QlumDaSettingsDialog::Revised> revised;
    if (first != nullptr) {
        revised.emplace();
        const std::optional<monitoring::SubscriptionInfo> subscription = m_watch->subscription(*first);
        if (subscription && first->state == QlumDataState::Watched)
            *revised = {subscription->revised.publishingInterval, first->revisedSampling, first->revisedQueue,
                        subscription->revised.lifetimeCount, subscription->keepAliveCount};
    }
    const QString heading = isOfView ? tr("All rows of this view that have no settings of their own")
                            : keys.size() == 1
                                ? qlumSingleLine(first->displayName)
                                : tr("%n row(s); what is not touched stays as each of them has it", nullptr,
                                     static_cast<int>(keys.size()));
    auto* dialog = new QlumDaSettingsDialog(
        heading, first ? m_model->settingsOf(*first) : m_model->viewSettings(), revised, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (first != nullptr)
        dialog->setIndexRange(first->indexRange);
    connect(dialog, &QDialog::accepted, this, [this, dialog, keys] {
        if (keys.empty()) {
            setSettings({}, dialog->applied(m_model->viewSettings()));
            return;
        }
        std::map<const QlumDataSettings*, std::vector<quint32>> groups;
        for (const quint32 key : keys)
            if (const QlumDataItem* item = m_model->find(key))
                groups[&m_model->settingsOf(*item)].push_back(key);
        for (const auto& [settings, ofGroup] : groups)
            setSettings(ofGroup, dialog->isAsView() ? m_model->viewSettings() : dialog->applied(*settings));
        if (const std::optional<QString> range = dialog->indexRange()) {
            m_watch->unwatch(keys);
            for (const quint32 key : keys)
                m_model->changeItem(key, [&range](QlumDataItem& item) { item.indexRange = *range; });
            m_watch->watch(keys);
            tellWatchChanged(keys);
        }
    });
    dialog->open();
}

// Rows whose settings are those of the view follow it.
void QlumDaView::setSettings(const std::vector<quint32>& keys, const QlumDataSettings& settings)
{
    std::vector<quint32> changed = keys;
    if (keys.empty()) {
        m_model->setViewSettings(settings);
        for (const QlumDataItem& item : m_model->rows())
            if (!item.settings)
                changed.push_back(item.key);
    } else {
        const std::shared_ptr<const QlumDataSettings> own =
            settings == m_model->viewSettings() ? nullptr : std::make_shared<QlumDataSettings>(settings);
        const QSet<quint32> wanted(keys.begin(), keys.end());
        m_model->changeItems([&](QlumDataItem& item) {
            const bool isMeant = wanted.contains(item.key);
            if (isMeant)
                item.settings = own;
            return isMeant;
        });
    }
    m_watch->apply(changed);
    tellWatchChanged(changed);
    markModified();
}
