#include <opcua/opcua_probe.h>
#include <opcua/opcua_statuscodes.h>
#include <stack/capi/guard.h>
#include <stack/core/endpointurl.h>
#include <stack/transport/probe.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

using opcua::guarded;

// What the handle points to.
struct OpcUa_ProbeImpl
{
    opcua::Probe probe;
};

namespace {

constexpr OpcUa_UInt32 defaultTimeout = 10'000; // ms

opcua::Milliseconds timeoutOf(OpcUa_UInt32 timeout)
{
    return opcua::Milliseconds{timeout != 0 ? timeout : defaultTimeout};
}

void fill(OpcUa_ProbeHello& hello, const opcua::Probe::Answer& answer)
{
    hello = {};
    hello.ProtocolVersion = answer.acknowledge.protocolVersion;
    hello.ReceiveBufferSize = answer.acknowledge.limits.receiveBufferSize;
    hello.SendBufferSize = answer.acknowledge.limits.sendBufferSize;
    hello.MaxMessageSize = answer.acknowledge.limits.maxMessageSize;
    hello.MaxChunkCount = answer.acknowledge.limits.maxChunkCount;
    hello.Reason = answer.reason.c_str();
    hello.AnswerLength = static_cast<OpcUa_UInt32>(answer.foreign.size());
    std::copy(answer.foreign.begin(), answer.foreign.end(), hello.Answer);
}

} // namespace

OpcUa_StatusCode OpcUa_Probe_Create(const char* url, OpcUa_Probe* probe)
{
    if (probe == nullptr)
        return OpcUa_BadInvalidArgument;
    *probe = nullptr;
    if (url == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&]() -> OpcUa_StatusCode {
        auto runtime = opcua::Runtime::current();
        if (!runtime)
            return OpcUa_BadInvalidState;
        opcua::EndpointUrl parts;
        const OpcUa_StatusCode status = opcua::parseEndpointUrl(url, parts);
        if (OpcUa_IsBad(status))
            return status;
        *probe = new OpcUa_ProbeImpl{{std::move(runtime), url, std::string(parts.host), parts.port}};
        return OpcUa_Good;
    });
}

OpcUa_StatusCode OpcUa_Probe_Resolve(OpcUa_Probe probe, OpcUa_UInt32 timeout)
{
    if (probe == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] { return probe->probe.resolve(timeoutOf(timeout)); });
}

OpcUa_UInt32 OpcUa_Probe_GetAddressCount(OpcUa_Probe probe)
{
    return probe != nullptr ? static_cast<OpcUa_UInt32>(probe->probe.addresses().size()) : 0;
}

const char* OpcUa_Probe_GetAddress(OpcUa_Probe probe, OpcUa_UInt32 index)
{
    return index < OpcUa_Probe_GetAddressCount(probe) ? probe->probe.addresses()[index].c_str() : "";
}

OpcUa_StatusCode OpcUa_Probe_Connect(OpcUa_Probe probe, OpcUa_UInt32 timeout)
{
    if (probe == nullptr)
        return OpcUa_BadInvalidArgument;
    return guarded([&] { return probe->probe.connect(timeoutOf(timeout)); });
}

const char* OpcUa_Probe_GetPeer(OpcUa_Probe probe)
{
    return probe != nullptr ? probe->probe.peer().c_str() : "";
}

OpcUa_StatusCode OpcUa_Probe_Hello(OpcUa_Probe probe, OpcUa_UInt32 timeout, OpcUa_ProbeHello* hello)
{
    if (probe == nullptr)
        return OpcUa_BadInvalidArgument;
    const OpcUa_StatusCode status = guarded([&] { return probe->probe.greet(timeoutOf(timeout)); });
    if (hello != nullptr)
        fill(*hello, probe->probe.answer());
    return status;
}

void OpcUa_Probe_Cancel(OpcUa_Probe probe)
{
    if (probe == nullptr)
        return;
    static_cast<void>(guarded([&] {
        probe->probe.cancel();
        return OpcUa_Good;
    }));
}

void OpcUa_Probe_Delete(OpcUa_Probe* probe)
{
    if (probe == nullptr)
        return;
    const std::unique_ptr<OpcUa_ProbeImpl> owner(std::exchange(*probe, nullptr));
}
