// Who may look at the service calls of a session, and who may forbid them.
#pragma once

#include <opcua/opcua_channel.h>
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/servicesettings.h>

#include <atomic>
#include <memory>

namespace UaClientSdk {

/// One request, before it is sent. References and pointers are valid during the callback only.
struct ServiceCall
{
    const OpcUa_EncodeableType& type; ///< of the request; its TypeName is "ReadRequest", "BrowseRequest" ...
    const void* request;              ///< with its header: holds the session's token, and maybe secrets
    const UaString& purpose;          ///< ServiceSettings::purpose of the caller
    const ServiceNote* note;          ///< ServiceSettings::note of the caller; mostly null
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
    /// Whether it wants to see calls that begin now. One that does not costs them a look at this. Any thread.
    [[nodiscard]] bool isLooking() const { return m_isLooking.load(std::memory_order_relaxed); }
    /// Both on threads of the callers and of the stack, several at once; no lock of the session is held, and
    /// the session must not be called. number: of the call, in this session; it ends once.
    virtual void serviceBegun(OpcUa_UInt64 number, const ServiceCall& call) = 0;
    virtual void serviceEnded(OpcUa_UInt64 number, const ServiceOutcome& outcome) = 0;

protected:
    /// Of the calls that begin afterwards; true to begin with. Any thread.
    void setLooking(bool isLooking) { m_isLooking.store(isLooking, std::memory_order_relaxed); }

private:
    std::atomic<bool> m_isLooking{true};
};

/// Decides about every call of a session, those that it makes for itself among them. Everything here is asked
/// on the caller's thread, several at once; no lock of the session is held, and the session must not be
/// called.
class ServiceGuard
{
public:
    virtual ~ServiceGuard() = default;
    /// Bad: the call is not sent and ends with this.
    virtual UaStatus mayCall(const ServiceCall& call) = 0;
    /// Who is told of a call that may be made, whatever the session's observer does; null for nobody, as for
    /// nearly all calls.
    virtual std::shared_ptr<ServiceObserver> witness(const ServiceCall&) { return nullptr; }
};

} // namespace UaClientSdk
