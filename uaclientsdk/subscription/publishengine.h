// Keeps Publish requests at the server and takes their answers.
#pragma once

#include <uabase/values/uastatus.h>
#include <uaclientsdk/services/pendingcall.h>
#include <uaclientsdk/subscription/publishqueue.h>
#include <uaclientsdk/subscription/publishstate.h>

#include <chrono>
#include <memory>
#include <span>
#include <utility>

namespace UaClientSdk {

/// What the engine hands on, one call at a time, without the session's mutex.
class PublishListener
{
public:
    virtual ~PublishListener() = default;
    /// Moves the notifications out of the answer.
    virtual void notificationReceived(OpcUa_PublishResponse& response) = 0;
    /// The server has denied a subscription: find out which ones it has.
    virtual void doSubscriptionStatusCheck() = 0;
};

/// Publish, OPC 10000-4, 5.13.5. Requests go out on the session's thread; answers come on the channel's
/// callback thread and are dealt with in their order on the pool.
class PublishEngine
{
public:
    PublishEngine(PublishState& state, PublishListener& listener);

    /// Sends requests until as many are outstanding as the set point says. force: also when the session is
    /// not just Connected. Bad when the stack did not take one: the link is broken.
    UaStatus doPublish(bool force);
    /// Something that has to keep its place among the answers.
    void queue(std::unique_ptr<CallbackJob> job) { m_queue.add(std::move(job)); }
    /// Until no request of the present link is outstanding, or the time is over.
    void waitForAnswers(std::chrono::milliseconds limit);
    /// Until every answer that has come so far is dealt with, or the time is over. Not from a callback of a
    /// subscription.
    void waitIdle(std::chrono::milliseconds limit) { m_queue.waitIdle(limit); }
    void waitIdle() { m_queue.waitIdle(); }

private:
    class Call;

    [[nodiscard]] std::unique_ptr<Call> prepareLocked(bool force, ServiceSettings& settings,
                                                      OpcUa_PublishRequest& request);
    void orderPublishResponse(std::unique_ptr<CallbackJob> answered) { m_queue.add(std::move(answered)); }
    void publishCallback(const Call& call);
    void publishFailed(const Call& call, OpcUa_StatusCode status);
    void checkAcknowledgements(const Call& call, std::span<const OpcUa_StatusCode> results);
    void answered(const Call& call);

    PublishState& m_state;
    SessionContext& m_context;
    PublishListener& m_listener;
    PublishQueue m_queue;
};

} // namespace UaClientSdk
