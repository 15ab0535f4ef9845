#include <bench/responder.h>

#include <stack/core/byteio.h>
#include <stack/encoding/messagecodec.h>
#include <stack/security/privatekey.h>
#include <stack/security/rsaoperations.h>
#include <stack/security/securitypolicies.h>
#include <stack/server/serverchannel.h>
#include <stack/transport/uniquefd.h>
#include <tests/support/testcertificates.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <optional>
#include <poll.h>
#include <ranges>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <utility>
#include <vector>

namespace opcua::bench {

namespace {

[[noreturn]] void give(const char* why)
{
    std::perror(why);
    std::_Exit(1);
}

template <typename Response>
Bytes encoded(const OpcUa_EncodeableType& type, const Response& response)
{
    Bytes bytes;
    if (OpcUa_IsBad(encodeMessage(type, &response, {}, bytes)))
        give("answer not encoded");
    return bytes;
}

OpcUa_ByteString textOf(const Bytes& bytes)
{
    OpcUa_ByteString text;
    if (OpcUa_IsBad(OpcUa_ByteString_Assign(&text, bytes.data(), static_cast<OpcUa_Int32>(bytes.size()))))
        give("no memory");
    return text;
}

void assign(OpcUa_String& text, const char* value)
{
    if (OpcUa_IsBad(OpcUa_String_Assign(&text, value, static_cast<OpcUa_Int32>(std::strlen(value)))))
        give("no memory");
}

// One endpoint without security that takes anybody; a session looks for it before it activates.
void offerAnonymous(OpcUa_CreateSessionResponse& response)
{
    response.ServerEndpoints = static_cast<OpcUa_EndpointDescription*>(
        OpcUa_Memory_AllocArray(1, sizeof(OpcUa_EndpointDescription)));
    OpcUa_EndpointDescription& endpoint = *response.ServerEndpoints;
    OpcUa_EncodeableObject_Initialize(&OpcUa_EndpointDescription_EncodeableType, &endpoint);
    response.NoOfServerEndpoints = 1;
    assign(endpoint.EndpointUrl, "opc.tcp://127.0.0.1");
    assign(endpoint.SecurityPolicyUri, OpcUa_SecurityPolicy_None);
    endpoint.SecurityMode = OpcUa_MessageSecurityMode_None;
    endpoint.UserIdentityTokens =
        static_cast<OpcUa_UserTokenPolicy*>(OpcUa_Memory_AllocArray(1, sizeof(OpcUa_UserTokenPolicy)));
    OpcUa_EncodeableObject_Initialize(&OpcUa_UserTokenPolicy_EncodeableType, endpoint.UserIdentityTokens);
    endpoint.NoOfUserIdentityTokens = 1;
    assign(endpoint.UserIdentityTokens->PolicyId, "anonymous");
}

Bytes createSessionAnswer(const Identity& server, const Identity& client, ByteView clientNonce)
{
    Owned<OpcUa_CreateSessionResponse, OpcUa_CreateSessionResponse_EncodeableType> response;
    response->SessionId.Identifier.Numeric = 1;
    response->AuthenticationToken.Identifier.Numeric = 2;
    response->RevisedSessionTimeout = 60'000;
    response->ServerNonce = textOf(Bytes(32, 7));
    response->ServerCertificate = textOf(server.certificate);
    offerAnonymous(*response);
    response->ServerSignature.Signature = textOf(signatureOver(server, client.certificate, clientNonce));
    return encoded(OpcUa_CreateSessionResponse_EncodeableType, *response);
}

struct Answers
{
    Bytes read;
    Bytes state; // of the server; a session asks for it again and again, and gives up without
    Bytes bulkRead;
    Bytes publish;
    Bytes browse;
    Bytes createSession;
    Bytes activateSession;
    Bytes closeSession;
};

Answers makeAnswers(const Identity& server, const Identity& client, ByteView clientNonce)
{
    Answers answers;
    ReadResponse one;
    fill(*one, 1);
    answers.read = encoded(OpcUa_ReadResponse_EncodeableType, *one);
    ReadResponse state;
    fill(*state, 1);
    state->Results[0].Value.Datatype = OpcUaType_Int32;
    state->Results[0].Value.Value.Int32 = OpcUa_ServerState_Running;
    answers.state = encoded(OpcUa_ReadResponse_EncodeableType, *state);
    ReadResponse many;
    fill(*many, bulkValues);
    answers.bulkRead = encoded(OpcUa_ReadResponse_EncodeableType, *many);
    PublishResponse publish;
    fill(*publish, notifications);
    answers.publish = encoded(OpcUa_PublishResponse_EncodeableType, *publish);
    BrowseResponse browse;
    fill(*browse, references);
    answers.browse = encoded(OpcUa_BrowseResponse_EncodeableType, *browse);
    answers.createSession = createSessionAnswer(server, client, clientNonce);
    Owned<OpcUa_ActivateSessionResponse, OpcUa_ActivateSessionResponse_EncodeableType> activate;
    activate->ServerNonce = textOf(Bytes(32, 9));
    answers.activateSession = encoded(OpcUa_ActivateSessionResponse_EncodeableType, *activate);
    answers.closeSession =
        encoded(OpcUa_CloseSessionResponse_EncodeableType,
                *Owned<OpcUa_CloseSessionResponse, OpcUa_CloseSessionResponse_EncodeableType>());
    return answers;
}

// One client's connection.
class Connection
{
public:
    Connection(UniqueFd socket) : m_socket(std::move(socket)) {}
    virtual ~Connection() = default;
    [[nodiscard]] int socket() const { return m_socket.get(); }
    // False when the client has gone.
    [[nodiscard]] virtual bool serve(MutableByteView room) = 0;

protected:
    [[nodiscard]] MutableByteView read(MutableByteView room)
    {
        const ssize_t count = ::recv(socket(), room.data(), room.size(), 0);
        return room.first(count > 0 ? static_cast<size_t>(count) : 0);
    }
    void write(ByteView bytes)
    {
        while (!bytes.empty()) {
            const ssize_t count = ::send(socket(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
            if (count <= 0)
                return;
            bytes = bytes.subspan(static_cast<size_t>(count));
        }
    }

private:
    UniqueFd m_socket;
};

class Echo final : public Connection
{
public:
    using Connection::Connection;
    bool serve(MutableByteView room) override
    {
        const MutableByteView bytes = read(room);
        m_pending.insert(m_pending.end(), bytes.begin(), bytes.end());
        size_t done = 0;
        for (; m_pending.size() - done >= rawRequestSize; done += rawRequestSize) {
            std::uint32_t answer = 0;
            std::memcpy(&answer, m_pending.data() + done, sizeof answer);
            write(room.first(std::min(size_t{answer}, rawLargestAnswer)));
        }
        m_pending.erase(m_pending.begin(), m_pending.begin() + static_cast<std::ptrdiff_t>(done));
        return !bytes.empty();
    }

private:
    Bytes m_pending; // what is not a whole request yet
};

// Whether the node id of the server's state is in the request, in its form of four bytes.
bool asksForState(const Bytes& body)
{
    constexpr OpcUa_Byte id[] = {1, 0, OpcUaId_Server_ServerStatus_State & 0xFF,
                                 OpcUaId_Server_ServerStatus_State >> 8};
    return std::search(body.begin(), body.end(), std::begin(id), std::end(id)) != body.end();
}

class Server final : public Connection, private ServerChannelListener
{
public:
    Server(UniqueFd socket, const Answers& answers, const Answerer& answerer,
           std::unique_ptr<SecurityPolicy> policy)
        : Connection(std::move(socket)), m_answers(answers), m_answerer(answerer),
          m_channel({}, std::move(policy), *this)
    {
    }
    bool serve(MutableByteView room) override
    {
        const MutableByteView bytes = read(room);
        m_channel.receive(bytes, std::chrono::steady_clock::now());
        write(m_channel.output());
        m_channel.output().clear();
        return !bytes.empty() && m_channel.state() != ServerChannel::State::Closed;
    }

private:
    void onRequest(OpcUa_UInt32 id, Bytes&& body) override
    {
        constexpr size_t longestSmallRead = 1000;
        if (m_answerer && !asksForState(body))
            if (const std::optional<Bytes> answer = m_answerer(body))
                return respond(id, *answer);
        switch (body.size() < 4 ? 0 : body[2] | body[3] << 8) { // a node id of four bytes comes first
        case OpcUaId_ReadRequest_Encoding_DefaultBinary:
            if (body.size() > longestSmallRead)
                return respond(id, m_answers.bulkRead);
            return respond(id, asksForState(body) ? m_answers.state : m_answers.read);
        case OpcUaId_PublishRequest_Encoding_DefaultBinary:
            return respond(id, m_answers.publish);
        case OpcUaId_BrowseRequest_Encoding_DefaultBinary:
            return respond(id, m_answers.browse);
        case OpcUaId_CreateSessionRequest_Encoding_DefaultBinary:
            return respond(id, m_answers.createSession);
        case OpcUaId_ActivateSessionRequest_Encoding_DefaultBinary:
            return respond(id, m_answers.activateSession);
        case OpcUaId_CloseSessionRequest_Encoding_DefaultBinary:
            return respond(id, m_answers.closeSession);
        default:
            m_channel.fail(OpcUa_BadServiceUnsupported);
        }
    }
    void respond(OpcUa_UInt32 id, const Bytes& answer) { m_channel.respond(id, answer); }
    void onClosed(OpcUa_StatusCode) override {}

    const Answers& m_answers;
    const Answerer& m_answerer;
    ServerChannel m_channel;
};

UniqueFd listenOnLoopback(std::uint16_t& port)
{
    UniqueFd listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    if (::bind(listener.get(), generic, length) != 0 || ::listen(listener.get(), 16) != 0 ||
        ::getsockname(listener.get(), generic, &length) != 0)
        give("listen");
    port = ntohs(address.sin_port);
    return listener;
}

UniqueFd acceptFrom(int listener)
{
    UniqueFd socket(::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC));
    const int on = 1;
    ::setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return socket;
}

std::unique_ptr<SecurityPolicy> policyOf(bool secured, const Identity& server, const Identity& client)
{
    if (!secured)
        return makeSecurityPolicyNone();
    std::unique_ptr<SecurityPolicy> policy;
    if (OpcUa_IsBad(makeSecurityPolicy(OpcUa_SecurityPolicy_Basic256Sha256,
                                       OpcUa_MessageSecurityMode_SignAndEncrypt,
                                       {server.certificate, server.key, client.certificate}, policy)))
        give("no policy");
    return policy;
}

[[noreturn]] void serveForever(const UniqueFd (&listeners)[3], const Answers& answers,
                               const Answerer& answerer, const Identity& server, const Identity& client)
{
    Bytes room(rawLargestAnswer);
    std::vector<std::unique_ptr<Connection>> connections;
    for (;;) {
        std::vector<pollfd> polled;
        for (const UniqueFd& listener : listeners)
            polled.push_back({listener.get(), POLLIN, 0});
        for (const auto& connection : connections)
            polled.push_back({connection->socket(), POLLIN, 0});
        ::poll(polled.data(), polled.size(), -1);
        for (size_t n = connections.size(); n-- > 0;)
            if (polled[n + 3].revents != 0 && !connections[n]->serve(room))
                connections.erase(connections.begin() + static_cast<std::ptrdiff_t>(n));
        if (polled[0].revents != 0)
            connections.push_back(std::make_unique<Echo>(acceptFrom(polled[0].fd)));
        for (const size_t n : {size_t{1}, size_t{2}}) {
            if (polled[n].revents != 0)
                connections.push_back(std::make_unique<Server>(acceptFrom(polled[n].fd), answers, answerer,
                                                               policyOf(n == 2, server, client)));
        }
    }
}

} // namespace

Identity makeIdentity(const char* name)
{
    EVP_PKEY* const pair = testcertificates::key(2048, name);
    testcertificates::Recipe recipe;
    recipe.name = name;
    recipe.pair = pair;
    return {testcertificates::make(recipe), testcertificates::privateDer(pair)};
}

Bytes signatureOver(const Identity& signer, ByteView certificate, ByteView nonce)
{
    Bytes data(certificate.begin(), certificate.end());
    data.insert(data.end(), nonce.begin(), nonce.end());
    const auto key = PrivateKey::parse(signer.key);
    const auto signature = key ? rsaSign(key->key(), RsaSignature::Pkcs1Sha256, data) : std::nullopt;
    return signature.value_or(Bytes());
}

void keyOperations(const Identity& own, const Identity& peer)
{
    static const auto key = PrivateKey::parse(own.key);
    static const auto mine = Certificate::parse(own.certificate);
    static const auto theirs = Certificate::parse(peer.certificate);
    static const Bytes data(1000, 3);
    static const Bytes plain(400, 4); // two blocks
    static const auto cipher = rsaEncrypt(mine->publicKey(), RsaEncryption::OaepSha1, plain);
    for (int n = 0; n < 2; ++n) {
        const auto signature = rsaSign(key->key(), RsaSignature::Pkcs1Sha256, data);
        if (!signature || !rsaVerify(mine->publicKey(), RsaSignature::Pkcs1Sha256, data, *signature))
            give("signature");
    }
    if (rsaDecrypt(key->key(), RsaEncryption::OaepSha1, *cipher) != plain ||
        !rsaEncrypt(theirs->publicKey(), RsaEncryption::OaepSha1, plain))
        give("encryption");
}

Responder::Responder(const Identity& server, const Identity& client, ByteView clientNonce, Answerer answerer)
{
    const Answers answers = makeAnswers(server, client, clientNonce);
    const UniqueFd listeners[3] = {listenOnLoopback(m_ports[0]), listenOnLoopback(m_ports[1]),
                                   listenOnLoopback(m_ports[2])};
    m_process = ::fork();
    if (m_process < 0)
        give("fork");
    if (m_process > 0)
        return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL); // a benchmark that dies leaves nothing behind
    serveForever(listeners, answers, answerer, server, client);
}

Responder::~Responder()
{
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
}

} // namespace opcua::bench
