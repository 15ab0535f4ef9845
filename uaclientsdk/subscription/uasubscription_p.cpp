#include <uaclientsdk/subscription/uasubscription_p.h>

#include <utility>

namespace UaClientSdk {

namespace {

// The innermost callback that this thread is in.
thread_local SubscriptionCall* t_current = nullptr;

} // namespace

void UaSubscriptionPrivate::waitForCallbacks()
{
    const unsigned int own = SubscriptionCall::depthOnThisThread(*this);
    SessionLock lock(context.mutex);
    callbackEnded.wait(lock, [this, own] { return callbacksInProgress <= own; });
}

void UaSubscriptionPrivate::endCallback()
{
    SessionLock lock(context.mutex);
    --callbacksInProgress;
    callbackEnded.notify_all();
}

std::shared_ptr<SubscriptionPending>
SubscriptionPending::begin(const UaRefPtr<UaSubscriptionPrivate>& subscription)
{
    std::shared_ptr<SubscriptionPending> pending(new SubscriptionPending(subscription));
    SessionLock lock(subscription->context.mutex);
    ++subscription->callbacksInProgress; // the pending call gives it back in any case
    const bool valid = subscription->valid;
    lock.unlock();
    return valid ? pending : nullptr;
}

SubscriptionPending::~SubscriptionPending()
{
    m_subscription->endCallback();
}

SubscriptionCall::SubscriptionCall(UaSubscriptionPrivate& subscription, Kind kind)
    : m_subscription(subscription), m_kind(kind)
{
    SessionLock lock(subscription.context.mutex);
    if (kind != Kind::Completion) {
        const bool wanted = kind == Kind::End ? !subscription.endTold : subscription.valid;
        if (kind == Kind::End)
            subscription.invalidateLocked();
        if (!wanted || !subscription.context.connection.isRequested())
            return;
        ++subscription.callbacksInProgress;
    }
    m_entered = true;
    m_outer = std::exchange(t_current, this);
}

SubscriptionCall::~SubscriptionCall()
{
    if (!m_entered)
        return;
    t_current = m_outer;
    if (m_kind != Kind::Completion)
        m_subscription.endCallback();
}

unsigned int SubscriptionCall::depthOnThisThread(const UaSubscriptionPrivate& subscription)
{
    unsigned int depth = 0;
    for (const SubscriptionCall* call = t_current; call; call = call->m_outer)
        depth += &call->m_subscription == &subscription ? 1 : 0;
    return depth;
}

} // namespace UaClientSdk
