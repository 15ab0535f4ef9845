// Mouse and wheel on a plot: zoom, pan, cursors.
#pragma once
#include <uawidgets/plot/qlumplotview.h>

#include <QObject>
#include <QPoint>

#include <optional>

class QEvent;
class QMouseEvent;
class QRubberBand;
class QWheelEvent;
class QlumPlotArea;
class QlumPlotCursors;

/// Drag: zoom to the rectangle; with Shift, or the middle button: pan; at a cursor: move it. Wheel: zoom
/// times around the pointer, with Shift pan. Double click: all. Every gesture is one step of the history. GUI
/// thread.
class QlumPlotNavigator : public QObject
{
    Q_OBJECT
public:
    /// Both must outlive the navigator.
    QlumPlotNavigator(QlumPlotArea* area, QlumPlotCursors* cursors, QObject* parent);

    /// Shows another view, from which the user can go back; the small steps of a gesture go on from its
    /// first. False when it is the view of the moment.
    bool go(const QlumPlotView& view, bool goesOn = false);
    void goBack();    ///< does nothing without a view before
    void goForward(); ///< does nothing without a view that was left by going back
    [[nodiscard]] const QlumPlotHistory& history() const { return m_history; } ///< what there is to go to

    /// Takes the mouse's events of the canvas.
    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    /// The user chose another part to look at.
    void navigated();

private:
    enum class Gesture { None, Rectangle, Pan, Cursor };

    bool press(const QMouseEvent* event);
    bool move(const QMouseEvent* event);
    bool release(const QMouseEvent* event);
    bool wheel(const QWheelEvent* event);

    QlumPlotArea* m_area;
    QlumPlotCursors* m_cursors;
    QRubberBand* m_band;
    QlumPlotHistory m_history;
    Gesture m_gesture = Gesture::None;
    QPoint m_pressed;
    bool m_moved = false;
    bool m_panned = false;
    int m_cursor = 0;
    std::optional<unsigned long> m_wheelTime;
};
