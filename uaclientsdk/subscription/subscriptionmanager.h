// The subscriptions of one session: their services, their notifications, their fate when the link breaks.
#pragma once

#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/subscription/publishengine.h>
#include <uaclientsdk/subscription/subscriptiondispatcher.h>
#include <uaclientsdk/subscription/subscriptionorphans.h>
#include <uaclientsdk/subscription/subscriptionrecovery.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace UaClientSdk {

class SubscriptionManager : private PublishListener
{
public:
    explicit SubscriptionManager(SessionContext& context);
    ~SubscriptionManager() override; ///< the channel must be closed
    SubscriptionManager(const SubscriptionManager&) = delete;
    SubscriptionManager& operator=(const SubscriptionManager&) = delete;

    /// Services of UaSession; any thread.
    UaStatus createSubscription(ServiceSettings& settings, UaSubscriptionCallback& callback,
                                OpcUa_UInt32 clientSubscriptionHandle, const SubscriptionSettings& wanted,
                                bool publishingEnabled, UaSubscription** subscription);
    UaStatus deleteSubscription(ServiceSettings& settings, UaSubscription** subscription);
    UaStatus setPublishingMode(ServiceSettings& settings, bool publishingEnabled,
                               const UaUInt32Array& subscriptionIds, UaStatusCodeArray& results,
                               UaDiagnosticInfos& diagnosticInfos);
    UaStatus transferSubscription(ServiceSettings& settings, UaSubscriptionCallback& callback,
                                  OpcUa_UInt32 clientSubscriptionHandle, OpcUa_UInt32 subscriptionId,
                                  const SubscriptionSettings& known, bool publishingEnabled,
                                  bool sendInitialValues, UaUInt32Array& availableSequenceNumbers,
                                  UaSubscription** subscription);
    /// Whether the session has handed it out and not deleted it.
    [[nodiscard]] bool owns(const UaSubscription* subscription) const;

    /// The session thread has requests to send from time to time.
    [[nodiscard]] bool isPublishingLocked() const
    {
        m_context.mutex.assertLocked();
        return !m_state.subscriptions.empty();
    }
    /// Bad when the link is broken.
    UaStatus doPublish();

    /// A reconnect, in two steps about connectionStatusChanged. Resumed: the server still has the session.
    void prepareResumed();
    void finishResumed();
    /// Replaced: all subscriptions are gone with the old session.
    void prepareReplaced();
    void finishReplaced();

    /// A disconnect: waits for the answers of requests that the end of the session brings back ...
    void waitForAnswers(std::chrono::milliseconds limit);
    /// ... drops all subscriptions without telling, when the session thread has ended ...
    void clear();
    /// ... and waits for callbacks that run.
    void waitForCallbacks(std::chrono::milliseconds limit);
    /// Waits until nothing is on its way to a callback.
    void waitIdle() { m_engine.waitIdle(); }

private:
    class Creating;
    class Job;
    using Refs = std::vector<SubscriptionRef>;

    void notificationReceived(OpcUa_PublishResponse& response) override;
    void doSubscriptionStatusCheck() override;
    struct Owned
    {
        std::unique_ptr<UaSubscription> face;
        SubscriptionRef inside;
    };

    /// Null when the server session that it is of has ended meanwhile.
    UaSubscription* add(const SubscriptionRef& inside, const ConnectionEpoch& epoch);
    [[nodiscard]] Owned takeOwnedLocked(const UaSubscription* subscription);
    void tellEnded(Refs subscriptions);

    SessionContext& m_context;
    PublishState m_state;
    SubscriptionDispatcher m_dispatcher;
    SubscriptionRecovery m_recovery;
    SubscriptionOrphans m_orphans;
    std::vector<Owned> m_owned; ///< all that were handed out and not deleted; guarded by the session's mutex
    Refs m_dropped;             ///< of a session that was replaced, to be told; the session thread's
    PublishEngine m_engine;     ///< its jobs use all of the above
};

} // namespace UaClientSdk
