#include <stack/security/certificatefinding.h>

#include <opcua/opcua_statuscodes.h>

#include <openssl/x509_vfy.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>

namespace opcua {

namespace {

// by rank
constexpr std::array<OpcUa_StatusCode, 13> order = {
    OpcUa_BadCertificateInvalid,
    OpcUa_BadCertificateChainIncomplete,
    OpcUa_BadCertificatePolicyCheckFailed,
    OpcUa_BadCertificateUntrusted,
    OpcUa_BadCertificateTimeInvalid,
    OpcUa_BadCertificateIssuerTimeInvalid,
    OpcUa_BadCertificateHostNameInvalid,
    OpcUa_BadCertificateUseNotAllowed,
    OpcUa_BadCertificateIssuerUseNotAllowed,
    OpcUa_BadCertificateRevoked,
    OpcUa_BadCertificateIssuerRevoked,
    OpcUa_BadCertificateRevocationUnknown,
    OpcUa_BadCertificateIssuerRevocationUnknown,
};

std::ptrdiff_t rank(const CertificateFinding& finding)
{
    return std::find(order.begin(), order.end(), finding.status) - order.begin();
}

} // namespace

OpcUa_StatusCode statusOfProviderError(int error, int depth)
{
    const bool own = depth == 0;
    switch (error) {
    case X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT:
    case X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN:
    case X509_V_ERR_CERT_UNTRUSTED:
        return OpcUa_BadCertificateUntrusted;
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT:
    case X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY:
    case X509_V_ERR_UNABLE_TO_VERIFY_LEAF_SIGNATURE:
    case X509_V_ERR_CERT_CHAIN_TOO_LONG:
        return OpcUa_BadCertificateChainIncomplete;
    case X509_V_ERR_CERT_NOT_YET_VALID:
    case X509_V_ERR_CERT_HAS_EXPIRED:
        return own ? OpcUa_BadCertificateTimeInvalid : OpcUa_BadCertificateIssuerTimeInvalid;
    case X509_V_ERR_INVALID_CA:
    case X509_V_ERR_INVALID_PURPOSE:
    case X509_V_ERR_PATH_LENGTH_EXCEEDED:
    case X509_V_ERR_KEYUSAGE_NO_CERTSIGN:
        return own ? OpcUa_BadCertificateUseNotAllowed : OpcUa_BadCertificateIssuerUseNotAllowed;
    case X509_V_ERR_CERT_REVOKED:
        return own ? OpcUa_BadCertificateRevoked : OpcUa_BadCertificateIssuerRevoked;
    case X509_V_ERR_UNABLE_TO_GET_CRL:
    case X509_V_ERR_UNABLE_TO_GET_CRL_ISSUER:
    case X509_V_ERR_CRL_SIGNATURE_FAILURE:
    case X509_V_ERR_CRL_NOT_YET_VALID:
    case X509_V_ERR_CRL_HAS_EXPIRED:
    case X509_V_ERR_CRL_PATH_VALIDATION_ERROR:
    case X509_V_ERR_DIFFERENT_CRL_SCOPE:
    case X509_V_ERR_KEYUSAGE_NO_CRL_SIGN:
    case X509_V_ERR_UNABLE_TO_DECRYPT_CRL_SIGNATURE:
    case X509_V_ERR_ERROR_IN_CRL_LAST_UPDATE_FIELD:
    case X509_V_ERR_ERROR_IN_CRL_NEXT_UPDATE_FIELD:
    case X509_V_ERR_UNHANDLED_CRITICAL_CRL_EXTENSION:
        return own ? OpcUa_BadCertificateRevocationUnknown : OpcUa_BadCertificateIssuerRevocationUnknown;
    default: // among them wrong signatures and extensions that nobody knows
        return OpcUa_BadCertificateInvalid;
    }
}

bool mayBeOverridden(OpcUa_StatusCode status)
{
    return status != OpcUa_BadCertificateInvalid;
}

void putInOrder(std::vector<CertificateFinding>& findings)
{
    std::stable_sort(
        findings.begin(), findings.end(),
        [](const auto& left, const auto& right) {
            return std::tuple(rank(left), left.depth, left.providerError) <
                   std::tuple(rank(right), right.depth, right.providerError);
        });
    const auto same = [](const auto& left, const auto& right) {
        return left.status == right.status && left.depth == right.depth &&
               left.providerError == right.providerError;
    };
    findings.erase(std::unique(findings.begin(), findings.end(), same), findings.end());
}

} // namespace opcua
