#include <uaclientsdk/subscription/uasubscription_p.h>

#include <utility>

namespace UaClientSdk {

namespace {

// The innermost callback that this thread is in.
thread_local SubscriptionCall* t_current = nullptr;

} // namespace

void UaSubscriptionPrivate::waitForCallbacks()
{
    const SubscriptionCall::Waiting waiting;
    SessionLock lock(context.mutex);
    // who is in no callback is waited for by nobody, and so may wait for all
    callbackEnded.wait(
        lock, [&] { return callbacksInProgress <= (waiting.isInCallback() ? callbacksWaiting : 0); });
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

// ---- deleting in a callback

SubscriptionCall::Waiting::Waiting() : m_innermost(t_current)
{
    for (const SubscriptionCall* call = m_innermost; call; call = call->m_outer) {
        SessionLock lock(call->m_subscription.context.mutex);
        ++call->m_subscription.callbacksWaiting;
        call->m_subscription.callbackEnded.notify_all();
    }
}

SubscriptionCall::Waiting::~Waiting()
{
    for (const SubscriptionCall* call = m_innermost; call; call = call->m_outer) {
        SessionLock lock(call->m_subscription.context.mutex);
        --call->m_subscription.callbacksWaiting;
    }
}

} // namespace UaClientSdk
