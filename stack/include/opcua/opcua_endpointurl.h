// Addresses of servers, taken apart the way the channels do it. Any thread.
#ifndef OPCUA_ENDPOINTURL_H
#define OPCUA_ENDPOINTURL_H

#include <opcua/opcua_platform.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Of addresses that name no port, whatever their scheme.
#define OPCUA_DEFAULT_PORT 4840

/// The parts of an address. Host and path point into the text that was taken apart, go with it, and are not
/// ended by a zero.
typedef struct OpcUa_EndpointUrl
{
    const char* Scheme; ///< "opc.tcp", "https" or "http"; static, ended by a zero
    const char* Host;   ///< a name or an address, IPv6 without its brackets
    size_t HostLength;
    const char* Path; ///< with its slash and its query, or only the query
    size_t PathLength;
    OpcUa_UInt16 Port; ///< OPCUA_DEFAULT_PORT where the address names none
} OpcUa_EndpointUrl;

/// The scheme of what may be an address, without regard to case: "opc.tcp", "https", "http", or "" for any
/// other and for null; static storage. The rest of the text is not looked at.
OPCUA_EXPORT const char* OpcUa_EndpointUrl_GetScheme(const char* text, size_t length);
/// Good; BadInvalidArgument; BadTcpEndpointUrlInvalid: another scheme, no host, a port that is none, user
/// information, spaces or control characters, more than 4,096 bytes or a host of more than 255. url is zeroed
/// on failure.
OPCUA_NODISCARD OPCUA_EXPORT OpcUa_StatusCode OpcUa_EndpointUrl_Parse(const char* text, size_t length,
                                                                      OpcUa_EndpointUrl* url);

#ifdef __cplusplus
}
#endif
#endif
