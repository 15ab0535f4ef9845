// One behaviour for all tables and trees.
#pragma once
#include <QString>

class QAbstractItemView;
class QlumViewState;

/// What a table needs besides its model.
struct QlumTableOptions
{
    QString emptyText;              ///< plain; what to do to get rows
    QString fileName;               ///< proposed for exports, without ending
    QlumViewState* state = nullptr; ///< keeps widths, order and visibility of columns; null: the caller does
    QString stateKey;               ///< in the state's group
    bool copiesItself = false;      ///< the view has commands of its own for copying
};

/// Gives a table or tree that has its model what all have: copying, export, choice of columns, a text while
/// it is empty. A view that shows no titles of columns offers no choice of them. The actions are in the
/// view's context menu, behind those that it has already.
void qlumMakeTable(QAbstractItemView* view, const QlumTableOptions& options);

/// Asks for a file and writes what the view shows, with progress and Cancel.
void qlumExportCsv(QAbstractItemView* view, const QString& fileName);
