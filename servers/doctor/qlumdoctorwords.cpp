#include <servers/doctor/qlumdoctorwords.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificaterefuseddialog.h>
#include <certificates/qlumthumbprint.h>
#include <certificates/qlumvalidity.h>
#include <opcua/opcua_statuscodes.h>
#include <opcua/opcua_types.h>
#include <servers/doctor/qlumdoctor.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumendpoint.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificatecollection.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>

#include <QCoreApplication>
#include <QStringList>

#include <cstdlib>

namespace {
struct DoctorTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumDoctor)
};

// Clocks that differ by less are no reason for anything.
constexpr qint64 tolerableClockOffset = 60'000;

void fail(QlumRung& rung, OpcUa_StatusCode status, QlumRung::Side side, const QString& finding,
          const QString& advice, QlumRung::Fix fix = QlumRung::NoFix)
{
    rung.state = QlumRung::Failed;
    rung.status = status;
    rung.side = side;
    rung.finding = finding;
    rung.advice = advice;
    rung.fix = fix;
}

// By what any connect says of the status.
void failAsConnect(QlumRung& rung, OpcUa_StatusCode status, QlumRung::Side side,
                   QlumRung::Fix fix = QlumRung::NoFix)
{
    const QlumConnectFailure failure = qlumConnectFailure(UaStatusCode(status));
    const bool isLost = status == OpcUa_BadTimeout || status == OpcUa_BadCommunicationError;
    fail(rung, status, isLost ? QlumRung::Network : side, failure.reason, failure.advice, fix);
}

void explainName(QlumRung& rung, OpcUa_StatusCode status, const QString& host)
{
    if (status == OpcUa_BadTcpEndpointUrlInvalid)
        return fail(rung, status, QlumRung::ThisComputer,
                    DoctorTexts::tr("The URL is not one of opc.tcp or https with a host."),
                    DoctorTexts::tr("Correct it in the properties of the server."));
    if (status == OpcUa_BadTimeout)
        return fail(rung, status, QlumRung::Network,
                    DoctorTexts::tr("The name server did not answer for host '%1'.").arg(host),
                    DoctorTexts::tr("Check the network and the VPN, or dial the address instead."));
    fail(rung, status, QlumRung::ThisComputer,
         DoctorTexts::tr("This computer does not know the host '%1'.").arg(host),
         DoctorTexts::tr("Check the spelling, the name server and the VPN, or dial the address instead."));
}

void explainConnection(QlumRung& rung, OpcUa_StatusCode status, const QString& host, int port)
{
    if (status == OpcUa_BadConnectionRejected)
        return fail(
            rung, status, QlumRung::Server,
            DoctorTexts::tr("Host '%1' was reached, but nobody listens at its port %2.").arg(host).arg(port),
            DoctorTexts::tr("Start the server, or correct the port; a firewall may answer so, too."));
    if (status == OpcUa_BadTimeout)
        return fail(rung, status, QlumRung::Network,
                    DoctorTexts::tr("Port %2 of host '%1' gives no answer at all.").arg(host).arg(port),
                    DoctorTexts::tr("The host is off, or a firewall in between drops the connection."));
    fail(rung, status, QlumRung::Network, DoctorTexts::tr("There is no way to host '%1'.").arg(host),
         DoctorTexts::tr("Check the cable, the network settings and the VPN."));
}

void explainHello(QlumRung& rung, OpcUa_StatusCode status, int port)
{
    const QString otherPort =
        DoctorTexts::tr("Check the port: something else may listen there. Many servers use 4840.");
    switch (status) {
    case OpcUa_BadTimeout:
        return fail(rung, status, QlumRung::Server,
                    DoctorTexts::tr("Port %1 is open, but nobody answers the greeting.").arg(port),
                    DoctorTexts::tr("The server hangs, or it is none of OPC UA. Restart it, or correct the "
                                    "port."));
    case OpcUa_BadTcpMessageTypeInvalid:
        return fail(rung, status, QlumRung::Server,
                    DoctorTexts::tr("At port %1 somebody answers who speaks another protocol.").arg(port),
                    otherPort);
    case OpcUa_BadConnectionClosed:
        return fail(rung, status, QlumRung::Server,
                    DoctorTexts::tr("Port %1 hangs up when it is greeted.").arg(port), otherPort);
    default:
        return failAsConnect(rung, status, QlumRung::Server);
    }
}

QString clockAdvice(const QlumDiagnosis& diagnosis)
{
    const QString clocks = qlumClockWords(diagnosis);
    return clocks.isEmpty()
               ? DoctorTexts::tr("Check the clocks of both computers, or have the certificate renewed.")
               : DoctorTexts::tr("%1 Set the clock that is wrong.").arg(clocks);
}
} // namespace

// ---- small words

QString qlumDurationWords(qint64 milliseconds)
{
    const qint64 seconds = (std::abs(milliseconds) + 500) / 1000;
    const auto count = [seconds](int unit) { return static_cast<int>((seconds + unit / 2) / unit); };
    constexpr int minute = 60, hour = 60 * minute, day = 24 * hour;
    if (seconds >= day)
        return DoctorTexts::tr("%n days", nullptr, count(day));
    if (seconds >= hour)
        return DoctorTexts::tr("%n hours", nullptr, count(hour));
    return seconds >= minute ? DoctorTexts::tr("%n minutes", nullptr, count(minute))
                             : DoctorTexts::tr("%n seconds", nullptr, count(1));
}

