#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QByteArrayList>
#include <QChar>
#include <QHeaderView>
#include <QLocale>
#include <QSet>
#include <QTableView>
#include <QTreeView>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {
// Rows from the top level down to the cell, so that comparing gives the order on screen.
std::vector<int> placeOf(QModelIndex index)
{
    std::vector<int> place;
    for (; index.isValid(); index = index.parent())
        place.push_back(index.row());
    std::reverse(place.begin(), place.end());
    return place;
}

QString quoted(QString text)
{
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

bool hasBreaks(const QString& text)
{
    return std::any_of(
        text.begin(), text.end(),
        [](QChar c) { return c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r'); });
}

// Where a quoted cell that begins there ends, behind its closing quote; -1 when it is none: only cells with
// breaks are quoted, in others quotes are what the user wrote.
int endOfQuoted(const QString& text, int begin)
{
    int end = begin + 1;
    for (;; end += 2) {
        end = text.indexOf(QLatin1Char('"'), end);
        if (end < 0)
            return -1;
        if (end + 1 == text.size() || text.at(end + 1) != QLatin1Char('"'))
            break;
    }
    const bool endsCell = end + 1 == text.size() || hasBreaks(text.mid(end + 1, 1));
    return endsCell && hasBreaks(text.mid(begin, end - begin)) ? end + 1 : -1;
}

int endOfPlain(const QString& text, int begin)
{
    int end = begin;
    while (end < text.size() && text.at(end) != QLatin1Char('\t') && text.at(end) != QLatin1Char('\n') &&
           text.at(end) != QLatin1Char('\r'))
        ++end;
    return end;
}

QString unquoted(const QString& cell)
{
    return cell.mid(1, cell.size() - 2).replace(QLatin1String("\"\""), QLatin1String("\""));
}

bool isNumber(const QString& text)
{
    bool ok = false;
    QLocale::c().toDouble(text, &ok);
    if (!ok)
        QLocale::system().toDouble(text, &ok);
    return ok;
}

bool isFormula(const QString& text)
{
    if (text.isEmpty() || !QStringLiteral("=+-@\t\r\n").contains(text.at(0)))
        return false;
    return !isNumber(text);
}
} // namespace

QHeaderView* qlumColumnHeader(const QAbstractItemView* view)
{
    if (const auto* table = qobject_cast<const QTableView*>(view))
        return table->horizontalHeader();
    const auto* tree = qobject_cast<const QTreeView*>(view);
    return tree ? tree->header() : nullptr;
}

QVector<int> qlumShownColumns(const QAbstractItemView* view)
{
    const QHeaderView* header = qlumColumnHeader(view);
    const int count = view->model() ? view->model()->columnCount(view->rootIndex()) : 0;
    QVector<int> columns;
    for (int place = 0; place < count; ++place) {
        const int column = header ? header->logicalIndex(place) : place;
        if (!header || !header->isSectionHidden(column))
            columns.append(column);
    }
    return columns;
}

QStringList qlumColumnTitles(const QAbstractItemModel& model, const QVector<int>& columns)
{
    QStringList titles;
    for (const int column : columns)
        titles.append(model.headerData(column, Qt::Horizontal).toString());
    return titles;
}

QString qlumTabbedText(const QAbstractItemView* view, const QModelIndexList& cells, bool withTitles)
{
    const QVector<int> shown = qlumShownColumns(view);
    std::vector<std::pair<std::vector<int>, QModelIndex>> rows;
    QVector<int> columns;
    for (const QModelIndex& cell : cells) {
        rows.emplace_back(placeOf(cell), cell.siblingAtColumn(0));
        columns.append(cell.column());
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    QVector<int> used;
    std::copy_if(shown.begin(), shown.end(), std::back_inserter(used),
                 [&columns](int column) { return columns.contains(column); });
    if (rows.size() == 1 && used.size() == 1 && !withTitles)
        return rows.front().second.siblingAtColumn(used.front()).data().toString();

    const QSet<QModelIndex> wanted(cells.begin(), cells.end());
    QStringList lines;
    const auto addLine = [&lines](QStringList texts) {
        std::transform(texts.begin(), texts.end(), texts.begin(), qlumTabbedCell);
        lines.append(texts.join(QLatin1Char('\t')));
    };
    if (withTitles && view->model())
        addLine(qlumColumnTitles(*view->model(), used));
    for (const auto& row : rows) {
        QStringList texts;
        for (const int column : used) {
            const QModelIndex cell = row.second.siblingAtColumn(column);
            texts.append(wanted.contains(cell) ? cell.data().toString() : QString());
        }
        addLine(texts);
    }
    return lines.join(QLatin1Char('\n'));
}

QString qlumTabbedCell(const QString& text)
{
    return hasBreaks(text) ? quoted(text) : text;
}

QVector<QStringList> qlumTabbedRows(const QString& text)
{
    QVector<QStringList> rows;
    int begin = 0;
    bool isNewRow = true;
    while (begin < text.size() || !isNewRow) {
        if (isNewRow)
            rows.append(QStringList());
        const bool mayBeQuoted = begin < text.size() && text.at(begin) == QLatin1Char('"');
        const int quotedEnd = mayBeQuoted ? endOfQuoted(text, begin) : -1;
        const int end = quotedEnd < 0 ? endOfPlain(text, begin) : quotedEnd;
        const QString cell = text.mid(begin, end - begin);
        rows.last().append(quotedEnd < 0 ? cell : unquoted(cell));
        isNewRow = end >= text.size() || text.at(end) != QLatin1Char('\t');
        const bool isPair = text.mid(end, 2) == QLatin1String("\r\n");
        begin = end + (isPair ? 2 : 1);
    }
    return rows;
}

QByteArray qlumCsvField(QString text)
{
    if (isFormula(text))
        text.prepend(QLatin1Char('\''));
    const bool needsQuotes = std::any_of(text.begin(), text.end(), [](QChar c) {
        return c == QLatin1Char(',') || c == QLatin1Char('"') || c == QLatin1Char('\n') ||
               c == QLatin1Char('\r');
    });
    return (needsQuotes ? quoted(text) : text).toUtf8();
}

QByteArray qlumCsvRecord(const QStringList& fields)
{
    QByteArrayList escaped;
    std::transform(fields.begin(), fields.end(), std::back_inserter(escaped), qlumCsvField);
    return escaped.join(',') + "\r\n";
}
