#include <uaclientsdk/subscription/publishengine.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/connection/linkfaults.h>
#include <uaclientsdk/generated/servicetraits.h>
#include <uaclientsdk/uaclient.h>

#include <algorithm>
#include <chrono>
#include <utility>

namespace UaClientSdk {

namespace {

// A server that answers with an error is asked again after this time, ms.
constexpr OpcUa_UInt64 pauseAfterError = 10;

UaString nameOf(OpcUa_StatusCode status)
{
    return UaStatus(status).toString();
}

} // namespace

// One request and what has to be known when its answer comes.
class PublishEngine::Call : public PendingCall
{
public:
    Call(PublishEngine& engine, const PublishState& state)
        : PendingCall(state.context), epoch(state.context.connection.epoch()),
          linkFaults(state.pace.linkFaults()), m_engine(engine)
    {
    }

    void execute() override
    {
        // counted whatever a callback throws
        struct Guard
        {
            ~Guard() { engine.answered(call); }
            PublishEngine& engine;
            const Call& call;
        } guard{m_engine, *this};
        m_engine.publishCallback(*this);
    }

    [[nodiscard]] OpcUa_StatusCode result() const { return status(); }
    [[nodiscard]] OpcUa_PublishResponse* answer() const { return response<Services::Publish>(); }

    PublishAcknowledgements::Batch acknowledgements;
    const ConnectionEpoch epoch;
    const OpcUa_UInt32 linkFaults; // so far

private:
    void queue(std::unique_ptr<PendingCall> self) override { m_engine.orderPublishResponse(std::move(self)); }

    PublishEngine& m_engine;
};

PublishEngine::PublishEngine(PublishState& state, PublishListener& listener)
    : m_state(state), m_context(state.context), m_listener(listener), m_queue(state.context)
{
}

std::unique_ptr<PublishEngine::Call> PublishEngine::prepareLocked(bool force, ServiceSettings& settings,
                                                                  OpcUa_PublishRequest& request)
{
    m_context.mutex.assertLocked();
    if (m_state.outstanding >= m_state.setPoint.value() || m_state.republishing ||
        !m_context.connection.mayCall(CallKind::Publish) ||
        (!force && m_context.connection.status() != UaClient::Connected) ||
        !m_state.pace.take(OpcUa_GetTickCount()))
        return nullptr;
    auto call = std::make_unique<Call>(*this, m_state);
    call->acknowledgements = m_state.acknowledgements.take();
    request.SubscriptionAcknowledgements = call->acknowledgements.items.data();
    request.NoOfSubscriptionAcknowledgements = static_cast<OpcUa_Int32>(call->acknowledgements.items.size());
    settings.callTimeout = m_context.connectInfo.publishTimeout;
    ++m_state.outstanding; // before the answer can be there
    return call;
}

UaStatus PublishEngine::doPublish(bool force)
{
    for (;;) {
        BorrowingRequest<Services::Publish> request;
        ServiceSettings settings;
        std::unique_ptr<PendingCall> call;
        const Call* sent = nullptr;
        {
            SessionLock lock(m_context.mutex);
            std::unique_ptr<Call> prepared = prepareLocked(force, settings, *request);
            if (!prepared)
                return UaStatus();
            sent = prepared.get();
            call = std::move(prepared);
        }
        const GateRequest wanted{CallKind::Publish, sent->epoch};
        const UaStatus status = PendingCall::send<Services::Publish>(call, wanted, settings, *request);
        if (status.isBad()) { // the call is still ours
            SessionLock lock(m_context.mutex);
            m_state.acknowledgements.restore(sent->acknowledgements);
            lock.unlock();
            answered(*sent);
            return status;
        }
    }
}

void PublishEngine::publishCallback(const Call& call)
{
    OpcUa_PublishResponse* const response = call.answer();
    OpcUa_StatusCode status = call.result();
    if (OpcUa_IsGood(status))
        status = response ? response->ResponseHeader.ServiceResult : OpcUa_BadUnknownResponse;
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.connection.isSameSession(call.epoch)) {
            lock.unlock();
            UaTrace::tInOut("<-- UaSessionPrivate::publishCallback - already disconnected");
            return;
        }
        if (!concernsLink(status))
            m_state.pace.answered();
    }
    if (OpcUa_IsBad(status)) {
        publishFailed(call, status);
        return;
    }
    checkAcknowledgements(call,
                          {response->Results, static_cast<std::size_t>(std::max(response->NoOfResults, 0))});
    m_listener.notificationReceived(*response);
}

void PublishEngine::publishFailed(const Call& call, OpcUa_StatusCode status)
{
    UaTrace::tError("Error: Publish failed [status=0x%x]", status);
    bool isDoubtful = false;
    {
        SetPointTrace trace(m_context);
        SessionLock lock(m_context.mutex);
        const bool current = m_context.connection.isCurrent(call.epoch);
        const bool tooMany = status == OpcUa_BadTooManyPublishRequests;
        if (current && concernsLink(status))
            isDoubtful = m_state.pace.linkFailed(OpcUa_GetTickCount(), call.linkFaults);
        else if (current)
            m_state.pace.failed(OpcUa_GetTickCount(), tooMany ? 0 : pauseAfterError);
        if (current && tooMany) {
            m_state.acknowledgements.restore(call.acknowledgements); // refused before it looked at them
            m_state.calculateSetPointPublishCountLocked(true, trace);
        }
    }
    if (isDoubtful) // over a transport whose link is not there between calls, nobody else finds out
        m_context.wishForCheck();
    if (status == OpcUa_BadNoSubscription)
        m_listener.doSubscriptionStatusCheck();
}

void PublishEngine::checkAcknowledgements(const Call& call, std::span<const OpcUa_StatusCode> results)
{
    const auto& sent = call.acknowledgements.items;
    if (results.size() != sent.size()) {
        UaTrace::tError(
            "Error: Number of acknowledgement results (%i) does not match number of acknowledgements (%i)",
            static_cast<int>(results.size()), static_cast<int>(sent.size()));
    }
    bool unknownSubscription = false;
    for (std::size_t i = 0; i < std::min(results.size(), sent.size()); ++i) {
        if (OpcUa_IsBad(results[i])) {
            UaTrace::tError("Error: Subscription acknowledgement (SubscriptionId=%u,SequenceNumber=%u) "
                            "returned status %s",
                            sent[i].SubscriptionId, sent[i].SequenceNumber, nameOf(results[i]).toUtf8());
            // of one that is not ours any more there is nothing to find out
            unknownSubscription = unknownSubscription || (results[i] == OpcUa_BadSubscriptionIdInvalid &&
                                                          m_state.knows(sent[i].SubscriptionId));
        }
    }
    if (unknownSubscription)
        m_listener.doSubscriptionStatusCheck();
}

void PublishEngine::answered(const Call& call)
{
    SessionLock lock(m_context.mutex);
    if (call.epoch.link == m_context.connection.epoch().link && m_state.outstanding > 0) {
        --m_state.outstanding;
        m_state.changed.notify_all();
    }
}

void PublishEngine::waitForAnswers(std::chrono::milliseconds limit)
{
    SessionLock lock(m_context.mutex);
    m_state.changed.wait_for(lock, limit, [this] { return m_state.outstanding == 0; });
}

} // namespace UaClientSdk
