#include <uawidgets/qlumcopy.h>

#include <app/api/qlumactiontable.h>

#include <QAbstractItemView>
#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QIcon>
#include <QItemSelectionModel>
#include <QKeySequence>
#include <QMap>
#include <QModelIndex>
#include <QModelIndexList>
#include <QObject>
#include <QString>

namespace {
constexpr QlumActionRow copyRows[] = {
    {0, "copy", QT_TRANSLATE_NOOP("QlumCopy", "&Copy"), "copy.png", QKeySequence::Copy,
     QT_TRANSLATE_NOOP("QlumCopy", "Copy the selected rows"),
     QT_TRANSLATE_NOOP("QlumCopy", "<b>Copy</b><br>Puts the text of the selected rows on the clipboard, one "
                                   "line for each row and a tab "
                                   "between the columns."),
     Qt::WidgetShortcut},
};

// Rows in the order of the view's model, not in that of the user's clicks.
QString selectedText(const QAbstractItemView* view)
{
    QMap<QModelIndex, bool> cells;
    const QItemSelectionModel* selection = view->selectionModel();
    for (const QModelIndex& index : selection ? selection->selectedIndexes() : QModelIndexList())
        cells.insert(index, true);
    QString text;
    QModelIndex previous;
    for (auto it = cells.keyBegin(); it != cells.keyEnd(); ++it) {
        if (previous.isValid())
            text += previous.row() == it->row() && previous.parent() == it->parent() ? QLatin1Char('\t')
                                                                                     : QLatin1Char('\n');
        text += it->data(Qt::DisplayRole).toString();
        previous = *it;
    }
    return text;
}
} // namespace

void qlumAddCopyActions(QAbstractItemView* view)
{
    const QlumActionTable actions(copyRows, "QlumCopy", view);
    QAction* copy = actions[0];
    QObject::connect(copy, &QAction::triggered, view,
                     [view] { QGuiApplication::clipboard()->setText(selectedText(view)); });
    view->addAction(copy);
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
}
