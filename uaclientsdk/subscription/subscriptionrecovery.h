// Finds out what a server still has of a session's subscriptions, and fetches what was missed.
#pragma once

#include <uaclientsdk/subscription/subscriptiondispatcher.h>

#include <span>
#include <vector>

namespace UaClientSdk {

/// What went with an old link is fetched in two steps. At first nothing says how much it is: each
/// subscription is asked for the next number until the server has none. Then Publish requests go out, and the
/// first answer for a subscription shows how far its numbers go and which the server has: what lies in
/// between is fetched as well, or told to be missing.
///
/// Blocks for service calls; runs in the order of the session's answers.
class SubscriptionRecovery
{
public:
    /// A server that answers Republish for ever is believed for so many notifications of one subscription.
    static constexpr OpcUa_UInt32 maxRepublished = 1000;
    /// A server that does not say which numbers it has is asked for so many, though it had not the first.
    static constexpr std::size_t maxUnlisted = 10;
    /// Answers of one subscription that are given up because of a link that failed while the gap before them
    /// was fetched. They are not acknowledged and so can be fetched later; but a link that is said to hold
    /// and fails each time must not keep live notifications away.
    static constexpr unsigned int maxInterrupted = 3;

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
    /// The second step, before the answer is dispatched; does nothing for any but the first one of a
    /// subscription. False when the answer must not be dispatched.
    [[nodiscard]] bool closeGap(const OpcUa_PublishResponse& response);

private:
    enum class Fetched {
        Message, ///< and dispatched
        Nothing, ///< the server does not have it
        Refused, ///< asking for more is of no use
        NoLink,
        Ended ///< there is no such subscription any more
    };
    [[nodiscard]] std::vector<SubscriptionRef> present() const;
    void openGaps(std::span<const SubscriptionRef> subscriptions);
    /// False when the link or the session is of no use any more.
    bool republish(UaSubscriptionPrivate& subscription, const ConnectionEpoch& epoch);
    /// Asks for one message, and tells what is missing before it.
    Fetched fetch(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number, const ConnectionEpoch& epoch);
    Fetched fetchAll(UaSubscriptionPrivate& subscription, std::span<const OpcUa_UInt32> numbers,
                     const ConnectionEpoch& epoch);
    /// Makes the number the last one; what it was before.
    OpcUa_UInt32 advance(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number);
    [[nodiscard]] bool isInterrupted(UaSubscriptionPrivate& subscription, const ConnectionEpoch& epoch);
    [[nodiscard]] OpcUa_StatusCode callRepublish(const ConnectionEpoch& epoch, OpcUa_UInt32 subscriptionId,
                                                 OpcUa_UInt32 sequenceNumber,
                                                 OpcUa_RepublishResponse& response);
    void endRepublish(const ConnectionEpoch& epoch);
    [[nodiscard]] bool isCurrent(const ConnectionEpoch& epoch) const;

    PublishState& m_state;
    SubscriptionDispatcher& m_dispatcher;
    bool m_checked = false;
    OpcUa_UInt64 m_lastCheck = 0;
};

} // namespace UaClientSdk
