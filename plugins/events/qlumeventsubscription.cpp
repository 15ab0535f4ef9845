#include <plugins/events/qlumeventsubscription.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/events/qlumeventfilter.h>
#include <plugins/events/qlumeventsettings.h>
#include <plugins/events/qlummonitoreditemmodel.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/methodcall.h>
#include <uaclientsdk/notificationmessage.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasubscription.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

using UaClientSdk::ServiceSettings;

namespace {
constexpr OpcUa_UInt32 partingTimeout = 1000; // ms; who closes a view does not wait for a server

class SubscriptionTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumMonitoredItemModel)
};

OpcUa_UInt32 countOf(double number, OpcUa_UInt32 least)
{
    if (!(number >= least))
        return least;
    return number >= std::numeric_limits<OpcUa_UInt32>::max() ? std::numeric_limits<OpcUa_UInt32>::max()
                                                              : static_cast<OpcUa_UInt32>(number);
}

QString textOf(const UaStatus& status)
{
    return toQString(status.toString());
}
} // namespace

UaClientSdk::SubscriptionSettings qlumEventSubscriptionSettings()
{
    constexpr double longestSilence = 5000; // ms
    UaClientSdk::SubscriptionSettings settings;
    settings.publishingInterval =
        QlumApplicationInterface::instance() ? QlumEventSettings::publishingInterval.value() : 1000.0;
    const double interval = settings.publishingInterval;
    if (!(interval > 0))
        return settings;
    settings.lifetimeCount = countOf(std::floor(QlumSettings::sessionTimeout.value() / interval), 3);
    const double silence = std::min(longestSilence, std::floor(QlumSettings::publishTimeout.value() / 3.0));
    settings.maxKeepAliveCount = countOf(std::floor(silence / interval), 1);
    return settings;
}

QlumEventSubscription::QlumEventSubscription(unsigned int serverId,
                                             UaClientSdk::UaSubscriptionCallback& listener)
    : m_log(SubscriptionTexts::tr("Event Plugin"), serverId), m_serverId(serverId), m_listener(&listener)
{
}

QlumEventSubscription::~QlumEventSubscription()
{
    drop(partingTimeout);
}

void QlumEventSubscription::detach()
{
    std::unique_lock lock(m_mutex);
    m_listener = nullptr;
    m_isIdle.wait(lock, [this] { return m_calls == 0; });
}

ServiceSettings QlumEventSubscription::settings(const QString& purpose) const
{
    return qlumServiceSettings(purpose);
}

// ---- the subscription

bool QlumEventSubscription::isValid() const
{
    return m_subscription && m_subscription->isValid();
}

bool QlumEventSubscription::open(const std::shared_ptr<QlumSessionServices>& services)
{
    if (m_subscription && (!m_subscription->isValid() || m_services != services || m_items.mustReplace()))
        drop(qlumCallTimeout()); // one that was lost, or of which nobody knows what is in it
    m_openStatus = OpcUa_BadNotConnected;
    if (!m_subscription && services && services->session())
        create(services);
    m_isOpen = m_subscription != nullptr;
    return m_isOpen;
}

void QlumEventSubscription::create(const std::shared_ptr<QlumSessionServices>& services)
{
    const UaClientSdk::SubscriptionSettings wanted = qlumEventSubscriptionSettings();
    m_log.info(SubscriptionTexts::tr(
                   "Creating new subscription: ClientHandle=%1, PublishingEnable=%2, LifeTimeCount=%3, "
                   "MaxKeepAliveCount=%4, Priority=%5, PublishingInterval=%6")
                   .arg(m_serverId)
                   .arg(QStringLiteral("true"))
                   .arg(wanted.lifetimeCount)
                   .arg(wanted.maxKeepAliveCount)
                   .arg(wanted.priority)
                   .arg(wanted.publishingInterval));
    ServiceSettings call = settings(SubscriptionTexts::tr("Subscribing to events"));
    const UaStatus status =
        services->session()->createSubscription(call, this, m_serverId, wanted, true, &m_subscription);
    if (status.isBad() || !m_subscription) {
        m_subscription = nullptr;
        m_openStatus = status.isBad() ? status.statusCode() : OpcUa_BadUnexpectedError;
        m_log.error(SubscriptionTexts::tr("CreateSubscription failed with error %1.").arg(textOf(status)));
        return;
    }
    m_services = services;
    m_subscriptionId = m_subscription->subscriptionId();
    m_items.subscriptionReplaced();
    m_log.info(SubscriptionTexts::tr("CreateSubscription succeeded."));
    m_log.info(SubscriptionTexts::tr("Revised values: LifeTimeCount=%1, MaxKeepAliveCount=%2, Priority=%3, "
                                     "PublishingInterval=%4, SubscriptionId=%5")
                   .arg(m_subscription->lifetimeCount())
                   .arg(m_subscription->maxKeepAliveCount())
                   .arg(m_subscription->priority())
                   .arg(m_subscription->publishingInterval())
                   .arg(m_subscription->subscriptionId()));
}

