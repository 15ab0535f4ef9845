#pragma once
#include <QSize>

class QDockWidget;

/// Says how large a dock wants to be until the user arranges the window; a width or height of 0 leaves that
/// to the main window. Plugins call it before their init() returns.
void qlumSetInitialDockSize(QDockWidget* dock, const QSize& size);
/// What was said of the dock; 0 for both when nothing was.
[[nodiscard]] QSize qlumInitialDockSize(const QDockWidget* dock);
