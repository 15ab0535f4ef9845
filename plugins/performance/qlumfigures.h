// What samples of a run come to.
#pragma once
#include <opcua/opcua_types.h>
#include <plugins/performance/qlumsamplelog.h>

#include <QtGlobal>

#include <map>
#include <optional>
#include <span>
#include <vector>

/// How a set of durations is spread. All in us.
struct QlumSpread
{
    double minimum = 0;
    double median = 0;
    double mean = 0;
    double percentile95 = 0; ///< the smallest value that 95 of 100 do not exceed
    double percentile99 = 0; ///< the same for 99
    double maximum = 0;
    double deviation = 0; ///< standard deviation of a sample

    /// Equal in all.
    bool operator==(const QlumSpread&) const = default;
};

/// What is known of a run besides its samples.
struct QlumRunTotals
{
    double seconds = 0;     ///< from the first call's begin to the last one's end
    quint64 values = 0;     ///< nodes that were read, written, browsed ... by calls that succeeded
    quint64 badValues = 0;  ///< of them, those that the server answered with a bad status
    quint64 bytesOut = 0;   ///< of the requests on the wire
    quint64 bytesIn = 0;    ///< of the answers
    bool hasStages = false; ///< whether the bytes and the program's own share are known

    /// Equal in all.
    bool operator==(const QlumRunTotals&) const = default;
};

/// The figures of a run. Calls that failed count, but their durations do not: a time-out tells of the
/// time-out.
struct QlumFigures
{
    quint64 calls = 0;                            ///< all
    std::map<OpcUa_StatusCode, quint64> failures; ///< how many of them failed with what
    std::optional<QlumSpread> duration;           ///< of the good ones; none when there are none
    std::optional<QlumSpread> own;                ///< the program's share in it; none when it is not known
    QlumRunTotals totals;                         ///< as given

    /// Calls that failed.
    [[nodiscard]] quint64 failed() const;
    /// A second; 0 while no time has passed.
    [[nodiscard]] double callsPerSecond() const;
    [[nodiscard]] double valuesPerSecond() const;
};

/// Of all samples.
[[nodiscard]] QlumFigures qlumFiguresOf(std::span<const QlumCallSample> samples, const QlumRunTotals& totals);
/// None for no values; those that are not finite are left out.
[[nodiscard]] std::optional<QlumSpread> qlumSpreadOf(std::vector<float> values);

/// Values between two bounds.
struct QlumLogBin
{
    double from = 0;   ///< us, included
    double to = 0;     ///< us, not included
    quint64 count = 0; ///< values in it
};
/// Counted in so many bins a factor of ten, from the smallest value's to the largest one's, empty ones
/// between them included. Values that are not above 0 have no logarithm: they are in a first bin up to 0.
[[nodiscard]] std::vector<QlumLogBin> qlumLogHistogram(std::span<const float> values, int binsPerDecade = 10);

/// The smallest step of the clock that durations are measured with, in us, as far as it can be seen.
[[nodiscard]] double qlumClockResolution();
