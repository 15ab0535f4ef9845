// The inside of a subscription, shared with the notifications that are on their way to it.
#pragma once

#include <uabase/system/uarefcounter.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <condition_variable>
#include <memory>

namespace UaClientSdk {

/// What is known, after a resume, of the notifications that went with the old link.
struct RecoveryProgress
{
    bool isOpen = false;          ///< no answer has shown yet up to where they go
    OpcUa_UInt32 refused = 0;     ///< a number that the server did not have; 0: none
    OpcUa_UInt32 asked = 0;       ///< requests so far
    unsigned int interrupted = 0; ///< answers that were given up for want of a link
};

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
    SubscriptionSettings settings;       ///< interval and counts as the server has revised them
    OpcUa_UInt32 lastSequenceNumber = 0; ///< 0: none came yet
    bool isNumberedFromOne = false;      ///< it was made here, so that even the first can be missing
    RecoveryProgress recovery;
    unsigned int callbacksInProgress = 0; ///< running, or to come for certain
    unsigned int callbacksWaiting = 0;    ///< of those in progress: in waitForCallbacks, of any subscription
    std::condition_variable_any callbackEnded;

    void invalidateLocked()
    {
        context.mutex.assertLocked();
        valid = false;
        endTold = true;
    }
    /// Blocks until no callback is in progress. In a callback: but those that are in here too, or else two
    /// that delete each other's subscription would wait for ever.
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

    /// While it stands, the callbacks that the calling thread is in count as waiting.
    class Waiting
    {
    public:
        Waiting();
        ~Waiting();
        Waiting(const Waiting&) = delete;
        Waiting& operator=(const Waiting&) = delete;

        [[nodiscard]] bool isInCallback() const { return m_innermost != nullptr; }

    private:
        const SubscriptionCall* const m_innermost;
    };

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
