#include <servers/doctor/qlumdiagnosis.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>

#include <QCoreApplication>
#include <QLocale>
#include <QMap>
#include <QSysInfo>

#include <algorithm>

namespace {
struct DiagnosisTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumDiagnosis)
};

// What a server says may hold line breaks, with which it could write lines of its own into the report.
QString reportLine(const QString& text)
{
    return qlumCutText(qlumSingleLine(text), 1000);
}

void addRung(QStringList& lines, const QlumRung& rung)
{
    const QString time = qlumRungTime(rung);
    const QString state = qlumRungStateName(rung.state);
    lines << QString()
          << QStringLiteral("%1. %2: %3%4")
                 .arg(QString::number(rung.step + 1), qlumRungName(rung.step), state,
                      time.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(time));
    const auto add = [&lines](const QString& text) {
        if (!text.isEmpty())
            lines << QStringLiteral("   ") + reportLine(text);
    };
    add(rung.finding);
    if (rung.side != QlumRung::Nobody)
        add(DiagnosisTexts::tr("Stopped by: %1").arg(qlumRungSideName(rung.side)));
    if (OpcUa_IsNotGood(rung.status))
        add(DiagnosisTexts::tr("Status: %1 (0x%2)")
                .arg(qlumStatusText(rung.status))
                .arg(rung.status, 8, 16, QLatin1Char('0')));
    for (const QString& line : rung.evidence)
        add(QStringLiteral("- ") + line);
    if (!rung.advice.isEmpty())
        add(DiagnosisTexts::tr("What to do: %1").arg(rung.advice));
}
} // namespace

QlumDiagnosis::QlumDiagnosis()
{
    for (int step = 0; step < QlumRung::StepCount; ++step) {
        QlumRung rung;
        rung.step = static_cast<QlumRung::Step>(step);
        rungs.append(rung);
    }
}

const QlumRung* QlumDiagnosis::failed() const
{
    const auto found = std::find_if(rungs.begin(), rungs.end(),
                                    [](const QlumRung& rung) { return rung.state == QlumRung::Failed; });
    return found == rungs.end() ? nullptr : &*found;
}

const QlumRung* QlumDiagnosis::fixable() const
{
    if (const QlumRung* rung = failed())
        return rung->fix == QlumRung::NoFix ? nullptr : rung;
    const auto found = std::find_if(rungs.rbegin(), rungs.rend(),
                                    [](const QlumRung& rung) { return rung.fix != QlumRung::NoFix; });
    return found == rungs.rend() ? nullptr : &*found;
}

QString QlumDiagnosis::summary() const
{
    if (const QlumRung* rung = failed())
        return DiagnosisTexts::tr("The connection stops at '%1'. %2")
            .arg(qlumRungName(rung->step), qlumSingleLine(rung->finding));
    const auto is = [this](QlumRung::State state) {
        return std::any_of(rungs.begin(), rungs.end(),
                           [state](const QlumRung& rung) { return rung.state == state; });
    };
    if (is(QlumRung::Running))
        return DiagnosisTexts::tr("The connection is being tried step by step...");
    if (is(QlumRung::Waiting))
        return DiagnosisTexts::tr("The diagnosis was not finished.");
    if (rungs.at(QlumRung::User).state == QlumRung::Skipped)
        return DiagnosisTexts::tr("Nothing stops the connection; the user was not tried.");
    return is(QlumRung::Warned)
               ? DiagnosisTexts::tr("The connection can be made, but see the steps with a warning.")
               : DiagnosisTexts::tr("The connection can be made; every step has passed.");
}

QString qlumRungName(QlumRung::Step step)
{
    switch (step) {
    case QlumRung::Name:
        return DiagnosisTexts::tr("Name resolution");
    case QlumRung::Connection:
        return DiagnosisTexts::tr("TCP connection");
    case QlumRung::Hello:
        return DiagnosisTexts::tr("Hello");
    case QlumRung::Channel:
        return DiagnosisTexts::tr("Secure channel");
    case QlumRung::Endpoints:
        return DiagnosisTexts::tr("Endpoints");
    case QlumRung::ServerCertificate:
        return DiagnosisTexts::tr("Our check of the server's certificate");
    case QlumRung::OwnCertificate:
        return DiagnosisTexts::tr("The server's check of our certificate");
    case QlumRung::Session:
        return DiagnosisTexts::tr("Session");
    case QlumRung::User:
        return DiagnosisTexts::tr("User");
    case QlumRung::StepCount:
        break;
    }
    return {};
}

QString qlumRungStateName(QlumRung::State state)
{
    switch (state) {
    case QlumRung::Waiting:
        return DiagnosisTexts::tr("not reached");
    case QlumRung::Running:
        return DiagnosisTexts::tr("running");
    case QlumRung::Passed:
        return DiagnosisTexts::tr("passed");
    case QlumRung::Warned:
        return DiagnosisTexts::tr("passed with a warning");
    case QlumRung::Failed:
        return DiagnosisTexts::tr("failed");
    case QlumRung::Skipped:
        return DiagnosisTexts::tr("not tried");
    }
    return {};
}

QString qlumRungSideName(QlumRung::Side side)
{
    switch (side) {
    case QlumRung::ThisComputer:
        return DiagnosisTexts::tr("this computer");
    case QlumRung::Network:
        return DiagnosisTexts::tr("the network in between");
    case QlumRung::Server:
        return DiagnosisTexts::tr("the server");
    case QlumRung::Nobody:
        break;
    }
    return {};
}

QString qlumRungTime(const QlumRung& rung)
{
    if (rung.milliseconds < 0)
        return {};
    const QLocale locale;
    if (rung.milliseconds < 1000)
        return DiagnosisTexts::tr("%1 ms").arg(
            locale.toString(rung.milliseconds, 'f', rung.milliseconds < 10 ? 1 : 0));
    return DiagnosisTexts::tr("%1 s").arg(locale.toString(rung.milliseconds / 1000, 'f', 1));
}

QString qlumDiagnosisReport(const QlumDiagnosis& diagnosis)
{
    QStringList lines;
    lines << DiagnosisTexts::tr("Connection diagnosis by %1 %2")
                 .arg(QCoreApplication::applicationName(), QCoreApplication::applicationVersion())
          << DiagnosisTexts::tr("Server: %1").arg(reportLine(diagnosis.server))
          << DiagnosisTexts::tr("URL: %1").arg(reportLine(diagnosis.url))
          << DiagnosisTexts::tr("Security: %1").arg(reportLine(diagnosis.security))
          << DiagnosisTexts::tr("User: %1").arg(reportLine(diagnosis.user))
          << DiagnosisTexts::tr("Begun: %1").arg(diagnosis.begun.toString(Qt::ISODateWithMs))
          << DiagnosisTexts::tr("Computer: %1, %2")
                 .arg(QSysInfo::machineHostName(), QSysInfo::prettyProductName())
          << DiagnosisTexts::tr("Result: %1").arg(reportLine(diagnosis.summary()));
    for (const QlumRung& rung : diagnosis.rungs)
        addRung(lines, rung);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

namespace {
QMap<QString, QString>& keptReports()
{
    static QMap<QString, QString> reports; // by server
    return reports;
}
} // namespace

void qlumKeepDiagnosis(const QlumDiagnosis& diagnosis)
{
    keptReports().insert(diagnosis.server, qlumDiagnosisReport(diagnosis));
}

QString qlumKeptDiagnoses()
{
    return QStringList(keptReports().values()).join(QLatin1Char('\n'));
}
