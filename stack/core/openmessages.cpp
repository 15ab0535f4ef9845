#include <stack/core/openmessages.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/messageparts.h>

namespace opcua {

namespace {

OpcUa_StatusCode resultOfFault(const DecodedMessage& message)
{
    const auto& fault = *static_cast<const OpcUa_ServiceFault*>(message.object);
    const OpcUa_StatusCode result = fault.ResponseHeader.ServiceResult;
    return OpcUa_IsBad(result) ? result : OpcUa_BadUnknownResponse;
}

} // namespace

OpcUa_StatusCode encodeOpenRequest(const OpenRequest& request, Bytes& out)
{
    ScopedStructure<OpcUa_OpenSecureChannelRequest> message(OpcUa_OpenSecureChannelRequest_EncodeableType);
    message->RequestHeader.Timestamp = request.timestamp;
    message->RequestHeader.RequestHandle = request.requestHandle;
    message->RequestHeader.TimeoutHint = request.timeoutHint;
    message->RequestType = request.type;
    message->SecurityMode = request.mode;
    message->RequestedLifetime = request.requestedLifetime;
    const OpcUa_StatusCode status = assignNonce(message->ClientNonce, request.nonce);
    return OpcUa_IsBad(status) ? status : message.encode(out);
}

OpcUa_StatusCode encodeCloseRequest(OpcUa_DateTime timestamp, OpcUa_UInt32 requestHandle, Bytes& out)
{
    ScopedStructure<OpcUa_CloseSecureChannelRequest> message(OpcUa_CloseSecureChannelRequest_EncodeableType);
    message->RequestHeader.Timestamp = timestamp;
    message->RequestHeader.RequestHandle = requestHandle;
    return message.encode(out);
}

OpcUa_StatusCode decodeOpenResponse(ByteView body, OpenResponse& response)
{
    DecodedMessage message;
    const OpcUa_StatusCode status = decodeMessage(body, EncodingLimits{}, message);
    if (OpcUa_IsBad(status))
        return status;
    if (message.type == &OpcUa_ServiceFault_EncodeableType)
        return resultOfFault(message);
    if (message.type != &OpcUa_OpenSecureChannelResponse_EncodeableType)
        return OpcUa_BadUnknownResponse;
    const auto& decoded = *static_cast<const OpcUa_OpenSecureChannelResponse*>(message.object);
    response.timestamp = decoded.ResponseHeader.Timestamp;
    response.requestHandle = decoded.ResponseHeader.RequestHandle;
    response.channelId = decoded.SecurityToken.ChannelId;
    response.tokenId = decoded.SecurityToken.TokenId;
    response.revisedLifetime = decoded.SecurityToken.RevisedLifetime;
    response.nonce = nonceOf(decoded.ServerNonce);
    return OpcUa_IsBad(decoded.ResponseHeader.ServiceResult) ? decoded.ResponseHeader.ServiceResult
                                                             : OpcUa_Good;
}

} // namespace opcua
