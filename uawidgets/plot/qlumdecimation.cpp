#include <uawidgets/plot/qlumdecimation.h>

#include <uawidgets/plot/qlumsamplestore.h>

#include <QPointF>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

constexpr std::int64_t ticksOfMillisecond = 10'000;
constexpr std::int64_t millisecondsTo1970 = 11'644'473'600'000; // from 1601
constexpr double timeLimit =
    2.6e14; // milliseconds; dates end before, and differences of ticks do not overflow
constexpr std::size_t samplesOfColumn = 4; // so many are drawn as they are
constexpr int nearby = 4;                  // samples that are looked at before a search
constexpr std::int64_t sameWidth = 500;    // columns that differ by less than such a part are the same

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

    void addSample(std::size_t index) { addSamples(index, index + 1); }

    void addColumn(const QlumDecimationCache::Column& column)
    {
        if (column.last - column.first <= samplesOfColumn)
            addSamples(column.first, column.last);
        else
            addExtremes(column.first, column.last, column.summary);
    }

    // Where a column ends: samples come evenly more often than not, so that its predecessor's length is a
    // good guess.
    [[nodiscard]] std::size_t endOfColumn(std::size_t first, std::size_t end, std::int64_t next)
    {
        std::size_t guess = std::min(first + m_samplesBefore, end);
        int step = 0;
        for (; step < nearby; ++step)
            if (guess < end && m_store.timeAt(guess) < next)
                ++guess;
            else if (guess > first + 1 && m_store.timeAt(guess - 1) >= next)
                --guess;
            else
                break;
        if (step == nearby)
            guess = std::min(m_store.lowerBound(next, first + 1), end);
        m_samplesBefore = guess - first;
        return guess;
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

    void addExtremes(std::size_t first, std::size_t last, const QlumSampleSummary& summary)
    {
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
    std::size_t m_samplesBefore = 1;
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

QlumDecimatedCurve qlumDecimate(const QlumSampleStore& store, std::int64_t from, std::int64_t to, int columns,
                                QlumDecimationCache* cache)
{
    Decimation decimation(store);
    from = std::max(from, qlumSampleTime(-timeLimit));
    to = std::min(to, qlumSampleTime(timeLimit));
    if (to <= from || columns <= 0 || store.isEmpty())
        return decimation.result;
    QlumDecimationCache now{store.revision(), std::max<std::int64_t>(1, (to - from) / columns), {}};
    const bool hasKnown = cache != nullptr && cache->revision == now.revision &&
                          std::abs(cache->width - now.width) <= cache->width / sameWidth;
    now.width = hasKnown ? cache->width : now.width;

    std::size_t index = store.lowerBound(from);
    const std::size_t begin = index, end = store.lowerBound(to, index);
    auto known = hasKnown ? cache->columns.cbegin() : now.columns.cend();
    const auto knownEnd = hasKnown ? cache->columns.cend() : now.columns.cend();
    // a neighbour outside must not stand for what lies inside, so it is a column of its own
    if (index > 0)
        decimation.addSample(index - 1);
    while (index < end) {
        QlumDecimationCache::Column column{columnOf(store.timeAt(index), now.width), index, end, {}};
        known = std::find_if(known, knownEnd, [&](const auto& one) { return one.number >= column.number; });
        if (known != knownEnd && known->first == index && known->last < end) {
            column = *known;
        } else {
            column.last = decimation.endOfColumn(index, end, (column.number + 1) * now.width);
            if (column.last - index > samplesOfColumn)
                column.summary = store.summary(index, column.last);
        }
        decimation.addColumn(column);
        index = column.last;
        if (cache != nullptr && column.first > begin && column.last < end) // the outermost may be cut
            now.columns.push_back(column);
    }
    if (end < store.size())
        decimation.addSample(end);
    if (cache != nullptr)
        *cache = std::move(now);
    return decimation.result;
}
