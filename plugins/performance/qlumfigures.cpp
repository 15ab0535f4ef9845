#include <plugins/performance/qlumfigures.h>

#include <opcua/opcua_statuscodes.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <utility>

namespace {
// Nearest rank: a value that was measured, also for few of them. The values are sorted.
double percentile(const std::vector<float>& values, double share)
{
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(values.size())));
    return static_cast<double>(values[std::clamp<std::size_t>(rank, 1, values.size()) - 1]);
}

double medianOf(const std::vector<float>& values)
{
    const std::size_t middle = values.size() / 2;
    const auto upper = static_cast<double>(values[middle]);
    return values.size() % 2 == 1 ? upper : (static_cast<double>(values[middle - 1]) + upper) / 2;
}

double perSecond(quint64 count, double seconds)
{
    return seconds > 0 ? static_cast<double>(count) / seconds : 0;
}
} // namespace

quint64 QlumFigures::failed() const
{
    quint64 count = 0;
    for (const auto& [status, times] : failures)
        count += times;
    return count;
}

double QlumFigures::callsPerSecond() const
{
    return perSecond(calls, totals.seconds);
}

double QlumFigures::valuesPerSecond() const
{
    return perSecond(totals.values, totals.seconds);
}

std::optional<QlumSpread> qlumSpreadOf(std::vector<float> values)
{
    std::erase_if(values, [](float value) { return !std::isfinite(value); });
    if (values.empty())
        return std::nullopt;
    std::sort(values.begin(), values.end());
    // in the order of their size, and from the mean: sums of squares of large numbers would cancel out
    const auto count = static_cast<double>(values.size());
    double sum = 0;
    for (const float value : values)
        sum += static_cast<double>(value);
    const double mean = sum / count;
    double squares = 0;
    for (const float value : values)
        squares += (static_cast<double>(value) - mean) * (static_cast<double>(value) - mean);
    return QlumSpread{static_cast<double>(values.front()),
                      medianOf(values),
                      mean,
                      percentile(values, 0.95),
                      percentile(values, 0.99),
                      static_cast<double>(values.back()),
                      values.size() > 1 ? std::sqrt(squares / (count - 1)) : 0};
}

QlumFigures qlumFiguresOf(std::span<const QlumCallSample> samples, const QlumRunTotals& totals)
{
    QlumFigures figures;
    figures.calls = samples.size();
    figures.totals = totals;
    std::vector<float> durations;
    std::vector<float> own;
    durations.reserve(samples.size());
    for (const QlumCallSample& sample : samples) {
        if (OpcUa_IsBad(sample.status)) {
            ++figures.failures[sample.status];
            continue;
        }
        durations.push_back(sample.duration);
        if (totals.hasStages)
            own.push_back(sample.own);
    }
    figures.duration = qlumSpreadOf(std::move(durations));
    figures.own = qlumSpreadOf(std::move(own));
    return figures;
}

std::vector<QlumLogBin> qlumLogHistogram(std::span<const float> values, int binsPerDecade)
{
    std::map<int, quint64> counts;
    quint64 notPositive = 0;
    double smallest = 0;
    for (const float value : values) {
        if (!std::isfinite(value))
            continue;
        if (value > 0) {
            ++counts[static_cast<int>(std::floor(std::log10(static_cast<double>(value)) * binsPerDecade))];
        } else {
            ++notPositive;
            smallest = std::min(smallest, static_cast<double>(value));
        }
    }
    std::vector<QlumLogBin> bins;
    if (notPositive > 0)
        bins.push_back({smallest, 0, notPositive});
    if (counts.empty())
        return bins;
    const auto bound = [binsPerDecade](int bin) {
        return std::pow(10.0, static_cast<double>(bin) / binsPerDecade);
    };
    for (int bin = counts.begin()->first; bin <= counts.rbegin()->first; ++bin) {
        const auto found = counts.find(bin);
        bins.push_back({bound(bin), bound(bin + 1), found == counts.end() ? 0 : found->second});
    }
    return bins;
}

double qlumClockResolution()
{
    using Clock = std::chrono::steady_clock;
    using Microseconds = std::chrono::duration<double, std::micro>;
    double smallest = 1e6;
    for (int round = 0; round < 100; ++round) {
        const auto begin = Clock::now();
        auto next = Clock::now();
        while (next == begin)
            next = Clock::now();
        smallest = std::min(smallest, Microseconds(next - begin).count());
    }
    return smallest;
}
