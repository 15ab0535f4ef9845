#include <uaclientsdk/subscription/subscriptionrecovery.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/linkfaults.h>
#include <uaclientsdk/connection/sessiongate.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/subscription/sequencenumbers.h>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace UaClientSdk {

namespace {

constexpr OpcUa_UInt64 checkPause = 1000; // ms

// The number up to which messages are missed, which is not missed itself; 0 when the answer does not show it.
OpcUa_UInt32 endOfGap(OpcUa_UInt32 last, const OpcUa_PublishResponse& response)
{
    const OpcUa_UInt32 number = response.NotificationMessage.SequenceNumber;
    if (isAhead(last, number))
        return number; // of a keep-alive, too: it is the next one to come
    if (response.NotificationMessage.NoOfNotificationData > 0)
        return 0;
    OpcUa_UInt32 farthest = last;
    for (const OpcUa_UInt32 available : availableNumbers(response))
        if (isAhead(last, available) && sequenceDistance(last, available) > sequenceDistance(last, farthest))
            farthest = available;
    return farthest == last ? 0 : nextSequenceNumber(farthest);
}

// Those before the end that are worth asking for, in their order.
std::vector<OpcUa_UInt32> numbersInGap(OpcUa_UInt32 last, OpcUa_UInt32 end, OpcUa_UInt32 refused,
                                       const OpcUa_PublishResponse& response)
{
    std::vector<OpcUa_UInt32> numbers;
    if (end == 0)
        return numbers;
    const auto place = [last](OpcUa_UInt32 number) { return sequenceDistance(last, number); };
    const auto available = availableNumbers(response);
    if (available.empty()) {
        for (OpcUa_UInt32 number = nextSequenceNumber(last);
             number != end && numbers.size() < SubscriptionRecovery::maxUnlisted;
             number = nextSequenceNumber(number))
            if (number != refused)
                numbers.push_back(number);
        return numbers;
    }
    std::copy_if(
        available.begin(), available.end(), std::back_inserter(numbers),
        [&](OpcUa_UInt32 number) { return isAhead(last, number) && place(number) < place(end); });
    std::sort(numbers.begin(), numbers.end(),
              [&](OpcUa_UInt32 a, OpcUa_UInt32 b) { return place(a) < place(b); });
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

// Answers that say something about the subscription, not about the link.
bool concernsSubscription(OpcUa_StatusCode status)
{
    return OpcUa_IsGood(status) || status == OpcUa_BadMessageNotAvailable ||
           status == OpcUa_BadSubscriptionIdInvalid;
}

} // namespace

std::vector<SubscriptionRef> SubscriptionRecovery::present() const
{
    std::vector<SubscriptionRef> result;
    SessionLock lock(m_state.context.mutex);
    for (const auto& [id, subscription] : m_state.subscriptions)
        result.push_back(subscription);
    return result;
}

bool SubscriptionRecovery::isCurrent(const ConnectionEpoch& epoch) const
{
    SessionLock lock(m_state.context.mutex);
    return m_state.context.connection.isCurrent(epoch);
}

void SubscriptionRecovery::doSubscriptionStatusCheck()
{
    const OpcUa_UInt64 now = OpcUa_GetTickCount();
    if (m_checked && now >= m_lastCheck && now - m_lastCheck < checkPause)
        return;
    m_checked = true;
    m_lastCheck = now;
    const TraceScope trace("UaSessionPrivate", "doSubscriptionStatusCheck");
    const ConnectionEpoch epoch = m_state.context.epoch();
    for (const SubscriptionRef& subscription : present()) {
        OpcUa_UInt32 next = 0;
        {
            SessionLock lock(m_state.context.mutex);
            next = nextSequenceNumber(subscription->lastSequenceNumber);
        }
        // asking for a notification that has not come yet tells whether there is a subscription, and changes
        // nothing
        OwningResponse<Services::Republish> response;
        const OpcUa_StatusCode status = callRepublish(epoch, subscription->id, next, *response);
        if (status == OpcUa_BadSubscriptionIdInvalid)
            m_dispatcher.endSubscription(*subscription, UaStatus(status));
        else if (!concernsSubscription(status))
            break; // the link's own check will find out
    }
    SetPointTrace setPoint(m_state.context);
    SessionLock lock(m_state.context.mutex);
    m_state.calculateSetPointPublishCountLocked(false, setPoint);
}

void SubscriptionRecovery::doRepublishAfterReconnect(const ConnectionEpoch& epoch)
{
    // live notifications go on whatever a callback throws
    struct Guard
    {
        ~Guard() { recovery.endRepublish(epoch); }
        SubscriptionRecovery& recovery;
        const ConnectionEpoch epoch;
    } guard{*this, epoch};
    const TraceScope trace("UaSessionPrivate", "doRepublishAfterReconnect");
    if (!isCurrent(epoch))
        return;
    const std::vector<SubscriptionRef> subscriptions = present();
    openGaps(subscriptions);
    for (const SubscriptionRef& subscription : subscriptions)
        if (!isCurrent(epoch) || !republish(*subscription, epoch))
            break;
}

void SubscriptionRecovery::endRepublish(const ConnectionEpoch& epoch)
{
    SetPointTrace setPoint(m_state.context);
    SessionLock lock(m_state.context.mutex);
    if (m_state.context.connection.isCurrent(epoch)) {
        m_state.republishing = false;
        m_state.publishAtOnce = true;
        m_state.calculateSetPointPublishCountLocked(false, setPoint);
        m_state.context.sessionThread.raiseLocked(lock);
    }
}

// ---- one after the other, until there are no more

void SubscriptionRecovery::openGaps(std::span<const SubscriptionRef> subscriptions)
{
    SessionLock lock(m_state.context.mutex);
    for (const SubscriptionRef& subscription : subscriptions) {
        subscription->recovery = RecoveryProgress();
        // of one that was taken over nobody knows where its numbers were
        subscription->recovery.isOpen =
            subscription->isNumberedFromOne || subscription->lastSequenceNumber != 0;
    }
}

bool SubscriptionRecovery::republish(UaSubscriptionPrivate& subscription, const ConnectionEpoch& epoch)
{
    for (;;) {
        OpcUa_UInt32 next = 0;
        {
            SessionLock lock(m_state.context.mutex);
            if (!subscription.valid)
                return true; // a callback has deleted it
            next = nextSequenceNumber(subscription.lastSequenceNumber);
        }
        const Fetched fetched = fetch(subscription, next, epoch);
        if (fetched != Fetched::Message)
            return fetched != Fetched::NoLink;
    }
}

SubscriptionRecovery::Fetched SubscriptionRecovery::fetch(UaSubscriptionPrivate& subscription,
                                                          OpcUa_UInt32 number, const ConnectionEpoch& epoch)
{
    {
        SessionLock lock(m_state.context.mutex);
        if (subscription.recovery.asked++ >= maxRepublished)
            return Fetched::Refused;
    }
    OwningResponse<Services::Republish> response;
    const OpcUa_StatusCode status = callRepublish(epoch, subscription.id, number, *response);
    if (status == OpcUa_BadSubscriptionIdInvalid) {
        m_dispatcher.endSubscription(subscription, UaStatus(status));
        return Fetched::Ended;
    }
    if (status == OpcUa_BadMessageNotAvailable) {
        SessionLock lock(m_state.context.mutex);
        subscription.recovery.refused = number;
        return Fetched::Nothing;
    }
    if (OpcUa_IsBad(status))
        return concernsLink(status) ? Fetched::NoLink : Fetched::Refused;
    OpcUa_NotificationMessage& message = response->NotificationMessage;
    if (message.SequenceNumber != number) {
        UaTrace::tError("Error: UaSessionPrivate::doRepublishAfterReconnect - Notification returned "
                        "unexpected SequenceNumber (expected=%u, received=%u)",
                        number, message.SequenceNumber);
        return Fetched::Refused;
    }
    {
        SessionLock lock(m_state.context.mutex);
        m_state.acknowledgements.add(subscription.id, number);
    }
    const OpcUa_UInt32 last = advance(subscription, number);
    if (number != nextSequenceNumber(last))
        SubscriptionDispatcher::tellMissing(subscription, last, number);
    m_dispatcher.dispatchNotifications(subscription, message, SubscriptionDispatcher::Way::Republished);
    return Fetched::Message;
}

OpcUa_UInt32 SubscriptionRecovery::advance(UaSubscriptionPrivate& subscription, OpcUa_UInt32 number)
{
    SessionLock lock(m_state.context.mutex);
    return std::exchange(subscription.lastSequenceNumber, number);
}

// ---- what lies before the first answer

bool SubscriptionRecovery::closeGap(const OpcUa_PublishResponse& response)
{
    SubscriptionRef subscription;
    OpcUa_UInt32 last = 0;
    OpcUa_UInt32 refused = 0;
    {
        SessionLock lock(m_state.context.mutex);
        const auto found = m_state.subscriptions.find(response.SubscriptionId);
        if (found == m_state.subscriptions.end() || !found->second->recovery.isOpen)
            return true;
        subscription = found->second;
        last = subscription->lastSequenceNumber;
        refused = subscription->recovery.refused;
    }
    const ConnectionEpoch epoch = m_state.context.epoch();
    const OpcUa_UInt32 end = endOfGap(last, response);
    const Fetched fetched = fetchAll(*subscription, numbersInGap(last, end, refused, response), epoch);
    if (fetched == Fetched::NoLink && isInterrupted(*subscription, epoch))
        return false;
    bool isValid = false;
    {
        SessionLock lock(m_state.context.mutex);
        isValid = subscription->valid;
        last = subscription->lastSequenceNumber;
    }
    if (isValid && end != 0 && end != nextSequenceNumber(last)) {
        advance(*subscription, previousSequenceNumber(end));
        SubscriptionDispatcher::tellMissing(*subscription, last, end);
    }
    SessionLock lock(m_state.context.mutex);
    subscription->recovery.isOpen = false; // not before: when a callback throws, the answer is fetched later
    return subscription->valid;
}

SubscriptionRecovery::Fetched SubscriptionRecovery::fetchAll(UaSubscriptionPrivate& subscription,
                                                             std::span<const OpcUa_UInt32> numbers,
                                                             const ConnectionEpoch& epoch)
{
    Fetched fetched = Fetched::Nothing;
    for (const OpcUa_UInt32 number : numbers) {
        {
            SessionLock lock(m_state.context.mutex);
            if (!subscription.valid)
                return Fetched::Ended; // a callback has deleted it
        }
        fetched = fetch(subscription, number, epoch);
        if (fetched != Fetched::Message && fetched != Fetched::Nothing)
            break;
    }
    return fetched;
}

bool SubscriptionRecovery::isInterrupted(UaSubscriptionPrivate& subscription, const ConnectionEpoch& epoch)
{
    SessionLock lock(m_state.context.mutex);
    const ConnectionState& connection = m_state.context.connection;
    return !connection.isCurrent(epoch) || !connection.isServing() ||
           ++subscription.recovery.interrupted <= maxInterrupted;
}

OpcUa_StatusCode SubscriptionRecovery::callRepublish(const ConnectionEpoch& epoch,
                                                     OpcUa_UInt32 subscriptionId, OpcUa_UInt32 sequenceNumber,
                                                     OpcUa_RepublishResponse& response)
{
    OwningRequest<Services::Republish> request;
    ServiceSettings settings;
    {
        SessionLock lock(m_state.context.mutex);
        settings.callTimeout = m_state.context.connectInfo.internalServiceCallTimeout;
    }
    request->SubscriptionId = subscriptionId;
    request->RetransmitSequenceNumber = sequenceNumber;
    return callThroughGate<Services::Republish>(m_state.context, {CallKind::Service, epoch}, settings,
                                                *request, response)
        .statusCode();
}

} // namespace UaClientSdk
