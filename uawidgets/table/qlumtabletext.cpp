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

QString spreadsheetCell(const QString& text)
{
    const bool breaks = std::any_of(text.begin(), text.end(), [](QChar c) {
        return c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r');
    });
    return breaks ? quoted(text) : text;
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
        std::transform(texts.begin(), texts.end(), texts.begin(), spreadsheetCell);
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
