// The inside of a subscription, shared with the notifications that are on their way to it.
#pragma once

#include <uabase/system/uarefcounter.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <condition_variable>
#include <memory>

namespace UaClientSdk {

/// Outlived by its session.
class UaSubscriptionPrivate : public UaRefCounter
{
public:
    UaSubscriptionPrivate(SessionContext& session, UaSubscriptionCallback& applicationCallback,
                          OpcUa_UInt32 clientHandle, OpcUa_UInt32 subscriptionId)
        : context(session), callback(applicationCallback), handle(clientHandle), id(subscriptionId)
    {
    }

    SessionContext& context;
    UaSubscriptionCallback& callback;
    const OpcUa_UInt32 handle;
    const OpcUa_UInt32 id;

    /// Guarded by the session's mutex.
    bool valid = true;    ///< the server has it, as far as is known
    bool endTold = false; ///< the application knows that it has ended, or does not want to know
    bool publishingEnabled = false;
    SubscriptionSettings settings;        ///< interval and counts as the server has revised them
    OpcUa_UInt32 lastSequenceNumber = 0;  ///< 0: none came yet
    unsigned int callbacksInProgress = 0; ///< running, or to come for certain
    std::condition_variable_any callbackEnded;

    void invalidateLocked()
    {
        context.mutex.assertLocked();
        valid = false;
        endTold = true;
    }
    /// Blocks until no callback is in progress but those that the calling thread is in itself.
    void waitForCallbacks();
    /// A callback is over.
    void endCallback();
};

/// Makes one callback of a subscription: counts it, and refuses it when nobody wants to hear it any more.
class SubscriptionCall
{
public:
    enum class Kind {
        News,      ///< only while the subscription is valid
        End,       ///< the last one, made once: the subscription is invalid
        Completion ///< of a service call, which has raised the count when it began; never refused
    };

    explicit SubscriptionCall(UaSubscriptionPrivate& subscription, Kind kind = Kind::News);
    ~SubscriptionCall();
    SubscriptionCall(const SubscriptionCall&) = delete;
    SubscriptionCall& operator=(const SubscriptionCall&) = delete;

    /// Whether the callback is to be made.
    explicit operator bool() const { return m_entered; }
    /// How many callbacks of the subscription the calling thread is in.
    [[nodiscard]] static unsigned int depthOnThisThread(const UaSubscriptionPrivate& subscription);

private:
    UaSubscriptionPrivate& m_subscription;
    const Kind m_kind;
    SubscriptionCall* m_outer = nullptr;
    bool m_entered = false;
};

/// A completion that is to come, from its service call on: deleteSubscription waits for it.
class SubscriptionPending
{
public:
    /// Null when the subscription is not valid.
    [[nodiscard]] static std::shared_ptr<SubscriptionPending>
    begin(const UaRefPtr<UaSubscriptionPrivate>& subscription);
    ~SubscriptionPending();
    SubscriptionPending(const SubscriptionPending&) = delete;
    SubscriptionPending& operator=(const SubscriptionPending&) = delete;

    template <typename Work>
    void complete(const Work& work)
    {
        const SubscriptionCall call(*m_subscription, SubscriptionCall::Kind::Completion);
        work(m_subscription->callback);
    }

private:
    explicit SubscriptionPending(const UaRefPtr<UaSubscriptionPrivate>& subscription)
        : m_subscription(subscription)
    {
    }

    UaRefPtr<UaSubscriptionPrivate> m_subscription;
};

} // namespace UaClientSdk
