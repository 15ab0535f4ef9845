// Addresses of the forms opc.tcp://host:port/path, https://host:port/path and http://host:port/path.
#pragma once

#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_platform.h>

#include <cstdint>
#include <string_view>

namespace opcua {

inline constexpr std::string_view opcTcpScheme = "opc.tcp";
inline constexpr std::string_view httpsScheme = "https";
inline constexpr std::string_view httpScheme = "http";

/// The parts of an address; host and path look into the text that it was read from.
struct EndpointUrl
{
    std::string_view scheme; ///< one of the above; static and ended by a zero
    std::string_view host;   ///< a name or an address, IPv6 without its brackets
    std::uint16_t port = OPCUA_DEFAULT_PORT;
    std::string_view path; ///< with its slash and its query, or only the query; empty when there is neither
};

/// The scheme that stands before the first colon, whatever its case; empty when it is none of the above. The
/// rest is not looked at.
[[nodiscard]] std::string_view schemeOf(std::string_view text);

/// Good or BadTcpEndpointUrlInvalid: another scheme, no host, a port that is none, user information, spaces
/// or control characters, more than 4,096 bytes or a host of more than 255.
[[nodiscard]] OpcUa_StatusCode parseEndpointUrl(std::string_view text, EndpointUrl& url);

} // namespace opcua
