#pragma once
#include <QAbstractScrollArea>
#include <QColor>
#include <QEvent>
#include <QFocusEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPoint>
#include <QPointF>
#include <QRectF>
#include <QResizeEvent>
#include <QString>
#include <QWheelEvent>
#include <QWidget>

#include <optional>

/// Shows an image at any size: fitted, pixel by pixel, or so large that single pixels are seen. It is moved
/// by the mouse or by keys, and tells which pixel is under the mouse. GUI thread.
class QlumImageCanvas : public QAbstractScrollArea
{
    Q_OBJECT
public:
    /// Screen pixels for a pixel of the image, at most.
    static constexpr double largestZoom = 64;

    /// Empty, and fitted.
    explicit QlumImageCanvas(QWidget* parent = nullptr);

    /// Zoom and place stay where the size is the same. The overview, of the same picture, is drawn where it
    /// is large enough; null for none.
    void setImage(const QImage& image, const QImage& overview);
    /// As large as there is room, and never larger than one to one.
    void fit();
    /// Screen pixels for a pixel of the image; the middle stays where it is.
    void setZoom(double zoom);
    /// The next step.
    void zoomIn();
    /// The step before.
    void zoomOut();
    /// Whether the size follows the room.
    [[nodiscard]] bool isFitted() const { return m_isFitted; }
    /// Screen pixels for a pixel of the image.
    [[nodiscard]] double zoom() const;
    /// The pixel there, of the viewport; nothing beside the image.
    [[nodiscard]] std::optional<QPoint> pixelAt(const QPointF& place) const;
    /// Where and what a pixel is: "x 12, y 34: #ff8000 (255, 128, 0)".
    [[nodiscard]] QString pixelText(const QPoint& pixel) const;

signals:
    /// It has another size on screen.
    void zoomChanged();
    /// What is under the mouse; empty for nothing.
    void pixelHovered(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void zoomAt(double zoom, const QPointF& place);
    void step(int direction, const QPointF& place);
    void showBars();
    /// Of a pixel of the image, in the widget's own units.
    [[nodiscard]] double scale() const;
    [[nodiscard]] QRectF place() const;
    void drawGround(QPainter& painter, const QRectF& place) const;
    void drawGrid(QPainter& painter, const QRectF& place) const;
    void tellPixel(const QPointF& place);

    QImage m_image;
    QImage m_overview;
    bool m_isFitted = true;
    double m_zoom = 1;
    QPoint m_dragged; ///< where the mouse was
    bool m_isDragged = false;
};
