#include <stack/transport/tlscertificate.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/security/certificate.h>

#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <ranges>
#include <string>
#include <vector>

namespace opcua {

namespace {

constexpr int minimumSecurityBits = 112;

bool isMadeFor(X509* certificate, const std::string& host)
{
    return X509_check_ip_asc(certificate, host.c_str(), 0) == 1 ||
           X509_check_host(certificate, host.c_str(), host.size(), X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS,
                           nullptr) == 1;
}

bool isOf(const std::vector<CertificateFinding>& findings, OpcUa_StatusCode status)
{
    return std::ranges::any_of(
        findings, [=](const auto& finding) { return finding.status == status; });
}

} // namespace

std::vector<CertificateFinding> checkTlsCertificate(ByteView chain, const std::string& host,
                                                    const PkiFolders& folders)
{
    auto findings = checkCertificate(chain, folders, nullptr);
    const bool trusted = !isOf(findings, OpcUa_BadCertificateUntrusted);
    std::erase_if(findings, [=](const CertificateFinding& finding) {
        return finding.providerError == X509_V_ERR_UNABLE_TO_GET_CRL ||
               (trusted && finding.status == OpcUa_BadCertificateChainIncomplete &&
                finding.providerError != X509_V_ERR_CERT_CHAIN_TOO_LONG);
    });
    const auto certificates = parseChain(chain);
    if (certificates.empty())
        return findings;
    const Certificate& own = *certificates.front();
    const Bytes der(own.der().begin(), own.der().end());
    if (!isMadeFor(own.x509(), host))
        findings.push_back({OpcUa_BadCertificateHostNameInvalid, 0, X509_V_ERR_HOSTNAME_MISMATCH, der});
    if (EVP_PKEY_get_security_bits(own.publicKey()) < minimumSecurityBits)
        findings.push_back({OpcUa_BadCertificatePolicyCheckFailed, 0, X509_V_ERR_EE_KEY_TOO_SMALL, der});
    putInOrder(findings);
    return findings;
}

} // namespace opcua
