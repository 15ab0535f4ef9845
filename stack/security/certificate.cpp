#include <stack/security/certificate.h>

#include <openssl/err.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <ranges>

namespace opcua {

namespace {

constexpr size_t maxCached = 256;

// By thumbprint; the bytes are compared all the same, for a thumbprint can be made to match.
class CertificateCache
{
public:
    CertificatePointer find(const Sha1Value& thumbprint, ByteView der)
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_entries.find(thumbprint);
        if (found == m_entries.end() || !std::ranges::equal(found->second->der(), der))
            return nullptr;
        return found->second;
    }
    void add(const CertificatePointer& certificate)
    {
        const std::lock_guard lock(m_mutex);
        if (m_entries.size() >= maxCached)
            m_entries.clear();
        m_entries.insert_or_assign(certificate->thumbprint(), certificate);
    }
    void clear()
    {
        const std::lock_guard lock(m_mutex);
        m_entries.clear();
    }

private:
    std::mutex m_mutex;
    std::map<Sha1Value, CertificatePointer> m_entries;
};

CertificateCache& cache()
{
    static CertificateCache instance;
    return instance;
}

// Length of the DER sequence at the front, head included.
std::optional<size_t> sequenceLength(ByteView bytes)
{
    constexpr OpcUa_Byte sequenceTag = 0x30;
    constexpr size_t shortHead = 2;
    if (bytes.size() < shortHead || bytes[0] != sequenceTag)
        return std::nullopt;
    if (bytes[1] < 0x80)
        return shortHead + bytes[1];
    const size_t digits = bytes[1] & 0x7Fu;
    if (digits == 0 || digits > 4 || bytes.size() < shortHead + digits)
        return std::nullopt;
    std::uint64_t length = 0;
    for (const OpcUa_Byte digit : bytes.subspan(shortHead, digits))
        length = length << 8 | digit;
    return static_cast<size_t>(length) + shortHead + digits;
}

} // namespace

CertificatePointer Certificate::parse(ByteView der)
{
    if (der.empty() || der.size() > maxCertificateSize)
        return nullptr;
    const auto thumbprint = sha1(der);
    const unsigned char* at = der.data();
    X509Handle x509(d2i_X509(nullptr, &at, static_cast<long>(der.size())));
    // extensions are read here, so that threads that share the certificate only look
    if (!thumbprint || !x509 || at != der.data() + der.size() || X509_check_ca(x509.get()) < 0) {
        ERR_clear_error();
        return nullptr;
    }
    std::shared_ptr<Certificate> certificate(new Certificate);
    certificate->m_der.assign(der.begin(), der.end());
    certificate->m_thumbprint = *thumbprint;
    certificate->m_key = X509_get0_pubkey(x509.get());
    certificate->m_x509 = std::move(x509);
    ERR_clear_error();
    return certificate;
}

int Certificate::rsaBits() const
{
    return m_key != nullptr && EVP_PKEY_is_a(m_key, "RSA") == 1 ? EVP_PKEY_get_bits(m_key) : 0;
}

CertificatePointer cachedCertificate(ByteView der)
{
    if (der.size() > maxCertificateSize)
        return nullptr;
    const auto thumbprint = sha1(der);
    if (!thumbprint)
        return nullptr;
    if (auto found = cache().find(*thumbprint, der))
        return found;
    auto certificate = Certificate::parse(der);
    if (certificate)
        cache().add(certificate);
    return certificate;
}

void clearCertificateCache()
{
    cache().clear();
}

namespace {

// Walks over the elements of a DER structure.
class Walker
{
public:
    explicit Walker(ByteView der) : m_at(der.data()), m_end(der.data() + der.size()) {}

    // Into the next element; what follows it is out of reach from then on.
    bool enter()
    {
        const auto [content, length] = next();
        m_at = content;
        m_end = content + length;
        return content != nullptr;
    }
    bool skip()
    {
        const auto [content, length] = next();
        m_at = content + length;
        return content != nullptr;
    }
    [[nodiscard]] bool isContextSpecific() const { return m_at < m_end && (*m_at & 0xC0) == 0x80; }
    [[nodiscard]] ByteView rest() const { return {m_at, m_end}; }

private:
    std::pair<const unsigned char*, long> next() const
    {
        constexpr int fault = 0x81; // not readable, or without a length
        const unsigned char* at = m_at;
        long length = 0;
        int tag = 0;
        int kind = 0;
        const int result = at == nullptr ? fault : ASN1_get_object(&at, &length, &tag, &kind, m_end - at);
        return (result & fault) != 0 ? std::pair(nullptr, 0L) : std::pair(at, length);
    }

    const unsigned char* m_at;
    const unsigned char* m_end;
};

} // namespace

std::optional<unsigned long> subjectHashOf(ByteView der)
{
    using NameHandle = std::unique_ptr<X509_NAME, Freer<X509_NAME_free>>;
    Walker walker(der);
    if (!walker.enter() || !walker.enter())
        return std::nullopt;
    if (walker.isContextSpecific() && !walker.skip()) // the version, which the oldest leave out
        return std::nullopt;
    for (int element = 0; element < 4; ++element) // serial number, algorithm, issuer, validity
        if (!walker.skip())
            return std::nullopt;
    const unsigned char* at = walker.rest().data();
    const NameHandle name(d2i_X509_NAME(nullptr, &at, static_cast<long>(walker.rest().size())));
    return name ? std::optional(X509_NAME_hash_ex(name.get(), nullptr, nullptr, nullptr)) : std::nullopt;
}

std::optional<ByteView> firstOfChain(ByteView chain)
{
    const auto length = sequenceLength(chain);
    if (!length || *length > chain.size())
        return std::nullopt;
    return chain.first(*length);
}

std::vector<CertificatePointer> parseChain(ByteView chain)
{
    std::vector<CertificatePointer> certificates;
    while (!chain.empty()) {
        const auto first = firstOfChain(chain);
        auto certificate = first ? cachedCertificate(*first) : nullptr;
        if (!certificate || certificates.size() == maxChainLength)
            return {};
        certificates.push_back(std::move(certificate));
        chain = chain.subspan(first->size());
    }
    return certificates;
}

} // namespace opcua
