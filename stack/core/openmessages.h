// Bodies of the messages that open, renew and close a secure channel, OPC 10000-4, 5.5.
#pragma once

#include <opcua/opcua_types.h>
#include <stack/core/protocol.h>

namespace opcua {

struct OpenRequest
{
    OpcUa_DateTime timestamp = 0;
    OpcUa_UInt32 requestHandle = 0;
    OpcUa_UInt32 timeoutHint = 0; ///< ms
    OpcUa_SecurityTokenRequestType type = OpcUa_SecurityTokenRequestType_Issue;
    OpcUa_MessageSecurityMode mode = OpcUa_MessageSecurityMode_None;
    Bytes nonce;
    OpcUa_UInt32 requestedLifetime = 0; ///< ms
};

struct OpenResponse
{
    OpcUa_DateTime timestamp = 0;
    OpcUa_UInt32 requestHandle = 0;
    OpcUa_UInt32 channelId = 0;
    OpcUa_UInt32 tokenId = 0;
    OpcUa_UInt32 revisedLifetime = 0; ///< ms
    Bytes nonce;
};

/// Good, or the codec's status.
[[nodiscard]] OpcUa_StatusCode encodeOpenRequest(const OpenRequest& request, Bytes& out);
[[nodiscard]] OpcUa_StatusCode encodeCloseRequest(OpcUa_DateTime timestamp, OpcUa_UInt32 requestHandle,
                                                  Bytes& out);

/// Good; the codec's status; BadUnknownResponse for another message; of a response that says no, or a
/// ServiceFault, its service result.
[[nodiscard]] OpcUa_StatusCode decodeOpenResponse(ByteView body, OpenResponse& response);

} // namespace opcua
