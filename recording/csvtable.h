// CSV files as they lie on a disk: the files of a set, and the rows of one.
#pragma once

#include <opcua/opcua_builtintypes.h>

#include <QFile>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <string>
#include <vector>

namespace recording {

/// Columns of a recording.
enum CsvColumn : std::size_t {
    ReceivedColumn,
    ServerColumn,
    NodeColumn,
    NamespaceColumn,
    NameColumn,
    TypeColumn,
    ValueColumn,
    StatusColumn,
    SourceTimeColumn,
    SourcePicosecondsColumn,
    ServerTimeColumn,
    ServerPicosecondsColumn,
    SequenceColumn,
    EventColumn,
    CountColumn,
    FromColumn,
    ToColumn,
    TextColumn,
    CsvColumnCount
};

/// The rows of a file, one after the other. Not for threads.
class CsvTable
{
public:
    /// False, with a reason in error(), for what cannot be read or has another heading.
    [[nodiscard]] bool open(const QString& path);
    /// False at the end, with a reason in error() when reading has failed. A last row without its end is
    /// none.
    [[nodiscard]] bool next(std::vector<std::string>& cells);
    [[nodiscard]] bool isCut() const { return m_isCut; } ///< the file ended within a row
    [[nodiscard]] const QString& error() const { return m_error; }

private:
    [[nodiscard]] bool fill();

    QFile m_file;
    QString m_error;
    std::string m_block;
    std::size_t m_place = 0;
    bool m_isCut = false;
};

/// "pump.csv" and a time make "pump_20261122T183000Z.csv"; "...-2.csv" for the second of a name.
[[nodiscard]] QString csvPartName(const QString& path, const QString& time, int count);
/// The files of a recording in the order of their names, whether it is named as it was chosen ("pump.csv") or
/// by one of its files. Empty when none is there.
[[nodiscard]] QStringList csvParts(const QString& path);
/// Of which name the file's name was made; empty for one that is no part of a recording.
[[nodiscard]] QString csvChosenName(const QString& part);
/// Only those whose names were made of this one, as which it was chosen.
[[nodiscard]] QStringList csvPartsOf(const QString& chosen);
/// Whether the file begins as a recording does.
[[nodiscard]] bool isCsvRecording(const QString& path);
/// When the last whole row was received; that of the file's last change when there is none.
[[nodiscard]] OpcUa_DateTime csvLastTime(const QString& path);

} // namespace recording
