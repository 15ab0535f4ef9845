// A plot as Qwt brings it, to measure ours against. Apart, because Qwt's headers of curves are older than the
// language of all other sources.
#pragma once
#include <QPointF>
#include <QVector>

#include <memory>
#include <vector>

/// Curves that are given as points.
class BarePlot
{
public:
    BarePlot(int curves, int width, int height);
    ~BarePlot();

    /// Shows the points of each curve between two x, and paints; the points must stay.
    void show(const std::vector<QVector<QPointF>>& points, double from, double to);

private:
    class Private;
    std::unique_ptr<Private> d;
};
