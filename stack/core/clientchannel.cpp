#include <stack/core/clientchannel.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/core/callmeasure.h>
#include <stack/core/secret.h>
#include <stack/core/transportmessages.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>

namespace opcua {

namespace {

// A server that hands out tokens of no life at all is not asked for new ones more often than this.
constexpr Milliseconds minimumRenewalPause{1000};
constexpr Milliseconds minimumLife = 2 * minimumRenewalPause;
constexpr Milliseconds maximumRenewalTimeout{60000};

Milliseconds renewalDelay(OpcUa_UInt32 lifetime)
{
    return std::max(minimumRenewalPause, Milliseconds{std::int64_t{lifetime} * 3 / 4});
}

// How long to send with a token; with a very short one, until a renewal could come through.
Milliseconds lifeOf(OpcUa_UInt32 lifetime)
{
    return std::max(minimumLife, Milliseconds{lifetime});
}

} // namespace

ClientChannel::ClientChannel(ClientChannelConfig config, std::unique_ptr<SecurityPolicy> policy,
                             ClientChannelListener& listener)
    : ChannelEngine(config.limits, std::move(policy)), m_config(std::move(config)), m_listener(listener)
{
}

// ---- life

void ClientChannel::start(TimePoint now, TimePoint deadline)
{
    if (m_state != State::Idle)
        return;
    m_openDeadline = deadline;
    m_state = State::HelloSent;
    if (m_config.endpointUrl.size() > maxUrlLength)
        return fail(OpcUa_BadTcpEndpointUrlInvalid);
    if (deadline <= now)
        return fail(OpcUa_BadTimeout);
    writeHello(m_output, {0, m_config.limits, m_config.endpointUrl});
}

void ClientChannel::close()
{
    if (m_state == State::Closed)
        return;
    if (m_state == State::Open) {
        Bytes body;
        const OpcUa_UInt32 id = m_requests.reserveId();
        // a close that cannot be said is a close all the same
        if (OpcUa_IsGood(encodeCloseRequest(utcNow(), id, body)))
            static_cast<void>(m_conversation.writeMessage(m_output, MessageType::Close, id, body));
    }
    m_state = State::Closed;
    failRequests(OpcUa_BadConnectionClosed);
}

void ClientChannel::streamEnded(OpcUa_StatusCode status)
{
    fail(status);
}

void ClientChannel::fail(OpcUa_StatusCode status)
{
    if (m_state == State::Closed)
        return;
    m_state = State::Closed;
    m_output.clear();
    wipe(m_openNonce);
    failRequests(status);
    m_listener.onClosed(status);
}

void ClientChannel::failRequests(OpcUa_StatusCode status)
{
    m_conversation.assembler().clear();
    for (const OpcUa_UInt32 id : m_requests.takeAll())
        m_listener.onRequestFailed(id, status);
}

// ---- time

TimePoint ClientChannel::nextDeadline() const
{
    switch (m_state) {
    case State::HelloSent:
    case State::Opening:
        return m_openDeadline;
    case State::Open:
        return std::min({m_requests.nextDeadline(), m_renewAt, m_openDeadline});
    default:
        return never;
    }
}

void ClientChannel::advance(TimePoint now)
{
    if (m_state == State::Idle || m_state == State::Closed)
        return;
    if (now >= m_openDeadline)
        return fail(OpcUa_BadTimeout);
    if (m_state != State::Open)
        return;
    if (now >= m_tokenEnds)
        return fail(OpcUa_BadSecureChannelTokenUnknown);
    expireRequests(now);
    if (now >= m_renewAt)
        renew(now);
}

void ClientChannel::expireRequests(TimePoint now)
{
    for (const OpcUa_UInt32 id : m_requests.takeExpired(now)) {
        ++m_givenUp;
        m_conversation.assembler().giveUp(id);
        m_listener.onRequestFailed(id, OpcUa_BadTimeout);
    }
}

// ---- requests

OpcUa_StatusCode ClientChannel::send(ByteView body, TimePoint deadline, OpcUa_UInt32& requestId)
{
    if (m_state != State::Open)
        return OpcUa_BadConnectionClosed;
    if (m_requests.size() >= m_config.maxPendingRequests)
        return OpcUa_BadTooManyOperations;
    const OpcUa_UInt32 id = m_requests.reserveId();
    const OpcUa_StatusCode status = m_conversation.writeMessage(m_output, MessageType::Message, id, body);
    if (OpcUa_IsBad(status))
        return status;
    m_requests.add(id, deadline);
    requestId = id;
    return OpcUa_Good;
}

// ---- tokens

void ClientChannel::requestToken(OpcUa_SecurityTokenRequestType type, TimePoint now, TimePoint deadline)
{
    auto nonce = m_conversation.policy().makeNonce();
    if (!nonce)
        return fail(OpcUa_BadInternalError);
    m_openNonce = std::move(*nonce);
    m_openRequestId = m_requests.reserveId();
    m_openDeadline = deadline;
    OpenRequest request;
    request.timestamp = utcNow();
    request.requestHandle = m_openRequestId;
    request.timeoutHint = static_cast<OpcUa_UInt32>(std::clamp<std::int64_t>(
        std::chrono::duration_cast<Milliseconds>(deadline - now).count(), 0, 0xFFFFFFFF));
    request.type = type;
    request.mode = m_config.securityMode;
    request.nonce = m_openNonce;
    request.requestedLifetime = m_config.requestedLifetime;
    Bytes body;
    OpcUa_StatusCode status = encodeOpenRequest(request, body);
    if (OpcUa_IsGood(status))
        status = m_conversation.writeOpen(m_output, m_openRequestId, body);
    wipe(request.nonce);
    wipe(body);
    if (OpcUa_IsBad(status))
        fail(status);
}

void ClientChannel::renew(TimePoint now)
{
    const TimePoint deadline = std::min(m_tokenEnds, now + maximumRenewalTimeout);
    m_renewAt = never;
    requestToken(OpcUa_SecurityTokenRequestType_Renew, now, deadline);
}

bool ClientChannel::installToken(const OpenResponse& response, OpcUa_UInt32 headerChannelId, TimePoint now)
{
    SecurityPolicy& policy = m_conversation.policy();
    if (response.channelId == 0 || response.channelId != headerChannelId ||
        !policy.acceptsNonce(response.nonce))
        return false;
    const Milliseconds life = lifeOf(response.revisedLifetime);
    SecurityToken token;
    token.id = response.tokenId;
    token.expires = now + life + life / 4; // accepted for a quarter longer than used
    token.protection = policy.deriveKeys(m_openNonce, response.nonce);
    if (!token.protection.outgoing || !token.protection.incoming)
        return false;
    m_conversation.setChannelId(response.channelId);
    m_conversation.addToken(std::move(token), false);
    if (m_config.tellsKeys)
        tellKeys(response);
    m_openRequestId = 0;
    wipe(m_openNonce);
    m_openDeadline = never;
    m_renewAt = now + renewalDelay(response.revisedLifetime);
    m_tokenEnds = now + life;
    return true;
}

void ClientChannel::tellKeys(const OpenResponse& response)
{
    if (const auto keys = m_conversation.policy().keysForRecord(m_openNonce, response.nonce))
        m_listener.onTokenKeys(response.channelId, response.tokenId, *keys);
}

// ---- what the peer says

bool ClientChannel::isListening() const
{
    return m_state != State::Closed && m_state != State::Idle;
}

void ClientChannel::handleFrame(const Frame& frame, TimePoint now)
{
    switch (frame.type) {
    case MessageType::Acknowledge:
        return handleAcknowledge(frame, now);
    case MessageType::Error:
        return handleError(frame);
    case MessageType::Open:
        return handleOpen(frame, now);
    case MessageType::Message:
        return handleMessage(frame, now);
    default: // only clients say Hello and Close
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    }
}

void ClientChannel::handleAcknowledge(const Frame& frame, TimePoint now)
{
    AcknowledgeMessage message;
    if (m_state != State::HelloSent)
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    if (!readAcknowledge(frame.body(), message))
        return fail(OpcUa_BadDecodingError);
    const ChannelLimits& peer = message.limits;
    if (peer.receiveBufferSize < minimumBufferSize || peer.sendBufferSize < minimumBufferSize)
        return fail(OpcUa_BadConnectionRejected);
    m_conversation.setSendLimits(std::min(peer.receiveBufferSize, m_config.limits.sendBufferSize),
                                 peer.maxMessageSize, peer.maxChunkCount);
    m_state = State::Opening;
    requestToken(OpcUa_SecurityTokenRequestType_Issue, now, m_openDeadline);
}

void ClientChannel::handleError(const Frame& frame)
{
    ErrorMessage message;
    const bool told = readError(frame.body(), message) && OpcUa_IsBad(message.status);
    m_peerReason = std::move(message.reason);
    fail(told ? message.status : OpcUa_BadCommunicationError);
}

void ClientChannel::handleOpen(const Frame& frame, TimePoint now)
{
    if (m_openRequestId == 0)
        return fail(OpcUa_BadSecurityChecksFailed);
    const auto chunk = m_conversation.readOpen(frame);
    if (!chunk || chunk->requestId != m_openRequestId)
        return fail(OpcUa_BadSecurityChecksFailed);
    OpenResponse response;
    const OpcUa_StatusCode status = decodeOpenResponse(chunk->body, response);
    if (OpcUa_IsBad(status))
        return fail(status);
    const bool installed = installToken(response, chunk->channelId, now);
    wipe(response.nonce);
    if (!installed)
        return fail(OpcUa_BadSecurityChecksFailed);
    if (m_state == State::Open)
        return m_listener.onRenewed(response.revisedLifetime);
    m_state = State::Open;
    m_listener.onOpened(response.revisedLifetime);
}

void ClientChannel::handleMessage(const Frame& frame, TimePoint now)
{
    if (m_state != State::Open)
        return fail(OpcUa_BadTcpMessageTypeInvalid);
    const auto chunk = m_conversation.readSymmetric(frame, now);
    if (!chunk)
        return fail(OpcUa_BadSecurityChecksFailed);
    const PendingRequest* const request = m_requests.find(chunk->requestId);
    if (request == nullptr)
        return handleUnawaited(*chunk);
    if (request->measure != nullptr)
        countAnswer(*request->measure, frame.bytes.size(), m_frameBegan);
    if (chunk->type == ChunkType::Abort)
        return handleAbort(*chunk);
    Bytes body;
    const bool final = chunk->type == ChunkType::Final;
    switch (m_conversation.assembler().add(chunk->requestId, final, chunk->body, body)) {
    case MessageAssembler::Outcome::Incomplete:
        return;
    case MessageAssembler::Outcome::Complete:
        m_requests.remove(chunk->requestId);
        return m_listener.onResponse(chunk->requestId, std::move(body));
    case MessageAssembler::Outcome::TooLarge:
        m_requests.remove(chunk->requestId);
        m_listener.onRequestFailed(chunk->requestId, OpcUa_BadResponseTooLarge);
        return fail(OpcUa_BadTcpMessageTooLarge);
    }
}

// A request that was given up may still be answered, once and within the limits; whatever else nobody waits
// for would only hold up the answers of the others.
void ClientChannel::handleUnawaited(const Chunk& chunk)
{
    const bool final = chunk.type != ChunkType::Intermediate;
    if (!m_requests.wasReserved(chunk.requestId) || (final && m_dropped == m_givenUp))
        return fail(OpcUa_BadSecurityChecksFailed);
    m_dropped += final;
    if (m_conversation.assembler().skip(chunk.requestId, final, chunk.body.size()) ==
        MessageAssembler::Outcome::TooLarge)
        fail(OpcUa_BadTcpMessageTooLarge);
}

// The server gave this answer up; the channel goes on.
void ClientChannel::handleAbort(const Chunk& chunk)
{
    ErrorMessage message;
    const bool told = readError(chunk.body, message) && OpcUa_IsBad(message.status);
    m_conversation.assembler().drop(chunk.requestId);
    m_requests.remove(chunk.requestId);
    m_listener.onRequestFailed(chunk.requestId, told ? message.status : OpcUa_BadDecodingError);
}

} // namespace opcua
