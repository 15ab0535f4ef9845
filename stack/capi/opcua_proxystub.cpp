#include <opcua/opcua_channel.h>
#include <stack/capi/guard.h>
#include <stack/security/securitypolicies.h>
#include <stack/transport/runtime.h>
#include <stack/transport/trace.h>

#include <array>
#include <cstdio>

using opcua::guarded;
using opcua::Runtime;

OpcUa_StatusCode OpcUa_ProxyStub_Initialize(const OpcUa_ProxyStubConfiguration* configuration)
{
    return guarded([&] {
        Runtime::acquire(configuration != nullptr ? *configuration : OpcUa_ProxyStubConfiguration{});
        if (configuration != nullptr)
            opcua::setTraceLevel(configuration->TraceLevel);
        return OpcUa_Good;
    });
}

void OpcUa_ProxyStub_Clear(void)
{
    static_cast<void>(guarded([] {
        if (!Runtime::release())
            OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "The stack cannot be ended from one of its callbacks");
        else if (!Runtime::current())
            opcua::clearCredentialCaches();
        return OpcUa_Good;
    }));
}

const char* OpcUa_ProxyStub_GetVersion(void)
{
    return OpcUa_P_GetVersion();
}

const char* OpcUa_ProxyStub_GetStaticConfigString(void)
{
    static const std::array<char, 512> text = [] {
        const OpcUa_ProxyStubConfiguration limits = opcua::completed({});
        std::array<char, 512> line{};
        std::snprintf(
            line.data(), line.size(),
            "Transport:opc.tcp\\SecurityPolicies:None,Basic128Rsa15,Basic256,Basic256Sha256,"
            "Aes128_Sha256_RsaOaep,Aes256_Sha256_RsaPss\\MaxMessageSize:%u\\MaxChunkCount:%u\\BufferSize:%u"
            "\\MaxStringLength:%u\\MaxByteStringLength:%u\\MaxArrayLength:%u\\MaxNestingLevel:%u",
            limits.MaxMessageSize, limits.MaxChunkCount, limits.BufferSize, limits.MaxStringLength,
            limits.MaxByteStringLength, limits.MaxArrayLength, limits.MaxNestingLevel);
        return line;
    }();
    return text.data();
}

void OpcUa_ProxyStub_GetConfiguration(OpcUa_ProxyStubConfiguration* configuration)
{
    if (configuration == nullptr)
        return;
    const auto runtime = Runtime::current();
    *configuration = runtime ? runtime->configuration() : opcua::completed({});
}
