// Decimated curves against all of their samples.
#include <tests/gui/plot/randomsamples.h>
#include <uawidgets/plot/qlumdecimation.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <QPointF>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace {

struct Extremes
{
    double minimum = std::numeric_limits<double>::infinity();
    double maximum = -std::numeric_limits<double>::infinity();

    void add(double value)
    {
        minimum = std::min(minimum, value);
        maximum = std::max(maximum, value);
    }
    bool operator==(const Extremes&) const = default;
};

constexpr std::int64_t millisecond = 10'000;

struct Window
{
    std::int64_t from;
    std::int64_t to;
    int columns;

    [[nodiscard]] std::int64_t width() const { return std::max<std::int64_t>(1, (to - from) / columns); }
    [[nodiscard]] bool contains(std::int64_t time) const { return from <= time && time < to; }
};

Window randomWindow(const QlumSampleStore& store, std::mt19937& random)
{
    const std::int64_t first = store.timeAt(0), last = store.timeAt(store.size() - 1);
    const std::int64_t length = std::max<std::int64_t>(1, (last - first) >> (random() % 12));
    const std::int64_t from = std::uniform_int_distribution<std::int64_t>(first - length, last)(random);
    return {from, from + length, static_cast<int>(1 + random() % 500)};
}

// Of the sample behind a point; the times of samples are multiples of 10 us here, finer than which a double
// of our days is not.
std::int64_t timeOf(const QPointF& point)
{
    constexpr std::int64_t grain = 100;
    return (qlumSampleTime(point.x()) + grain / 2) / grain * grain;
}

std::multimap<std::int64_t, double> pointsByTime(const QlumDecimatedCurve& curve)
{
    std::multimap<std::int64_t, double> points;
    for (const QPointF& point : curve.points)
        points.emplace(timeOf(point), point.y());
    return points;
}

} // namespace

TEST(Decimation, LosesNoExtremeOfAnyColumn)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 random(seed);
        QlumSampleStore store(20'000);
        store.append(
            randomSamples(1 + random() % 25'000, seed % 3 == 0 ? 0 : static_cast<int>(seed % 40), random));
        const Window window = randomWindow(store, random);
        std::map<std::int64_t, Extremes> expected, found;
        std::set<std::pair<std::int64_t, double>> samples;
        for (std::size_t i = 0; i < store.size(); ++i) {
            const QlumSample sample = store.at(i);
            samples.emplace(sample.time, sample.value);
            if (window.contains(sample.time) && !sample.isBreak())
                expected[sample.time / window.width()].add(sample.value);
        }
        const QlumDecimatedCurve curve = qlumDecimate(store, window.from, window.to, window.columns);
        for (const auto& [time, value] : pointsByTime(curve)) {
            ASSERT_TRUE(samples.contains({time, value})) << "a point that is no sample";
            if (window.contains(time))
                found[time / window.width()].add(value);
        }
        ASSERT_EQ(found, expected) << "seed " << seed;
        const bool whole = store.findFirst(qlumHasBreak, 0, store.size()) == store.size();
        const auto columns = static_cast<std::size_t>((window.to - window.from) / window.width() + 4);
        EXPECT_LE(curve.points.size(), (whole ? 4 : 10) * columns);
    }
}

TEST(Decimation, NeverJoinsOverABreak)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 random(100 + seed);
        std::vector<QlumSample> samples = randomSamples(5000, static_cast<int>(seed % 30), random);
        for (std::size_t i = 0; i < samples.size(); ++i) // one time each, so that a point tells its sample
            samples[i].time = startOfSamples + static_cast<std::int64_t>(i) * 100;
        QlumSampleStore store;
        store.append(samples);
        const Window window = randomWindow(store, random);
        const QlumDecimatedCurve curve = qlumDecimate(store, window.from, window.to, window.columns);
        const auto indexOf = [](const QPointF& point) {
            return static_cast<std::size_t>((timeOf(point) - startOfSamples) / 100);
        };
        const std::set<std::size_t> starts(curve.runs.begin(), curve.runs.end());
        ASSERT_EQ(starts.contains(0), !curve.points.empty());
        for (std::size_t i = 1; i < curve.points.size(); ++i) {
            const std::size_t left = indexOf(curve.points[i - 1]), right = indexOf(curve.points[i]);
            ASSERT_LT(left, right);
            if (store.findFirst(qlumHasBreak, left, right) != right)
                ASSERT_TRUE(starts.contains(i)) << "joined over a break, seed " << seed;
        }
        if (store.findFirst(qlumHasBreak, 0, store.size()) == store.size())
            EXPECT_LE(curve.runs.size(), 1U) << "apart without a break, seed " << seed;
    }
}

