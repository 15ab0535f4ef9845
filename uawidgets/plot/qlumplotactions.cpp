#include <uawidgets/plot/qlumplotactions_p.h>

#include <app/api/qlumactiontable.h>

#include <QAction>
#include <QKeySequence>
#include <QObject>
#include <QtGlobal>

#include <utility>

namespace {

namespace A = QlumPlotAction;

#define PLOT_TEXT(text) QT_TRANSLATE_NOOP("QlumPlot", text)
constexpr QlumActionRow plotActionRows[] = {
    {A::Back, "plotBack", PLOT_TEXT("&Back"), "", QKeySequence::Back, PLOT_TEXT("Back to the View Before"),
     PLOT_TEXT("<b>Back</b><br>Shows what was shown before the last zoom or move.")},
    {A::Forward, "plotForward", PLOT_TEXT("&Forward"), "", QKeySequence::Forward, PLOT_TEXT("Forward Again"),
     PLOT_TEXT("<b>Forward</b><br>Takes the last Back back.")},
    {A::ZoomIn, "plotZoomIn", PLOT_TEXT("Zoom &In"), "", QKeySequence::ZoomIn, "",
     PLOT_TEXT(
         "<b>Zoom In</b><br>Shows half of the time. Dragging a rectangle zooms to it; the wheel zooms around "
         "the pointer.")},
    {A::ZoomOut, "plotZoomOut", PLOT_TEXT("Zoom &Out"), "", QKeySequence::ZoomOut, "",
     PLOT_TEXT("<b>Zoom Out</b><br>Shows twice the time.")},
    {A::ShowAll, "plotShowAll", PLOT_TEXT("Show &All"), "", qlumNoKey, PLOT_TEXT("Show All Samples"),
     PLOT_TEXT("<b>Show All</b><br>Shows all samples of the visible curves. A double click does the same.")},
    {A::Left, "plotLeft", PLOT_TEXT("&Earlier"), "", qlumNoKey, PLOT_TEXT("Show Earlier Samples"),
     PLOT_TEXT("<b>Earlier</b><br>Moves the view to earlier times. Dragging with Shift or the middle button "
               "moves it "
               "freely.")},
    {A::Right, "plotRight", PLOT_TEXT("&Later"), "", qlumNoKey, PLOT_TEXT("Show Later Samples"),
     PLOT_TEXT("<b>Later</b><br>Moves the view to later times.")},
    {A::Follow, "plotFollow", PLOT_TEXT("Follow &Newest"), "", qlumNoKey,
     PLOT_TEXT("Keep the Newest Samples in Sight"),
     PLOT_TEXT("<b>Follow Newest</b><br>Keeps the newest samples in sight, until you look at another part.")},
    {A::Cursors, "plotCursors", PLOT_TEXT("&Cursors"), "", qlumNoKey, PLOT_TEXT("Measure with Two Cursors"),
     PLOT_TEXT("<b>Cursors</b><br>Two lines to drag, or to move with Ctrl and the arrow keys (with Shift the "
               "second "
               "one), and a table of the values there with their differences.")},
    {A::CursorALeft, "plotCursorALeft", PLOT_TEXT("Cursor A Left"), "", qlumNoKey, "",
     PLOT_TEXT("Moves cursor A to the left.")},
    {A::CursorARight, "plotCursorARight", PLOT_TEXT("Cursor A Right"), "", qlumNoKey, "",
     PLOT_TEXT("Moves cursor A to the right.")},
    {A::CursorBLeft, "plotCursorBLeft", PLOT_TEXT("Cursor B Left"), "", qlumNoKey, "",
     PLOT_TEXT("Moves cursor B to the left.")},
    {A::CursorBRight, "plotCursorBRight", PLOT_TEXT("Cursor B Right"), "", qlumNoKey, "",
     PLOT_TEXT("Moves cursor B to the right.")},
    {A::Utc, "plotUtc", PLOT_TEXT("Times in &UTC"), "", qlumNoKey, PLOT_TEXT("Show Times in UTC"),
     PLOT_TEXT("<b>Times in UTC</b><br>Shows UTC instead of local time.")},
    {A::UsualRanges, "plotUsualRanges", PLOT_TEXT("Usual &Ranges"), "", qlumNoKey,
     PLOT_TEXT("Value Axes over the Usual Ranges"),
     PLOT_TEXT(
         "<b>Usual Ranges</b><br>Value axes show the ranges that servers give for their values, and not "
         "only what is there.")},
    {A::Copy, "plotCopy", PLOT_TEXT("Cop&y Picture"), "", qlumNoKey, PLOT_TEXT("Copy Picture"),
     PLOT_TEXT("<b>Copy Picture</b><br>Puts the plot as a picture into the clipboard.")},
    {A::Export, "plotExport", PLOT_TEXT("E&xport..."), "", qlumNoKey, PLOT_TEXT("Export Picture or Samples"),
     PLOT_TEXT("<b>Export</b><br>Writes a picture (PNG, SVG), or the samples of the visible curves (CSV).")},
};

constexpr QlumActionRow barPlotActionRows[] = {
    {A::Export, "plotExport", PLOT_TEXT("E&xport..."), "", qlumNoKey, PLOT_TEXT("Export Picture or Figures"),
     PLOT_TEXT("<b>Export</b><br>Writes a picture (PNG, SVG), or the figures (CSV).")},
};
#undef PLOT_TEXT

constexpr std::pair<A::Id, int> plotShortcuts[] = {
    {A::ShowAll, Qt::Key_Home},
    {A::Left, Qt::Key_Left},
    {A::Right, Qt::Key_Right},
    {A::Follow, Qt::Key_End},
    {A::CursorALeft, static_cast<int>(Qt::CTRL) | Qt::Key_Left},
    {A::CursorARight, static_cast<int>(Qt::CTRL) | Qt::Key_Right},
    {A::CursorBLeft, static_cast<int>(Qt::CTRL) | static_cast<int>(Qt::SHIFT) | Qt::Key_Left},
    {A::CursorBRight, static_cast<int>(Qt::CTRL) | static_cast<int>(Qt::SHIFT) | Qt::Key_Right},
};

} // namespace

QlumActionTable qlumPlotActions(QObject* parent)
{
    QlumActionTable actions(plotActionRows, "QlumPlot", parent);
    for (const auto& [id, key] : plotShortcuts)
        actions[id]->setShortcut(QKeySequence(key));
    for (const QlumActionRow& row : plotActionRows) // other views of the window have the same keys
        actions[row.id]->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    for (const int id : {A::Follow, A::Cursors, A::Utc, A::UsualRanges})
        actions[id]->setCheckable(true);
    return actions;
}

QlumActionTable qlumBarPlotActions(QObject* parent)
{
    return QlumActionTable(barPlotActionRows, "QlumPlot", parent);
}
