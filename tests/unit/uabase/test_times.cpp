// Points in time: text forms, the epoch of the system, values beyond the calendar.
#include <uabase/values/uadatetime.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <ctime>

TEST(UaDateTime, TextFormReadsBack)
{
    for (const char* text :
         {"1601-01-01T00:00:00.000Z", "1970-01-01T00:00:00.000Z", "2000-02-29T23:59:59.999Z",
          "2026-11-21T10:15:30.123Z", "9999-12-31T23:59:58.999Z"})
        EXPECT_EQ(UaDateTime::fromString(text).toString(), text);
    const UaDateTime time = UaDateTime::fromString("2026-11-21T10:15:30.1239999Z");
    EXPECT_EQ(time.toDateString(), "2026-11-21");
    EXPECT_EQ(time.toTimeString(), "10:15:30.123");
    EXPECT_EQ(time.value() % 10000000, 1239999) << "100 ns are kept";
}

TEST(UaDateTime, ReadsZonesAndShortForms)
{
    const UaDateTime expected = UaDateTime::fromString("2026-11-21T10:15:00.000Z");
    for (const char* text :
         {"2026-11-21T10:15", "2026-11-21 10:15:00", "2026-11-21T12:15:00+02:00",
          "2026-11-20T23:45:00.0-10:30", "2026-11-21T10:15:00.00000000009Z", " 2026-11-21T10:15Z "})
        EXPECT_EQ(UaDateTime::fromString(text), expected) << text;
    EXPECT_EQ(UaDateTime::fromString("2026-11-21"), UaDateTime::fromString("2026-11-21T00:00:00Z"));
    for (const char* wrong :
         {"", "2026", "2026-13-01", "2026-02-29", "2026-11-21T24:00:00", "2026-11-21T10:60:00",
          "2026-11-21T10:15:61", "2026-11-21T10:15:00.", "2026-11-21T10:15:00+25:00", "2026-11-21T10:15:00Zx",
          "26-11-21", "0000-01-01"}) {
        bool ok = true;
        EXPECT_TRUE(UaDateTime::fromString(wrong, &ok).isNull()) << wrong;
        EXPECT_FALSE(ok) << wrong;
    }
}

TEST(UaDateTime, ConvertsToTheEpochOfTheSystem)
{
    const UaDateTime epoch = UaDateTime::fromTime_t(0);
    EXPECT_EQ(epoch.value(), 116444736000000000);
    EXPECT_EQ(epoch.toString(), "1970-01-01T00:00:00.000Z");
    EXPECT_EQ(UaDateTime::fromMSecsSinceEpoch(1763720130123).toMSecsSinceEpoch(), 1763720130123);
    EXPECT_EQ(UaDateTime::fromMSecsSinceEpoch(1763720130123).toTime_t(), 1763720130);
    EXPECT_EQ(UaDateTime::fromMSecsSinceEpoch(-1).toString(), "1969-12-31T23:59:59.999Z");
    const UaDateTime now = UaDateTime::now();
    EXPECT_LT(std::abs(now.toTime_t() - std::time(nullptr)), 5);
}

TEST(UaDateTime, StaysWithinTheCalendar)
{
    const char* first = "1601-01-01T00:00:00.000Z";
    const char* last = "9999-12-31T23:59:59.999Z";
    EXPECT_EQ(UaDateTime(INT64_MAX).toString(), last);
    EXPECT_EQ(UaDateTime(INT64_MIN).toString(), first);
    EXPECT_EQ(UaDateTime(-1).toTimeString(), "00:00:00.000");
    EXPECT_EQ(UaDateTime::fromMSecsSinceEpoch(INT64_MAX).toString(), last);
    EXPECT_EQ(UaDateTime::fromMSecsSinceEpoch(INT64_MIN).toString(), first);
    EXPECT_EQ(UaDateTime::fromTime_t(INT64_MAX).toString(), last);
    EXPECT_EQ(UaDateTime::fromTime_t(INT64_MIN).toString(), first);
    EXPECT_EQ(UaDateTime::fromString("0001-01-01").value(), 0);
    EXPECT_EQ(UaDateTime::fromString("9999-12-31T23:59:59Z").value(), INT64_MAX);
    EXPECT_EQ(UaDateTime(INT64_MIN).value(), INT64_MIN) << "the value itself is kept";

    UaDateTime time(INT64_MAX);
    time.addSecs(INT64_MAX);
    EXPECT_EQ(time.value(), INT64_MAX);
    time.addMilliSecs(INT64_MIN);
    EXPECT_EQ(time.value(), 0);
    time.addSecs(90);
    time.addMilliSecs(-500);
    EXPECT_EQ(time.toTimeString(), "00:01:29.500");
    EXPECT_EQ(UaDateTime(0).msecsTo(time), 89500);
}
