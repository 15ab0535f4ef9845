// Tables of other programs: files of separated values and what was pasted.
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

#include <functional>

/// Bytes of an unknown encoding as text: UTF-8, UTF-16 with its mark, and what is neither as Latin-1, which
/// the remark then says. Bytes that no text holds are a fault.
struct QlumReadText
{
    QString text;   ///< without a byte order mark
    QString remark; ///< for the user; empty when nothing had to be guessed
    QString fault;  ///< for the user: why there is no text; empty when there is
};
/// See there.
[[nodiscard]] QlumReadText qlumReadText(const QByteArray& bytes);

/// A line of a table.
struct QlumCsvRow
{
    int line = 0;       ///< where it begins in the text, from 1
    QStringList fields; ///< at least one
};

/// Hears of progress, and says whether to go on.
using QlumReadsOn = std::function<bool(qint64 done, qint64 total)>;

/// The lines of separated values, without empty ones: the separator is the tab, semicolon or comma of the
/// first of them. Quoted fields hold what they like; a quote that nobody closes ends with its line. A
/// semicolon within an unquoted node id separates nothing, and the apostrophe by which qlumCsvField() keeps a
/// text from becoming a formula is taken off. Reads so many rows at most; rest is the number of those behind.
/// goesOn hears now and then how far it is, in characters, and ends it with false; what was read is returned
/// then.
[[nodiscard]] QVector<QlumCsvRow> qlumCsvRows(const QString& text, int maximum, int* rest = nullptr,
                                              const QlumReadsOn& goesOn = {});