void QlumEventSubscription::drop(OpcUa_UInt32 timeout)
{
    m_isOpen = false;
    if (!m_subscription)
        return;
    ServiceSettings call = settings(SubscriptionTexts::tr("Ending the subscription to events"));
    call.callTimeout = std::min(timeout, call.callTimeout);
    if (const auto session = m_services->session())
        static_cast<void>(session->deleteSubscription(call, &m_subscription)); // it is gone either way
    m_subscription = nullptr;
    m_services.reset();
}

void QlumEventSubscription::close()
{
    drop(qlumCallTimeout());
    m_items = monitoring::KeptItems();
    m_handles.clear();
}

// ---- items

// Which of them went through depends on what was refused and what was given up meanwhile. 0 for none.
OpcUa_UInt32 QlumEventSubscription::handleAmong(const std::vector<OpcUa_UInt32>& handles) const
{
    const auto found = std::find_first_of(m_handles.begin(), m_handles.end(), handles.begin(), handles.end());
    return found != m_handles.end() ? *found : 0;
}

QlumItemOutcomes QlumEventSubscription::apply(const QlumItemChanges& changes)
{
    std::vector<monitoring::KeptItems::Change> modified;
    for (const QlumItemChange& change : changes) {
        const OpcUa_UInt32 former = handleAmong(change.formerHandles);
        if (former != 0 && m_subscription) {
            modified.push_back({former, change.request});
            continue;
        }
        if (former != 0)
            forget(former);
        add(change.request[0]);
    }
    QlumItemOutcomes outcomes = modifyItems(modified);
    const QlumItemOutcomes made = createItems();
    outcomes.insert(outcomes.end(), made.begin(), made.end());
    return outcomes;
}

void QlumEventSubscription::add(const OpcUa_MonitoredItemCreateRequest& request)
{
    m_items.add(request);
    m_handles.push_back(request.RequestedParameters.ClientHandle);
    m_log.info(SubscriptionTexts::tr("Item %1: QueueSize=%2, SamplingInterval=%3")
                   .arg(request.RequestedParameters.ClientHandle)
                   .arg(request.RequestedParameters.QueueSize)
                   .arg(request.RequestedParameters.SamplingInterval));
    qlumLogFilter(m_log, request.RequestedParameters.Filter);
}

// While there is no subscription that would have it.
void QlumEventSubscription::forget(OpcUa_UInt32 handle)
{
    ServiceSettings call = settings(QString());
    static_cast<void>(m_items.remove(nullptr, call, {handle})); // asks nobody
    std::erase(m_handles, handle);
}

