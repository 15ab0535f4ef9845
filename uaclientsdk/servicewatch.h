// Who may look at the service calls of a session, and who may forbid them.
#pragma once

#include <opcua/opcua_channel.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>

namespace UaClientSdk {

/// One request, before it is sent. References and pointers are valid during the callback only.
struct ServiceCall
{
    const OpcUa_EncodeableType& type; ///< of the request; its TypeName is "ReadRequest", "BrowseRequest" ...
    const void* request;              ///< with its header: holds the session's token, and maybe secrets
    const UaString& purpose;          ///< ServiceSettings::purpose of the caller
};

/// Decides about every call of a session, those that it makes for itself among them.
class ServiceGuard
{
public:
    virtual ~ServiceGuard() = default;
    /// Bad: the call is not sent and ends with this. On the caller's thread, several at once; no lock of the
    /// session is held, and the session must not be called.
    virtual UaStatus mayCall(const ServiceCall& call) = 0;
};

/// How a call ended.
struct ServiceOutcome
{
    UaStatus status;                  ///< of the call, or what the server answered
    const OpcUa_EncodeableType* type; ///< of response; null without one
    const void* response;             ///< valid during the callback only
    UaDateTime begun;                 ///< the clock of this machine
    OpcUa_UInt64 passed;              ///< when the call was let through; the clock of measure
    OpcUa_CallMeasure measure;
};

/// Sees every call that was let through, those that the session makes for itself among them.
class ServiceObserver
{
public:
    virtual ~ServiceObserver() = default;
    /// Both on threads of the callers and of the stack, several at once; no lock of the session is held, and
    /// the session must not be called. number: of the call, in this session; it ends once.
    virtual void serviceBegun(OpcUa_UInt64 number, const ServiceCall& call) = 0;
    virtual void serviceEnded(OpcUa_UInt64 number, const ServiceOutcome& outcome) = 0;
};

} // namespace UaClientSdk
