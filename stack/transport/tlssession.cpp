#include <stack/transport/tlssession.h>

#include <opcua/opcua_statuscodes.h>

#include <openssl/err.h>

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <memory>
#include <utility>

namespace opcua {

namespace {

constexpr std::array<unsigned char, 9> http11 = {8, 'h', 't', 't', 'p', '/', '1', '.', '1'};
constexpr size_t maxRecord = 16 * 1024;

bool isAddress(const std::string& host)
{
    std::array<unsigned char, sizeof(in6_addr)> bytes{};
    return ::inet_pton(AF_INET, host.c_str(), bytes.data()) == 1 ||
           ::inet_pton(AF_INET6, host.c_str(), bytes.data()) == 1;
}

// The last of the library's errors in words; forgets all.
std::string takeReason()
{
    const unsigned long error = ERR_peek_last_error();
    const char* const text = error != 0 ? ERR_reason_error_string(error) : nullptr;
    ERR_clear_error();
    return text != nullptr ? text : "unknown error";
}

// The owner of the session judges the certificates.
int acceptForNow(X509_STORE_CTX*, void*)
{
    return 1;
}

} // namespace

void TlsContext::logKeys(const SSL* ssl, const char* line)
{
    static_cast<const TlsContext*>(SSL_CTX_get_app_data(SSL_get_SSL_CTX(ssl)))->m_keyLog->append(line);
}

std::shared_ptr<TlsContext> TlsContext::make(std::shared_ptr<KeyLog> keyLog)
{
    const std::shared_ptr<TlsContext> result(new TlsContext(std::move(keyLog)));
    result->m_context.reset(SSL_CTX_new(TLS_client_method()));
    SSL_CTX* const context = result->get();
    if (context == nullptr || SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) != 1 ||
        SSL_CTX_set_alpn_protos(context, http11.data(), http11.size()) != 0) {
        ERR_clear_error();
        return nullptr;
    }
    SSL_CTX_set_options(context, SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION);
    SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
    if (result->m_keyLog) {
        SSL_CTX_set_app_data(context, result.get());
        SSL_CTX_set_keylog_callback(context, logKeys);
    }
    SSL_CTX_set_cert_verify_callback(context, acceptForNow, nullptr);
    return result;
}

TlsSession::TlsSession(const TlsContext& context, const std::string& host)
    : m_ssl(SSL_new(context.get())), m_fromPeer(BIO_new(BIO_s_mem())), m_toPeer(BIO_new(BIO_s_mem()))
{
    if (!m_ssl || m_fromPeer == nullptr || m_toPeer == nullptr) {
        BIO_free(m_fromPeer);
        BIO_free(m_toPeer);
        m_ssl.reset();
        fail(OpcUa_BadOutOfMemory);
        return;
    }
    SSL_set_bio(m_ssl.get(), m_fromPeer, m_toPeer);
    SSL_set_connect_state(m_ssl.get());
    if (!isAddress(host))
        SSL_set_tlsext_host_name(m_ssl.get(), host.c_str());
}

void TlsSession::receive(ByteView bytes, Bytes& plain)
{
    // in portions, so that what is decrypted never waits in a second place
    while (!bytes.empty() && (m_state == State::Handshake || m_state == State::Open)) {
        const ByteView part = bytes.first(std::min(bytes.size(), maxRecord));
        bytes = bytes.subspan(part.size());
        if (BIO_write(m_fromPeer, part.data(), static_cast<int>(part.size())) !=
            static_cast<int>(part.size()))
            return fail(OpcUa_BadOutOfMemory);
        if (m_state == State::Handshake)
            advance();
        if (m_state == State::Open)
            readPlain(plain);
    }
    collectOutput();
}

void TlsSession::advance()
{
    if (m_state != State::Handshake)
        return;
    ERR_clear_error();
    const int result = SSL_do_handshake(m_ssl.get());
    if (result == 1)
        m_state = State::Open;
    else if (const int error = SSL_get_error(m_ssl.get(), result);
             error != SSL_ERROR_WANT_READ && error != SSL_ERROR_WANT_WRITE)
        fail(OpcUa_BadSecurityChecksFailed);
    collectOutput();
}

void TlsSession::readPlain(Bytes& plain)
{
    for (;;) {
        const size_t before = plain.size();
        plain.resize(before + maxRecord);
        ERR_clear_error();
        size_t count = 0;
        const int result = SSL_read_ex(m_ssl.get(), plain.data() + before, maxRecord, &count);
        plain.resize(before + (result == 1 ? count : 0));
        if (result == 1)
            continue;
        const int error = SSL_get_error(m_ssl.get(), result);
        if (error == SSL_ERROR_ZERO_RETURN)
            m_state = State::Closed;
        else if (error != SSL_ERROR_WANT_READ && error != SSL_ERROR_WANT_WRITE)
            fail(OpcUa_BadSecurityChecksFailed);
        return;
    }
}

bool TlsSession::send(ByteView plain)
{
    ERR_clear_error();
    size_t written = 0;
    // memory takes everything at once
    if (m_state == State::Open && !plain.empty() &&
        (SSL_write_ex(m_ssl.get(), plain.data(), plain.size(), &written) != 1 || written != plain.size()))
        fail(OpcUa_BadSecurityChecksFailed);
    collectOutput();
    return m_state == State::Open;
}

void TlsSession::close()
{
    if (m_state != State::Open && m_state != State::Closed)
        return;
    ERR_clear_error();
    static_cast<void>(SSL_shutdown(m_ssl.get()));
    collectOutput();
    m_state = State::Closed;
    ERR_clear_error();
}

void TlsSession::collectOutput()
{
    const size_t pending = m_toPeer != nullptr ? BIO_ctrl_pending(m_toPeer) : 0;
    if (pending == 0)
        return;
    const size_t before = m_output.size();
    m_output.resize(before + pending);
    const int count = BIO_read(m_toPeer, m_output.data() + before, static_cast<int>(pending));
    m_output.resize(before + static_cast<size_t>(std::max(count, 0)));
}

void TlsSession::fail(OpcUa_StatusCode status)
{
    m_state = State::Failed;
    m_fault = status;
    m_reason = takeReason();
}

Bytes TlsSession::peerChain() const
{
    Bytes chain;
    const STACK_OF(X509)* const certificates = m_ssl ? SSL_get_peer_cert_chain(m_ssl.get()) : nullptr;
    for (int n = 0; certificates != nullptr && n < sk_X509_num(certificates); ++n) {
        unsigned char* der = nullptr;
        const int size = i2d_X509(sk_X509_value(certificates, n), &der);
        if (size > 0)
            chain.insert(chain.end(), der, der + size);
        OPENSSL_free(der);
    }
    return chain;
}

std::string TlsSession::description() const
{
    return m_ssl ? std::string(SSL_get_version(m_ssl.get())) + ' ' + SSL_get_cipher_name(m_ssl.get()) : "";
}

} // namespace opcua
