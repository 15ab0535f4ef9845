// What QlumArrayPage does with the elements that are selected.
#include <uawidgets/editors/qlumarraypage.h>

#include <app/api/qlumactiontable.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumarraymodel.h>
#include <uawidgets/editors/qlumelementlist.h>
#include <uawidgets/editors/qlumpastereport.h>
#include <uawidgets/editors/qlumvaluetype.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumwaitcursor.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QItemSelection>
#include <QItemSelectionModel>
#include <QItemSelectionRange>
#include <QKeySequence>
#include <QList>
#include <QModelIndex>
#include <QStringList>
#include <QTableView>
#include <QToolBar>
#include <QVariant>
#include <QVector>

#include <algorithm>
#include <vector>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumArrayPage", text)

namespace {
enum Id { Insert, Append, Remove, Up, Down, Fill, Ascending, Descending, Copy, Paste, Open };

constexpr Qt::ShortcutContext own = Qt::WidgetShortcut;
constexpr QlumActionRow arrayRows[] = {
    {Insert, "arrayInsert", TEXT("&Insert"), "add.png", qlumNoKey,
     TEXT("Insert elements before the selected ones, as many as are selected"),
     TEXT("<b>Insert</b><br>Inserts as many elements as are selected, before the first of them."), own},
    {Append, "arrayAppend", TEXT("Add at &End"), "", qlumNoKey, TEXT("Add an element behind the last one"),
     TEXT("<b>Add at End</b><br>Adds an element behind the last one."), own},
    {Remove, "arrayRemove", TEXT("&Remove"), "remove.png", QKeySequence::Delete,
     TEXT("Remove the selected elements"), TEXT("<b>Remove</b><br>Removes the selected elements."), own},
    {Up, "arrayUp", TEXT("Move &Up"), "up.png", qlumNoKey, TEXT("Move the selected elements up"),
     TEXT("<b>Move Up</b><br>The selected elements change places with the one before them."), own},
    {Down, "arrayDown", TEXT("Move &Down"), "down.png", qlumNoKey, TEXT("Move the selected elements down"),
     TEXT("<b>Move Down</b><br>The selected elements change places with the one behind them."), own},
    {Fill, "arrayFill", TEXT("&Fill"), "", qlumNoKey,
     TEXT("Give all selected elements the value of the first of them"),
     TEXT("<b>Fill</b><br>Gives all selected elements the value of the first of them."), own},
    {Ascending, "arraySortAscending", TEXT("&Sort"), "", qlumNoKey,
     TEXT("Sort the selected elements, or all when none or one is selected"),
     TEXT("<b>Sort</b><br>Puts the selected elements in order, the smallest first; all elements when not "
          "more than one is selected."),
     own},
    {Descending, "arraySortDescending", TEXT("Sort Do&wn"), "", qlumNoKey, TEXT("Sort the largest first"),
     TEXT("<b>Sort Down</b><br>As Sort, the largest first."), own},
    {Copy, "arrayCopy", TEXT("&Copy"), "copy.png", QKeySequence::Copy, TEXT("Copy the selected elements"),
     TEXT("<b>Copy</b><br>Puts the selected elements on the clipboard, one in a line, as spreadsheets take "
          "them."),
     own},
    {Paste, "arrayPaste", TEXT("&Paste"), "", QKeySequence::Paste,
     TEXT("Paste a column, from the first selected element on"),
     TEXT("<b>Paste</b><br>Takes the column that was copied in a spreadsheet, from the first selected "
          "element on; what goes beyond the end becomes new elements."),
     own},
    {Open, "arrayOpen", TEXT("&Open..."), "edit.png", qlumNoKey,
     TEXT("Edit the element in a window of its own"),
     TEXT("<b>Open</b><br>Shows the element with all its fields in a window of its own."), own},
};

// The first column; of a single line all its cells.
QStringList columnOf(const QVector<QStringList>& rows, int& ignoredColumns)
{
    if (rows.size() == 1)
        return rows.front();
    QStringList column;
    column.reserve(rows.size());
    for (const QStringList& row : rows) {
        column.append(row.front());
        ignoredColumns = std::max(ignoredColumns, static_cast<int>(row.size()) - 1);
    }
    return column;
}
} // namespace

