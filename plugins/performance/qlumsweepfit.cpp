#include <plugins/performance/qlumsweepfit.h>

#include <algorithm>
#include <cmath>

namespace {
constexpr double gain = 0.1; // what is less than that is not worth a larger call
}

std::optional<QlumSweepFit> qlumFitSweep(std::span<const QlumSweepPoint> points)
{
    double weights = 0;
    double sizes = 0;
    double durations = 0;
    for (const QlumSweepPoint& point : points)
        if (point.duration > 0) {
            const double weight = 1 / (point.duration * point.duration);
            weights += weight;
            sizes += weight * point.size;
            durations += weight * point.duration;
        }
    if (weights <= 0)
        return std::nullopt;
    const double meanSize = sizes / weights;
    const double meanDuration = durations / weights;
    double spread = 0;
    double together = 0;
    double differences = 0;
    for (const QlumSweepPoint& point : points)
        if (point.duration > 0) {
            const double weight = 1 / (point.duration * point.duration);
            spread += weight * (point.size - meanSize) * (point.size - meanSize);
            together += weight * (point.size - meanSize) * (point.duration - meanDuration);
            differences += weight * (point.duration - meanDuration) * (point.duration - meanDuration);
        }
    if (spread <= 0)
        return std::nullopt;
    QlumSweepFit fit;
    fit.each = together / spread;
    fit.fixed = meanDuration - fit.each * meanSize;
    fit.explained = differences > 0 ? together * together / (spread * differences) : 1;
    // the fixed part, shared out over that many nodes, is a tenth of what a node costs anyway
    if (fit.fixed > 0 && fit.each > 0)
        fit.worthwhile = std::ceil(fit.fixed / (fit.each * gain));
    return fit;
}

double qlumEnough(std::span<const QlumSweepPoint> points)
{
    double best = 0;
    for (const QlumSweepPoint& point : points)
        best = std::max(best, point.perSecond);
    double enough = 0;
    for (const QlumSweepPoint& point : points)
        if (point.perSecond >= best * (1 - gain) && (enough <= 0 || point.size < enough))
            enough = point.size;
    return enough;
}
