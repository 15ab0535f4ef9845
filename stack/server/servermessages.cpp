#include <stack/server/servermessages.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/byteio.h>
#include <stack/core/framereader.h>
#include <stack/core/messageparts.h>

namespace opcua {

void writeAcknowledge(Bytes& out, const AcknowledgeMessage& message)
{
    const size_t begin = beginFrame(out, MessageType::Acknowledge, ChunkType::Final);
    appendVersionAndLimits(out, message.protocolVersion, message.limits);
    finishFrame(out, begin);
}

void writeError(Bytes& out, OpcUa_StatusCode status, std::string_view reason)
{
    const size_t begin = beginFrame(out, MessageType::Error, ChunkType::Final);
    appendErrorBody(out, status, reason);
    finishFrame(out, begin);
}

bool readHello(ByteView body, HelloMessage& message)
{
    ByteReader reader(body);
    if (!readVersionAndLimits(reader, message.protocolVersion, message.limits))
        return false;
    const auto url = reader.byteString(maxUrlLength);
    if (!url)
        return false;
    message.endpointUrl = asText(*url);
    return true;
}

OpcUa_StatusCode encodeOpenResponse(const OpenResponse& response, Bytes& out)
{
    ScopedStructure<OpcUa_OpenSecureChannelResponse> message(OpcUa_OpenSecureChannelResponse_EncodeableType);
    message->ResponseHeader.Timestamp = response.timestamp;
    message->ResponseHeader.RequestHandle = response.requestHandle;
    message->SecurityToken.ChannelId = response.channelId;
    message->SecurityToken.TokenId = response.tokenId;
    message->SecurityToken.CreatedAt = response.timestamp;
    message->SecurityToken.RevisedLifetime = response.revisedLifetime;
    const OpcUa_StatusCode status = assignNonce(message->ServerNonce, response.nonce);
    return OpcUa_IsBad(status) ? status : message.encode(out);
}

OpcUa_StatusCode encodeServiceFault(OpcUa_DateTime timestamp, OpcUa_UInt32 requestHandle,
                                    OpcUa_StatusCode result, Bytes& out)
{
    ScopedStructure<OpcUa_ServiceFault> message(OpcUa_ServiceFault_EncodeableType);
    message->ResponseHeader.Timestamp = timestamp;
    message->ResponseHeader.RequestHandle = requestHandle;
    message->ResponseHeader.ServiceResult = result;
    return message.encode(out);
}

OpcUa_StatusCode decodeOpenRequest(ByteView body, OpenRequest& request)
{
    DecodedMessage message;
    const OpcUa_StatusCode status = decodeMessage(body, EncodingLimits{}, message);
    if (OpcUa_IsBad(status))
        return status;
    if (message.type != &OpcUa_OpenSecureChannelRequest_EncodeableType)
        return OpcUa_BadRequestTypeInvalid;
    const auto& decoded = *static_cast<const OpcUa_OpenSecureChannelRequest*>(message.object);
    request.timestamp = decoded.RequestHeader.Timestamp;
    request.requestHandle = decoded.RequestHeader.RequestHandle;
    request.timeoutHint = decoded.RequestHeader.TimeoutHint;
    request.type = decoded.RequestType;
    request.mode = decoded.SecurityMode;
    request.nonce = nonceOf(decoded.ClientNonce);
    request.requestedLifetime = decoded.RequestedLifetime;
    return OpcUa_Good;
}

} // namespace opcua
