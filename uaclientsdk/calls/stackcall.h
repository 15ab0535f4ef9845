// Calls into the stack with the trace lines that surround them.
#pragma once

#include <opcua/opcua_channel.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>
#include <uabase/system/uatrace.h>

namespace UaClientSdk {

/// What a response with another number of results than was asked for ends as; callers rely on the number.
constexpr OpcUa_StatusCode wrongResultCount = 0x80460000u;

/// The trace lines around one call into the stack.
class StackCall
{
public:
    explicit StackCall(const char* function) : m_function(function)
    {
        UaTrace::tIfCall("CALL %s", m_function);
    }

    /// After the call; hands its result on.
    OpcUa_StatusCode done(OpcUa_StatusCode result) const
    {
        UaTrace::tIfCall("DONE %s [ret=0x%x]", m_function, result);
        return result;
    }
    /// The same for a service: what the server answered counts when the call went well.
    OpcUa_StatusCode done(OpcUa_StatusCode result, const OpcUa_ResponseHeader& header) const
    {
        UaTrace::tIfCall("DONE %s [ret=0x%x,status=0x%x]", m_function, result, header.ServiceResult);
        return OpcUa_IsGood(result) ? header.ServiceResult : result;
    }

private:
    const char* m_function;
};

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

/// Request and response of a service (servicetraits.h).
template <typename Service>
struct OwningRequest : Encodeable<typename Service::Request>
{
    OwningRequest() : Encodeable<typename Service::Request>(Service::requestType) {}
};
template <typename Service>
struct OwningResponse : Encodeable<typename Service::Response>
{
    OwningResponse() : Encodeable<typename Service::Response>(Service::responseType) {}
};

/// A request whose arrays are borrowed from the caller: only its header is its own.
template <typename Service>
class BorrowingRequest
{
public:
    using Request = typename Service::Request;

    BorrowingRequest() { OpcUa_EncodeableObject_Initialize(&Service::requestType, &m_value); }
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

/// The synchronous form of a service. Not under a session's mutex.
template <typename Service>
[[nodiscard]] OpcUa_StatusCode callStack(OpcUa_Channel channel, const typename Service::Request& request,
                                         typename Service::Response& response)
{
    const StackCall call(Service::callName);
    return call.done(Service::call(channel, &request, &response), response.ResponseHeader);
}

} // namespace UaClientSdk
