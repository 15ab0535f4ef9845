// Endpoint URLs as values of C++; the stack reads them, so that both mean the same by an address.
#pragma once

#include <opcua/opcua_platform.h>

#include <string>
#include <string_view>

namespace UaClientSdk {

/// The transport profile for what begins with a scheme; null for one that the stack does not know.
[[nodiscard]] const char* transportProfileOf(std::string_view url);
[[nodiscard]] bool isHttpsUrl(std::string_view url);

struct EndpointUrl
{
    std::string scheme;    ///< "opc.tcp", "https", "http"; lower case
    std::string host;      ///< without the brackets of an IPv6 address
    OpcUa_UInt16 port = 0; ///< 4840 where the URL gives none
    std::string path;      ///< with its leading slash and its query, or empty
    bool valid = false;
};

/// All parts are empty and the port 0 when the stack could not connect to such an address.
[[nodiscard]] EndpointUrl parseEndpointUrl(std::string_view url);

} // namespace UaClientSdk
