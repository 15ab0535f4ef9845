// Certificates as they come over the wire, taken apart once.
#pragma once

#include <opcua/opcua_crypto.h>
#include <stack/security/algorithms.h>

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace opcua {

inline constexpr size_t maxCertificateSize = OPCUA_MAXIMUM_CERTIFICATE_LENGTH;
inline constexpr size_t maxChainLength = OPCUA_MAXIMUM_CERTIFICATE_CHAIN;

/// One certificate; never changes once made, so any thread may use it.
class Certificate
{
public:
    /// Nothing when der is not exactly one certificate.
    [[nodiscard]] static std::shared_ptr<const Certificate> parse(ByteView der);

    [[nodiscard]] ByteView der() const { return m_der; }
    [[nodiscard]] const Sha1Value& thumbprint() const { return m_thumbprint; }
    /// The library counts references in what it is given, hence no const; the content stays as it is.
    [[nodiscard]] X509* x509() const { return m_x509.get(); }
    [[nodiscard]] EVP_PKEY* publicKey() const { return m_key; }
    /// 0 when the key is not RSA
    [[nodiscard]] int rsaBits() const;

private:
    Certificate() = default;

    Bytes m_der;
    Sha1Value m_thumbprint{};
    X509Handle m_x509;
    EVP_PKEY* m_key = nullptr; ///< owned by m_x509
};

using CertificatePointer = std::shared_ptr<const Certificate>;

/// As parse; a certificate that was seen before is not taken apart again.
[[nodiscard]] CertificatePointer cachedCertificate(ByteView der);
/// Lets go of all that cachedCertificate keeps.
void clearCertificateCache();

/// The first certificate of a chain (DER, one behind the other); nothing when its length does not fit.
[[nodiscard]] std::optional<ByteView> firstOfChain(ByteView chain);
/// The library's hash of the subject of what looks like a certificate; the rest is not taken apart, which
/// would take twenty times as long.
[[nodiscard]] std::optional<unsigned long> subjectHashOf(ByteView der);
/// All of a chain, the peer's own first; empty when any part does not decode, when there is none, or more
/// than maxChainLength.
[[nodiscard]] std::vector<CertificatePointer> parseChain(ByteView chain);

} // namespace opcua
