// What a table or tree shows, as text for the clipboard and for files.
#pragma once
#include <QByteArray>
#include <QModelIndex>
#include <QModelIndexList>
#include <QString>
#include <QStringList>
#include <QVector>

class QAbstractItemModel;
class QAbstractItemView;
class QHeaderView;

/// The header that names the columns of a table or tree; null for other views.
[[nodiscard]] QHeaderView* qlumColumnHeader(const QAbstractItemView* view);
/// The columns that are shown, in the order on screen; all columns of views without a header.
[[nodiscard]] QVector<int> qlumShownColumns(const QAbstractItemView* view);
[[nodiscard]] QStringList qlumColumnTitles(const QAbstractItemModel& model, const QVector<int>& columns);

/// A line for each row that has one of the cells, a tab between columns; in the order on screen, whatever the
/// order of the indexes. Cells of columns that are not shown are left out. A cell with tabs or line breaks is
/// quoted as spreadsheets do, unless it is the only one.
[[nodiscard]] QString qlumTabbedText(const QAbstractItemView* view, const QModelIndexList& cells,
                                     bool withTitles);

/// A cell as spreadsheets put it on the clipboard, quoted when it has tabs or line breaks.
[[nodiscard]] QString qlumTabbedCell(const QString& text);
/// The reverse for a whole clipboard: the cells of each line. Line ends of any kind; one at the end begins no
/// further line.
[[nodiscard]] QVector<QStringList> qlumTabbedRows(const QString& text);

/// A field of a record of comma separated values, UTF-8. A text that a spreadsheet would take for a formula,
/// which a server can have written, gets an apostrophe and so stays a text; numbers stay numbers.
[[nodiscard]] QByteArray qlumCsvField(QString text);
/// The fields with commas and a line end.
[[nodiscard]] QByteArray qlumCsvRecord(const QStringList& fields);