QString qlumClockWords(const QlumDiagnosis& diagnosis)
{
    if (!diagnosis.clockOffset || std::abs(*diagnosis.clockOffset) < tolerableClockOffset)
        return {};
    const QString words = qlumDurationWords(*diagnosis.clockOffset);
    return *diagnosis.clockOffset > 0
               ? DoctorTexts::tr("The server's clock is %1 ahead of this computer's.").arg(words)
               : DoctorTexts::tr("The server's clock is %1 behind this computer's.").arg(words);
}

QString qlumAnswerWords(const QByteArray& answer)
{
    QString words;
    for (const char byte : answer) {
        const auto code = static_cast<unsigned char>(byte);
        if (code == '\r' || code == '\n')
            break;
        if (code >= 0x20 && code < 0x7f)
            words += QLatin1Char(byte);
        else
            words += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
    }
    return words;
}

QString qlumTokenWords(const QlumEndpoint& endpoint)
{
    QStringList kinds;
    for (const QlumUserTokenPolicy& token : endpoint.userTokens) {
        QString kind = DoctorTexts::tr("token of an issuer");
        if (token.tokenType == OpcUa_UserTokenType_Anonymous)
            kind = DoctorTexts::tr("anonymous");
        else if (token.tokenType == OpcUa_UserTokenType_UserName)
            kind = DoctorTexts::tr("user name");
        else if (token.tokenType == OpcUa_UserTokenType_Certificate)
            kind = DoctorTexts::tr("certificate");
        if (!kinds.contains(kind))
            kinds << kind;
    }
    return kinds.isEmpty() ? DoctorTexts::tr("no log-in at all") : kinds.join(QLatin1String(", "));
}

QString qlumSecurityWords(const QlumEndpoint& endpoint)
{
    if (endpoint.securityPolicyUri.isEmpty())
        return DoctorTexts::tr("the best policy, %1").arg(qlumSecurityModeName(endpoint.securityMode));
    const QString policy = qlumSingleLine(qlumPolicyName(endpoint.securityPolicyUri));
    return QStringLiteral("%1, %2").arg(policy, qlumSecurityModeName(endpoint.securityMode));
}

QStringList qlumCertificateWords(const UaByteString& certificate)
{
    const UaPkiCertificate own = UaPkiCertificateCollection::fromDERChain(certificate).certificate(0);
    if (own.isNull())
        return {DoctorTexts::tr("The certificate cannot be read.")};
    const UaPkiCertificateInfo info = own.info();
    QStringList names;
    for (const UaStringArray* list : {&info.DNSNames, &info.IPAddresses})
        for (OpcUa_UInt32 i = 0; i < list->length(); ++i)
            names << qlumSingleLine(toQString(UaString((*list)[i])));
    return {DoctorTexts::tr("Certificate: %1").arg(qlumSingleLine(toQString(own.commonName()))),
            DoctorTexts::tr("Thumbprint (SHA1): %1").arg(qlumThumbprint(own)),
            DoctorTexts::tr("Valid from %1 to %2")
                .arg(qlumValidityTime(own.validFrom()), qlumValidityTime(own.validTo())),
            DoctorTexts::tr("Issued by: %1").arg(qlumSingleLine(toQString(own.issuer().commonName))),
            DoctorTexts::tr("Made for hosts: %1")
                .arg(names.isEmpty() ? DoctorTexts::tr("none") : names.join(QLatin1String(", "))),
            DoctorTexts::tr("Application URI: %1").arg(qlumSingleLine(toQString(info.URI)))};
}

// ---- the way to the server

void qlumExplainReach(QlumRung& rung, OpcUa_StatusCode status, const QString& host, int port)
{
    switch (rung.step) {
    case QlumRung::Name:
        return explainName(rung, status, host);
    case QlumRung::Connection:
        return explainConnection(rung, status, host, port);
    case QlumRung::Hello:
        return explainHello(rung, status, port);
    default:
        return failAsConnect(rung, status, QlumRung::Server);
    }
}

void qlumExplainNoEndpoint(QlumRung& rung, const QlumEndpoint& wanted)
{
    fail(rung, OpcUa_BadSecurityPolicyRejected, QlumRung::ThisComputer,
         DoctorTexts::tr("The server offers no endpoint with what the settings ask for: %1.")
             .arg(qlumSecurityWords(wanted)),
         DoctorTexts::tr("Choose one of the endpoints that it offers."), QlumRung::ChooseEndpoint);
}

// ---- certificates

