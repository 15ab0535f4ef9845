// How rows come into a data access view, and what servers say of them.
#include <plugins/dataaccess/qlumdaview.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumdocumentservers.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaplot.h>
#include <plugins/dataaccess/qlumdasettings.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/qlummessagebar.h>
#include <watching/qlumdadescriber.h>
#include <watching/qlumvariableintake.h>

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QString>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

const QString thereTopic = QStringLiteral("there");
const QString refusedTopic = QStringLiteral("refused");
constexpr double slowRead = 5000; // ms

// Those that a server answers when it has no room for more, or offers no subscriptions at all.
bool isAboutSubscriptions(OpcUa_StatusCode why)
{
    switch (why) {
    case OpcUa_BadTooManySubscriptions:
    case OpcUa_BadTooManyMonitoredItems:
    case OpcUa_BadServiceUnsupported:
    case OpcUa_BadNotSupported:
    case OpcUa_BadNotImplemented:
    case OpcUa_BadResourceUnavailable:
    case OpcUa_BadOutOfMemory:
    case OpcUa_BadSubscriptionIdInvalid:
        return true;
    default:
        return false;
    }
}

} // namespace

// ---- nodes that come

void QlumDaView::dragEnterEvent(QDragEnterEvent* event)
{
    if (QlumVariableIntake::canTake(event->mimeData()))
        event->acceptProposedAction();
}

void QlumDaView::dropEvent(QDropEvent* event)
{
    m_intake->takeDrop(m_application, event);
}

void QlumDaView::addNodes(std::span<const QlumToolNode> nodes)
{
    dismiss(thereTopic);
    m_intake->take(nodes);
}

// A node that has a row already gets no second one by accident; who wants it says so.
void QlumDaView::addVariables(unsigned int serverId, const QlumToolNodes& nodes)
{
    std::set<UaNodeId> there;
    for (const QlumDataItem& item : m_model->rows())
        if (item.serverId == serverId && item.attributeId == OpcUa_Attributes_Value &&
            item.indexRange.isEmpty() && item.fieldPath.isEmpty())
            there.insert(item.nodeId);
    std::vector<QlumDataItem> items, again;
    items.reserve(nodes.size());
    for (const QlumToolNode& node : nodes) {
        QlumDataItem item;
        item.serverId = serverId;
        item.nodeId = node.nodeId;
        item.displayName = node.name;
        (there.insert(node.nodeId).second ? items : again).push_back(std::move(item));
    }
    if (!again.empty())
        tellThere(again);
    addItems(std::move(items));
}

void QlumDaView::tellThere(const std::vector<QlumDataItem>& again)
{
    const QString& name = again.front().displayName;
    tell({QlumMessage::Note, thereTopic,
          again.size() == 1 && !name.isEmpty()
              ? tr("%1 has a row already.").arg(qlumSingleLine(name))
              : tr("%n node(s) have a row already.", nullptr, static_cast<int>(again.size())),
          tr("They were not added a second time."), tr("&Add Again"), [this, again] {
              dismiss(thereTopic);
              addItems(again);
          }});
}

void QlumDaView::nameNamespaces(std::vector<QlumDataItem>& items) const
{
    std::map<unsigned int, QStringList> tables;
    for (QlumDataItem& item : items) {
        if (item.nodeId.isNull() || !item.namespaceUri.isEmpty())
            continue;
        const auto [table, isNew] = tables.try_emplace(item.serverId);
        if (isNew)
            table->second = m_application.namespaceTable(item.serverId);
        item.namespaceUri = table->second.value(item.nodeId.namespaceIndex());
    }
}

std::vector<quint32> QlumDaView::addItems(std::vector<QlumDataItem> items)
{
    if (items.empty())
        return {};
    nameNamespaces(items);
    const std::vector<quint32> keys = m_model->add(std::move(items));
    tellServers();
    m_watch->watch(keys);
    for (const unsigned int id : m_model->serverIds())
        describe(id, keys);
    markModified();
    return keys;
}

void QlumDaView::resolveItems(std::vector<QlumDataItem> items)
{
    nameNamespaces(items);
    const std::vector<quint32> keys = m_model->resolve(std::move(items));
    if (keys.empty())
        return;
    m_watch->watch(keys);
    for (const unsigned int id : m_model->serverIds())
        describe(id, keys);
    tellWatchChanged(keys);
    markModified();
}

void QlumDaView::removeKeys(const std::vector<quint32>& keys)
{
    m_watch->unwatch(keys);
    m_plot->removeKeys(keys);
    m_model->removeKeys(keys);
    tellServers();
    showVerdict();
    markModified();
}

void QlumDaView::tellWatchChanged(const std::vector<quint32>& keys)
{
    m_verdicts.clear();
    m_plot->watchChanged(keys);
    for (const auto& part : m_parts)
        part->watchChanged(keys);
}

void QlumDaView::tellServers()
{
    const std::vector<unsigned int> ids = m_model->serverIds();
    qlumSetDocumentServers(this, {ids.begin(), ids.end()});
    m_regroup.start();
    showHeading();
}

std::vector<quint32> QlumDaView::keysOf(unsigned int serverId, bool refusedOnly) const
{
    std::vector<quint32> keys;
    for (const QlumDataItem& item : m_model->rows())
        if (item.serverId == serverId && (!refusedOnly || item.state == QlumDataState::Refused))
            keys.push_back(item.key);
    return keys;
}

// ---- what servers say of nodes

