// Copying from trees and tables.
#pragma once

class QAbstractItemView;

/// Adds "Copy" (the selected rows, cells separated by tabs) to the view's context menu and shortcuts.
void qlumAddCopyActions(QAbstractItemView* view);
