// The client's side of one TLS connection as an engine without I/O: bytes of the wire on one side, the
// application's on the other.
#pragma once

#include <stack/core/protocol.h>
#include <stack/security/handles.h>
#include <stack/transport/keylog.h>

#include <openssl/ssl.h>

#include <memory>
#include <string>
#include <utility>

namespace opcua {

/// What the connections of one channel share: TLS 1.2 or 1.3, nothing older, and no compression. Certificates
/// are judged by whoever owns the session, before it sends anything.
class TlsContext
{
public:
    /// Null when the library has no memory left. keyLog may be null.
    [[nodiscard]] static std::shared_ptr<TlsContext> make(std::shared_ptr<KeyLog> keyLog);
    [[nodiscard]] SSL_CTX* get() const { return m_context.get(); }

private:
    explicit TlsContext(std::shared_ptr<KeyLog> keyLog) : m_keyLog(std::move(keyLog)) {}
    static void logKeys(const SSL* ssl, const char* line);

    std::shared_ptr<KeyLog> m_keyLog; ///< null: keys are nobody's business
    std::unique_ptr<SSL_CTX, Freer<SSL_CTX_free>> m_context;
};

/// One thread at a time.
class TlsSession
{
public:
    enum class State { Handshake, Open, Closed, Failed };

    /// host: as in the URL, a name or an address.
    TlsSession(const TlsContext& context, const std::string& host);

    /// Says hello.
    void start() { advance(); }
    /// What the peer sent; what it says to the application is appended to plain.
    void receive(ByteView bytes, Bytes& plain);
    /// Only while open. False when the session has failed.
    [[nodiscard]] bool send(ByteView plain);
    /// Says goodbye.
    void close();

    [[nodiscard]] State state() const { return m_state; }
    /// Why the session failed: BadSecurityChecksFailed or BadOutOfMemory, and the library's words.
    [[nodiscard]] OpcUa_StatusCode fault() const { return m_fault; }
    [[nodiscard]] const std::string& reason() const { return m_reason; }
    /// Bytes for the peer; the owner takes them away.
    [[nodiscard]] Bytes& output() { return m_output; }

    /// The peer's certificates as it sent them, its own first, in DER one behind the other.
    [[nodiscard]] Bytes peerChain() const;
    /// Name of the protocol's version and of the ciphers, for the trace.
    [[nodiscard]] std::string description() const;

private:
    void advance();
    void readPlain(Bytes& plain);
    void collectOutput();
    void fail(OpcUa_StatusCode status);

    std::unique_ptr<SSL, Freer<SSL_free>> m_ssl;
    BIO* m_fromPeer = nullptr; ///< both owned by m_ssl
    BIO* m_toPeer = nullptr;
    State m_state = State::Handshake;
    Bytes m_output;
    OpcUa_StatusCode m_fault = 0;
    std::string m_reason;
};

} // namespace opcua
