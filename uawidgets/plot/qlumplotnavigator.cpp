#include <uawidgets/plot/qlumplotnavigator.h>

#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcursors.h>
#include <uawidgets/plot/qlumplotview.h>

#include <QEvent>
#include <QMouseEvent>
#include <QObject>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QRubberBand>
#include <QString>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int smallestDrag = 5;           // pixels; less is a click
constexpr unsigned long wheelPause = 700; // ms; turns of the wheel closer than that are one gesture
constexpr double zoomOfNotch = 0.8;       // of the times that are shown
constexpr double panOfNotch = 0.1;

} // namespace

QlumPlotNavigator::QlumPlotNavigator(QlumPlotArea* area, QlumPlotCursors* cursors, QObject* parent)
    : QObject(parent), m_area(area), m_cursors(cursors),
      m_band(new QRubberBand(QRubberBand::Rectangle, area->canvas()))
{
    m_band->setObjectName(QStringLiteral("zoomRectangle"));
    area->canvas()->installEventFilter(this);
    area->canvas()->setMouseTracking(true);
}

bool QlumPlotNavigator::go(const QlumPlotView& view, bool goesOn)
{
    if (view.bounded() == m_area->view())
        return false;
    m_history.leave(m_area->view(), goesOn);
    if (!goesOn)
        m_wheelTime.reset();
    m_area->setView(view);
    emit navigated();
    return true;
}

void QlumPlotNavigator::goBack()
{
    if (!m_history.hasBack())
        return;
    m_wheelTime.reset();
    m_area->setView(m_history.back(m_area->view()));
    emit navigated();
}

void QlumPlotNavigator::goForward()
{
    if (!m_history.hasForward())
        return;
    m_area->setView(m_history.forward(m_area->view()));
    emit navigated();
}

bool QlumPlotNavigator::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        return press(static_cast<QMouseEvent*>(event));
    case QEvent::MouseMove:
        return move(static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonRelease:
        return release(static_cast<QMouseEvent*>(event));
    case QEvent::MouseButtonDblClick:
        go(m_area->wholeView());
        return true;
    case QEvent::Wheel:
        return wheel(static_cast<QWheelEvent*>(event));
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool QlumPlotNavigator::press(const QMouseEvent* event)
{
    const bool left = event->button() == Qt::LeftButton, middle = event->button() == Qt::MiddleButton;
    if (m_gesture != Gesture::None || (!left && !middle))
        return false;
    m_pressed = event->pos();
    m_moved = m_panned = false;
    const std::optional<int> cursor = left ? m_cursors->cursorAt(event->pos().x()) : std::nullopt;
    if (cursor) {
        m_gesture = Gesture::Cursor;
        m_cursor = *cursor;
    } else {
        m_gesture =
            middle || (event->modifiers() & Qt::ShiftModifier) != 0 ? Gesture::Pan : Gesture::Rectangle;
    }
    m_area->canvas()->setFocus(Qt::MouseFocusReason);
    return true;
}

bool QlumPlotNavigator::move(const QMouseEvent* event)
{
    if (m_gesture == Gesture::None) {
        m_area->canvas()->setCursor(m_cursors->cursorAt(event->pos().x()) ? Qt::SizeHorCursor
                                                                          : Qt::CrossCursor);
        return false;
    }
    if (m_gesture == Gesture::Cursor) {
        m_cursors->setTime(m_cursor, m_area->timeAt(event->pos().x()));
        return true;
    }
    if (!m_moved && (event->pos() - m_pressed).manhattanLength() < smallestDrag)
        return true;
    if (m_gesture == Gesture::Rectangle) {
        m_band->setGeometry(QRect(m_pressed, event->pos()).normalized());
        m_band->show();
    } else {
        m_panned = go(m_area->viewMoved(event->pos() - m_pressed), m_panned) || m_panned;
        m_pressed = event->pos();
    }
    m_moved = true;
    return true;
}

bool QlumPlotNavigator::release(const QMouseEvent* event)
{
    if (m_gesture == Gesture::None)
        return false;
    const bool zooms = m_gesture == Gesture::Rectangle && m_moved;
    m_gesture = Gesture::None;
    m_band->hide();
    const QRect rectangle = QRect(m_pressed, event->pos()).normalized().intersected(m_area->canvas()->rect());
    if (zooms && rectangle.width() >= smallestDrag)
        go(m_area->viewUnder(QRectF(rectangle)));
    return true;
}

bool QlumPlotNavigator::wheel(const QWheelEvent* event)
{
    // with Alt Qt turns a wheel's vertical turns into horizontal ones; a touch pad sends both
    const double notches =
        (event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x()) / 120.0;
    const bool pans = (event->modifiers() & Qt::ShiftModifier) != 0 || event->angleDelta().y() == 0;
    const bool goesOn = m_wheelTime && event->timestamp() - *m_wheelTime < wheelPause;
    const double place = event->position().x() / std::max(1, m_area->canvas()->width());
    go(pans ? m_area->view().panned(-notches * panOfNotch)
            : m_area->view().zoomed(std::pow(zoomOfNotch, notches), place),
       goesOn);
    m_wheelTime = event->timestamp();
    return true;
}
