#include <bench/bareplot.h>

#include <QColor>
#include <QCoreApplication>
#include <QPen>
#include <QPointF>
#include <QVector>
#include <qwt_plot.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>

#include <cstddef>
#include <memory>
#include <vector>

class BarePlot::Private
{
public:
    QwtPlot plot;
    std::vector<QwtPlotCurve*> curves; // the plot's
};

BarePlot::BarePlot(int curves, int width, int height) : d(std::make_unique<Private>())
{
    d->plot.resize(width, height);
    (new QwtPlotGrid)->attach(&d->plot);
    for (int i = 0; i < curves; ++i) {
        d->curves.push_back(new QwtPlotCurve);
        d->curves.back()->setPen(QPen(QColor::fromHsv(36 * i % 360, 200, 160), 0));
        d->curves.back()->attach(&d->plot);
    }
    d->plot.setAxisScale(QwtPlot::yLeft, -60, 60);
    d->plot.show();
}

BarePlot::~BarePlot() = default;

void BarePlot::show(const std::vector<QVector<QPointF>>& points, double from, double to)
{
    for (std::size_t i = 0; i < d->curves.size(); ++i)
        d->curves[i]->setSamples(points[i]);
    d->plot.setAxisScale(QwtPlot::xBottom, from, to);
    d->plot.replot();
    QCoreApplication::processEvents(); // paints canvas and axes
}