QToolBar* QlumArrayPage::makeActions()
{
    m_actions = QlumActionTable(arrayRows, "QlumArrayPage", this);
    m_actions[Insert]->setShortcut(Qt::Key_Insert);
    m_actions[Up]->setShortcut(QKeySequence(QStringLiteral("Ctrl+Up")));
    m_actions[Down]->setShortcut(QKeySequence(QStringLiteral("Ctrl+Down")));
    m_actions[Fill]->setShortcut(QKeySequence(QStringLiteral("Ctrl+D")));
    connect(
        m_actions[Insert], &QAction::triggered, this, [this] { sltInsert(false); });
    connect(m_actions[Append], &QAction::triggered, this, [this] { sltInsert(true); });
    connect(m_actions[Remove], &QAction::triggered, this, &QlumArrayPage::sltRemove);
    connect(
        m_actions[Up], &QAction::triggered, this, [this] { sltMove(true); });
    connect(m_actions[Down], &QAction::triggered, this, [this] { sltMove(false); });
    connect(m_actions[Fill], &QAction::triggered, this, &QlumArrayPage::sltFill);
    connect(
        m_actions[Ascending], &QAction::triggered, this, [this] { sltSort(Qt::AscendingOrder); });
    connect(m_actions[Descending], &QAction::triggered, this, [this] { sltSort(Qt::DescendingOrder); });
    connect(m_actions[Copy], &QAction::triggered, this, &QlumArrayPage::sltCopy);
    connect(m_actions[Paste], &QAction::triggered, this, &QlumArrayPage::sltPaste);
    connect(m_actions[Open], &QAction::triggered, this, [this] { sltOpen(m_view->currentIndex()); });

    const QList<QAction*> all =
        m_actions.list({Insert, Append, Remove, Up, Down, Fill, Ascending, Descending, Copy, Paste, Open});
    auto* tools = new QToolBar(this);
    tools->setObjectName(QStringLiteral("arrayTools"));
    tools->setAccessibleName(tr("Array"));
    tools->addActions(all);
    m_view->addActions(all);
    return tools;
}

// ---- selection

std::vector<QlumArrayPage::Range> QlumArrayPage::selected() const
{
    std::vector<Range> ranges;
    for (const QItemSelectionRange& range : m_view->selectionModel()->selection())
        ranges.push_back({range.top(), range.height()});
    std::sort(ranges.begin(), ranges.end(),
              [](const Range& left, const Range& right) { return left.first < right.first; });
    std::vector<Range> joined;
    for (const Range& range : ranges) {
        if (joined.empty() || range.first > joined.back().first + joined.back().count)
            joined.push_back(range);
        else
            joined.back().count =
                std::max(joined.back().count, range.first + range.count - joined.back().first);
    }
    return joined;
}

QlumArrayPage::Range QlumArrayPage::sortedRange() const
{
    const std::vector<Range> ranges = selected();
    return ranges.size() == 1 && ranges.front().count > 1 ? ranges.front() : Range{0, m_model->rowCount()};
}

