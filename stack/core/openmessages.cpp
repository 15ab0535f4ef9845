#include <stack/core/openmessages.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/byteio.h>
#include <stack/encoding/lifecycle.h>
#include <stack/encoding/messagecodec.h>

namespace opcua {

namespace {

// A structure on the stack that clears itself.
template <typename T>
class Scoped
{
public:
    explicit Scoped(const OpcUa_EncodeableType& type) : m_type(type)
    {
        initializeStructure(m_type, &m_value);
    }
    ~Scoped() { clearStructure(m_type, &m_value); }
    Scoped(const Scoped&) = delete;
    Scoped& operator=(const Scoped&) = delete;
    T* operator->() { return &m_value; }

    [[nodiscard]] OpcUa_StatusCode encode(Bytes& out) const
    {
        return encodeMessage(m_type, &m_value, EncodingLimits{}, out);
    }

private:
    const OpcUa_EncodeableType& m_type;
    T m_value;
};

OpcUa_StatusCode assignNonce(OpcUa_ByteString& destination, const Bytes& nonce)
{
    if (nonce.empty())
        return OpcUa_Good;
    return assign(destination, nonce.data(), static_cast<OpcUa_Int32>(nonce.size()));
}

Bytes nonceOf(const OpcUa_ByteString& source)
{
    return source.Length <= 0 ? Bytes{} : Bytes(source.Data, source.Data + source.Length);
}

OpcUa_StatusCode resultOfFault(const DecodedMessage& message)
{
    const auto& fault = *static_cast<const OpcUa_ServiceFault*>(message.object);
    const OpcUa_StatusCode result = fault.ResponseHeader.ServiceResult;
    return OpcUa_IsBad(result) ? result : OpcUa_BadUnknownResponse;
}

} // namespace

OpcUa_StatusCode encodeOpenRequest(const OpenRequest& request, Bytes& out)
{
    Scoped<OpcUa_OpenSecureChannelRequest> message(OpcUa_OpenSecureChannelRequest_EncodeableType);
    message->RequestHeader.Timestamp = request.timestamp;
    message->RequestHeader.RequestHandle = request.requestHandle;
    message->RequestHeader.TimeoutHint = request.timeoutHint;
    message->RequestType = request.type;
    message->SecurityMode = request.mode;
    message->RequestedLifetime = request.requestedLifetime;
    const OpcUa_StatusCode status = assignNonce(message->ClientNonce, request.nonce);
    return OpcUa_IsBad(status) ? status : message.encode(out);
}

OpcUa_StatusCode encodeOpenResponse(const OpenResponse& response, Bytes& out)
{
    Scoped<OpcUa_OpenSecureChannelResponse> message(OpcUa_OpenSecureChannelResponse_EncodeableType);
    message->ResponseHeader.Timestamp = response.timestamp;
    message->ResponseHeader.RequestHandle = response.requestHandle;
    message->SecurityToken.ChannelId = response.channelId;
    message->SecurityToken.TokenId = response.tokenId;
    message->SecurityToken.CreatedAt = response.timestamp;
    message->SecurityToken.RevisedLifetime = response.revisedLifetime;
    const OpcUa_StatusCode status = assignNonce(message->ServerNonce, response.nonce);
    return OpcUa_IsBad(status) ? status : message.encode(out);
}

OpcUa_StatusCode encodeCloseRequest(OpcUa_DateTime timestamp, OpcUa_UInt32 requestHandle, Bytes& out)
{
    Scoped<OpcUa_CloseSecureChannelRequest> message(OpcUa_CloseSecureChannelRequest_EncodeableType);
    message->RequestHeader.Timestamp = timestamp;
    message->RequestHeader.RequestHandle = requestHandle;
    return message.encode(out);
}

OpcUa_StatusCode encodeServiceFault(OpcUa_DateTime timestamp, OpcUa_UInt32 requestHandle,
                                    OpcUa_StatusCode result, Bytes& out)
{
    Scoped<OpcUa_ServiceFault> message(OpcUa_ServiceFault_EncodeableType);
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
