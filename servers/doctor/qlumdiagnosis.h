#pragma once
#include <opcua/opcua_platform.h>
#include <servers/qlumendpoint.h>
#include <uabase/values/uabytestring.h>

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <optional>

/// One step of a connect, as it was tried.
struct QlumRung
{
    enum Step {
        Name,
        Connection,
        Hello,
        Channel,
        Endpoints,
        ServerCertificate, ///< our check of the server's
        OwnCertificate,    ///< the server's check of ours
        Session,
        User,
        StepCount
    };
    enum State { Waiting, Running, Passed, Warned, Failed, Skipped };
    /// Who has stopped it.
    enum Side { Nobody, ThisComputer, Network, Server };
    /// What the user can do about it right here.
    enum Fix { NoFix, TrustServer, ExportOwn, KeepDialledHost, ChooseEndpoint, ChooseUser };

    Step step = Name;
    State state = Waiting;
    Side side = Nobody;
    Fix fix = NoFix;
    OpcUa_StatusCode status = 0;
    double milliseconds = -1; ///< below 0: not measured
    QString finding;          ///< in one sentence
    QStringList evidence;     ///< what was seen, in the order in which it came
    QString advice;           ///< may be empty
};

/// A connect that was tried step by step. Holds no password.
struct QlumDiagnosis
{
    QString server; ///< as the user calls it
    QString url;    ///< without user information
    QString security;
    QString user;
    QDateTime begun;
    QVector<QlumRung> rungs; ///< one for each step, in their order

    QVector<QlumEndpoint> endpoints;   ///< that the server offers
    QlumEndpoint chosen;               ///< that a connect would use
    bool isChosen = false;             ///< whether there is such a one
    QString unknownHost;               ///< that the chosen one names, and nobody knows
    std::optional<qint64> clockOffset; ///< ms that the server's clock is ahead of this computer's
    UaByteString tlsCertificate;       ///< DER, with which HTTPS has failed
    OpcUa_StatusCode tlsStatus = 0;    ///< and how

    /// All steps still waiting.
    QlumDiagnosis();
    /// The step that has failed; null when none has.
    [[nodiscard]] const QlumRung* failed() const;
    /// The step whose fix is to be offered: the one that has failed, else the last that has one; null for
    /// none.
    [[nodiscard]] const QlumRung* fixable() const;
    /// In one sentence, what it has come to.
    [[nodiscard]] QString summary() const;
};

/// The name of a step, and of the others, for the user.
[[nodiscard]] QString qlumRungName(QlumRung::Step step);
[[nodiscard]] QString qlumRungStateName(QlumRung::State state);
[[nodiscard]] QString qlumRungSideName(QlumRung::Side side);
/// "12 ms", "1.5 s" in the user's locale; empty when it was not measured.
[[nodiscard]] QString qlumRungTime(const QlumRung& rung);
/// The whole diagnosis as plain text, for whoever is asked for help.
[[nodiscard]] QString qlumDiagnosisReport(const QlumDiagnosis& diagnosis);
/// Keeps the report of a diagnosis until there is a later one of the same server. GUI thread.
void qlumKeepDiagnosis(const QlumDiagnosis& diagnosis);
/// The reports that are kept, one after the other; empty for none. GUI thread.
[[nodiscard]] QString qlumKeptDiagnoses();