QlumItemOutcomes QlumEventSubscription::createItems()
{
    m_items.retryRefused();
    std::vector<OpcUa_UInt32> tried;
    for (const OpcUa_UInt32 handle : m_handles)
        if (m_items.monitoredItemId(handle) == 0)
            tried.push_back(handle);
    QlumItemOutcomes outcomes;
    if (!m_subscription)
        for (const OpcUa_UInt32 handle : tried)
            outcomes.push_back({handle, m_openStatus, {}});
    if (tried.empty() || !m_subscription)
        return outcomes;
    ServiceSettings call = settings(SubscriptionTexts::tr("Subscribing to events"));
    const UaStatus status = m_items.create(*m_subscription, call, OpcUa_TimestampsToReturn_Both);
    if (status.isGood())
        m_log.info(SubscriptionTexts::tr("CreateMonitoredItems succeeded"));
    else
        m_log.error(SubscriptionTexts::tr("CreateMonitoredItems failed with error '%1'").arg(textOf(status)));
    const std::vector<monitoring::KeptItems::Refused> refused = m_items.refused();
    for (const OpcUa_UInt32 handle : tried) {
        QlumItemOutcome& outcome = outcomes.emplace_back();
        outcome.clientHandle = handle;
        outcome.filterResult = m_items.filterResult(handle);
        const auto found = std::find_if(refused.begin(), refused.end(),
                                        [handle](const auto& one) { return one.clientHandle == handle; });
        if (found != refused.end())
            outcome.status = found->status;
        else if (m_items.monitoredItemId(handle) == 0 && !m_items.result(handle))
            outcome.status = status.isBad() ? status.statusCode() : OpcUa_BadUnexpectedError;
        logOutcome(handle, outcome.status);
        qlumLogFilterResult(m_log, outcome.filterResult);
    }
    return outcomes;
}

void QlumEventSubscription::logOutcome(OpcUa_UInt32 handle, OpcUa_StatusCode status) const
{
    const QString result = qlumStatusText(status);
    const OpcUa_MonitoredItemCreateResult* const made = m_items.result(handle);
    if (OpcUa_IsBad(status) || !made) {
        m_log.error(SubscriptionTexts::tr("Item %1 failed [ret = %4]").arg(handle).arg(result));
        return;
    }
    m_log.info(
        SubscriptionTexts::tr("Item %1 succeeded: RevisedQueueSize=%2, RevisedSamplingInterval=%3 [ret = %4]")
            .arg(handle)
            .arg(made->RevisedQueueSize)
            .arg(made->RevisedSamplingInterval)
            .arg(result));
}

QlumItemOutcomes QlumEventSubscription::modifyItems(const std::vector<monitoring::KeptItems::Change>& changes)
{
    QlumItemOutcomes outcomes;
    if (changes.empty())
        return outcomes;
    for (const monitoring::KeptItems::Change& change : changes)
        qlumLogFilter(m_log, change.request[0].RequestedParameters.Filter);
    ServiceSettings call = settings(SubscriptionTexts::tr("Changing the fields of events"));
    std::vector<OpcUa_StatusCode> statuses;
    const UaStatus status =
        m_items.modify(*m_subscription, call, OpcUa_TimestampsToReturn_Both, changes, statuses);
    if (status.isGood())
        m_log.info(SubscriptionTexts::tr("ModifyMonitoredItems succeeded."));
    else
        m_log.error(SubscriptionTexts::tr("ModifyMonitoredItems failed with error %1.").arg(textOf(status)));
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const OpcUa_UInt32 before = changes[i].clientHandle;
        const OpcUa_UInt32 after = changes[i].request[0].RequestedParameters.ClientHandle;
        const bool isChanged = OpcUa_IsGood(statuses[i]);
        if (isChanged)
            std::replace(m_handles.begin(), m_handles.end(), before, after);
        else
            m_log.error(SubscriptionTexts::tr("Item %1 failed with error %2.")
                            .arg(before)
                            .arg(qlumStatusText(statuses[i])));
        outcomes.push_back(
            {after, statuses[i], m_items.filterResult(isChanged ? after : before), !isChanged});
        qlumLogFilterResult(m_log, outcomes.back().filterResult);
    }
    return outcomes;
}

void QlumEventSubscription::removeItems(const std::vector<OpcUa_UInt32>& clientHandles)
{
    std::vector<OpcUa_UInt32> gone;
    for (const OpcUa_UInt32 handle : clientHandles)
        if (std::erase(m_handles, handle) > 0)
            gone.push_back(handle);
    if (m_handles.empty()) {
        close(); // there is nothing to be told any more
        return;
    }
    ServiceSettings call = settings(SubscriptionTexts::tr("Removing event notifiers"));
    const UaStatus status = m_items.remove(isValid() ? m_subscription : nullptr, call, gone);
    if (status.isBad())
        m_log.error(SubscriptionTexts::tr("DeleteMonitoredItems failed with error %1.").arg(textOf(status)));
}

