#include <servers/qlummodelevents.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaeventfilter.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <QMetaObject>
#include <QString>

#include <utility>

using UaClientSdk::ServiceSettings;

namespace {
constexpr double publishingInterval = 500; // ms
constexpr OpcUa_UInt32 queueSize = 100;    // a server that is being rebuilt tells of many changes at once

UaMonitoredItemCreateRequests eventItem()
{
    UaEventFilter filter;
    filter.select("Changes");
    filter.where().add(OpcUa_FilterOperator_OfType,
                       {UaFilterOperand::literal(UaVariant(UaNodeId(OpcUaId_GeneralModelChangeEventType)))});
    UaMonitoredItemCreateRequests requests(1);
    OpcUa_MonitoredItemCreateRequest& request = requests[0];
    static_cast<void>(UaNodeId(OpcUaId_Server).copyTo(&request.ItemToMonitor.NodeId));
    request.ItemToMonitor.AttributeId = OpcUa_Attributes_EventNotifier;
    request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
    request.RequestedParameters.ClientHandle = 1;
    request.RequestedParameters.SamplingInterval = 0;
    request.RequestedParameters.QueueSize = queueSize;
    request.RequestedParameters.DiscardOldest = OpcUa_True;
    static_cast<void>(filter.copyTo(&request.RequestedParameters.Filter)); // the server refuses what is cut
    return requests;
}

void takeChanges(const OpcUa_Variant& field, std::map<UaNodeId, OpcUa_Byte>& changes)
{
    UaExtensionObjectArray objects;
    if (!UaVariant(field).toExtensionObjectArray(objects))
        return;
    for (const OpcUa_ExtensionObject& object : objects) {
        const UaExtensionObject extension(object);
        const auto* change = static_cast<const OpcUa_ModelChangeStructureDataType*>(
            extension.decoded(OpcUa_ModelChangeStructureDataType_EncodeableType));
        if (change && changes.size() < QlumModelEvents::maximumNodes)
            changes[UaNodeId(change->Affected)] |= change->Verb;
    }
}
} // namespace

QlumModelEvents::QlumModelEvents(unsigned int serverId, UaClientSdk::UaSession& session, QObject* parent)
    : QObject(parent), m_log(tr("AddressSpaceModel"), serverId), m_serverId(serverId), m_session(session)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &QlumModelEvents::flush);
}

QlumModelEvents::~QlumModelEvents()
{
    m_pool.cancelAll();
    m_pool.waitForDone();
    unsubscribe(false);
}

// ---- when there is to be a subscription

void QlumModelEvents::connected()
{
    m_isConnected = true;
    synchronise();
}

void QlumModelEvents::sessionReplaced()
{
    m_isLost = true;
}

void QlumModelEvents::disconnected()
{
    m_isConnected = false;
    m_isLost = true;
    m_waiting.clear();
    synchronise();
}

void QlumModelEvents::applySetting()
{
    synchronise();
}

void QlumModelEvents::synchronise()
{
    m_isWanted = m_isConnected && QlumSettings::modelChangeEvents.value();
    m_pool.add({QString(), m_serverId}, [this](QlumJob&) {
        const bool isLost = m_isLost.exchange(false);
        if (m_subscription && (isLost || !m_subscription->isValid()))
            unsubscribe(false); // the server has it no more
        if (m_subscription && !m_isWanted)
            unsubscribe(true);
        else if (!m_subscription && m_isWanted)
            subscribe();
    });
}

// ---- on the pool's thread

void QlumModelEvents::subscribe()
{
    ServiceSettings settings = qlumServiceSettings(tr("Changes of the address space"));
    UaClientSdk::SubscriptionSettings wanted;
    wanted.publishingInterval = publishingInterval;
    wanted.lifetimeCount = 1200;
    wanted.maxKeepAliveCount = 5;
    const UaStatus status = m_session.createSubscription(settings, this, 1, wanted, true, &m_subscription);
    if (status.isBad()) {
        m_subscription = nullptr;
        m_log.error(tr("Register for ModelChangeEvents failed: createSubscription returned %1")
                        .arg(toQString(status.toString())));
        return;
    }
    if (createItem().isGood()) {
        m_log.info(tr("Registered for ModelChangeEvents"));
        return;
    }
    const UaStatus deleted = m_session.deleteSubscription(settings, &m_subscription);
    if (deleted.isBad())
        m_log.error(tr("Register for ModelChangeEvents failed: deleteSubscription returned %1")
                        .arg(toQString(deleted.toString())));
}

UaStatus QlumModelEvents::createItem()
{
    ServiceSettings settings = qlumServiceSettings(tr("Changes of the address space"));
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status = m_subscription->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Neither,
                                                                 eventItem(), results, diagnosticInfos);
    if (status.isBad() || results.length() != 1) {
        m_log.error(tr("Register for ModelChangeEvents failed: createMonitoredItems returned %1")
                        .arg(toQString(status.toString())));
        return status.isBad() ? status : UaStatus(OpcUa_BadUnexpectedError);
    }
    const UaStatus item(results[0].StatusCode);
    if (item.isBad())
        m_log.error(tr("Register for ModelChangeEvents failed: createMonitoredItems returned %1 for item 0")
                        .arg(toQString(item.toString())));
    return item;
}

void QlumModelEvents::unsubscribe(bool isTold)
{
    if (!m_subscription)
        return;
    ServiceSettings settings = qlumServiceSettings(tr("Changes of the address space"));
    const UaStatus status = m_session.deleteSubscription(settings, &m_subscription);
    m_subscription = nullptr;
    if (isTold)
        m_log.info(tr("Unregister for ModelChangeEvents returned %1").arg(toQString(status.toString())));
}

// ---- on threads of the session

void QlumModelEvents::subscriptionStatusChanged(OpcUa_UInt32, const UaStatus& status)
{
    if (!status.isBad())
        return;
    m_isLost = true;
    QMetaObject::invokeMethod(this, &QlumModelEvents::synchronise, Qt::QueuedConnection);
}

void QlumModelEvents::newEvents(OpcUa_UInt32, UaEventFieldLists& events)
{
    std::map<UaNodeId, OpcUa_Byte> changes;
    for (const OpcUa_EventFieldList& event : events)
        if (event.NoOfEventFields > 0)
            takeChanges(event.EventFields[0], changes);
    if (!changes.empty())
        QMetaObject::invokeMethod(
            this, [this, changes = std::move(changes)] { take(changes); }, Qt::QueuedConnection);
}

// ---- towards the trees

void QlumModelEvents::take(const std::map<UaNodeId, OpcUa_Byte>& changes)
{
    if (!m_isConnected)
        return;
    for (const auto& [node, verbs] : changes)
        if (m_waiting.size() < maximumNodes || m_waiting.count(node) != 0)
            m_waiting[node] |= verbs;
    if (!m_timer.isActive())
        flush();
}

void QlumModelEvents::flush()
{
    if (m_waiting.empty())
        return;
    m_timer.start(pause);
    const auto changes = std::exchange(m_waiting, {});
    for (const auto& [node, verbs] : changes)
        emit modelChanged(node, verbs);
}
