// Finds out what a server still has of a session's subscriptions, and fetches what was missed.
#pragma once

#include <uaclientsdk/subscription/subscriptiondispatcher.h>

#include <vector>

namespace UaClientSdk {

/// Blocks for service calls; runs in the order of the session's answers.
class SubscriptionRecovery
{
public:
    /// A server that answers Republish for ever is believed for so many notifications of one subscription.
    static constexpr OpcUa_UInt32 maxRepublished = 1000;

    SubscriptionRecovery(PublishState& state, SubscriptionDispatcher& dispatcher)
        : m_state(state), m_dispatcher(dispatcher)
    {
    }

    /// Asks for each subscription whether the server has it, and ends those that it has not. Once a second at
    /// most, since a server may give cause for it with every answer.
    void doSubscriptionStatusCheck();
    /// Republish, OPC 10000-4, 5.13.6, from each subscription's last notification on. epoch: of the link
    /// that it is meant for.
    void doRepublishAfterReconnect(const ConnectionEpoch& epoch);

private:
    [[nodiscard]] std::vector<SubscriptionRef> present() const;
    /// False when the link or the session is of no use any more.
    bool republish(UaSubscriptionPrivate& subscription, const ConnectionEpoch& epoch);
    [[nodiscard]] OpcUa_StatusCode callRepublish(const ConnectionEpoch& epoch, OpcUa_UInt32 subscriptionId,
                                                 OpcUa_UInt32 sequenceNumber,
                                                 OpcUa_RepublishResponse& response);
    void endRepublish(const ConnectionEpoch& epoch);
    void dispatchRepublished(UaSubscriptionPrivate& subscription, OpcUa_NotificationMessage& message);
    [[nodiscard]] bool isCurrent(const ConnectionEpoch& epoch) const;

    PublishState& m_state;
    SubscriptionDispatcher& m_dispatcher;
    bool m_checked = false;
    OpcUa_UInt64 m_lastCheck = 0;
};

} // namespace UaClientSdk
