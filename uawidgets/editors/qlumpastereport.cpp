#include <uawidgets/editors/qlumpastereport.h>

#include <app/api/qlumdisplaytext.h>

#include <QCoreApplication>

namespace {
constexpr int namedFaults = 5;

QString reportTr(const char* text)
{
    return QCoreApplication::translate("QlumPasteReport", text);
}
} // namespace

void QlumPasteReport::refuse(const QString& place, const QString& text)
{
    ++refused;
    if (faults.size() < namedFaults)
        faults.append(QStringLiteral("%1: '%2'").arg(place, qlumCutText(text, 40)));
}

QlumMessage qlumPasteMessage(const QlumPasteReport& report, const QString& note)
{
    const int total = report.taken + report.refused + report.beyond;
    QStringList why;
    if (report.refused > 0) {
        const QString more = report.refused > report.faults.size() ? QStringLiteral(", ...") : QString();
        why.append(reportTr(QT_TRANSLATE_NOOP("QlumPasteReport",
                                              "No values of the type are %1; what was there stays."))
                       .arg(report.faults.join(QLatin1String(", ")) + more));
    }
    if (report.beyond > 0)
        why.append(reportTr(QT_TRANSLATE_NOOP("QlumPasteReport", "For %1 cells there is no place."))
                       .arg(report.beyond));
    if (!note.isEmpty())
        why.append(note);
    QlumMessage message;
    message.topic = QStringLiteral("paste");
    message.severity = report.refused + report.beyond > 0 ? QlumMessage::Warning : QlumMessage::Note;
    if (total == 0)
        message.what = reportTr(QT_TRANSLATE_NOOP("QlumPasteReport", "There is no text to paste."));
    else if (!why.isEmpty())
        message.what = reportTr(QT_TRANSLATE_NOOP("QlumPasteReport", "%1 of %2 cells were taken."))
                           .arg(report.taken)
                           .arg(total);
    message.why = why.join(QLatin1Char(' '));
    return message;
}
