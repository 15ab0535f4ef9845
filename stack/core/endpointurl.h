// Addresses of the forms opc.tcp://host:port/path and https://host:port/path.
#pragma once

#include <opcua/opcua_platform.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace opcua {

struct EndpointUrl
{
    std::string scheme; ///< in lower case
    std::string host;   ///< a name or an address, IPv6 without its brackets
    std::uint16_t port = 4840;
    std::string path; ///< with its slash; empty when there is none
};

/// Good or BadTcpEndpointUrlInvalid: another scheme, no host, a port that is none, user
/// information, spaces or control characters, more than 4,096 bytes or a host of more than 255.
[[nodiscard]] OpcUa_StatusCode parseEndpointUrl(std::string_view text, EndpointUrl& url);

} // namespace opcua
