#include <plugins/serverdiagnostics/qlumdiagnosticreport.h>

#include <QAbstractItemModel>

QString qlumTableReport(const QAbstractItemModel& model)
{
    QString text;
    for (int row = 0; row < model.rowCount(); ++row) {
        text += model.index(row, 0).data().toString() + QLatin1Char('\n');
        for (int column = 1; column < model.columnCount(); ++column) {
            const QString cell = model.index(row, column).data().toString();
            if (!cell.isEmpty())
                text += QStringLiteral("  %1: %2\n")
                            .arg(model.headerData(column, Qt::Horizontal).toString(), cell);
        }
    }
    return text;
}

QString qlumReport(const std::vector<QlumReportSection>& sections)
{
    QString report;
    for (const QlumReportSection& section : sections) {
        if (!report.isEmpty())
            report += QLatin1Char('\n');
        report += section.title + QLatin1Char('\n') + QString(section.title.size(), QLatin1Char('-')) +
                  QLatin1Char('\n') + section.text;
        if (!report.endsWith(QLatin1Char('\n')))
            report += QLatin1Char('\n');
    }
    return report;
}
