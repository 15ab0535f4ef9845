// The drawing of a plot: curves over time, a value axis for each unit.
#pragma once
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/plot/qlumplotemptytext.h>
#include <uawidgets/plot/qlumplotview.h>

#include <QMap>
#include <QString>
#include <QTimeZone>
#include <qwt_interval.h>
#include <qwt_plot.h>
#include <qwt_scale_draw.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

class QEvent;
class QObject;
class QPainter;
class QPoint;
class QRectF;
class QResizeEvent;
class QWidget;
class QwtPlotGrid;
class QwtScaleMap;

/// Curves with a time axis below. Value axes are one for each unit, beside each other; they are drawn by
/// drawValueScales() to the left of the area, since Qwt has room for two. GUI thread.
class QlumPlotArea : public QwtPlot
{
    Q_OBJECT
public:
    /// In local time, without curves.
    explicit QlumPlotArea(QWidget* parent = nullptr);
    ~QlumPlotArea() override;

    /// The area keeps the curve until removeCurve().
    QlumPlotCurve* addCurve(const QString& name, const QString& unit, QlumCurveForm form,
                            std::size_t capacity);
    /// Deletes a curve of this area; its axis goes with the last curve of its unit.
    void removeCurve(QlumPlotCurve* curve);
    /// Those that are there, in the order in which they were added.
    [[nodiscard]] std::vector<QlumPlotCurve*> curves() const;

    [[nodiscard]] const QlumPlotView& view() const { return m_view; } ///< what is shown
    /// Shows another part.
    void setView(const QlumPlotView& view);
    /// All times that visible curves have, values as they need.
    [[nodiscard]] QlumPlotView wholeView() const;
    /// What lies under a rectangle of the canvas; values stay as they are when it is flat.
    [[nodiscard]] QlumPlotView viewUnder(const QRectF& canvasRect) const;
    /// The view moved by a distance in pixels of the canvas; values too, when they are chosen.
    [[nodiscard]] QlumPlotView viewMoved(const QPoint& distance) const;
    /// Milliseconds since 1970 under an x of the canvas.
    [[nodiscard]] double timeAt(double canvasX) const;
    /// The range that an axis shows; axes count from 0.
    [[nodiscard]] QwtInterval valueRange(std::size_t axis) const { return m_axes[axis].range; }
    /// Units of the axes, from the canvas outwards.
    [[nodiscard]] std::vector<QString> units() const;

    /// Whether value axes reach over the usual ranges of their curves, and not only over what is shown.
    void setShowsUsualRanges(bool shows);
    /// The zone of the time axis.
    void setTimeZone(const QTimeZone& zone);
    [[nodiscard]] const QTimeZone& timeZone() const { return m_zone; } ///< of the time axis
    /// What stands there while no curve has a sample. Plain texts.
    void setEmptyText(const QString& headline, const QString& hint);

    /// Ranges anew and all painted; call after samples were added.
    void refresh();
    /// Also tells that the value axes may have changed.
    void replot() override;
    /// Also tells that the value axes may have to move.
    void updateLayout() override;

    /// Room that the value axes take; pixels.
    [[nodiscard]] double valueScalesWidth() const;
    /// Draws the value axes to the left of a canvas. The vertical map is the canvas's, which leaves a margin
    /// free.
    void drawValueScales(QPainter* painter, const QRectF& canvas, const QwtScaleMap& verticalMap);

signals:
    /// Another part or other ranges are shown.
    void viewChanged();
    /// The value axes have to be painted, in another place or width.
    void scalesChanged();
    /// The palette is another; items of others take their colours from it.
    void colorsChanged();

protected:
    /// Colours follow the palette.
    void changeEvent(QEvent* event) override;
    /// The time axis has as many labels as there is room for.
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Axis
    {
        QString unit;
        std::unique_ptr<QwtScaleDraw> scale;
        QwtInterval range;
    };

    [[nodiscard]] std::size_t axisOf(const QString& unit);
    [[nodiscard]] QMap<qint64, QString> stateNames(const QString& unit) const;
    void removeUnusedAxes();
    void applyColors();
    void applyTimes();
    void applyRanges();
    void applyGrid();
    [[nodiscard]] QwtInterval neededRange(const QString& unit) const;
    [[nodiscard]] double axisWidth(const Axis& axis) const;

    QlumPlotView m_view;
    QTimeZone m_zone;
    std::vector<Axis> m_axes;
    std::vector<std::unique_ptr<QlumPlotCurve>> m_curves;
    std::unique_ptr<QwtPlotGrid> m_grid;
    std::unique_ptr<QlumPlotEmptyText> m_emptyText;
    int m_nextNumber = 0;
    bool m_showsUsualRanges = false;
};