void QlumDaView::describe(unsigned int serverId, const std::vector<quint32>& keys)
{
    const std::shared_ptr<QlumSessionServices> services = m_services(serverId);
    if (!services || !services->isConnected())
        return;
    std::vector<QlumDaQuestion> questions;
    for (const quint32 key : keys)
        if (const QlumDataItem* item = m_model->find(key); item && item->serverId == serverId &&
                                                           !item->nodeId.isNull() &&
                                                           item->state != QlumDataState::NamespaceGone)
            questions.push_back({key, item->nodeId});
    if (questions.empty())
        return;
    const bool readsUnits = QlumDaSettings::readUnits.value();
    const int typesLoaded = m_typesLoaded.value(serverId);
    const auto work = [this, serverId, services, questions = std::move(questions), readsUnits,
                       typesLoaded](QlumJob& job) {
        QlumDaDescriber describer(services, job, readsUnits);
        static_cast<void>(describer.describe(questions, [&](QlumDaDescriber::Portion portion) {
            job.post([this, serverId, typesLoaded, portion = std::move(portion)] {
                takeDescriptions(serverId, portion, typesLoaded);
            });
        })); // rows show what is known, and their status tells of the connection
    };
    m_pool->add({tr("Reading names and types of variables"), serverId}, work);
}

// What was read before definitions came must not take the place of what was read with them.
void QlumDaView::takeDescriptions(unsigned int serverId, const QlumDaDescriber::Portion& portion,
                                  int typesLoaded)
{
    for (const auto& [type, context] : portion.types)
        if (typesLoaded == m_typesLoaded.value(serverId) || !m_model->hasTypeContext(serverId, type))
            m_model->setTypeContext(serverId, type, context);
    std::unordered_map<quint32, const QlumDaDescription*> byKey;
    for (const QlumDaDescription& row : portion.rows)
        byKey.emplace(row.key, &row);
    m_model->describe(byKey);
    m_plot->rowsChanged();
    m_regroup.start();
    for (const auto& part : m_parts)
        part->rowsDescribed();
}

// ---- refusals

void QlumDaView::tellRefused(unsigned int serverId, int count, UaStatusCode why)
{
    const int all = std::max(count, static_cast<int>(keysOf(serverId, true).size())); // they come in portions
    const QString what = tr("%1 does not watch %n row(s).", nullptr, all).arg(serverName(serverId));
    const QString words = qlumResultInWords(UaStatus(why.code()));
    if (isAboutSubscriptions(why.code()))
        tell({QlumMessage::Error, refusedTopic, what,
              tr("%1. The values can be read again and again instead, and are marked then.").arg(words),
              tr("&Read Every %1").arg(qlumDaInterval(slowRead)),
              [this, serverId] { readRefused(serverId); }});
    else
        tell({QlumMessage::Warning, refusedTopic, what, words, tr("&Ask Again"),
              [this, serverId] { m_watch->retry(keysOf(serverId, true)); }});
}

void QlumDaView::readRefused(unsigned int serverId)
{
    std::map<const QlumDataSettings*, std::vector<quint32>> groups;
    for (const quint32 key : keysOf(serverId, true))
        groups[&m_model->settingsOf(*m_model->find(key))].push_back(key);
    for (const auto& [settings, keys] : groups) {
        QlumDataSettings wanted = *settings;
        wanted.readInterval = slowRead;
        setSettings(keys, wanted);
    }
}

// ---- servers

void QlumDaView::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status)
{
    const bool wasConnected = isConnected(serverId);
    m_verdicts.clear();
    m_model->setStatus(serverId, status);
    m_model->tellServerNames();
    if (isConnected(serverId)) {
        std::vector<quint32> gone, back;
        for (const quint32 key : m_model->placeNamespaces(serverId)) {
            const QlumDataItem& item = *m_model->find(key);
            (item.state == QlumDataState::NamespaceGone ? gone : back).push_back(key);
        }
        m_watch->unwatch(gone);
        m_watch->watch(back); // those that have an item keep it
        gone.insert(gone.end(), back.begin(), back.end());
        tellWatchChanged(gone);
        if (!wasConnected || status == QlumConnectionStatus::NewSessionCreated) {
            dismiss(refusedTopic);
            std::vector<quint32> unknown;
            for (const QlumDataItem& item : m_model->rows())
                if (item.serverId == serverId && item.dataType.isNull())
                    unknown.push_back(item.key);
            describe(serverId, unknown);
        }
    } else {
        m_roundTrips.remove(serverId);
    }
    showHeading();
    showVerdict();
    for (const auto& part : m_parts)
        part->statusChanged(serverId, status);
}

// Definitions come beside the connection, so that rows may have been described without them.
void QlumDaView::dataTypesLoaded(unsigned int serverId)
{
    const auto needsDefinition = [](const UaNodeId& type) {
        return type.namespaceIndex() != 0 || !type.isNumeric() ||
               type.identifierNumeric() >= static_cast<OpcUa_UInt32>(OpcUaType_ExtensionObject);
    };
    std::vector<quint32> keys;
    for (const QlumDataItem& item : m_model->rows())
        if (item.serverId == serverId && (item.dataType.isNull() || needsDefinition(item.dataType)))
            keys.push_back(item.key);
    ++m_typesLoaded[serverId];
    describe(serverId, keys);
}

void QlumDaView::sessionRemoved(unsigned int serverId)
{
    m_pool->endServer(serverId);
    m_measuring.remove(serverId);
    m_roundTrips.remove(serverId);
    for (const auto& part : m_parts)
        part->serverRemoved(serverId);
    removeKeys(keysOf(serverId));
}
