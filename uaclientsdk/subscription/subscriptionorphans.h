// Subscriptions that the server has and the session has not.
#pragma once

#include <uaclientsdk/subscription/publishstate.h>

namespace UaClientSdk {

/// A deletion that did not reach the server and a creation whose answer was lost leave a subscription behind
/// that nobody wants, whose notifications use up Publish requests. Found by them, it is deleted once.
class SubscriptionOrphans
{
public:
    explicit SubscriptionOrphans(PublishState& state) : m_state(state) {}

    /// An answer for a subscription that the session does not know. Does not wait for the server.
    void found(OpcUa_UInt32 subscriptionId);

private:
    class Call;

    /// A server that makes them up is not asked for more at a time.
    static constexpr unsigned int maxUnderWay = 4;

    [[nodiscard]] bool remove(OpcUa_UInt32 subscriptionId);
    void answered(OpcUa_UInt32 subscriptionId, OpcUa_StatusCode status);

    PublishState& m_state;
    unsigned int m_underWay = 0; ///< guarded by the session's mutex
};

} // namespace UaClientSdk
