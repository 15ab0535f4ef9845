// What the pointer is at, beside it.
#pragma once
#include <uawidgets/plot/qlumsamplestore.h>

#include <QEvent>
#include <QFont>
#include <QMouseEvent>
#include <QPointF>
#include <QRect>
#include <QString>
#include <qwt_plot_picker.h>
#include <qwt_text.h>

#include <cstddef>
#include <optional>

class QColor;
class QPoint;
class QlumPlotArea;
class QlumPlotCurve;

/// Follows the pointer over a plot with a text: near a curve its name, value and time, elsewhere value and
/// time alone. While it catches values it is the nearest sample that is told, else the place itself. Belongs
/// to the area's canvas. GUI thread.
class QlumPlotPicker : public QwtPlotPicker
{
    Q_OBJECT
public:
    /// The area must outlive the picker.
    explicit QlumPlotPicker(QlumPlotArea* area);

    /// A sample of a visible curve.
    struct Catch
    {
        QlumPlotCurve* curve = nullptr; ///< of the area
        std::size_t index = 0;          ///< of the sample in the curve's store
        QPointF place;                  ///< on the canvas
    };

    /// Whether samples are caught.
    void setCatching(bool catches) { m_catches = catches; }
    [[nodiscard]] bool isCatching() const { return m_catches; } ///< as set
    /// The sample nearest to a place of the canvas; nothing when none with a value is near.
    [[nodiscard]] std::optional<Catch> nearest(const QPointF& place) const;
    /// The curve that runs through the neighbourhood of a place, and its value there.
    [[nodiscard]] QlumPlotCurve* curveAt(const QPointF& place) const;
    /// What is told at a place of the canvas, as HTML; names are escaped.
    [[nodiscard]] QString textAt(const QPointF& place) const;

signals:
    /// The pointer is near a sample: its curve and index. Null away from all.
    void sampleNear(QlumPlotCurve* curve, quint64 index);

protected:
    /// The text on white.
    [[nodiscard]] QwtText trackerText(const QPoint& place) const override;
    /// Tells of the sample that the pointer has come to.
    void widgetMouseMoveEvent(QMouseEvent* event) override;
    /// The pointer is at nothing any more.
    void widgetLeaveEvent(QEvent* event) override;
    /// Beside the sample that is caught.
    [[nodiscard]] QRect trackerRect(const QFont& font) const override;

private:
    [[nodiscard]] QString timeText(double time) const;

    QlumPlotArea* m_area;
    bool m_catches = false;
};

/// The fragment: the name in its colour, then value and time, a line each, with a no-break space on both
/// sides. Without a name value and time alone.
[[nodiscard]] QString qlumTrackerText(const QString& name, const QColor& color, const QString& value,
                                      const QString& time);
