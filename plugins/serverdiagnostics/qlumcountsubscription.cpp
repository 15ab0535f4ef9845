#include <plugins/serverdiagnostics/qlumcountsubscription.h>

#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uasession.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {
class CountTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumServerDiagnosticWidget)
};

constexpr double interval = 100;              // ms, of publishing and sampling
constexpr OpcUa_UInt32 partingTimeout = 1000; // ms; who closes a view does not wait for a server
} // namespace

QlumCountSubscription::QlumCountSubscription(unsigned int serverId, Listener listener)
    : m_log(CountTexts::tr("ServerDiagnostic Plugin"), serverId),
      m_listener(std::make_shared<Listener>(std::move(listener)))
{
}

QlumCountSubscription::~QlumCountSubscription()
{
    drop();
}

UaClientSdk::SubscriptionSettings QlumCountSubscription::wanted()
{
    constexpr double longestSilence = 5000; // ms
    constexpr double leastLifetime = 3;
    constexpr double most = std::numeric_limits<OpcUa_UInt32>::max();
    const double lifetime = std::floor(QlumSettings::sessionTimeout.value() / interval);
    const double silence = std::min(longestSilence, std::floor(QlumSettings::publishTimeout.value() / 3.0));
    UaClientSdk::SubscriptionSettings settings;
    settings.publishingInterval = interval;
    settings.priority = 0;
    settings.lifetimeCount =
        static_cast<OpcUa_UInt32>(std::clamp(std::isnan(lifetime) ? 0 : lifetime, leastLifetime, most));
    settings.maxKeepAliveCount = static_cast<OpcUa_UInt32>(std::max(1.0, std::floor(silence / interval)));
    return settings;
}

void QlumCountSubscription::detach()
{
    *m_listener = {};
}

UaStatus QlumCountSubscription::open(const std::shared_ptr<QlumSessionServices>& services, const QlumJob& job)
{
    if (m_subscription && (!m_subscription->isValid() || m_services != services))
        drop();
    if (m_subscription)
        return {};
    if (!services || !services->session())
        return UaStatus(OpcUa_BadServerNotConnected);
    m_services = services;
    UaStatus status = createSubscription(job);
    if (status.isGood())
        status = subscribeCounts(job);
    return status;
}

UaStatus QlumCountSubscription::createSubscription(const QlumJob& job)
{
    UaClientSdk::ServiceSettings call = job.serviceSettings();
    UaStatus status =
        m_services->session()->createSubscription(call, this, 0, wanted(), true, &m_subscription);
    if (status.isGood() && !m_subscription)
        status = UaStatus(OpcUa_BadUnexpectedError);
    if (status.isBad()) {
        m_subscription = nullptr;
        m_log.error(CountTexts::tr("CreateSubscription failed with error %1.")
                        .arg(qlumStatusText(status.statusCode())));
        return status;
    }
    m_id = m_subscription->subscriptionId();
    return status;
}

// Without its items the subscription is of no use.
UaStatus QlumCountSubscription::subscribeCounts(const QlumJob& job)
{
    using NodeAndCount = std::pair<OpcUa_UInt32, Count>;
    const NodeAndCount counts[] = {
        {OpcUaId_Server_ServerDiagnostics_ServerDiagnosticsSummary_CurrentSessionCount, Sessions},
        {OpcUaId_Server_ServerDiagnostics_ServerDiagnosticsSummary_CurrentSubscriptionCount, Subscriptions}};
    UaMonitoredItemCreateRequests requests(static_cast<OpcUa_UInt32>(std::size(counts)));
    OpcUa_UInt32 next = 0;
    for (const auto& [nodeId, count] : counts) {
        OpcUa_MonitoredItemCreateRequest& request = requests[next++];
        if (OpcUa_IsBad(UaNodeId(nodeId).copyTo(&request.ItemToMonitor.NodeId)))
            return UaStatus(OpcUa_BadOutOfMemory);
        request.ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
        request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
        request.RequestedParameters.ClientHandle = count;
        request.RequestedParameters.SamplingInterval = interval;
        request.RequestedParameters.QueueSize = 1;
        request.RequestedParameters.DiscardOldest = OpcUa_True;
    }
    UaClientSdk::ServiceSettings call = job.serviceSettings();
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnosticInfos;
    UaStatus status = m_subscription->createMonitoredItems(call, OpcUa_TimestampsToReturn_Neither, requests,
                                                           results, diagnosticInfos);
    for (OpcUa_UInt32 i = 0; status.isGood() && i < results.length(); ++i)
        if (OpcUa_IsBad(results[i].StatusCode))
            status = UaStatus(results[i].StatusCode);
    if (status.isBad())
        m_log.error(CountTexts::tr("CreateMonitoredItems failed with error '%1'")
                        .arg(qlumStatusText(status.statusCode())));
    if (status.isBad() && results.isEmpty())
        drop();
    return status;
}

void QlumCountSubscription::drop()
{
    m_id = 0;
    if (!m_subscription)
        return;
    UaClientSdk::ServiceSettings call = qlumServiceSettings(CountTexts::tr("Ending server diagnostics"));
    call.callTimeout = std::min(partingTimeout, call.callTimeout);
    if (const auto session = m_services->session())
        static_cast<void>(session->deleteSubscription(call, &m_subscription)); // it is gone either way
    m_subscription = nullptr;
    m_services.reset();
}

// ---- on threads of the session

// The listener may go while something is on its way to it, so the way ends in what both of them hold.
void QlumCountSubscription::handOver(std::function<void(const Listener& listener)> tell) const
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [listener = m_listener, tell = std::move(tell)] { tell(*listener); },
        Qt::QueuedConnection);
}

void QlumCountSubscription::subscriptionStatusChanged(OpcUa_UInt32, const UaStatus& status)
{
    if (!status.isBad() && status.statusCode() != OpcUa_GoodSubscriptionTransferred)
        return;
    m_log.info(CountTexts::tr("The server has ended subscription %1: %2.")
                   .arg(m_id.load())
                   .arg(qlumStatusText(status.statusCode())));
    m_id = 0;
    handOver([status](const Listener& listener) {
        if (listener.ended)
            listener.ended(status);
    });
}

void QlumCountSubscription::dataChange(OpcUa_UInt32, UaMonitoredItemNotifications& notifications,
                                       UaDiagnosticInfos&)
{
    for (const OpcUa_MonitoredItemNotification& notification : notifications) {
        const bool isKnown =
            notification.ClientHandle == Sessions || notification.ClientHandle == Subscriptions;
        bool isNumber = false;
        const OpcUa_UInt32 number = UaVariant(notification.Value.Value).toUInt32(&isNumber);
        if (isKnown && isNumber && !OpcUa_IsBad(notification.Value.StatusCode))
            handOver(
                [count = static_cast<Count>(notification.ClientHandle), number](const Listener& listener) {
                    if (listener.counted)
                        listener.counted(count, number);
                });
    }
}
