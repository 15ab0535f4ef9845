// Histories straight into a file, more than memory holds.
#pragma once
#include <app/api/qlumsessionservices.h>
#include <plugins/history/qlumhistoryplan.h>

#include <QMap>
#include <QString>

#include <vector>

class QlumJob;

/// What is written of an item besides its values.
struct QlumHistoryName
{
    QString name; ///< of the variable
    QString unit; ///< may be empty
};

/// What came of it.
struct QlumHistoryFile
{
    quint64 values = 0; ///< that were written
    int incomplete = 0; ///< items that were not read to the end
    QString fault;      ///< why there is no file; empty when there is one
};

/// Reads the plans one after the other, on a job's thread, and writes what comes as CSV (RFC 4180, UTF-8), a
/// line each: source time (UTC, up to 100 ns), name, unit, value, quality, status, time of the server. The
/// names are found by the keys of the targets. What was there stays unless all was written, and when the job
/// is cancelled.
[[nodiscard]] QlumHistoryFile qlumWriteHistory(QlumJob& job, const QlumSessionServicesProvider& services,
                                               const std::vector<QlumHistoryPlan>& plans,
                                               const QMap<int, QlumHistoryName>& names,
                                               const QString& fileName);
