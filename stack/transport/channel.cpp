#include <stack/transport/channel.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/security/certificate.h>
#include <stack/security/securitypolicies.h>
#include <stack/transport/connection.h>
#include <stack/transport/httpsconnection.h>
#include <stack/transport/tcpconnector.h>
#include <stack/transport/tlscertificate.h>
#include <stack/transport/tlsconnector.h>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace opcua {

namespace {

// The messages travel as they are, TLS protects them; the policy is that of the session's signatures.
OpcUa_StatusCode checkHttpsSecurity(const ConnectParameters& parameters)
{
    const bool none = parameters.securityPolicyUri == OpcUa_SecurityPolicy_None;
    if (!none && findPolicyProfile(parameters.securityPolicyUri) == nullptr)
        return OpcUa_BadSecurityPolicyRejected;
    const bool plain = parameters.securityMode == OpcUa_MessageSecurityMode_None;
    return none && !plain ? OpcUa_BadSecurityModeRejected : OpcUa_Good;
}

// What is known of the server before the TLS session.
HttpServer serverOf(const ConnectParameters& parameters, const EndpointUrl& url, const UniqueFd& socket)
{
    const std::string host(url.host);
    const bool v6 = host.find(':') != std::string::npos;
    const std::string authority = (v6 ? '[' + host + ']' : host) + ':' + std::to_string(url.port);
    const bool none = parameters.securityPolicyUri == OpcUa_SecurityPolicy_None;
    HttpServer server;
    server.host = host;
    server.requestHead = httpRequestHead(authority, url.path, none ? "" : parameters.securityPolicyUri);
    server.connectTimeout = parameters.timeout;
    server.address.length = sizeof server.address.storage;
    if (::getpeername(socket.get(), reinterpret_cast<sockaddr*>(&server.address.storage),
                      &server.address.length) != 0)
        server.address.length = 0;
    return server;
}

} // namespace

// ---- connect

// Whatever ends a connect, an exception too, leaves the channel idle or connected.
class Channel::ConnectScope
{
public:
    explicit ConnectScope(Channel& channel) : m_channel(channel) {}
    ~ConnectScope()
    {
        if (!m_connected)
            m_channel.endConnection();
        m_channel.m_questions.retire();
        m_channel.setState(m_connected ? State::Connected : State::Idle);
    }
    ConnectScope(const ConnectScope&) = delete;
    ConnectScope& operator=(const ConnectScope&) = delete;
    void setConnected() { m_connected = true; }

private:
    Channel& m_channel;
    bool m_connected = false;
};

OpcUa_StatusCode Channel::connect(const ConnectParameters& parameters, OpcUa_UInt32& revisedLifetime)
{
    const TimePoint deadline = std::chrono::steady_clock::now() + parameters.timeout;
    const auto attempt = std::make_shared<Cancellation>();
    if (isOwnThread() || !beginConnect(attempt))
        return OpcUa_BadInvalidState;
    ConnectScope scope(*this);
    endConnection();
    m_opening = attempt;
    m_opened.reset();
    m_onEvent = parameters.onEvent;
    if (m_onEvent)
        m_callbacks.start();
    const OpcUa_StatusCode status = establish(parameters, deadline, attempt);
    if (OpcUa_IsBad(status)) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "Channel to %s not opened: 0x%08x", parameters.url.c_str(),
                    status);
        return status;
    }
    revisedLifetime = m_revisedLifetime;
    OpcUa_Trace(OPCUA_TRACE_LEVEL_SYSTEM, "Channel to %s open, token lifetime %u ms", parameters.url.c_str(),
                revisedLifetime);
    scope.setConnected();
    return OpcUa_Good;
}

// A connection that the peer ended makes way for the new one.
bool Channel::beginConnect(const std::shared_ptr<Cancellation>& attempt)
{
    const std::lock_guard lock(m_mutex);
    const bool lost = m_state == State::Connected && !m_connection->isOpen();
    if ((m_state != State::Idle && !lost) || !m_runtime->isRunning())
        return false;
    m_state = State::Connecting;
    m_attempt = attempt;
    return true;
}

