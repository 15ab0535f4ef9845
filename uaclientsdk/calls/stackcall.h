// Calls into the stack with the trace lines that surround them.
#pragma once

#include <opcua/opcua_channel.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>
#include <uabase/system/uatrace.h>

namespace UaClientSdk {

/// What a response with another number of results than was asked for ends as; callers rely on the number.
constexpr OpcUa_StatusCode wrongResultCount = 0x80460000u;

/// A structure of the stack that is initialised and cleared with its scope.
template <typename T>
class Encodeable
{
public:
    explicit Encodeable(const OpcUa_EncodeableType& type) : m_type(type)
    {
        OpcUa_EncodeableObject_Initialize(&m_type, &m_value);
    }
    ~Encodeable() { OpcUa_EncodeableObject_Clear(&m_type, &m_value); }
    Encodeable(const Encodeable&) = delete;
    Encodeable& operator=(const Encodeable&) = delete;

    T* operator->() { return &m_value; }
    T& operator*() { return m_value; }
    void reset() { OpcUa_EncodeableObject_Clear(&m_type, &m_value); }

private:
    const OpcUa_EncodeableType& m_type;
    T m_value;
};

/// A request whose arrays are borrowed from the caller: only its header is its own.
template <typename Request>
class BorrowingRequest
{
public:
    explicit BorrowingRequest(const OpcUa_EncodeableType& type)
    {
        OpcUa_EncodeableObject_Initialize(&type, &m_value);
    }
    ~BorrowingRequest()
    {
        OpcUa_EncodeableObject_Clear(&OpcUa_RequestHeader_EncodeableType, &m_value.RequestHeader);
    }
    BorrowingRequest(const BorrowingRequest&) = delete;
    BorrowingRequest& operator=(const BorrowingRequest&) = delete;

    Request* operator->() { return &m_value; }
    Request& operator*() { return m_value; }

private:
    Request m_value;
};

template <typename Request, typename Response>
[[nodiscard]] OpcUa_StatusCode
callStack(const char* service, OpcUa_StatusCode (*function)(OpcUa_Channel, const Request*, Response*),
          OpcUa_Channel channel, const Request& request, Response& response)
{
    UaTrace::tIfCall("CALL OpcUa_ClientApi_%s", service);
    OpcUa_StatusCode status = function(channel, &request, &response);
    UaTrace::tIfCall("DONE OpcUa_ClientApi_%s [ret=0x%lx,status=0x%lx]", service,
                     static_cast<unsigned long>(status),
                     static_cast<unsigned long>(response.ResponseHeader.ServiceResult));
    return OpcUa_IsGood(status) ? response.ResponseHeader.ServiceResult : status;
}

} // namespace UaClientSdk
