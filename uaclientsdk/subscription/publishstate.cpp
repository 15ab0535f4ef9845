#include <uaclientsdk/subscription/publishstate.h>

#include <uabase/system/uatrace.h>
#include <uaclientsdk/connection/endpointurl.h>

#include <chrono>
#include <utility>

namespace UaClientSdk {

namespace {

// The answer that names a new subscription is read by another thread; it is late by moments only.
constexpr auto patience = std::chrono::seconds(1);

} // namespace

SetPointTrace::~SetPointTrace()
{
    m_context.mutex.assertUnlocked();
    if (m_name) {
        UaTrace::tInOut(
            "<-- UaSessionPrivate::calculateSetPointPublishCount%s subCount=%u publishSetPoint=%u "
            "publishCount=%u",
            m_name, m_subscriptions, m_setPoint, m_outstanding);
    }
}

bool PublishState::knows(OpcUa_UInt32 subscriptionId) const
{
    SessionLock lock(context.mutex);
    return subscriptions.contains(subscriptionId);
}

SubscriptionRef PublishState::find(OpcUa_UInt32 subscriptionId)
{
    SessionLock lock(context.mutex);
    auto found = subscriptions.find(subscriptionId);
    if (found == subscriptions.end() && creating > 0) {
        changed.wait_for(
            lock, patience,
            [&] {
                found = subscriptions.find(subscriptionId);
                return found != subscriptions.end() || creating == 0 || !context.connection.isRequested();
            });
    }
    return found == subscriptions.end() ? SubscriptionRef() : found->second;
}

void PublishState::calculateSetPointPublishCountLocked(bool tooManyPublish, SetPointTrace& trace)
{
    context.mutex.assertLocked();
    const auto count = static_cast<OpcUa_UInt32>(subscriptions.size());
    trace.m_name = "";
    if (tooManyPublish) {
        setPoint.lower(count);
        trace.m_name = "(tooManyPublish)";
    } else if (isHttpsUrl(context.currentEndpointUrl.view())) {
        setPoint.calculateForHttp(count);
        trace.m_name = "(http(s) connection)";
    } else {
        setPoint.calculate(count);
    }
    trace.m_subscriptions = count;
    trace.m_setPoint = setPoint.value();
    trace.m_outstanding = outstanding;
}

void PublishState::removeLocked(const UaSubscriptionPrivate& subscription, SetPointTrace& trace)
{
    context.mutex.assertLocked();
    const auto found = subscriptions.find(subscription.id);
    if (found != subscriptions.end() && found->second.get() == &subscription) {
        subscriptions.erase(found);
        acknowledgements.forget(subscription.id);
        former.add(subscription.id);
        calculateSetPointPublishCountLocked(false, trace);
    }
}

std::map<OpcUa_UInt32, SubscriptionRef> PublishState::removeAllLocked()
{
    context.mutex.assertLocked();
    auto removed = std::exchange(subscriptions, {});
    former.clear();
    acknowledgements.clear();
    setPoint.reset();
    return removed;
}

void PublishState::startLinkLocked()
{
    context.mutex.assertLocked();
    outstanding = 0;
    republishing = false;
    pace.reset(); // the errors were the old link's
    changed.notify_all();
}

} // namespace UaClientSdk