void qlumExplainServerCertificate(QlumRung& rung, const QlumCertificateChainModel& chain,
                                  const QlumDiagnosis& diagnosis)
{
    const OpcUa_StatusCode status = chain.headline().code();
    const auto stop = [&](const QString& finding, const QString& advice) {
        fail(rung, status, QlumRung::ThisComputer, finding, advice, QlumRung::TrustServer);
    };
    switch (status) {
    case OpcUa_BadCertificateUntrusted:
        return stop(DoctorTexts::tr("Nobody has trusted the server's certificate here yet."),
                    DoctorTexts::tr("Compare its thumbprint with what the server's administrator says, then "
                                    "trust it."));
    case OpcUa_BadCertificateTimeInvalid:
    case OpcUa_BadCertificateIssuerTimeInvalid:
        return stop(DoctorTexts::tr("The server's certificate, or one that it was issued by, is not valid "
                                    "now."),
                    clockAdvice(diagnosis));
    case OpcUa_BadCertificateRevoked:
    case OpcUa_BadCertificateIssuerRevoked:
        return stop(DoctorTexts::tr("The server's certificate, or one that it was issued by, was revoked."),
                    DoctorTexts::tr("Do not use it. The server's administrator has to replace it."));
    case OpcUa_BadCertificateHostNameInvalid:
        return stop(DoctorTexts::tr("The server's certificate is made for other hosts than the one that is "
                                    "dialled."),
                    DoctorTexts::tr("Dial one of the hosts that it names, have it renewed for this one, or "
                                    "accept it."));
    default:
        return stop(
            DoctorTexts::tr("The server's certificate does not pass: %1.").arg(qlumStatusText(status)),
            DoctorTexts::tr("Look at the certificate; each finding says what is wrong."));
    }
}

void qlumExplainTls(QlumRung& rung, OpcUa_StatusCode status)
{
    fail(rung, status, QlumRung::ThisComputer,
         DoctorTexts::tr("The certificate of the HTTPS connection does not pass: %1.")
             .arg(qlumStatusText(status)),
         DoctorTexts::tr("Compare its thumbprint with what the server's administrator says, then trust it."),
         QlumRung::TrustServer);
}

void qlumExplainOwnCertificate(QlumRung& rung, OpcUa_StatusCode status, const QlumDiagnosis& diagnosis)
{
    if (status == OpcUa_BadCertificateTimeInvalid || status == OpcUa_BadCertificateIssuerTimeInvalid ||
        status == OpcUa_BadInvalidTimestamp)
        return fail(rung, status, QlumRung::Server,
                    DoctorTexts::tr("The server takes our certificate, or our time, for one that is not "
                                    "valid now."),
                    clockAdvice(diagnosis), QlumRung::ExportOwn);
    if (status == OpcUa_BadConnectionClosed)
        return fail(rung, status, QlumRung::Server,
                    DoctorTexts::tr("The server hung up when it saw our certificate."),
                    DoctorTexts::tr("Most likely it does not trust it. Export it and have the server's "
                                    "administrator trust it; most servers keep what they have refused."),
                    QlumRung::ExportOwn);
    if (QlumCertificateRefusedDialog::isRefusal(UaStatusCode(status)))
        return fail(
            rung, status, QlumRung::Server,
            DoctorTexts::tr("The server does not accept our certificate (%1).").arg(qlumStatusText(status)),
            DoctorTexts::tr("Export it and have the server's administrator trust it; most servers "
                            "keep what they have refused."),
            QlumRung::ExportOwn);
    const bool isPolicy =
        status == OpcUa_BadSecurityPolicyRejected || status == OpcUa_BadSecurityModeRejected;
    failAsConnect(rung, status, QlumRung::Server, isPolicy ? QlumRung::ChooseEndpoint : QlumRung::NoFix);
}

// ---- who comes in

void qlumExplainSession(QlumRung& rung, OpcUa_StatusCode status, bool isOurs)
{
    if (isOurs && status == OpcUa_BadCertificateHostNameInvalid)
        return fail(rung, status, QlumRung::ThisComputer,
                    DoctorTexts::tr("The server's certificate is made for other hosts than the one that is "
                                    "dialled."),
                    DoctorTexts::tr("Dial one of the hosts that it names, or have it renewed for this one."));
    if (isOurs)
        return fail(rung, status, QlumRung::ThisComputer,
                    DoctorTexts::tr("What the server says of itself does not fit what was asked before (%1).")
                        .arg(qlumStatusText(status)),
                    DoctorTexts::tr("Somebody may answer in the server's place. Do not go on before its "
                                    "administrator has looked at it."));
    failAsConnect(rung, status, QlumRung::Server);
}

void qlumExplainUser(QlumRung& rung, OpcUa_StatusCode status, bool isOurs, const QlumDiagnosis& diagnosis)
{
    rung.evidence << DoctorTexts::tr("The endpoint takes: %1").arg(qlumTokenWords(diagnosis.chosen));
    if (status == OpcUa_BadSecurityModeInsufficient && isOurs)
        return fail(rung, status, QlumRung::ThisComputer,
                    DoctorTexts::tr("The password could be read on its way, and was not sent."),
                    DoctorTexts::tr("Choose an endpoint that encrypts, or enter the password here to send it "
                                    "all the same."),
                    QlumRung::ChooseUser);
    failAsConnect(rung, status, isOurs ? QlumRung::ThisComputer : QlumRung::Server, QlumRung::ChooseUser);
}