TEST(Decimation, JoinsAcrossTheBordersOfTheWindow)
{
    QlumSampleStore store;
    for (int i = 0; i < 4; ++i)
        store.append({startOfSamples + i * 1000 * millisecond, static_cast<double>(i), 0});
    const std::int64_t from = startOfSamples + 1400 * millisecond;
    const QlumDecimatedCurve between = qlumDecimate(store, from, from + 100 * millisecond, 800);
    ASSERT_EQ(between.points.size(), 2U);
    EXPECT_EQ(between.points[0].y(), 1);
    EXPECT_EQ(between.points[1].y(), 2);
    EXPECT_EQ(between.runs.size(), 1U);
}

TEST(Decimation, MarksBadAndUncertainPlacesOfEachColumn)
{
    QlumSampleStore store;
    for (int i = 0; i < 10'000; ++i) {
        const std::uint32_t status = i == 5000 ? badStatus : i == 7000 ? uncertainStatus : 0;
        store.append({startOfSamples + i * millisecond, 1.0, status});
    }
    const QlumDecimatedCurve curve =
        qlumDecimate(store, startOfSamples, startOfSamples + 10'000 * millisecond, 100);
    ASSERT_EQ(curve.bad.size(), 1U);
    EXPECT_EQ(curve.bad[0], qlumPlotTime(startOfSamples + 5000 * millisecond));
    ASSERT_EQ(curve.uncertain.size(), 1U);
    EXPECT_EQ(curve.uncertain[0].x(), qlumPlotTime(startOfSamples + 7000 * millisecond));
    EXPECT_EQ(curve.runs.size(), 2U); // uncertain values do not break the curve, bad ones do
}

TEST(Decimation, KeepsItsPointsWhileTheWindowMoves)
{
    std::mt19937 random(7);
    QlumSampleStore store;
    store.append(randomSamples(50'000, 3, random));
    const std::int64_t length = (store.timeAt(store.size() - 1) - store.timeAt(0)) / 2;
    const std::int64_t from = store.timeAt(0) + length / 3;
    const auto before = pointsByTime(qlumDecimate(store, from, from + length, 300));
    const std::int64_t moved = from + length / 7;
    const auto after = pointsByTime(qlumDecimate(store, moved, moved + length, 300));
    const std::int64_t column = length / 300;
    const std::multimap<std::int64_t, double> sharedBefore(before.lower_bound(moved + column),
                                                           before.upper_bound(from + length - column));
    const std::multimap<std::int64_t, double> sharedAfter(after.lower_bound(moved + column),
                                                          after.upper_bound(from + length - column));
    EXPECT_GT(sharedBefore.size(), 500U);
    EXPECT_EQ(sharedBefore, sharedAfter);
}

TEST(Decimation, ACacheChangesNothingButTheWork)
{
    for (unsigned seed = 0; seed < 10; ++seed) {
        std::mt19937 random(seed);
        QlumSampleStore store(25'000);
        store.append(randomSamples(25'000, static_cast<int>(seed), random));
        QlumDecimationCache cache;
        Window window = randomWindow(store, random);
        for (int frame = 0; frame < 40; ++frame) {
            const std::int64_t length = window.to - window.from;
            window.from += std::uniform_int_distribution<std::int64_t>(-length / 3, length / 2)(random);
            window.to = window.from + length;
            for (int i = 0; frame % 10 == 9 && i < 300;
                 ++i) // makes the oldest go, so that all indexes change
                store.append({store.timeAt(store.size() - 1) + 5000, std::sin(i), 0});
            const QlumDecimatedCurve cached =
                qlumDecimate(store, window.from, window.to, window.columns, &cache);
            const QlumDecimatedCurve plain = qlumDecimate(store, window.from, window.to, window.columns);
            ASSERT_EQ(cached.points, plain.points) << "seed " << seed << ", frame " << frame;
            ASSERT_EQ(cached.runs, plain.runs);
            ASSERT_EQ(cached.bad, plain.bad);
            ASSERT_EQ(cached.uncertain, plain.uncertain);
        }
    }
}

TEST(Decimation, TimesComeBackFromMilliseconds)
{
    EXPECT_EQ(qlumPlotTime(116'444'736'000'000'000), 0.0);
    for (const std::int64_t time :
         {startOfSamples, startOfSamples + 9'900, std::int64_t{100}, std::int64_t{0}})
        EXPECT_NEAR(static_cast<double>(qlumSampleTime(qlumPlotTime(time)) - time), 0.0, 10.0);
    QlumSampleStore store;
    store.append({startOfSamples, 1, 0});
    const auto least = std::numeric_limits<std::int64_t>::min(),
               most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(qlumDecimate(store, least, most, 1).points.size(), 1U);
}