OpcUa_StatusCode Channel::establish(const ConnectParameters& parameters, TimePoint deadline,
                                    const std::shared_ptr<Cancellation>& attempt)
{
    const bool https = parameters.profile == TransportProfile::Https;
    EndpointUrl url;
    std::unique_ptr<SecurityPolicy> policy;
    std::vector<SocketAddress> addresses;
    UniqueFd socket;
    OpcUa_StatusCode status = parseEndpointUrl(parameters.url, url);
    if (OpcUa_IsGood(status) && url.scheme != (https ? httpsScheme : opcTcpScheme))
        status = OpcUa_BadTcpEndpointUrlInvalid;
    if (OpcUa_IsGood(status))
        status = https ? checkHttpsSecurity(parameters) : secure(parameters, deadline, attempt, policy);
    if (OpcUa_IsGood(status))
        status = m_runtime->resolver().resolve(std::string(url.host), url.port, deadline, attempt, addresses);
    if (OpcUa_IsGood(status))
        status = connectTcp(addresses, deadline, *attempt, socket);
    if (OpcUa_IsBad(status))
        return status;
    if (https)
        return openHttps(parameters, url, std::move(socket), deadline, attempt);
    return openChannel(parameters, std::move(socket), std::move(policy), deadline, attempt);
}

// The server's certificate is judged before a byte is sent, and is the only one that the channel accepts
// then.
OpcUa_StatusCode Channel::secure(const ConnectParameters& parameters, TimePoint deadline,
                                 const std::shared_ptr<Cancellation>& attempt,
                                 std::unique_ptr<SecurityPolicy>& policy)
{
    if (parameters.securityPolicyUri == OpcUa_SecurityPolicy_Basic128Rsa15 &&
        !parameters.basic128Rsa15Allowed) {
        OpcUa_Trace(OPCUA_TRACE_LEVEL_ERROR, "The policy Basic128Rsa15 is unsafe and was not asked for");
        return OpcUa_BadSecurityPolicyRejected;
    }
    const SecurityMaterial material{parameters.clientCertificate, parameters.clientPrivateKey.view(),
                                    parameters.serverCertificate};
    const OpcUa_StatusCode made =
        makeSecurityPolicy(parameters.securityPolicyUri, parameters.securityMode, material, policy);
    if (OpcUa_IsBad(made) || !parameters.pki || parameters.securityMode == OpcUa_MessageSecurityMode_None)
        return made;
    const auto findings = checkCertificate(parameters.serverCertificate, *parameters.pki,
                                           findPolicyProfile(parameters.securityPolicyUri));
    return judge(findings, parameters, parameters.serverCertificate, deadline, attempt);
}

// Whatever is wrong with an issuer, the question is whether to talk to this peer: its own chain is shown, for
// the issuer of many must not be trusted as the server.
OpcUa_StatusCode Channel::judge(const std::vector<CertificateFinding>& findings,
                                const ConnectParameters& parameters, ByteView chain, TimePoint deadline,
                                const std::shared_ptr<Cancellation>& attempt)
{
    FindingJudge ask;
    if (parameters.onCertificateFinding)
        ask = [&](const CertificateFinding& finding) {
            CertificateFinding shown = finding;
            shown.certificate.assign(chain.begin(), chain.end());
            return askAbout(shown, parameters.onCertificateFinding, deadline, attempt);
        };
    const OpcUa_StatusCode status = judgeCertificate(findings, ask);
    return OpcUa_IsBad(status) && attempt->cancelled() ? OpcUa_BadRequestCancelledByClient : status;
}

// Changed and looked at under the attempt's lock.
struct Channel::Question
{
    bool isOver = false; // nobody waits for the answer any more
    std::optional<OpcUa_StatusCode> answer;
};

