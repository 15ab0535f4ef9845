// What a session knows of its subscriptions and of the Publish requests for them.
#pragma once

#include <uabase/system/uarefcounter.h>
#include <uaclientsdk/subscription/formersubscriptions.h>
#include <uaclientsdk/subscription/publishacknowledgements.h>
#include <uaclientsdk/subscription/publishpace.h>
#include <uaclientsdk/subscription/publishsetpoint.h>
#include <uaclientsdk/subscription/uasubscription_p.h>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <span>

namespace UaClientSdk {

using SubscriptionRef = UaRefPtr<UaSubscriptionPrivate>;

/// The line of the trace about a calculated set point. A trace hook is the application's code, so the line is
/// written when the object ends: it is made before the lock that the calculation needs.
class SetPointTrace
{
public:
    explicit SetPointTrace(const SessionContext& context) : m_context(context) {}
    ~SetPointTrace();
    SetPointTrace(const SetPointTrace&) = delete;
    SetPointTrace& operator=(const SetPointTrace&) = delete;

private:
    friend struct PublishState;
    const SessionContext& m_context;
    const char* m_name = nullptr; ///< what follows the function's name; null: nothing was calculated
    OpcUa_UInt32 m_subscriptions = 0;
    OpcUa_UInt32 m_setPoint = 0;
    OpcUa_UInt32 m_outstanding = 0;
};

/// The numbers of notifications that the server says it has kept.
[[nodiscard]] inline std::span<const OpcUa_UInt32> availableNumbers(const OpcUa_PublishResponse& response)
{
    return {response.AvailableSequenceNumbers,
            static_cast<std::size_t>(std::max(response.NoOfAvailableSequenceNumbers, 0))};
}

/// Shared by the publish engine, the dispatcher and the services; guarded by the session's mutex.
struct PublishState
{
    explicit PublishState(SessionContext& session) : context(session) {}

    SessionContext& context;
    std::map<OpcUa_UInt32, SubscriptionRef> subscriptions; ///< by the server's id
    FormerSubscriptions former;
    PublishSetPoint setPoint;
    PublishAcknowledgements acknowledgements;
    PublishPace pace;
    OpcUa_UInt32 outstanding = 0; ///< requests of the present link that are not answered and dealt with
    bool republishing = false;    ///< missed notifications come first, no requests are sent meanwhile
    bool publishAtOnce = false;   ///< after a reconnect: the next requests go out whatever the status
    unsigned int creating = 0;    ///< services that will add a subscription
    std::condition_variable_any changed; ///< subscriptions, creating or outstanding

    /// Null when the id is unknown. While a subscription is being created, waits for it: its first
    /// notification may be faster than the answer that names it.
    [[nodiscard]] SubscriptionRef find(OpcUa_UInt32 subscriptionId);
    /// Whether it is one of the session's; does not wait.
    [[nodiscard]] bool knows(OpcUa_UInt32 subscriptionId) const;
    void calculateSetPointPublishCountLocked(bool tooManyPublish, SetPointTrace& trace);
    /// Takes a subscription out, which the server does not have any more or is about to be told to end.
    void removeLocked(const UaSubscriptionPrivate& subscription, SetPointTrace& trace);
    /// Takes all out, when their server session has ended; the caller may want to tell of them.
    [[nodiscard]] std::map<OpcUa_UInt32, SubscriptionRef> removeAllLocked();
    /// A link begins: the requests of the former one have come to nothing.
    void startLinkLocked();
};

} // namespace UaClientSdk
