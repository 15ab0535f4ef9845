// Everything that a view shows of a server, as a text.
#pragma once
#include <QString>

#include <vector>

class QAbstractItemModel;

/// A part of the report.
struct QlumReportSection
{
    QString title; ///< a line of its own
    QString text;  ///< lines
};

/// The rows of a table, one under the other, each with the titles of the columns that say something.
[[nodiscard]] QString qlumTableReport(const QAbstractItemModel& model);
/// The sections with their titles.
[[nodiscard]] QString qlumReport(const std::vector<QlumReportSection>& sections);