// ---- conditions, and what was lost on the way

UaStatus QlumEventSubscription::refresh()
{
    if (!m_services || !m_subscription) {
        m_log.write(QlumLogLevel::Warning,
                    SubscriptionTexts::tr("No subscription exists for server %1, skip calling refresh.")
                        .arg(m_serverId));
        return UaStatus(OpcUa_BadSubscriptionIdInvalid);
    }
    ServiceSettings call = settings(SubscriptionTexts::tr("Refreshing conditions"));
    UaClientSdk::CallIn in;
    in.objectId = UaNodeId(OpcUaId_ConditionType);
    in.methodId = UaNodeId(OpcUaId_ConditionType_ConditionRefresh);
    in.inputArguments = UaVariantArray(1u);
    static_cast<void>(
        UaVariant(m_subscription->subscriptionId()).copyTo(&in.inputArguments[0])); // refused without
    UaClientSdk::CallOut out;
    UaStatus status = m_services->call(call, in, out);
    if (status.isGood())
        status = out.callResult;
    // one is under way already, which tells the same
    const bool isFault = status.isBad() && status.statusCode() != OpcUa_BadRefreshInProgress;
    m_log.write(isFault ? QlumLogLevel::Error : QlumLogLevel::Info,
                SubscriptionTexts::tr("Call ConditionRefresh returned %1 for ServerId %2.")
                    .arg(textOf(status))
                    .arg(m_serverId));
    return status;
}

void QlumEventSubscription::republish(const std::vector<OpcUa_UInt32>& sequenceNumbers,
                                      const std::function<bool()>& isCancelled,
                                      std::vector<UaEventFieldLists>& lists)
{
    const auto session = m_services ? m_services->session() : nullptr;
    for (const OpcUa_UInt32 number : sequenceNumbers) {
        if (!session || isCancelled())
            return;
        m_log.info(SubscriptionTexts::tr("Calling Republish with sequence number %1").arg(number));
        ServiceSettings call = settings(SubscriptionTexts::tr("Fetching lost events"));
        UaClientSdk::NotificationMessage message;
        const UaStatus status = session->republish(call, m_subscriptionId, number, message);
        if (status.isBad()) {
            m_log.error(SubscriptionTexts::tr("Call Republish failed (ret = %1)").arg(textOf(status)));
            return;
        }
        for (const OpcUa_ExtensionObject& data : message.notificationData) {
            const UaExtensionObject object(data);
            const auto* const list = static_cast<const OpcUa_EventNotificationList*>(
                object.decoded(OpcUa_EventNotificationList_EncodeableType));
            if (list)
                lists.emplace_back(list->NoOfEvents, list->Events);
        }
    }
}

// ---- on threads of the session

// The listener may do as it likes: no lock is held while it hears.
template <typename Function>
void QlumEventSubscription::tell(Function&& function)
{
    UaClientSdk::UaSubscriptionCallback* listener = nullptr;
    {
        const std::lock_guard lock(m_mutex);
        if (!m_listener)
            return;
        listener = m_listener;
        ++m_calls;
    }
    function(*listener);
    {
        const std::lock_guard lock(m_mutex);
        --m_calls;
        m_isIdle.notify_all(); // within the lock: who waits may delete this right after
    }
}

void QlumEventSubscription::subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status)
{
    m_log.info(SubscriptionTexts::tr("Status of subscription %1 changed to %2")
                   .arg(m_subscriptionId.load())
                   .arg(textOf(status)));
    if (status.isBad())
        m_isOpen = false;
    tell([&](UaSubscriptionCallback& listener) { listener.subscriptionStatusChanged(handle, status); });
}

void QlumEventSubscription::notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32 previous,
                                                 OpcUa_UInt32 next)
{
    tell([&](UaSubscriptionCallback& listener) { listener.notificationsMissing(handle, previous, next); });
}

void QlumEventSubscription::newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events)
{
    tell([&](UaSubscriptionCallback& listener) { listener.newEvents(handle, events); });
}
