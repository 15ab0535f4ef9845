#include <certificates/qlumcertificateadvice.h>

#include <opcua/opcua_statuscodes.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace {
class Texts
{
    Q_DECLARE_TR_FUNCTIONS(QlumCertificateAdvice)
public:
    static QString description(OpcUa_StatusCode code)
    {
        switch (code) {
        case OpcUa_Good:
            return tr("Everything is as expected");
        case OpcUa_BadCertificateInvalid:
            return tr("The certificate provided as a parameter is not valid");
        case OpcUa_BadSecurityChecksFailed:
            return tr("An error occurred verifying security");
        case OpcUa_BadCertificateTimeInvalid:
            return tr("The Certificate has expired or is not yet valid");
        case OpcUa_BadCertificateUntrusted:
            return tr("The Certificate is not trusted");
        case OpcUa_BadCertificateRevoked:
            return tr("The Certificate has been revoked");
        default:
            return tr("No description available");
        }
    }

    static QString advice(OpcUa_StatusCode code)
    {
        switch (code) {
        case OpcUa_BadCertificateUntrusted:
            return tr("Tavelin does not know this certificate. Compare its thumbprint with the one that the "
                      "server's operator names; when they are equal, trust it.");
        case OpcUa_BadCertificateTimeInvalid:
        case OpcUa_BadCertificateIssuerTimeInvalid:
            return tr("Check the clocks of this computer and of the server. When both are right, the server "
                      "needs a new certificate.");
        case OpcUa_BadCertificateRevocationUnknown:
        case OpcUa_BadCertificateIssuerRevocationUnknown:
            return tr("Tavelin has no current revocation list of the issuer. Ask for the list and add it to "
                      "the certificate store, or switch this check off in the settings.");
        case OpcUa_BadCertificateRevoked:
        case OpcUa_BadCertificateIssuerRevoked:
            return tr("Whoever issued this certificate has withdrawn it: somebody else may hold its key. The "
                      "server needs a new certificate.");
        case OpcUa_BadCertificateChainIncomplete:
            return tr("The certificate of an issuer is missing. Ask the server's operator for it and add it "
                      "to the issuers in the certificate store.");
        case OpcUa_BadCertificatePolicyCheckFailed:
            return tr("The key or the signature does not reach what the security policy asks for. Choose "
                      "another endpoint, or have the server's certificate made anew.");
        case OpcUa_BadCertificateUseNotAllowed:
        case OpcUa_BadCertificateIssuerUseNotAllowed:
            return tr("The certificate was not made for this use. The server needs another one.");
        case OpcUa_BadCertificateHostNameInvalid:
            return tr(
                "The certificate was made for other host names than the one of the server's URL: it may "
                "belong to another server. Compare its thumbprint with the one that the server's "
                "operator names, or connect by a name that the certificate holds.");
        case OpcUa_BadCertificateInvalid:
            return tr("The certificate is damaged or its signature is wrong. Do not use it before the "
                      "server's operator has explained it.");
        case OpcUa_BadDecodingError:
            return tr("What the server sent is no certificate, so there is nothing to trust.");
        default:
            return {};
        }
    }
};

constexpr OpcUa_StatusCode codeBits = 0xFFFF0000u;
} // namespace

UaStatusCode qlumWorstCertificateStatus(const std::vector<OpcUa_StatusCode>& found)
{
    constexpr std::array<OpcUa_StatusCode, 14> byWeight = {
        OpcUa_BadDecodingError,
        OpcUa_BadCertificateInvalid,
        OpcUa_BadCertificateRevoked,
        OpcUa_BadCertificateIssuerRevoked,
        OpcUa_BadCertificateTimeInvalid,
        OpcUa_BadCertificateIssuerTimeInvalid,
        OpcUa_BadCertificatePolicyCheckFailed,
        OpcUa_BadCertificateUseNotAllowed,
        OpcUa_BadCertificateIssuerUseNotAllowed,
        OpcUa_BadCertificateChainIncomplete,
        OpcUa_BadCertificateUntrusted,
        OpcUa_BadCertificateHostNameInvalid,
        OpcUa_BadCertificateRevocationUnknown,
        OpcUa_BadCertificateIssuerRevocationUnknown,
    };
    const auto weight = [&](OpcUa_StatusCode status) {
        return std::find(byWeight.begin(), byWeight.end(), status & codeBits) - byWeight.begin();
    };
    const auto worst =
        std::min_element(found.begin(), found.end(), [&](OpcUa_StatusCode left, OpcUa_StatusCode right) {
            return weight(left) < weight(right);
        });
    return worst != found.end() ? *worst : OpcUa_StatusCode{OpcUa_Good};
}

QString qlumCertificateStatusDescription(const UaStatusCode& status)
{
    return Texts::description(status.code() & codeBits);
}

QString qlumCertificateAdvice(const UaStatusCode& status)
{
    return Texts::advice(status.code() & codeBits);
}
