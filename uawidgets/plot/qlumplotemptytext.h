#pragma once
#include <QColor>
#include <QRectF>
#include <QString>
#include <qwt_plot_item.h>

class QPainter;
class QwtPlot;
class QwtScaleMap;

/// What stands in a plot that has nothing to draw: a headline and what can be done about it, in as many lines
/// as the plot's width needs. GUI thread.
class QlumPlotEmptyText : public QwtPlotItem
{
public:
    /// Above everything that is drawn in the plot, which outlives it.
    explicit QlumPlotEmptyText(QwtPlot& plot);

    /// Both are plain texts; the canvas says them to screen readers.
    void setText(const QString& headline, const QString& hint);
    /// Seen with the next replot().
    void setColor(const QColor& color) { m_color = color; }

    /// For Qwt.
    void draw(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
              const QRectF& canvasRect) const override;

private:
    QString m_text;
    QColor m_color;
};
