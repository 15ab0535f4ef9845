#include <stack/server/serverchannel.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/secret.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

namespace opcua {

ServerChannel::ServerChannel(ServerChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
                             ServerChannelListener& listener)
    : ChannelEngine(config.limits, std::move(policy)), m_config(config), m_listener(listener)
{
}

void ServerChannel::ended(OpcUa_StatusCode status)
{
    m_state = State::Closed;
    m_conversation.assembler().clear();
    m_listener.onClosed(status);
}

void ServerChannel::fail(OpcUa_StatusCode status, std::string_view reason)
{
    if (m_state == State::Closed)
        return;
    writeError(m_output, status, reason);
    ended(status);
}

OpcUa_StatusCode ServerChannel::respond(OpcUa_UInt32 requestId, ByteView body)
{
    if (m_state != State::Open)
        return OpcUa_BadConnectionClosed;
    const OpcUa_StatusCode status =
        m_conversation.writeMessage(m_output, MessageType::Message, requestId, body);
    if (status == OpcUa_BadRequestTooLarge)
        return abort(requestId, OpcUa_BadResponseTooLarge, {});
    return status;
}

OpcUa_StatusCode ServerChannel::abort(OpcUa_UInt32 requestId, OpcUa_StatusCode status,
                                      std::string_view reason)
{
    if (m_state != State::Open)
        return OpcUa_BadConnectionClosed;
    return m_conversation.writeAbort(m_output, requestId, status, reason);
}

void ServerChannel::handleFrame(const Frame& frame, TimePoint now)
{
    switch (frame.type) {
    case MessageType::Hello:
        return handleHello(frame);
    case MessageType::Open:
        return handleOpen(frame, now);
    case MessageType::Message:
        return handleMessage(frame, now);
    case MessageType::Close:
        return handleClose(frame, now);
    default: // only servers say Acknowledge and Error
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    }
}

void ServerChannel::handleHello(const Frame& frame)
{
    HelloMessage message;
    if (m_state != State::AwaitHello)
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    if (!readHello(frame.body(), message))
        return fail(OpcUa_BadTcpEndpointUrlInvalid);
    const ChannelLimits& peer = message.limits;
    if (peer.receiveBufferSize < minimumBufferSize || peer.sendBufferSize < minimumBufferSize)
        return fail(OpcUa_BadConnectionRejected);
    m_endpointUrl = message.endpointUrl;
    AcknowledgeMessage answer{0, m_config.limits};
    answer.limits.receiveBufferSize = std::min(answer.limits.receiveBufferSize, peer.sendBufferSize);
    answer.limits.sendBufferSize = std::min(answer.limits.sendBufferSize, peer.receiveBufferSize);
    m_conversation.setSendLimits(answer.limits.sendBufferSize, peer.maxMessageSize, peer.maxChunkCount);
    writeAcknowledge(m_output, answer);
    m_state = State::AwaitOpen;
}

void ServerChannel::handleOpen(const Frame& frame, TimePoint now)
{
    if (m_state != State::AwaitOpen && m_state != State::Open)
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    const auto chunk = m_conversation.readOpen(frame);
    if (!chunk)
        return fail(OpcUa_BadSecurityChecksFailed);
    OpenRequest request;
    const OpcUa_StatusCode status = decodeOpenRequest(chunk->body, request);
    if (OpcUa_IsBad(status))
        return fail(status);
    const bool renewal = request.type == OpcUa_SecurityTokenRequestType_Renew;
    if (renewal != (m_state == State::Open))
        return fail(OpcUa_BadRequestTypeInvalid);
    if (!m_conversation.policy().acceptsNonce(request.nonce))
        return fail(OpcUa_BadSecurityChecksFailed);
    issueToken(chunk->requestId, request, now);
}

void ServerChannel::issueToken(OpcUa_UInt32 requestId, const OpenRequest& request, TimePoint now)
{
    auto nonce = m_conversation.policy().makeNonce();
    if (!nonce)
        return fail(OpcUa_BadInternalError);
    OpenResponse response;
    response.timestamp = m_config.utcNow ? m_config.utcNow() : 0;
    response.requestHandle = request.requestHandle;
    response.channelId = m_config.channelId;
    response.tokenId = m_config.firstTokenId + m_issuedTokens;
    response.revisedLifetime =
        std::max(m_config.minLifetime, std::min(m_config.maxLifetime, request.requestedLifetime));
    response.nonce = *nonce;
    SecurityToken token;
    token.id = response.tokenId;
    token.expires = now + Milliseconds{std::int64_t{response.revisedLifetime} * 5 / 4};
    token.protection = m_conversation.policy().deriveKeys(*nonce, request.nonce);
    m_conversation.setChannelId(m_config.channelId);
    Bytes body;
    OpcUa_StatusCode status = encodeOpenResponse(response, body);
    if (OpcUa_IsGood(status))
        status = m_conversation.writeOpen(m_output, requestId, body);
    wipe(*nonce);
    wipe(response.nonce);
    wipe(body);
    if (OpcUa_IsBad(status) || !token.protection.outgoing)
        return fail(OpcUa_BadInternalError);
    m_conversation.addToken(std::move(token), true);
    ++m_issuedTokens;
    m_state = State::Open;
}

void ServerChannel::handleMessage(const Frame& frame, TimePoint now)
{
    if (m_state != State::Open)
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    const auto chunk = m_conversation.readSymmetric(frame, now);
    if (!chunk)
        return fail(OpcUa_BadSecurityChecksFailed);
    if (chunk->type == ChunkType::Abort)
        return m_conversation.assembler().drop(chunk->requestId);
    Bytes body;
    const bool final = chunk->type == ChunkType::Final;
    switch (m_conversation.assembler().add(chunk->requestId, final, chunk->body, body)) {
    case MessageAssembler::Outcome::Incomplete:
        return;
    case MessageAssembler::Outcome::Complete:
        return m_listener.onRequest(chunk->requestId, std::move(body));
    case MessageAssembler::Outcome::TooLarge:
        return fail(OpcUa_BadTcpMessageTooLarge);
    }
}

void ServerChannel::handleClose(const Frame& frame, TimePoint now)
{
    if (m_state != State::Open || !m_conversation.readSymmetric(frame, now))
        return fail(OpcUa_BadSecurityChecksFailed);
    ended(OpcUa_Good);
}

} // namespace opcua
