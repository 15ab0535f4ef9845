// A scripted HTTPS server on the loopback interface, in the test's own process.
#pragma once

#include <tests/protocol/loopbackpeer.h>
#include <tests/support/testcertificates.h>

#include <openssl/ssl.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace opcua::test {

/// What a server shows of itself.
struct TlsIdentity
{
    testcertificates::Der certificate;
    EVP_PKEY* key = nullptr;
    int highestVersion = 0; ///< 0: the library's
};

/// Signing with it costs little, so that a test can connect a thousand times.
inline EVP_PKEY* ellipticKey(const std::string& name = "own")
{
    static std::map<std::string, std::shared_ptr<EVP_PKEY>> keys;
    auto& entry = keys[name];
    if (!entry)
        entry.reset(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    return entry.get();
}

inline TlsIdentity makeIdentity(testcertificates::Recipe recipe = {})
{
    if (recipe.pair == nullptr)
        recipe.pair = ellipticKey();
    if (std::string_view(recipe.names) == testcertificates::Recipe().names)
        recipe.names = "IP:127.0.0.1,DNS:localhost";
    return {testcertificates::make(recipe), recipe.pair};
}

struct HttpRequest
{
    std::string head; ///< request line and header fields
    Bytes body;
};

/// The server's side of TLS on one accepted connection. Every wait ends when the client has gone or the peer
/// is to stop.
class TlsPeerSocket
{
public:
    TlsPeerSocket(PeerSocket& socket, SSL_CTX* context)
        : m_socket(socket), m_ssl(SSL_new(context), SSL_free), m_in(BIO_new(BIO_s_mem())),
          m_out(BIO_new(BIO_s_mem()))
    {
        SSL_set_bio(m_ssl.get(), m_in, m_out);
        SSL_set_accept_state(m_ssl.get());
    }

    /// Sends no more than so many bytes in all, and then hangs up.
    void breakAfter(size_t bytes) { m_left = bytes; }

    bool shakeHands()
    {
        for (;;) {
            const int result = SSL_do_handshake(m_ssl.get());
            if (!flush())
                return false;
            if (result == 1)
                return true;
            if (SSL_get_error(m_ssl.get(), result) != SSL_ERROR_WANT_READ || !feed())
                return false;
        }
    }
    /// The next request. False when the client has gone.
    bool read(HttpRequest& request)
    {
        constexpr std::string_view end = "\r\n\r\n";
        constexpr std::string_view lengthField = "Content-Length: ";
        size_t at = std::string::npos;
        while ((at = m_plain.find(end)) == std::string::npos)
            if (!readPlain())
                return false;
        request.head = m_plain.substr(0, at + 2);
        const size_t field = request.head.find(lengthField);
        const size_t length =
            field == std::string::npos ? 0 : std::stoul(request.head.substr(field + lengthField.size()));
        while (m_plain.size() < at + end.size() + length)
            if (!readPlain())
                return false;
        const auto body = m_plain.begin() + static_cast<std::ptrdiff_t>(at + end.size());
        request.body.assign(body, body + static_cast<std::ptrdiff_t>(length));
        m_plain.erase(0, at + end.size() + length);
        return true;
    }
    /// False when the connection is at its end.
    bool write(std::string_view text)
    {
        size_t written = 0;
        SSL_write_ex(m_ssl.get(), text.data(), text.size(), &written);
        return flush();
    }
    void sayGoodbye()
    {
        SSL_shutdown(m_ssl.get());
        flush();
    }
    void stayUntilClosed() { m_socket.stayUntilClosed(); }
    void stayDeaf() { m_socket.stayDeaf(); }

private:
    bool feed()
    {
        Bytes bytes;
        return m_socket.read(bytes) && BIO_write(m_in, bytes.data(), static_cast<int>(bytes.size())) > 0;
    }
    bool readPlain()
    {
        for (;;) {
            char buffer[16384];
            size_t count = 0;
            if (SSL_read_ex(m_ssl.get(), buffer, sizeof buffer, &count) == 1) {
                m_plain.append(buffer, count);
                return true;
            }
            if (SSL_get_error(m_ssl.get(), 0) != SSL_ERROR_WANT_READ || !feed())
                return false;
        }
    }
    bool flush()
    {
        Bytes bytes(BIO_ctrl_pending(m_out));
        if (bytes.empty())
            return m_left != 0;
        BIO_read(m_out, bytes.data(), static_cast<int>(bytes.size()));
        bytes.resize(std::min(bytes.size(), m_left));
        m_left -= bytes.size();
        m_socket.write(bytes);
        return m_left != 0;
    }

    PeerSocket& m_socket;
    std::unique_ptr<SSL, decltype(&SSL_free)> m_ssl;
    BIO* m_in;
    BIO* m_out;
    std::string m_plain;
    size_t m_left = ~size_t{0};
};

/// script runs for each connection, with the number of those before it.
class HttpsPeer
{
public:
    using Script = std::function<void(TlsPeerSocket& socket, int number)>;

    explicit HttpsPeer(Script script, TlsIdentity identity = makeIdentity(), size_t breakAfter = ~size_t{0})
        : m_script(std::move(script)), m_context(makeContext(identity), SSL_CTX_free),
          m_breakAfter(breakAfter), m_peer([this](PeerSocket& socket) { serve(socket); })
    {
    }

    [[nodiscard]] std::string url(const std::string& host = "127.0.0.1") const
    {
        return "https://" + host + ":" + std::to_string(m_peer.port()) + "/test";
    }
    [[nodiscard]] int connections() const { return m_connections; }
    /// From the next connection on.
    void changeIdentity(const TlsIdentity& identity)
    {
        const std::lock_guard lock(m_mutex);
        m_context.reset(makeContext(identity));
    }

private:
    using Context = std::unique_ptr<SSL_CTX, decltype(&SSL_CTX_free)>;

    static SSL_CTX* makeContext(const TlsIdentity& identity)
    {
        SSL_CTX* const context = SSL_CTX_new(TLS_server_method());
        SSL_CTX_set_security_level(context, 0); // weak ones are wanted too
        if (identity.highestVersion != 0)
            SSL_CTX_set_max_proto_version(context, identity.highestVersion);
        const unsigned char* at = identity.certificate.data();
        bool first = true;
        const unsigned char* const end = at + identity.certificate.size();
        while (at < end) {
            X509* const certificate = d2i_X509(nullptr, &at, end - at);
            if (certificate == nullptr)
                throw std::runtime_error("no certificate");
            if (std::exchange(first, false)) {
                SSL_CTX_use_certificate(context, certificate);
                X509_free(certificate);
            } else {
                SSL_CTX_add0_chain_cert(context, certificate);
            }
        }
        SSL_CTX_use_PrivateKey(context, identity.key);
        return context;
    }
    void serve(PeerSocket& socket)
    {
        const int number = m_connections++;
        std::unique_ptr<TlsPeerSocket> secured;
        {
            const std::lock_guard lock(m_mutex);
            secured = std::make_unique<TlsPeerSocket>(socket, m_context.get());
        }
        secured->breakAfter(m_breakAfter);
        if (secured->shakeHands())
            m_script(*secured, number);
    }

    Script m_script;
    std::mutex m_mutex;
    Context m_context;
    size_t m_breakAfter;
    std::atomic<int> m_connections = 0;
    LoopbackPeer m_peer; ///< last: its threads end before the rest goes
};

/// An answer with its length; fields: further header fields, each with its line end.
inline std::string httpAnswer(const Bytes& body, const std::string& fields = {},
                              const char* status = "200 OK")
{
    return std::string("HTTP/1.1 ") + status +
           "\r\nContent-Type: application/octet-stream\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\n" + fields + "\r\n" + std::string(body.begin(), body.end());
}

/// In chunks of so many bytes.
inline std::string chunkedAnswer(const Bytes& body, size_t chunk)
{
    std::string answer =
        "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\nTransfer-Encoding: chunked\r\n\r\n";
    for (size_t at = 0; at < body.size(); at += chunk) {
        char size[16];
        const size_t count = std::min(chunk, body.size() - at);
        std::snprintf(size, sizeof size, "%zx\r\n", count);
        const auto begin = body.begin() + static_cast<std::ptrdiff_t>(at);
        answer += size + std::string(begin, begin + static_cast<std::ptrdiff_t>(count)) + "\r\n";
    }
    return answer + "0\r\n\r\n";
}

} // namespace opcua::test
