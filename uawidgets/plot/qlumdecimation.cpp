#include <uawidgets/plot/qlumdecimation.h>

#include <uawidgets/plot/qlumsamplestore.h>

#include <QPointF>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

constexpr std::int64_t ticksOfMillisecond = 10'000;
constexpr std::int64_t millisecondsTo1970 = 11'644'473'600'000; // from 1601
constexpr double timeLimit =
    2.6e14; // milliseconds; dates end before, and differences of ticks do not overflow
constexpr std::size_t samplesOfColumn = 4; // so many are drawn as they are

// Rounded down, of times before 1601 too.
std::int64_t columnOf(std::int64_t time, std::int64_t width)
{
    const std::int64_t number = time / width;
    return time % width < 0 ? number - 1 : number;
}

class Decimation
{
public:
    explicit Decimation(const QlumSampleStore& store) : m_store(store) {}

    void addColumn(std::size_t first, std::size_t last)
    {
        if (last - first <= samplesOfColumn)
            addSamples(first, last);
        else
            addExtremes(first, last);
    }

    QlumDecimatedCurve result;

private:
    void addSamples(std::size_t first, std::size_t last)
    {
        unsigned marked = 0;
        for (std::size_t index = first; index < last; ++index) {
            const QlumSample sample = m_store.at(index);
            if (sample.isBreak())
                endRun(qlumPlotTime(sample.time));
            else
                addPoint(sample);
            if (sample.isBad() && (marked & qlumHasBad) == 0)
                result.bad.push_back(qlumPlotTime(sample.time));
            else if (isUncertainValue(sample) && (marked & qlumHasUncertain) == 0)
                result.uncertain.emplace_back(qlumPlotTime(sample.time), sample.value);
            marked |= (sample.isBad() ? qlumHasBad : 0U) | (isUncertainValue(sample) ? qlumHasUncertain : 0U);
        }
    }

    void addExtremes(std::size_t first, std::size_t last)
    {
        const QlumSampleSummary summary = m_store.summary(first, last);
        if ((summary.traits & qlumHasUncertain) != 0) {
            const QlumSample sample = m_store.at(m_store.findFirst(qlumHasUncertain, first, last));
            result.uncertain.emplace_back(qlumPlotTime(sample.time), sample.value);
        }
        if ((summary.traits & qlumHasBad) != 0)
            result.bad.push_back(qlumPlotTime(m_store.timeAt(m_store.findFirst(qlumHasBad, first, last))));
        if ((summary.traits & qlumHasBreak) == 0) {
            addRun(first, last, summary);
            return;
        }
        const std::size_t firstBreak = m_store.findFirst(qlumHasBreak, first, last);
        const std::size_t lastBreak = m_store.findLast(qlumHasBreak, first, last);
        addRun(first, firstBreak, m_store.summary(first, firstBreak));
        endRun(qlumPlotTime(m_store.timeAt(firstBreak)));
        addAlone(m_store.summary(firstBreak, lastBreak));
        addRun(lastBreak + 1, last, m_store.summary(lastBreak + 1, last));
    }

    // A stretch without a break.
    void addRun(std::size_t first, std::size_t last, const QlumSampleSummary& summary)
    {
        if (first == last)
            return;
        std::array<std::size_t, 4> indexes{first, summary.minimumAt, summary.maximumAt, last - 1};
        std::sort(indexes.begin(), indexes.end());
        const auto* const end = std::unique(indexes.begin(), indexes.end());
        for (const auto* index = indexes.begin(); index != end; ++index)
            addPoint(m_store.at(*index));
    }

    // The extremes of a stretch with breaks: which values are joined is finer than a column.
    void addAlone(const QlumSampleSummary& summary)
    {
        if (!summary.hasValue())
            return;
        const auto [first, last] = std::minmax(summary.minimumAt, summary.maximumAt);
        addPoint(m_store.at(first));
        m_joined = false;
        if (first != last)
            addPoint(m_store.at(last));
        m_joined = false;
    }

    void endRun(double time)
    {
        if (m_joined)
            result.ends.back() = time;
        m_joined = false;
    }

    void addPoint(const QlumSample& sample)
    {
        if (!m_joined) {
            result.runs.push_back(result.points.size());
            result.ends.push_back(std::nan(""));
        }
        m_joined = true;
        result.points.emplace_back(qlumPlotTime(sample.time), sample.value);
    }

    [[nodiscard]] static bool isUncertainValue(const QlumSample& sample)
    {
        return sample.isUncertain() && !sample.isBreak();
    }

    const QlumSampleStore& m_store;
    bool m_joined = false;
};

} // namespace

double qlumPlotTime(std::int64_t sampleTime)
{
    // whole milliseconds apart: a double has no room for the ticks of all time
    return static_cast<double>(sampleTime / ticksOfMillisecond - millisecondsTo1970) +
           static_cast<double>(sampleTime % ticksOfMillisecond) / static_cast<double>(ticksOfMillisecond);
}

std::int64_t qlumSampleTime(double plotTime)
{
    const double bounded = std::clamp(plotTime, -timeLimit, timeLimit);
    const auto whole = static_cast<std::int64_t>(std::floor(bounded));
    const double rest = (bounded - static_cast<double>(whole)) * static_cast<double>(ticksOfMillisecond);
    return (whole + millisecondsTo1970) * ticksOfMillisecond + std::llround(rest);
}

QlumDecimatedCurve qlumDecimate(const QlumSampleStore& store, std::int64_t from, std::int64_t to, int columns)
{
    Decimation decimation(store);
    from = std::max(from, qlumSampleTime(-timeLimit));
    to = std::min(to, qlumSampleTime(timeLimit));
    if (to <= from || columns <= 0 || store.isEmpty())
        return decimation.result;
    const std::int64_t width = std::max<std::int64_t>(1, (to - from) / columns);
    std::size_t index = store.lowerBound(from);
    const std::size_t end = store.lowerBound(to, index);
    // a neighbour outside must not stand for what lies inside, so it is a column of its own
    if (index > 0)
        decimation.addColumn(index - 1, index);
    while (index < end) {
        const std::int64_t next = (columnOf(store.timeAt(index), width) + 1) * width;
        // samples that are few need no search
        const bool alone = index + 1 == end || store.timeAt(index + 1) >= next;
        const std::size_t last = alone ? index + 1 : std::min(store.lowerBound(next, index + 1), end);
        decimation.addColumn(index, last);
        index = last;
    }
    if (end < store.size())
        decimation.addColumn(end, end + 1);
    return decimation.result;
}
