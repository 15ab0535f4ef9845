// The commands of a plot.
#pragma once
#include <app/api/qlumactiontable.h>

class QObject;

namespace QlumPlotAction {
enum Id {
    Back,
    Forward,
    ZoomIn,
    ZoomOut,
    ShowAll,
    Left,
    Right,
    Follow,
    Cursors,
    CursorALeft,
    CursorARight,
    CursorBLeft,
    CursorBRight,
    Utc,
    UsualRanges,
    Copy,
    Export
};
}

/// Those that have a place in menus have a row; parent is the plot.
[[nodiscard]] QlumActionTable qlumPlotActions(QObject* parent);

/// Export only, for plots of bars.
[[nodiscard]] QlumActionTable qlumBarPlotActions(QObject* parent);
