#pragma once
#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <string_view>

/// What an INI file says, read by a parser of our own: no input makes it build anything but text.
struct QlumIniText
{
    /// The elements of each value, at least one, in the form of QSettings: "@@" begins a text that begins
    /// with
    /// '@', and "@ByteArray(...)", "@String(...)", "@Rect(...)", "@Size(...)", "@Point(...)" and "@Invalid()"
    /// are the only others that do. Keys name their groups, separated by '/'; none of the names is empty.
    QMap<QString, QStringList> entries;
    QStringList refused; ///< for the log; at most 20 lines, the last of which tells how many more there were
};

/// Reads what QSettings would read (the last of equal keys counts), but refuses values from which it would
/// build objects ("@Variant(...)", "@DateTime(...)"), lines that are no entries, and more than a million
/// values.
[[nodiscard]] QlumIniText qlumReadIni(std::string_view data);

/// The entries as QSettings writes them, in ASCII: it reads from them what stands in them.
[[nodiscard]] QByteArray qlumWriteIni(const QMap<QString, QStringList>& entries);
