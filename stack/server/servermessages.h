// The messages that only a server writes or reads.
#pragma once

#include <stack/core/openmessages.h>
#include <stack/core/transportmessages.h>

#include <string_view>

namespace opcua {

void writeAcknowledge(Bytes& out, const AcknowledgeMessage& message);
void writeError(Bytes& out, OpcUa_StatusCode status, std::string_view reason);
/// The body without the frame header. False when bytes are missing or a length is out of bounds.
[[nodiscard]] bool readHello(ByteView body, HelloMessage& message);

/// Good, or the codec's status.
[[nodiscard]] OpcUa_StatusCode encodeOpenResponse(const OpenResponse& response, Bytes& out);
[[nodiscard]] OpcUa_StatusCode encodeServiceFault(OpcUa_DateTime timestamp, OpcUa_UInt32 requestHandle,
                                                  OpcUa_StatusCode result, Bytes& out);
/// Good; the codec's status; BadRequestTypeInvalid for another message.
[[nodiscard]] OpcUa_StatusCode decodeOpenRequest(ByteView body, OpenRequest& request);

} // namespace opcua
