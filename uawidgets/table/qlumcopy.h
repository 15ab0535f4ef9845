// Copying from trees and tables.
#pragma once

class QAbstractItemView;

/// Adds "Copy" (the selected rows, cells separated by tabs) to the view's context menu and shortcuts, and the
/// same for the current cell, the current row, and the selection with the titles of its columns.
void qlumAddCopyActions(QAbstractItemView* view);
