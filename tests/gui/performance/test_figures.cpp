// What samples come to, against values that were worked out by hand.
#include <opcua/opcua_statuscodes.h>
#include <plugins/performance/qlumfigures.h>
#include <plugins/performance/qlummachineload.h>
#include <plugins/performance/qlumnotificationrun.h>
#include <plugins/performance/qlumsamplelog.h>
#include <plugins/performance/qlumsweep.h>
#include <plugins/performance/qlumsweepfit.h>

#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <vector>

namespace {

std::vector<QlumCallSample> oneToHundred()
{
    std::vector<QlumCallSample> samples;
    for (int i = 100; i >= 1; --i) // in no order
        samples.push_back({0, static_cast<float>(i), static_cast<float>(i) / 2, OpcUa_Good});
    return samples;
}

TEST(Figures, OfKnownSamplesAreThoseOfTheTextbook)
{
    QlumRunTotals totals;
    totals.seconds = 4;
    totals.values = 1000;
    totals.hasStages = true;
    const QlumFigures figures = qlumFiguresOf(oneToHundred(), totals);
    ASSERT_TRUE(figures.duration);
    EXPECT_EQ(figures.duration->minimum, 1);
    EXPECT_EQ(figures.duration->median, 50.5);
    EXPECT_EQ(figures.duration->mean, 50.5);
    EXPECT_EQ(figures.duration->percentile95, 95);
    EXPECT_EQ(figures.duration->percentile99, 99);
    EXPECT_EQ(figures.duration->maximum, 100);
    EXPECT_NEAR(figures.duration->deviation, 29.0115, 1e-4);
    EXPECT_EQ(figures.own->median, 25.25);
    EXPECT_EQ(figures.callsPerSecond(), 25);
    EXPECT_EQ(figures.valuesPerSecond(), 250);
}

TEST(Figures, CallsThatFailCountButTheirTimesDoNot)
{
    std::vector<QlumCallSample> samples = oneToHundred();
    samples.push_back({0, 1e7F, 0, OpcUa_BadTimeout});
    samples.push_back({0, 1e7F, 0, OpcUa_BadTimeout});
    samples.push_back({0, 2, 0, OpcUa_BadServerTooBusy});
    const QlumFigures figures = qlumFiguresOf(samples, {});
    EXPECT_EQ(figures.calls, 103u);
    EXPECT_EQ(figures.failed(), 3u);
    EXPECT_EQ(figures.failures.at(OpcUa_BadTimeout), 2u);
    EXPECT_EQ(figures.duration->maximum, 100);
    EXPECT_FALSE(figures.own) << "nobody has measured it";
    const std::vector<QlumCallSample> onlyFailed(3, {0, 5, 0, OpcUa_BadTimeout});
    EXPECT_FALSE(qlumFiguresOf(onlyFailed, {}).duration);
}

TEST(Figures, OneSampleAndSamplesThatAreNoNumbersAreNoTrouble)
{
    const auto one = qlumSpreadOf({7});
    EXPECT_EQ(one->percentile99, 7);
    EXPECT_EQ(one->deviation, 0);
    EXPECT_FALSE(qlumSpreadOf({std::numeric_limits<float>::quiet_NaN()}));
    EXPECT_EQ(qlumSpreadOf({-3, 1})->minimum, -3) << "a clock that is behind gives negative delays";
}

TEST(Figures, TheHistogramLosesNoValue)
{
    const std::vector<float> values{-5, 0, 1, 1.5F, 9.9F, 100, 100000};
    quint64 count = 0;
    double before = -std::numeric_limits<double>::infinity();
    const std::vector<QlumLogBin> bins = qlumLogHistogram(values, 10);
    for (const QlumLogBin& bin : bins) {
        count += bin.count;
        EXPECT_GE(bin.from, before);
        before = bin.from;
    }
    EXPECT_EQ(count, values.size());
    EXPECT_EQ(bins.front().count, 2u) << "those that have no logarithm";
    EXPECT_EQ(bins.size(), 1 + 51u) << "empty bins between them are there";
}

TEST(SampleLog, KeepsWhatWasAddedOverItsBlocks)
{
    QlumSampleLog log;
    const auto count = static_cast<quint32>(QlumSampleLog::blockSize * 2 + 3);
    for (quint32 i = 0; i < count; ++i)
        log.append({i, 0, 0, 0});
    EXPECT_EQ(log.size(), count);
    const std::vector<QlumCallSample> late = log.from(QlumSampleLog::blockSize - 1);
    ASSERT_EQ(late.size(), QlumSampleLog::blockSize + 4);
    EXPECT_EQ(late.front().begun, QlumSampleLog::blockSize - 1);
    EXPECT_EQ(late.back().begun, count - 1);
    EXPECT_TRUE(log.from(count).empty());
}

TEST(SweepFit, FindsTheCostsThatThePointsWereMadeOf)
{
    std::vector<QlumSweepPoint> points;
    for (const quint32 size : qlumSweepSizes(1000)) {
        const double duration = 300 + 2.0 * size;
        points.push_back({static_cast<double>(size), duration, size / duration * 1e6});
    }
    const auto fit = qlumFitSweep(points);
    ASSERT_TRUE(fit);
    EXPECT_NEAR(fit->fixed, 300, 1e-6);
    EXPECT_NEAR(fit->each, 2, 1e-9);
    EXPECT_NEAR(fit->explained, 1, 1e-9);
    EXPECT_EQ(fit->worthwhile, 1500) << "300 us shared out over so many nodes are a tenth of 2 us";
    EXPECT_EQ(qlumEnough(points), 1000);
    EXPECT_FALSE(qlumFitSweep(std::span(points).first(1)));
    EXPECT_EQ(qlumSweepSizes(7), (std::vector<quint32>{1, 2, 5, 7}));
    EXPECT_EQ(qlumSweepSizes(1), (std::vector<quint32>{1}));
}

TEST(ClockDifference, IsThatOfTheFastestRoundTrip)
{
    const auto difference =
        qlumClockDifference({{0, 6000, 4000}, {10000, 15100, 10200}, {20000, 29000, 22000}});
    ASSERT_TRUE(difference);
    EXPECT_EQ(difference->ahead, 5000);
    EXPECT_EQ(difference->doubtful, 100);
    EXPECT_FALSE(qlumClockDifference({}));
}

TEST(MachineLoad, IsWhatOthersHadBetweenTwoReadings)
{
    const auto before = qlumParseCpuTimes("cpu  100 0 100 800 0 0 0 0 0 0", 100);
    auto after = qlumParseCpuTimes("cpu  400 0 200 1400 0 0 0 0 0 0", 100);
    ASSERT_TRUE(before && after);
    after->own = 2;
    EXPECT_DOUBLE_EQ(qlumOthersShare(*before, *after), 0.2) << "4 of 10 s busy, 2 of them ours";
    EXPECT_TRUE(qlumLoadRemark(before, after).isEmpty());
    after->own = 0;
    EXPECT_TRUE(qlumLoadRemark(before, after).contains("40 %"));
    EXPECT_FALSE(qlumParseCpuTimes("cpu0 1 2 3 4 5 6 7 8", 100));
    EXPECT_FALSE(qlumParseCpuTimes("cpu  1 2 x", 100));
    EXPECT_TRUE(qlumCpuTimes()) << "of the machine that this runs on";
}

} // namespace
