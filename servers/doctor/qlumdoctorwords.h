// What a step of a diagnosis has come to, in words: what was found, whose side has stopped it, what helps.
#pragma once
#include <certificates/qlumcertificatechainmodel.h>
#include <servers/doctor/qlumdiagnosis.h>
#include <servers/qlumendpoint.h>
#include <uabase/values/uabytestring.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

/// "2 hours", "3 minutes" for so many milliseconds, of either sign.
[[nodiscard]] QString qlumDurationWords(qint64 milliseconds);
/// Which clock is ahead, and by how much; empty when they agree well enough.
[[nodiscard]] QString qlumClockWords(const QlumDiagnosis& diagnosis);
/// Letters of an answer that is none of the protocol, and of the others their numbers.
[[nodiscard]] QString qlumAnswerWords(const QByteArray& answer);

/// Of a step that has failed with this status on its way to the server: the first five.
void qlumExplainReach(QlumRung& rung, OpcUa_StatusCode status, const QString& host, int port);
/// That no endpoint is what the settings ask for.
void qlumExplainNoEndpoint(QlumRung& rung, const QlumEndpoint& wanted);
/// Of our check of the server's certificate, by what the chain says.
void qlumExplainServerCertificate(QlumRung& rung, const QlumCertificateChainModel& chain,
                                  const QlumDiagnosis& diagnosis);
/// Of a TLS certificate that is not trusted.
void qlumExplainTls(QlumRung& rung, OpcUa_StatusCode status);
/// Of the secured channel, on which the server judges our certificate.
void qlumExplainOwnCertificate(QlumRung& rung, OpcUa_StatusCode status, const QlumDiagnosis& diagnosis);
/// Of a session that was not created; ours when it was this side that did not want it.
void qlumExplainSession(QlumRung& rung, OpcUa_StatusCode status, bool isOurs);
/// Of a user who was not let in.
void qlumExplainUser(QlumRung& rung, OpcUa_StatusCode status, bool isOurs, const QlumDiagnosis& diagnosis);

/// "anonymous, user name": the kinds of log-in of an endpoint.
[[nodiscard]] QString qlumTokenWords(const QlumEndpoint& endpoint);
/// "Basic256Sha256, SignAndEncrypt".
[[nodiscard]] QString qlumSecurityWords(const QlumEndpoint& endpoint);
/// What is in a certificate (DER, may be a chain), a line for each.
[[nodiscard]] QStringList qlumCertificateWords(const UaByteString& certificate);