void QlumArrayPage::select(int first, int count)
{
    if (count <= 0 || first < 0 || first + count > m_model->rowCount())
        return;
    const QModelIndex top = m_model->index(first, 0);
    m_view->selectionModel()->setCurrentIndex(top, QItemSelectionModel::NoUpdate);
    m_view->selectionModel()->select(QItemSelection(top, m_model->index(first + count - 1, 0)),
                                     QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_view->scrollTo(top);
}

void QlumArrayPage::updateActions()
{
    const std::vector<Range> ranges = selected();
    const bool canEdit = !m_model->isReadOnly();
    const int rows = m_model->rowCount();
    const bool isOne = ranges.size() == 1;
    for (const int id : {Insert, Append, Paste})
        m_actions[id]->setEnabled(canEdit);
    m_actions[Remove]->setEnabled(canEdit && !ranges.empty());
    m_actions[Up]->setEnabled(canEdit && isOne && ranges.front().first > 0);
    m_actions[Down]->setEnabled(canEdit && isOne && ranges.front().first + ranges.front().count < rows);
    m_actions[Fill]->setEnabled(canEdit && (ranges.size() > 1 || (isOne && ranges.front().count > 1)));
    for (const int id : {Ascending, Descending})
        m_actions[id]->setEnabled(canEdit && rows > 1 &&
                                  QlumElementList::hasOrder(m_model->elements().type()));
    m_actions[Copy]->setEnabled(!ranges.empty());
    m_actions[Open]->setEnabled(isOne && ranges.front().count == 1);
}

// ---- editing

void QlumArrayPage::sltInsert(bool atEnd)
{
    const std::vector<Range> ranges = selected();
    const int end = m_model->rowCount();
    const int count = atEnd || ranges.empty() ? 1 : ranges.front().count;
    const int before = atEnd || ranges.empty() ? end : ranges.front().first;
    if (m_model->insertRows(before, count))
        select(before, count);
}

void QlumArrayPage::sltRemove()
{
    const std::vector<Range> ranges = selected();
    for (auto range = ranges.rbegin(); range != ranges.rend(); ++range)
        m_model->removeRows(range->first, range->count);
    if (!ranges.empty())
        select(std::min(ranges.front().first, m_model->rowCount() - 1), 1);
}

void QlumArrayPage::sltMove(bool up)
{
    const std::vector<Range> ranges = selected();
    if (ranges.size() != 1)
        return;
    const Range range = ranges.front();
    if (m_model->moveRows({}, range.first, range.count, {},
                          up ? range.first - 1 : range.first + range.count + 1))
        select(range.first + (up ? -1 : 1), range.count);
}

void QlumArrayPage::sltFill()
{
    const std::vector<Range> ranges = selected();
    if (ranges.empty())
        return;
    const UaVariant value = m_model->elements().at(ranges.front().first);
    for (const Range& range : ranges)
        m_model->fill(range.first, range.count, value);
}

void QlumArrayPage::sltSort(Qt::SortOrder order)
{
    const QlumWaitCursor wait;
    const Range range = sortedRange();
    m_model->sortElements(range.first, range.count, order);
}

void QlumArrayPage::sltResize(int length)
{
    const int rows = m_model->rowCount();
    if (length > rows)
        m_model->insertRows(rows, length - rows);
    else
        m_model->removeRows(length, rows - length);
    updateHead(); // the length stays when there is no value to insert
}

// ---- clipboard

void QlumArrayPage::sltCopy()
{
    const QlumWaitCursor wait;
    QStringList texts;
    for (const Range& range : selected())
        texts.append(m_model->textOf(range.first, range.count));
    if (!texts.isEmpty()) // what was copied before is worth more than nothing
        QGuiApplication::clipboard()->setText(texts.join(QLatin1Char('\n')));
}

void QlumArrayPage::sltPaste()
{
    if (m_model->isReadOnly())
        return;
    const QlumWaitCursor wait;
    int ignoredColumns = 0;
    const QStringList cells = columnOf(qlumTabbedRows(QGuiApplication::clipboard()->text()), ignoredColumns);
    const std::vector<Range> ranges = selected();
    const int first = ranges.empty() ? m_model->rowCount() : ranges.front().first;
    const QlumPasteReport report = m_model->paste(first, cells);
    if (report.taken > 0)
        select(first, static_cast<int>(cells.size()));
    messages()->dismiss();
    const QlumMessage message = qlumPasteMessage(
        report, ignoredColumns > 0 ? tr("Only the first column goes into an array.") : QString());
    if (!message.what.isEmpty())
        messages()->tell(message);
}

// ---- elements of several parts

void QlumArrayPage::sltOpen(const QModelIndex& index)
{
    if (!index.isValid())
        return;
    Putter put;
    if (!m_model->isReadOnly())
        put = [this](const QModelIndex& place, const UaVariant& part) {
            return m_model->setData(place.siblingAtColumn(QlumArrayModel::ValueColumn),
                                    QVariant::fromValue(part), QlumArrayModel::ValueRole);
        };
    openPart(index, m_model->elementContext(), m_model->elements().at(index.row()), put);
}
