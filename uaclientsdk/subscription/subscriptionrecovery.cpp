#include <uaclientsdk/subscription/subscriptionrecovery.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/sessiongate.h>
#include <uaclientsdk/generated/servicetraits.h>

namespace UaClientSdk {

namespace {

constexpr OpcUa_UInt64 checkPause = 1000; // ms

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
            next = SubscriptionDispatcher::nextSequenceNumber(subscription->lastSequenceNumber);
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
    for (const SubscriptionRef& subscription : present())
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

bool SubscriptionRecovery::republish(UaSubscriptionPrivate& subscription, const ConnectionEpoch& epoch)
{
    for (OpcUa_UInt32 count = 0; count < maxRepublished && isCurrent(epoch); ++count) {
        OpcUa_UInt32 next = 0;
        {
            SessionLock lock(m_state.context.mutex);
            if (!subscription.valid)
                return true; // a callback has deleted it
            next = SubscriptionDispatcher::nextSequenceNumber(subscription.lastSequenceNumber);
        }
        OwningResponse<Services::Republish> response;
        const OpcUa_StatusCode status = callRepublish(epoch, subscription.id, next, *response);
        if (status == OpcUa_BadSubscriptionIdInvalid) {
            m_dispatcher.endSubscription(subscription, UaStatus(status));
            return true;
        }
        if (OpcUa_IsBad(status))
            return concernsSubscription(status);
        OpcUa_NotificationMessage& message = response->NotificationMessage;
        if (message.SequenceNumber != next) {
            UaTrace::tError("Error: UaSessionPrivate::doRepublishAfterReconnect - Notification returned "
                            "unexpected SequenceNumber (expected=%u, received=%u)",
                            next, message.SequenceNumber);
            return true;
        }
        dispatchRepublished(subscription, message);
    }
    return true;
}

void SubscriptionRecovery::dispatchRepublished(UaSubscriptionPrivate& subscription,
                                               OpcUa_NotificationMessage& message)
{
    {
        SessionLock lock(m_state.context.mutex);
        subscription.lastSequenceNumber = message.SequenceNumber;
        m_state.acknowledgements.add(subscription.id, message.SequenceNumber);
    }
    m_dispatcher.dispatchNotifications(subscription, message, "doRepublishAfterReconnect");
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
