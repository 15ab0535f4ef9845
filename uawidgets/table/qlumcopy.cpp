#include <uawidgets/table/qlumcopy.h>

#include <app/api/qlumactiontable.h>
#include <uawidgets/table/qlumtabletext.h>

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>

#define TEXT(text) QT_TRANSLATE_NOOP("QlumCopy", text)

namespace {
enum Id { Selection, Cell, Row, WithTitles };

constexpr QlumActionRow copyRows[] = {
    {Selection, "copy", TEXT("&Copy"), "copy.png", QKeySequence::Copy, TEXT("Copy the selected rows"),
     TEXT("<b>Copy</b><br>Puts the text of the selected rows on the clipboard, one line for each row and a "
          "tab between the columns.")},
    {Cell, "copyCell", TEXT("Copy C&ell"), "", qlumNoKey, TEXT("Copy the text of the cell"),
     TEXT("<b>Copy Cell</b><br>Puts the text of the current cell on the clipboard.")},
    {Row, "copyRow", TEXT("Copy &Row"), "", qlumNoKey, TEXT("Copy the current row"),
     TEXT("<b>Copy Row</b><br>Puts the current row on the clipboard, a tab between the columns.")},
    {WithTitles, "copyWithTitles", TEXT("Copy with &Titles"), "", qlumNoKey,
     TEXT("Copy the selected rows with the titles of their columns"),
     TEXT("<b>Copy with Titles</b><br>As Copy, with a first line that names the columns.")},
};

QModelIndexList cellsOf(const QAbstractItemView* view, int id)
{
    const QItemSelectionModel* selection = view->selectionModel();
    if (!selection)
        return {};
    const QModelIndex current = selection->currentIndex();
    if (id == Selection || id == WithTitles)
        return selection->selectedIndexes();
    if (id == Cell || !current.isValid())
        return current.isValid() ? QModelIndexList{current} : QModelIndexList();
    QModelIndexList row;
    for (const int column : qlumShownColumns(view))
        row.append(current.siblingAtColumn(column));
    return row;
}
} // namespace

void qlumAddCopyActions(QAbstractItemView* view)
{
    const QlumActionTable actions(copyRows, "QlumCopy", view);
    for (const int id : {Selection, Cell, Row, WithTitles}) {
        QAction* action = actions[id];
        action->setShortcutContext(Qt::WidgetShortcut);
        QObject::connect(action, &QAction::triggered, view, [view, id] {
            const QModelIndexList cells = cellsOf(view, id);
            if (!cells.isEmpty()) // what was copied before is worth more than nothing
                QGuiApplication::clipboard()->setText(qlumTabbedText(view, cells, id == WithTitles));
        });
        view->addAction(action);
    }
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
}
