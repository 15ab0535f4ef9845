#include <stack/core/transportmessages.h>

#include <stack/core/byteio.h>
#include <stack/core/framereader.h>

namespace opcua {

void appendVersionAndLimits(Bytes& out, OpcUa_UInt32 version, const ChannelLimits& limits)
{
    appendUInt32(out, version);
    appendUInt32(out, limits.receiveBufferSize);
    appendUInt32(out, limits.sendBufferSize);
    appendUInt32(out, limits.maxMessageSize);
    appendUInt32(out, limits.maxChunkCount);
}

bool readVersionAndLimits(ByteReader& reader, OpcUa_UInt32& version, ChannelLimits& limits)
{
    for (OpcUa_UInt32* const field : {&version, &limits.receiveBufferSize, &limits.sendBufferSize,
                                      &limits.maxMessageSize, &limits.maxChunkCount}) {
        const auto value = reader.uint32();
        if (!value)
            return false;
        *field = *value;
    }
    return true;
}

void writeHello(Bytes& out, const HelloMessage& message)
{
    const size_t begin = beginFrame(out, MessageType::Hello, ChunkType::Final);
    appendVersionAndLimits(out, message.protocolVersion, message.limits);
    appendByteString(out, asBytes(message.endpointUrl));
    finishFrame(out, begin);
}

void appendErrorBody(Bytes& out, OpcUa_StatusCode status, std::string_view reason)
{
    appendUInt32(out, status);
    appendByteString(out, asBytes(reason.substr(0, maxReasonLength)));
}

bool readAcknowledge(ByteView body, AcknowledgeMessage& message)
{
    ByteReader reader(body);
    return readVersionAndLimits(reader, message.protocolVersion, message.limits);
}

bool readError(ByteView body, ErrorMessage& message)
{
    ByteReader reader(body);
    const auto status = reader.uint32();
    if (!status)
        return false;
    message.status = *status;
    message.reason.clear();
    // the status alone decides; a reason that is missing or too long is not worth losing it
    if (const auto reason = reader.byteString(maxReasonLength))
        message.reason = asText(*reason);
    return true;
}

} // namespace opcua
