#include <app/api/qlumstatuswords.h>

#include <app/api/qlumserverrole.h>
#include <app/api/qlumtext.h>

#include <QCoreApplication>
#include <QHash>
#include <QLatin1Char>
#include <QLatin1String>
#include <QRegularExpression>
#include <QStringList>

#include <optional>

#define WORDS(text) QT_TRANSLATE_NOOP("QlumStatusWords", text)

namespace {
struct Meaning
{
    const char* status;
    const char* words;
};

constexpr Meaning meanings[] = {
    {"BadTimeout", WORDS("the server did not answer in time")},
    {"BadConnectionClosed", WORDS("the connection was closed while the call was under way")},
    {"BadNotConnected", WORDS("there is no connection to the server at the moment")},
    {"BadNoCommunication", WORDS("the server has no connection to the device behind it")},
    {"BadCommunicationError", WORDS("the connection to the server broke")},
    {"BadServerNotConnected", WORDS("no session is open; connect the server first")},
    {"BadSecureChannelClosed", WORDS("the server closed the secure channel")},
    {"BadSessionIdInvalid", WORDS("the server does not know this session any more")},
    {"BadSessionClosed", WORDS("the session was closed")},
    {"BadTooManySessions", WORDS("the server has as many sessions as it can")},
    {"BadTooManyOperations", WORDS("more nodes in one call than the server takes")},
    {"BadResponseTooLarge", WORDS("the answer is larger than client or server allow")},
    {"BadUserAccessDenied", WORDS("this user may not do that")},
    {"BadIdentityTokenRejected", WORDS("the server does not accept this user or password")},
    {"BadIdentityTokenInvalid", WORDS("the server cannot read the user and password")},
    {"BadSecurityChecksFailed", WORDS("the server refuses the certificate or the security of this client")},
    {"BadSecurityPolicyRejected", WORDS("the security policy is not supported")},
    {"BadSecurityModeRejected", WORDS("the message security mode is not accepted")},
    {"BadCertificateUntrusted", WORDS("the certificate is not among the trusted ones")},
    {"BadCertificateTimeInvalid", WORDS("the certificate is expired or not yet valid")},
    {"BadCertificateHostNameInvalid", WORDS("the certificate was issued for another host")},
    {"BadCertificateRevoked", WORDS("the issuer has revoked the certificate")},
    {"BadTcpInternalError", WORDS("the connection could not be made or was refused")},
    {"BadTcpEndpointUrlInvalid", WORDS("the server does not know the endpoint of this address")},
    {"BadHostUnknown", WORDS("the name of the host cannot be resolved")},
    {"BadNodeIdUnknown", WORDS("the server has no such node (any more)")},
    {"BadNodeIdInvalid", WORDS("the server cannot read the node id")},
    {"BadAttributeIdInvalid", WORDS("the node has no such attribute")},
    {"BadNotReadable", WORDS("the value may not be read")},
    {"BadNotWritable", WORDS("the value may not be written")},
    {"BadTypeMismatch", WORDS("the value has another data type than the node")},
    {"BadOutOfRange", WORDS("the value is outside what the server allows")},
    {"BadWaitingForInitialData", WORDS("the first value has not come from the device yet")},
    {"BadContinuationPointInvalid", WORDS("the server has forgotten where to continue from")},
    {"BadNoContinuationPoints", WORDS("the server cannot keep more unfinished answers")},
    {"BadSubscriptionIdInvalid", WORDS("the server does not know this subscription any more")},
    {"BadTooManySubscriptions", WORDS("the server has as many subscriptions as it can")},
    {"BadServiceUnsupported", WORDS("the server does not offer this service")},
    {"BadNotSupported", WORDS("the server does not support that")},
    {"BadMethodInvalid", WORDS("the object has no such method")},
    {"BadArgumentsMissing", WORDS("the method was called with too few arguments")},
    {"BadOutOfMemory", WORDS("there was not enough memory")},
    {"BadInternalError", WORDS("an error inside the program or the server")},
    {"BadUnexpectedError", WORDS("an error that nobody expected")},
    {"BadServerHalted", WORDS("the server has stopped")},
    {"BadShutdown", WORDS("the server is shutting down")},
};

// Of a status that is not in the table: BadFilterNotAllowed says something all the same.
QString splitName(const QString& name)
{
    static const QRegularExpression seam(QStringLiteral("(?<=[a-z0-9])(?=[A-Z])"));
    QStringList parts = name.split(seam);
    parts.removeFirst(); // its severity
    return parts.join(QLatin1Char(' ')).toLower();
}
} // namespace
#undef WORDS

QString qlumStatusWords(const QString& name)
{
    static const QHash<QString, const char*> table = [] {
        QHash<QString, const char*> made;
        for (const Meaning& meaning : meanings)
            made.insert(QLatin1String(meaning.status), meaning.words);
        return made;
    }();
    const char* words = table.value(name);
    return words ? QCoreApplication::translate("QlumStatusWords", words) : splitName(name);
}

QString qlumNotSentText(const UaStatus& status)
{
    const std::optional<QlumServerRole> role = qlumRefusingRole(status);
    return role ? QCoreApplication::translate("QlumStatusWords", "Not sent: this server is set to %1")
                      .arg(qlumRoleName(*role))
                : QString();
}

QString qlumResultText(const UaStatus& status)
{
    const QString notSent = qlumNotSentText(status);
    return notSent.isEmpty() ? toQString(status.toString()) : notSent;
}

QString qlumResultInWords(const UaStatus& status)
{
    const QString notSent = qlumNotSentText(status);
    if (!notSent.isEmpty())
        return notSent;
    const QString name = toQString(status.toString());
    const QString words = status.isGood() ? QString() : qlumStatusWords(name);
    return words.isEmpty() ? name : QStringLiteral("%1: %2").arg(name, words);
}
