// The client's own certificate and where its trust lists lie.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/secretbytes.h>

#include <functional>
#include <memory>

namespace UaClientSdk {

/// Folders that one transport takes certificates and revocation lists from.
struct PkiFolders
{
    UaString trustedCertificates;
    UaString trustedRevocationLists;
    UaString issuerCertificates;
    UaString issuerRevocationLists;
};

/// Value class; the private key leaves it only towards the stack.
class ClientSecurityInfo
{
public:
    UaByteString clientCertificate; ///< DER
    /// DER; null: none. Shared, because copies of the record must not multiply it.
    std::shared_ptr<const SecretBytes> clientPrivateKey;
    /// Asked about each thing that a discovery call finds wrong with a TLS certificate: true goes on in spite
    /// of it, else the call ends with that status. Runs on a thread of the stack.
    std::function<bool(const UaStatus&, const UaByteString&)> tlsCertificateFinding;

    void initializePkiProviderOpenSSL(const UaString& trustedRevocationLists,
                                      const UaString& trustedCertificates,
                                      const UaString& issuerRevocationLists,
                                      const UaString& issuerCertificates)
    {
        m_pki = {trustedCertificates, trustedRevocationLists, issuerCertificates, issuerRevocationLists};
    }

    void initializePkiProviderHttps(const UaString& trustedCertificates, const UaString& revocationLists)
    {
        m_httpsPki = {trustedCertificates, revocationLists, UaString(), UaString()};
    }

    [[nodiscard]] const PkiFolders& pki() const { return m_pki; }
    [[nodiscard]] const PkiFolders& httpsPki() const { return m_httpsPki; }

private:
    PkiFolders m_pki;
    PkiFolders m_httpsPki;
};

} // namespace UaClientSdk
