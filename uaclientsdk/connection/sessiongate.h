// The one way of a session's calls to the server.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/connection/connectionstate.h>
#include <uaclientsdk/connection/observedcall.h>
#include <uaclientsdk/connection/sessioncontext.h>

#include <memory>
#include <optional>

namespace UaClientSdk {

/// What a call has to be let through for.
struct GateRequest
{
    CallKind kind = CallKind::Service;
    /// The call is of no use but in that epoch; without one any will do.
    std::optional<ConnectionEpoch> epoch = std::nullopt;
};

/// Binds all calls that the calling thread makes on a session to one epoch, for as long as it stands: a job
/// in the background ends with the link that it began on.
class EpochScope
{
public:
    EpochScope(const SessionContext& context, const ConnectionEpoch& epoch);
    ~EpochScope();
    EpochScope(const EpochScope&) = delete;
    EpochScope& operator=(const EpochScope&) = delete;

    /// Whether the calling thread may call that session in its present epoch. Under the session's mutex.
    [[nodiscard]] static bool allowsLocked(const SessionContext& context);

private:
    const SessionContext& m_context;
    const ConnectionEpoch m_epoch;
    EpochScope* const m_outer;
};

/// What stands in the way of a call just now; null when nothing does.
[[nodiscard]] const char* gateObstacleLocked(const SessionContext& context, const GateRequest& wanted);
/// Lets a call through and fills its header, which was initialised: BadConnectionClosed when the state of the
/// connection forbids it, or what the guard answers. observed is made when there is an observer: it wants to
/// know of the end. Without the mutex.
[[nodiscard]] UaStatus passGate(SessionContext& context, const GateRequest& wanted, ServiceSettings& settings,
                                const OpcUa_EncodeableType& type, void* request,
                                std::unique_ptr<ObservedCall>& observed);

/// A service call that blocks: its way through the gate and into the stack. response is initialised.
template <typename Service>
[[nodiscard]] UaStatus callThroughGate(SessionContext& context, const GateRequest& wanted,
                                       ServiceSettings& settings, typename Service::Request& request,
                                       typename Service::Response& response)
{
    std::unique_ptr<ObservedCall> observed;
    const UaStatus passed = passGate(context, wanted, settings, Service::requestType, &request, observed);
    if (passed.isBad())
        return passed;
    const OpcUa_StatusCode status = callStack<Service>(context.channel, request, response);
    settings.responseTime = UaDateTime(response.ResponseHeader.Timestamp);
    endObserved<Service>(observed, status, response);
    return UaStatus(status);
}

} // namespace UaClientSdk
