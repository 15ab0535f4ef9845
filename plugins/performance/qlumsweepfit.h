// What a call costs whatever it asks for, and what each node adds.
#pragma once
#include <optional>
#include <span>

/// One step of a sweep: how long calls take with that many nodes each.
struct QlumSweepPoint
{
    double size = 0;      ///< nodes a call, or calls outstanding
    double duration = 0;  ///< us; the median of the step
    double perSecond = 0; ///< values a second over the whole step
};

/// A straight line through the steps: duration = fixed + each * size.
struct QlumSweepFit
{
    double fixed = 0; ///< us a call
    double each = 0;  ///< us a node
    double worthwhile =
        0;                ///< nodes a call from which a larger call gains less than a tenth; 0: none is known
    double explained = 0; ///< share of the differences that the line explains, 0 to 1
};

/// By least squares of the relative error, so that the small calls count as much as the large ones. None for
/// fewer than two sizes.
[[nodiscard]] std::optional<QlumSweepFit> qlumFitSweep(std::span<const QlumSweepPoint> points);

/// The smallest size whose rate is within a tenth of the best one; 0 for no points.
[[nodiscard]] double qlumEnough(std::span<const QlumSweepPoint> points);
