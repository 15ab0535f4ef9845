// An asynchronous service call between its request and its completion.
#pragma once

#include <opcua/opcua_channel.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/callbackpool.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/connection/sessioncontext.h>
#include <uaclientsdk/connection/sessiongate.h>

#include <memory>

namespace UaClientSdk {

/// The callback data of the stack and, once the answer is there, the job of the pool: nothing has to be
/// allocated when an answer comes. It holds the session by reference, so its subclass counts what it does in
/// a way that disconnect waits for (SessionContext::transactions).
class PendingCall : public CallbackJob
{
public:
    explicit PendingCall(SessionContext& session) : m_session(session) {}
    ~PendingCall() override; ///< frees the response

    /// Sends the request through the gate. When the result is good, the call belongs to the stack until its
    /// answer comes; when it is bad, the call is left to the caller. Not under the session's mutex.
    template <typename Service>
    [[nodiscard]] static UaStatus send(std::unique_ptr<PendingCall>& call, const GateRequest& wanted,
                                       ServiceSettings& settings, typename Service::Request& request)
    {
        SessionContext& session = call->m_session;
        const UaStatus passed =
            passGate(session, wanted, settings, Service::requestType, &request, call->m_observed);
        if (passed.isBad())
            return passed;
        const StackCall stackCall(Service::beginName);
        PendingCall* const data = call.release();
        const OpcUa_StatusCode status = Service::begin(session.channel, &request, respond, data);
        if (OpcUa_IsBad(status)) {
            call.reset(data);
            call->observe(status);
        }
        return UaStatus(stackCall.done(status));
    }

    /// The session's response function, called by the stack on the channel's callback thread.
    static void respond(OpcUa_Channel channel, void* response, const OpcUa_EncodeableType* responseType,
                        void* callbackData, OpcUa_StatusCode status);

protected:
    /// On the channel's callback thread: hands the answered call to the pool. A subclass that has to keep an
    /// order does so here.
    virtual void queue(std::unique_ptr<PendingCall> self);

    [[nodiscard]] SessionContext& session() const { return m_session; }
    /// How the call ended, and the response when that is good; null for an answer of another type.
    [[nodiscard]] OpcUa_StatusCode status() const { return m_status; }
    template <typename Service>
    [[nodiscard]] typename Service::Response* response() const
    {
        return m_responseType == &Service::responseType ? static_cast<typename Service::Response*>(m_response)
                                                        : nullptr;
    }
    void clearResponse();

private:
    /// The call has ended: whoever looks at it is told.
    void observe(OpcUa_StatusCode status);

    SessionContext& m_session;
    std::unique_ptr<ObservedCall> m_observed; ///< while somebody looks at the call
    void* m_response = nullptr;
    const OpcUa_EncodeableType* m_responseType = nullptr;
    OpcUa_StatusCode m_status = 0;
};

} // namespace UaClientSdk
