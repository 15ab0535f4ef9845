#include <servers/qlumconnectfailure.h>

#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uastatuscode.h>

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <array>

namespace {
struct FailureTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumConnectFailure)
};

struct Explained
{
    OpcUa_StatusCode status;
    const char* reason;
    const char* advice;
};

const char* const isReachable = QT_TRANSLATE_NOOP(
    "QlumConnectFailure", "Check the URL, the network and the firewall, and whether the server runs.");
const char* const otherUser =
    QT_TRANSLATE_NOOP("QlumConnectFailure", "Check user name and password, or log in as another user.");
const char* const otherIdentity = QT_TRANSLATE_NOOP(
    "QlumConnectFailure", "Choose another identity in the properties of the server, or another endpoint.");
const char* const otherEndpoint = QT_TRANSLATE_NOOP(
    "QlumConnectFailure", "Read the endpoints again in the properties of the server and choose another one.");
const char* const trustClient = QT_TRANSLATE_NOOP(
    "QlumConnectFailure",
    "The server's administrator has to trust this program's certificate, or choose another endpoint.");
const char* const isBusy =
    QT_TRANSLATE_NOOP("QlumConnectFailure", "Close sessions of other clients, or try again after a while.");
const char* const lookAtServer = QT_TRANSLATE_NOOP(
    "QlumConnectFailure", "Compare the server's certificate with what its administrator says.");

const std::array explained{
    Explained{OpcUa_BadTimeout, QT_TRANSLATE_NOOP("QlumConnectFailure", "The server did not answer in time"),
              isReachable},
    Explained{OpcUa_BadCommunicationError,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The host cannot be found or reached"), isReachable},
    Explained{OpcUa_BadConnectionRejected,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "Nobody takes connections at this address"),
              isReachable},
    Explained{OpcUa_BadConnectionClosed, QT_TRANSLATE_NOOP("QlumConnectFailure", "The connection was closed"),
              isReachable},
    Explained{OpcUa_BadTcpEndpointUrlInvalid,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The server does not know the URL"), otherEndpoint},
    Explained{OpcUa_BadUserAccessDenied,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The server does not let this user in"), otherUser},
    Explained{OpcUa_BadIdentityTokenRejected,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The server does not accept the log-in"), otherUser},
    Explained{OpcUa_BadIdentityTokenInvalid,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The server does not take this kind of log-in"),
              otherIdentity},
    Explained{OpcUa_BadUserSignatureInvalid,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The private key does not fit the user's certificate"),
              otherIdentity},
    Explained{OpcUa_BadSecurityPolicyRejected,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The security policy is not accepted"), otherEndpoint},
    Explained{OpcUa_BadSecurityModeRejected,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The security mode is not accepted"), otherEndpoint},
    Explained{OpcUa_BadSecurityChecksFailed,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The security checks have failed"), trustClient},
    Explained{OpcUa_BadCertificateUntrusted,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "A certificate is not trusted"), trustClient},
    Explained{OpcUa_BadCertificateHostNameInvalid,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The certificate belongs to another host"),
              lookAtServer},
    Explained{OpcUa_BadCertificateTimeInvalid,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "A certificate is not valid today"), lookAtServer},
    Explained{OpcUa_BadTooManySessions,
              QT_TRANSLATE_NOOP("QlumConnectFailure", "The server has no session left"), isBusy},
    Explained{OpcUa_BadTcpServerTooBusy, QT_TRANSLATE_NOOP("QlumConnectFailure", "The server is too busy"),
              isBusy},
};
} // namespace

QlumConnectFailure qlumConnectFailure(const UaStatusCode& status)
{
    const auto found = std::find_if(explained.begin(), explained.end(),
                                    [&](const Explained& row) { return row.status == status.code(); });
    const bool isKnown = found != explained.end();
    const QString words =
        isKnown ? FailureTexts::tr(found->reason) : FailureTexts::tr("The connection could not be made");
    return {QStringLiteral("%1 (%2).").arg(words, qlumStatusText(status.code())),
            isKnown ? FailureTexts::tr(found->advice)
                    : FailureTexts::tr("The log window says in which step it has failed.")};
}

QString qlumFailureReason(const UaStatusCode& status)
{
    const bool isKnown = std::any_of(explained.begin(), explained.end(),
                                     [&](const Explained& row) { return row.status == status.code(); });
    if (isKnown)
        return qlumConnectFailure(status).reason;
    const QString name = qlumStatusText(status.code());
    const QString words = qlumStatusWords(name);
    return QStringLiteral("%1 (%2).").arg(words.left(1).toUpper() + words.mid(1), name);
}

bool qlumIsLoginRefused(const UaStatusCode& status)
{
    return status.code() == OpcUa_BadUserAccessDenied || status.code() == OpcUa_BadIdentityTokenRejected ||
           status.code() == OpcUa_BadIdentityTokenInvalid;
}

bool qlumIsUnreachable(const UaStatusCode& status)
{
    static constexpr std::array<OpcUa_StatusCode, 4> unreachable{
        OpcUa_BadTimeout, OpcUa_BadConnectionRejected, OpcUa_BadCommunicationError,
        OpcUa_BadRequestCancelledByClient};
    return std::find(unreachable.begin(), unreachable.end(), status.code()) != unreachable.end();
}
