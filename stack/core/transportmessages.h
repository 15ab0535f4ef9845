// Hello, Acknowledge and Error, OPC 10000-6, 7.1.2, as far as a client writes and reads them.
#pragma once

#include <stack/core/byteio.h>
#include <stack/core/protocol.h>

#include <string>
#include <string_view>

namespace opcua {

struct HelloMessage
{
    OpcUa_UInt32 protocolVersion = 0;
    ChannelLimits limits; ///< of the sender; 0 for sizes and counts without a limit
    std::string endpointUrl;
};

struct AcknowledgeMessage
{
    OpcUa_UInt32 protocolVersion = 0;
    ChannelLimits limits;
};

/// An Error message, and the body of a chunk that aborts a message.
struct ErrorMessage
{
    OpcUa_StatusCode status = 0;
    std::string reason; ///< empty when it was longer than is read
};

void writeHello(Bytes& out, const HelloMessage& message);
void appendErrorBody(Bytes& out, OpcUa_StatusCode status, std::string_view reason);

/// Bodies without the frame header. False when bytes are missing or a length is out of bounds; bytes behind
/// the known fields belong to later versions and are ignored.
[[nodiscard]] bool readAcknowledge(ByteView body, AcknowledgeMessage& message);
[[nodiscard]] bool readError(ByteView body, ErrorMessage& message);

/// What Hello and Acknowledge begin with. False when bytes are missing.
void appendVersionAndLimits(Bytes& out, OpcUa_UInt32 version, const ChannelLimits& limits);
[[nodiscard]] bool readVersionAndLimits(ByteReader& reader, OpcUa_UInt32& version, ChannelLimits& limits);

} // namespace opcua