// The application may take its time with the answer, and this connect may be over before it comes; one that
// has not been asked by then never is.
OpcUa_StatusCode Channel::askAbout(const CertificateFinding& finding, const FindingJudge& asked,
                                   TimePoint deadline, const std::shared_ptr<Cancellation>& attempt)
{
    if (attempt->cancelled() || std::chrono::steady_clock::now() >= deadline)
        return finding.status;
    const auto question = std::make_shared<Question>();
    m_questions.start();
    m_questions.post([attempt, question, asked, finding] {
        bool isOver = false;
        attempt->change([&] { isOver = question->isOver; });
        if (isOver)
            return;
        const OpcUa_StatusCode result = asked(finding);
        attempt->change([&] { question->answer = result; });
    });
    static_cast<void>(attempt->wait(deadline, [&] { return question->answer.has_value(); }));
    OpcUa_StatusCode result = finding.status;
    attempt->change([&] {
        question->isOver = true;
        result = question->answer.value_or(result);
    });
    return result;
}

OpcUa_StatusCode Channel::openChannel(const ConnectParameters& parameters, UniqueFd socket,
                                      std::unique_ptr<SecurityPolicy> policy, TimePoint deadline,
                                      const std::shared_ptr<Cancellation>& attempt)
{
    ClientChannelConfig config;
    config.limits = m_runtime->channelLimits();
    config.endpointUrl = parameters.url;
    config.securityMode = parameters.securityMode;
    config.requestedLifetime = parameters.requestedLifetime;
    config.utcNow = &OpcUa_DateTime_UtcNow;
    config.tellsKeys = m_runtime->keyLog() != nullptr;
    auto connection = std::make_shared<Connection>(std::move(socket), std::move(config), std::move(policy),
                                                   m_runtime->loop(), weak_from_this(), m_runtime->keyLog());
    return openTransport(std::move(connection), deadline, *attempt);
}

// Shakes hands and has the certificate judged before the first request.
OpcUa_StatusCode Channel::openHttps(const ConnectParameters& parameters, const EndpointUrl& url,
                                    UniqueFd socket, TimePoint deadline,
                                    const std::shared_ptr<Cancellation>& attempt)
{
    HttpServer server = serverOf(parameters, url, socket);
    server.tls = TlsContext::make(m_runtime->keyLog());
    server.maxBodySize = m_runtime->channelLimits().maxMessageSize;
    if (!server.tls)
        return OpcUa_BadOutOfMemory;
    auto session = std::make_unique<TlsSession>(*server.tls, server.host);
    const OpcUa_StatusCode shaken = shakeHands(socket, *session, deadline, *attempt);
    if (OpcUa_IsBad(shaken))
        return shaken;
    OpcUa_Trace(OPCUA_TRACE_LEVEL_INFO, "TLS session: %s", session->description().c_str());
    const Bytes chain = session->peerChain();
    const auto own = firstOfChain(chain);
    if (!own)
        return OpcUa_BadCertificateInvalid;
    server.certificate.assign(own->begin(), own->end());
    if (parameters.pki) {
        const auto findings = checkTlsCertificate(chain, server.host, *parameters.pki);
        const OpcUa_StatusCode judged = judge(findings, parameters, chain, deadline, attempt);
        if (OpcUa_IsBad(judged))
            return judged;
    }
    return openTransport(std::make_shared<HttpsConnection>(std::move(server), std::move(socket),
                                                           std::move(session), parameters.requestedLifetime,
                                                           m_runtime->loop(), weak_from_this()),
                         deadline, *attempt);
}

// Waits until the transport is open or has given up.
OpcUa_StatusCode Channel::openTransport(std::shared_ptr<MessageTransport> transport, TimePoint deadline,
                                        Cancellation& attempt)
{
    {
        const std::lock_guard lock(m_mutex);
        m_connection = transport;
    }
    const OpcUa_StatusCode started = transport->start(deadline);
    if (OpcUa_IsBad(started))
        return started;
    // the transport keeps the deadline itself and tells its end as a loss
    static_cast<void>(attempt.wait(never, [this] { return m_opened.has_value(); }));
    OpcUa_StatusCode result = OpcUa_BadRequestCancelledByClient;
    attempt.change([&] { result = m_opened.emplace(m_opened.value_or(result)); });
    return result;
}

