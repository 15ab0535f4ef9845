// The few points that a screen can show of many samples.
#pragma once
#include <uawidgets/plot/qlumsamplestore.h>

#include <QPointF>

#include <cstddef>
#include <cstdint>
#include <vector>

/// A curve as points: x in milliseconds since 1970, UTC. Every point is a sample.
struct QlumDecimatedCurve
{
    std::vector<QPointF> points;   ///< in the order of their times
    std::vector<std::size_t> runs; ///< where a run of joined points begins; between runs nothing may be drawn
    /// For each run the x of the break that ended it, up to which its last value held; not a number without
    /// one.
    std::vector<double> ends;
    std::vector<QPointF> uncertain; ///< places to mark: the first uncertain value of a column
    std::vector<double> bad;        ///< x of places to mark: the first bad sample of a column
};

/// Milliseconds since 1970 of a sample's time.
[[nodiscard]] double qlumPlotTime(std::int64_t sampleTime);
/// The sample's time of milliseconds since 1970; cut to what it can hold.
[[nodiscard]] std::int64_t qlumSampleTime(double plotTime);

/// What one decimation leaves for the next of the same store: while a curve is panned, most columns are the
/// same.
class QlumDecimationCache
{
public:
    /// Samples of a whole column.
    struct Column
    {
        std::int64_t number = 0;   ///< on the grid
        std::size_t first = 0;     ///< index of its first sample
        std::size_t last = 0;      ///< index behind its last
        QlumSampleSummary summary; ///< of these
    };

    std::uint64_t revision = 0;  ///< of the store
    std::int64_t width = 0;      ///< of a column; 100 ns
    std::vector<Column> columns; ///< by rising numbers
};

/// The curve between two times in about so many columns, with a neighbour on each side so that lines reach
/// the border. Of a column it has the first and the last value, the smallest and the largest; of one in which
/// the curve breaks those before the first break and behind the last, and the extremes between them as points
/// of their own. Columns lie on a grid that does not move with the interval, so that a curve keeps its shape
/// while it is panned; with a cache it also keeps its columns for intervals of almost the same length.
[[nodiscard]] QlumDecimatedCurve qlumDecimate(const QlumSampleStore& store, std::int64_t from,
                                              std::int64_t to, int columns,
                                              QlumDecimationCache* cache = nullptr);
