#include <plugins/imageviewer/qlumimagecanvas.h>

#include <QBrush>
#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QResizeEvent>
#include <QScrollBar>
#include <QSize>
#include <QSizeF>
#include <QTransform>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>

namespace {
constexpr double gridFrom = 12; // screen pixels for one of the image
constexpr double smallestZoom = 1.0 / 64;
constexpr std::array<double, 19> zoomSteps{1.0 / 64, 1.0 / 32, 1.0 / 16, 1.0 / 8, 1.0 / 6, 0.25, 1.0 / 3,
                                           0.5,      0.75,     1,        1.5,     2,       3,    4,
                                           8,        12,       16,       32,      64};
} // namespace

QlumImageCanvas::QlumImageCanvas(QWidget* parent) : QAbstractScrollArea(parent)
{
    setObjectName(QStringLiteral("imageCanvas"));
    setAccessibleName(tr("Image"));
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    viewport()->setMouseTracking(true);
    viewport()->setBackgroundRole(QPalette::Dark);
    viewport()->setAutoFillBackground(true);
    setWhatsThis(
        tr("The image. Turn the wheel to zoom where the mouse is, drag to move it, double-click to "
           "change between the whole image and its pixels. Keys: + and - zoom, 0 fits, 1 shows it one "
           "to one, the arrows move it."));
}

// ---- size

void QlumImageCanvas::setImage(const QImage& image, const QImage& overview)
{
    const bool isSameSize = image.size() == m_image.size();
    m_image = image;
    m_overview = overview;
    if (!isSameSize) {
        showBars();
        emit zoomChanged();
    }
    viewport()->update();
}

void QlumImageCanvas::fit()
{
    m_isFitted = true;
    showBars();
    viewport()->update();
    emit zoomChanged();
}

double QlumImageCanvas::zoom() const
{
    if (!m_isFitted || m_image.isNull())
        return m_zoom;
    const QSizeF room = QSizeF(maximumViewportSize()) * devicePixelRatioF();
    return std::min({1.0, room.width() / m_image.width(), room.height() / m_image.height()});
}

double QlumImageCanvas::scale() const
{
    return zoom() / devicePixelRatioF();
}

void QlumImageCanvas::setZoom(double zoom)
{
    zoomAt(zoom, QRectF(viewport()->rect()).center());
}

void QlumImageCanvas::zoomIn()
{
    step(1, QRectF(viewport()->rect()).center());
}

void QlumImageCanvas::zoomOut()
{
    step(-1, QRectF(viewport()->rect()).center());
}

void QlumImageCanvas::step(int direction, const QPointF& place)
{
    constexpr double almost = 1.001;
    const double now = zoom();
    if (direction > 0) {
        const auto next = std::upper_bound(zoomSteps.begin(), zoomSteps.end(), now * almost);
        zoomAt(next == zoomSteps.end() ? largestZoom : *next, place);
    } else {
        const auto next = std::lower_bound(zoomSteps.begin(), zoomSteps.end(), now / almost);
        zoomAt(next == zoomSteps.begin() ? smallestZoom : *(next - 1), place);
    }
}

// The pixel under that place stays under it.
void QlumImageCanvas::zoomAt(double zoom, const QPointF& at)
{
    const QPointF pixel = (at - place().topLeft()) / scale();
    m_isFitted = false;
    m_zoom = std::clamp(zoom, smallestZoom, largestZoom);
    showBars();
    const QPointF wanted = pixel * scale() - at;
    horizontalScrollBar()->setValue(int(std::lround(wanted.x())));
    verticalScrollBar()->setValue(int(std::lround(wanted.y())));
    viewport()->update();
    emit zoomChanged();
}

void QlumImageCanvas::showBars()
{
    const QSizeF whole = QSizeF(m_image.size()) * scale();
    const QSize room = m_isFitted ? maximumViewportSize() : viewport()->size();
    const auto set = [this](QScrollBar* bar, double size, int page) {
        bar->setPageStep(page);
        bar->setSingleStep(std::max(1, page / 20));
        bar->setRange(0, m_isFitted ? 0 : std::max(0, int(std::ceil(size)) - page));
    };
    set(horizontalScrollBar(), whole.width(), room.width());
    set(verticalScrollBar(), whole.height(), room.height());
}

// In the middle while there is room.
QRectF QlumImageCanvas::place() const
{
    const QSizeF whole = QSizeF(m_image.size()) * scale();
    const QSizeF room = viewport()->size();
    const double x = whole.width() <= room.width() ? std::floor((room.width() - whole.width()) / 2)
                                                   : -horizontalScrollBar()->value();
    const double y = whole.height() <= room.height() ? std::floor((room.height() - whole.height()) / 2)
                                                     : -verticalScrollBar()->value();
    return {QPointF(x, y), whole};
}

void QlumImageCanvas::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    showBars();
    if (m_isFitted)
        emit zoomChanged();
}

// ---- painting

