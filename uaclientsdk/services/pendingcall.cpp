#include <uaclientsdk/services/pendingcall.h>

#include <uaclientsdk/connection/sessioncontext.h>

#include <utility>

namespace UaClientSdk {

PendingCall::~PendingCall()
{
    clearResponse();
}

void PendingCall::clearResponse()
{
    if (m_response)
        OpcUa_EncodeableObject_Delete(m_responseType, &m_response);
    m_responseType = nullptr;
}

void PendingCall::respond(OpcUa_Channel /*channel*/, void* response, const OpcUa_EncodeableType* responseType,
                          void* callbackData, OpcUa_StatusCode status)
{
    if (!callbackData) {
        UaTrace::tError("Error: SessionCallback - Stack sent callback with status [status=0x%x]", status);
        if (response)
            OpcUa_EncodeableObject_Delete(responseType, &response);
        return;
    }
    std::unique_ptr<PendingCall> call(static_cast<PendingCall*>(callbackData));
    call->clearResponse();
    call->m_response = response;
    call->m_responseType = response ? responseType : nullptr;
    call->m_status = status;
    call->observe(status);
    PendingCall& self = *call;
    self.queue(std::move(call));
}

void PendingCall::observe(OpcUa_StatusCode status)
{
    if (m_observed)
        m_observed->end(status, m_responseType, m_response);
    m_observed.reset();
}

void PendingCall::queue(std::unique_ptr<PendingCall> self)
{
    m_session.runOnPool(std::move(self));
}

} // namespace UaClientSdk
