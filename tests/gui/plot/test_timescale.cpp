// Round times of zones whose clocks are set.
#include <uawidgets/plot/qlumtimescale.h>

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QStringList>
#include <QTimeZone>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace {

const QTimeZone berlin("Europe/Berlin");

double timeOf(const char* utc)
{
    return static_cast<double>(
        QDateTime::fromString(QLatin1String(utc), Qt::ISODateWithMs).toMSecsSinceEpoch());
}

std::string readings(const QlumTimeTicks& ticks, const QTimeZone& zone, const char* format = "dd HH:mm")
{
    QStringList texts;
    for (const double time : ticks.major)
        texts.append(
            QDateTime::fromMSecsSinceEpoch(std::llround(time), zone).toString(QLatin1String(format)));
    return texts.join(QLatin1String(", ")).toStdString();
}

} // namespace

TEST(TimeTicks, SkipTheHourThatDoesNotExist)
{
    const QlumTimeTicks ticks =
        qlumTimeTicks(timeOf("2026-03-28T23:00:00Z"), timeOf("2026-03-29T04:00:00Z"), 8, berlin);
    EXPECT_EQ(readings(ticks, berlin), "29 00:00, 29 01:00, 29 03:00, 29 04:00, 29 05:00, 29 06:00");
    const QlumTimeTicks wide =
        qlumTimeTicks(timeOf("2026-03-28T23:00:00Z"), timeOf("2026-03-29T10:00:00Z"), 8, berlin);
    EXPECT_EQ(readings(wide, berlin), "29 00:00, 29 04:00, 29 06:00, 29 08:00, 29 10:00, 29 12:00");
}

TEST(TimeTicks, HaveTheHourThatComesTwiceTwice)
{
    const QlumTimeTicks ticks =
        qlumTimeTicks(timeOf("2026-10-24T22:00:00Z"), timeOf("2026-10-25T03:00:00Z"), 8, berlin);
    EXPECT_EQ(readings(ticks, berlin), "25 00:00, 25 01:00, 25 02:00, 25 02:00, 25 03:00, 25 04:00");
    // with steps of two hours they would stand on each other
    const QlumTimeTicks wide =
        qlumTimeTicks(timeOf("2026-10-24T22:00:00Z"), timeOf("2026-10-25T07:00:00Z"), 7, berlin);
    EXPECT_EQ(readings(wide, berlin), "25 00:00, 25 02:00, 25 04:00, 25 06:00, 25 08:00");
}

TEST(TimeTicks, DaysBeginAtMidnightOnBothSidesOfAChange)
{
    const QlumTimeTicks ticks =
        qlumTimeTicks(timeOf("2026-03-26T12:00:00Z"), timeOf("2026-03-31T12:00:00Z"), 8, berlin);
    EXPECT_EQ(readings(ticks, berlin), "27 00:00, 28 00:00, 29 00:00, 30 00:00, 31 00:00");
    // clocks that were set at midnight: the day began at one
    const QTimeZone saoPaulo("America/Sao_Paulo");
    const QlumTimeTicks odd =
        qlumTimeTicks(timeOf("2018-11-03T00:00:00Z"), timeOf("2018-11-06T00:00:00Z"), 6, saoPaulo);
    EXPECT_EQ(readings(odd, saoPaulo, "dd HH"), "03 00, 04 01, 05 00");
}

TEST(TimeTicks, AreFullHoursOfZonesWithOddOffsets)
{
    const QTimeZone kathmandu("Asia/Kathmandu"); // 5:45
    const QlumTimeTicks ticks =
        qlumTimeTicks(timeOf("2026-01-01T00:00:00Z"), timeOf("2026-01-01T03:00:00Z"), 5, kathmandu);
    EXPECT_EQ(readings(ticks, kathmandu), "01 06:00, 01 07:00, 01 08:00");
}

TEST(TimeTicks, AreFewRoundAndInsideForEveryLength)
{
    const double start = timeOf("2026-02-03T04:05:06.789Z");
    for (double length = 10; length < 1e14; length *= 1.3)
        for (const int maximum : {2, 5, 12}) {
            const QlumTimeTicks ticks = qlumTimeTicks(start, start + length, maximum, berlin);
            // of months and weeks there may be one more than of their mean length
            ASSERT_LE(ticks.major.size(), static_cast<std::size_t>(maximum) + 1) << length;
            ASSERT_GE(ticks.major.size() * 6 + 6, static_cast<std::size_t>(maximum)) << length;
            for (std::size_t i = 0; i < ticks.major.size(); ++i) {
                ASSERT_GE(ticks.major[i], start);
                ASSERT_LE(ticks.major[i], start + length);
                if (i > 0)
                    ASSERT_GT(ticks.major[i], ticks.major[i - 1]);
            }
        }
    EXPECT_TRUE(qlumTimeTicks(5, 5, 8, berlin).major.empty());
    EXPECT_TRUE(qlumTimeTicks(std::nan(""), 5, 8, berlin).major.empty());
}

TEST(TimeLabels, ShowMillisecondsWhenTheStepAsksForThem)
{
    const double time = timeOf("2026-07-03T04:05:06.789Z");
    const QLocale locale(QLocale::German);
    const auto label = [&](double step) { return qlumTimeLabel(time, step, berlin, locale).toStdString(); };
    EXPECT_EQ(label(5), "06:05:06.789");
    EXPECT_EQ(label(1000), "06:05:06");
    EXPECT_EQ(label(60'000), "06:05");
    EXPECT_EQ(label(86'400'000), "03.07.26");
    EXPECT_EQ(label(366 * 86'400'000.0), "2026");
    EXPECT_EQ(qlumTimeLabel(time, 5, QTimeZone::utc(), locale).toStdString(), "04:05:06.789");
}

TEST(TimeLabels, HaveTheDateAtTheFirstTickAndWhereADayBegins)
{
    const QlumTimeScaleEngine engine(berlin);
    QlumTimeScaleDraw draw(berlin);
    const double from = timeOf("2026-07-03T16:00:00Z"), to = timeOf("2026-07-04T04:00:00Z");
    const QwtScaleDiv division = engine.divideScale(from, to, 8, 0);
    draw.setScaleDiv(division);
    QString dated;
    for (const double time : division.ticks(QwtScaleDiv::MajorTick))
        dated += draw.label(time).text().contains(QLatin1Char('\n')) ? QLatin1Char('d') : QLatin1Char('.');
    EXPECT_EQ(dated.toStdString(), "d..d...");
}