void QlumImageCanvas::paintEvent(QPaintEvent* event)
{
    if (m_image.isNull())
        return;
    QPainter painter(viewport());
    const QRectF all = place();
    const QRectF seen = all & QRectF(event->rect());
    if (seen.isEmpty())
        return;
    painter.setClipRect(seen);
    if (m_image.hasAlphaChannel())
        drawGround(painter, seen);
    const double now = zoom();
    const bool isOverview = !m_overview.isNull() && now * m_image.width() <= double(m_overview.width());
    const QImage& image = isOverview ? m_overview : m_image;
    painter.setRenderHint(QPainter::SmoothPixmapTransform, now < 1);
    const double across = image.width() / all.width(), down = image.height() / all.height();
    const QRectF part((seen.x() - all.x()) * across, (seen.y() - all.y()) * down, seen.width() * across,
                      seen.height() * down);
    painter.drawImage(seen, image, part);
    if (now >= gridFrom)
        drawGrid(painter, all);
}

// What lies behind transparent pixels.
void QlumImageCanvas::drawGround(QPainter& painter, const QRectF& seen) const
{
    constexpr int side = 8;
    QImage tile(2 * side, 2 * side, QImage::Format_RGB32);
    tile.fill(QColor(Qt::white));
    QPainter squares(&tile);
    const QColor grey(Qt::lightGray);
    squares.fillRect(0, 0, side, side, grey);
    squares.fillRect(side, side, side, side, grey);
    squares.end();
    painter.fillRect(seen, QBrush(tile));
}

// Lines between the pixels, of a colour that is seen on all of them.
void QlumImageCanvas::drawGrid(QPainter& painter, const QRectF& all) const
{
    constexpr int opacity = 90;
    const double side = scale();
    painter.setPen(QColor(128, 128, 128, opacity));
    const QRectF seen = all & QRectF(viewport()->rect());
    for (double x = all.x() + std::ceil((seen.left() - all.x()) / side) * side; x <= seen.right(); x += side)
        painter.drawLine(QPointF(x, seen.top()), QPointF(x, seen.bottom()));
    for (double y = all.y() + std::ceil((seen.top() - all.y()) / side) * side; y <= seen.bottom(); y += side)
        painter.drawLine(QPointF(seen.left(), y), QPointF(seen.right(), y));
}

// ---- mouse and keys

void QlumImageCanvas::wheelEvent(QWheelEvent* event)
{
    if (event->angleDelta().y() == 0 || m_image.isNull())
        return event->ignore();
    step(event->angleDelta().y() > 0 ? 1 : -1, event->position());
    event->accept();
}

void QlumImageCanvas::mousePressEvent(QMouseEvent* event)
{
    m_isDragged = event->button() == Qt::LeftButton;
    m_dragged = event->pos();
    if (m_isDragged)
        viewport()->setCursor(Qt::ClosedHandCursor);
}

void QlumImageCanvas::mouseMoveEvent(QMouseEvent* event)
{
    if (m_isDragged) {
        const QPoint moved = event->pos() - m_dragged;
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
        m_dragged = event->pos();
    }
    tellPixel(event->localPos());
}

void QlumImageCanvas::mouseReleaseEvent(QMouseEvent* event)
{
    QAbstractScrollArea::mouseReleaseEvent(event);
    m_isDragged = false;
    viewport()->unsetCursor();
}

void QlumImageCanvas::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (m_isFitted)
        zoomAt(1, event->localPos());
    else
        fit();
}

void QlumImageCanvas::leaveEvent(QEvent* event)
{
    QAbstractScrollArea::leaveEvent(event);
    emit pixelHovered(QString());
}

void QlumImageCanvas::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Plus:
        return zoomIn();
    case Qt::Key_Minus:
        return zoomOut();
    case Qt::Key_0:
        return fit();
    case Qt::Key_1:
        return setZoom(1);
    default:
        return QAbstractScrollArea::keyPressEvent(event);
    }
}

// ---- pixels

std::optional<QPoint> QlumImageCanvas::pixelAt(const QPointF& at) const
{
    if (m_image.isNull())
        return std::nullopt;
    const QPointF pixel = (at - place().topLeft()) / scale();
    const QPoint whole(int(std::floor(pixel.x())), int(std::floor(pixel.y())));
    return m_image.rect().contains(whole) ? std::optional(whole) : std::nullopt;
}

QString QlumImageCanvas::pixelText(const QPoint& pixel) const
{
    const QColor color = m_image.pixelColor(pixel);
    QString text = tr("x %1, y %2: %3 (%4, %5, %6)")
                       .arg(pixel.x())
                       .arg(pixel.y())
                       .arg(color.name())
                       .arg(color.red())
                       .arg(color.green())
                       .arg(color.blue());
    if (m_image.hasAlphaChannel())
        text += tr(", alpha %1").arg(color.alpha());
    if (m_image.format() == QImage::Format_Indexed8)
        text += tr(", index %1").arg(m_image.pixelIndex(pixel));
    return text;
}

void QlumImageCanvas::tellPixel(const QPointF& at)
{
    const std::optional<QPoint> pixel = pixelAt(at);
    emit pixelHovered(pixel ? pixelText(*pixel) : QString());
}