void Channel::cancelConnect()
{
    const std::lock_guard lock(m_mutex);
    if (m_state == State::Connecting)
        m_attempt->cancel();
}

void Channel::setState(State state)
{
    {
        const std::lock_guard lock(m_mutex);
        m_state = state;
    }
    m_stateChanged.notify_all();
}

// ---- disconnect

// Closes what there is of a connection; afterwards nothing of it is told any more and all callbacks have run,
// but for questions.
void Channel::endConnection()
{
    std::shared_ptr<MessageTransport> connection;
    {
        const std::lock_guard lock(m_mutex);
        connection = std::move(m_connection);
        m_connection.reset();
    }
    if (connection)
        connection->close();
    m_callbacks.drain();
}

OpcUa_StatusCode Channel::disconnect()
{
    if (isOwnThread())
        return OpcUa_BadInvalidState;
    {
        std::unique_lock lock(m_mutex);
        if (m_state == State::Connecting) {
            const auto attempt = m_attempt;
            attempt->cancel();
            m_stateChanged.wait(lock, [&] { return m_state != State::Connecting || m_attempt != attempt; });
        }
        if (m_state != State::Connected)
            return OpcUa_BadInvalidState;
        m_state = State::Disconnecting;
    }
    endConnection();
    setState(State::Idle);
    return OpcUa_Good;
}

bool Channel::shutdown()
{
    if (isOwnThread())
        return false;
    cancelConnect();
    {
        std::unique_lock lock(m_mutex);
        m_stateChanged.wait(lock, [this] { return m_state == State::Idle || m_state == State::Connected; });
    }
    static_cast<void>(disconnect());
    m_questions.drain();
    return true;
}

bool Channel::isConnected() const
{
    const std::lock_guard lock(m_mutex);
    return m_state == State::Connected && m_connection->isOpen();
}

// ---- calls and events

std::shared_ptr<MessageTransport> Channel::connection() const
{
    const std::lock_guard lock(m_mutex);
    return m_state == State::Connected ? m_connection : nullptr;
}

OpcUa_StatusCode Channel::send(std::shared_ptr<Call> call, ByteView body, TimePoint deadline, bool mayWait)
{
    const auto to = connection();
    return to ? to->send(std::move(call), body, deadline, mayWait) : OpcUa_BadInvalidState;
}

OpcUa_StatusCode Channel::fetch(const std::shared_ptr<AwaitedCall>& call, ByteView body, TimePoint deadline)
{
    const auto to = connection();
    return to ? to->fetch(call, body, deadline) : OpcUa_BadInvalidState;
}

// What callbacks have asked for leaves when they are done.
void Channel::flush()
{
    if (const auto to = connection())
        to->flush();
}

void Channel::postEvent(OpcUa_Channel_Event event, OpcUa_StatusCode status)
{
    if (m_onEvent)
        m_callbacks.post([onEvent = m_onEvent, event, status] { onEvent(event, status); });
}

void Channel::onOpened(OpcUa_UInt32 revisedLifetime)
{
    bool wanted = false;
    m_opening->change([&] {
        wanted = !m_opened.has_value();
        if (!wanted)
            return;
        m_revisedLifetime = revisedLifetime;
        m_opened = OpcUa_Good;
    });
    if (wanted)
        postEvent(OpcUa_Channel_Event_Connected, OpcUa_Good);
}

void Channel::onRenewed()
{
    OpcUa_Trace(OPCUA_TRACE_LEVEL_INFO, "Security token renewed");
    postEvent(OpcUa_Channel_Event_Renewed, OpcUa_Good);
}

void Channel::onLost(OpcUa_StatusCode status)
{
    bool wasOpen = false;
    m_opening->change([&] {
        wasOpen = m_opened == OpcUa_StatusCode{OpcUa_Good};
        if (!m_opened)
            m_opened = status;
    });
    if (!wasOpen)
        return;
    OpcUa_Trace(OPCUA_TRACE_LEVEL_WARNING, "Channel lost: 0x%08x", status);
    postEvent(OpcUa_Channel_Event_Disconnected, status);
}

} // namespace opcua
