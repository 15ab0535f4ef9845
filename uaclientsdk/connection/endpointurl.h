// Endpoint URLs of OPC 10000-6, 7: scheme, host and port.
#pragma once

#include <opcua/opcua_platform.h>

#include <string>
#include <string_view>

namespace UaClientSdk {

constexpr OpcUa_UInt16 defaultOpcUaPort = 4840;

/// The transport profile for a URL; null for a scheme that the stack does not speak.
[[nodiscard]] const char* transportProfileOf(std::string_view url);
[[nodiscard]] bool isHttpsUrl(std::string_view url);

struct EndpointUrl
{
    std::string scheme;    ///< "opc.tcp", "https", "http"; lower case
    std::string host;      ///< without the brackets of an IPv6 address
    OpcUa_UInt16 port = 0; ///< 4840 where the URL gives none
    std::string path;      ///< with its leading slash, or empty
    bool valid = false;
};

/// At most 4096 characters are looked at; longer URLs are not valid.
[[nodiscard]] EndpointUrl parseEndpointUrl(std::string_view url);

} // namespace UaClientSdk
