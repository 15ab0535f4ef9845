// What sinks keep, and how often their owners hear of it.
#include <monitoring/allsink.h>
#include <monitoring/latestsink.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

using monitoring::AllSink;
using monitoring::HandOverPacer;
using monitoring::LatestSink;
using monitoring::Sink;
using monitoring::SinkItem;
using monitoring::SinkMark;
using testing::ElementsAre;

template <typename Condition>
bool waitFor(const Condition& condition)
{
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition() && std::chrono::steady_clock::now() < limit)
        std::this_thread::yield();
    return condition();
}

// Items by their numbers, which are their keys as well.
class SinkTest : public testing::Test
{
protected:
    SinkItem item(OpcUa_UInt64 number) { return {number, number, marks[number]}; }
    void put(Sink& sink, OpcUa_UInt64 number, OpcUa_Int32 value)
    {
        OpcUa_DataValue raw;
        OpcUa_DataValue_Initialize(&raw);
        raw.Value.Datatype = OpcUaType_Int32;
        raw.Value.Value.Int32 = value;
        Sink::Filling filling;
        filling.put(sink, item(number), raw);
    }
    static monitoring::ItemChange news(OpcUa_UInt64 key)
    {
        monitoring::ItemChange change;
        change.key = key;
        return change;
    }
    template <typename Values>
    static std::vector<std::string> texts(const Values& values)
    {
        std::vector<std::string> list;
        for (const auto& value : values)
            list.push_back(std::to_string(value.key) + "=" + value.value.value().toString().toStdString());
        return list;
    }

    std::atomic<OpcUa_UInt64> now{1000};
    std::atomic<int> looks{0}; // at the clock
    std::shared_ptr<HandOverPacer> pacer = std::make_shared<HandOverPacer>([this] {
        ++looks;
        return now.load();
    });
    std::atomic<int> told{0};
    std::map<OpcUa_UInt64, SinkMark> marks;
};

TEST_F(SinkTest, LatestKeepsTheNewestOfEachAndCountsTheOthers)
{
    const auto sink = std::make_shared<LatestSink>(Sink::Ready(), pacer);
    put(*sink, 1, 10);
    put(*sink, 2, 20);
    put(*sink, 1, 11);
    put(*sink, 1, 12);
    const auto batch = sink->take();
    EXPECT_THAT(texts(batch.values), ElementsAre("1=12", "2=20"));
    EXPECT_EQ(batch.values[0].merged, 2u);
    EXPECT_EQ(batch.values[1].merged, 0u);
    put(*sink, 2, 21);
    put(*sink, 1, 13);
    EXPECT_THAT(texts(sink->take().values), ElementsAre("2=21", "1=13"));
    EXPECT_TRUE(sink->take().values.empty());
}

TEST_F(SinkTest, AllKeepsTheOrderAndTellsWhatItLost)
{
    const auto sink = std::make_shared<AllSink>(Sink::Ready(), 3, pacer);
    for (int value = 1; value <= 5; ++value)
        put(*sink, static_cast<OpcUa_UInt64>(value % 2), value);
    const auto batch = sink->take();
    EXPECT_THAT(texts(batch.values), ElementsAre("1=3", "0=4", "1=5"));
    EXPECT_EQ(batch.overflowed, 2u);
    put(*sink, 1, 6);
    EXPECT_EQ(sink->take().overflowed, 0u);
}

TEST_F(SinkTest, DropsWhatIsLeftOfItemsThatAreGone)
{
    const auto all = std::make_shared<AllSink>(Sink::Ready(), 10, pacer);
    const auto latest = std::make_shared<LatestSink>(Sink::Ready(), pacer);
    for (Sink* const sink : {static_cast<Sink*>(all.get()), static_cast<Sink*>(latest.get())}) {
        for (OpcUa_UInt64 number = 1; number <= 3; ++number)
            put(*sink, number, 5);
        Sink::Filling filling;
        filling.change(*sink, item(2), news(2));
        filling.change(*sink, item(3), news(3));
        const std::vector<SinkItem> gone{item(1), item(3)};
        filling.drop(*sink, gone);
        marks.clear();
    }
    const auto values = all->take();
    EXPECT_THAT(texts(values.values), ElementsAre("2=5"));
    ASSERT_EQ(values.changes.size(), 1u);
    EXPECT_EQ(values.changes[0].key, 2u);
    EXPECT_THAT(texts(latest->take().values), ElementsAre("2=5"));
}

TEST_F(SinkTest, ARecordKnowsWhereSomethingHappenedAndWhatItLost)
{
    const auto sink = std::make_shared<AllSink>(Sink::Ready(), AllSink::Record{4, 1000}, pacer);
    const auto note = [&](OpcUa_UInt32 number) {
        monitoring::Incident incident;
        incident.first = number;
        Sink::Filling filling;
        filling.note(*sink, incident);
    };
    const auto putAt = [&](OpcUa_UInt64 number, OpcUa_DateTime received, OpcUa_Int32 length) {
        OpcUa_DataValue raw;
        OpcUa_DataValue_Initialize(&raw);
        EXPECT_TRUE(
            OpcUa_IsGood(UaVariant(UaString(std::string(static_cast<std::size_t>(length), 'x').c_str()))
                             .detach(&raw.Value)));
        Sink::Filling filling;
        filling.put(*sink, item(number), raw, {received, 7});
    };
    putAt(1, 10, 1);
    note(1);
    putAt(2, 20, 1);
    putAt(3, 30, 1);
    note(2);
    for (OpcUa_UInt64 number = 4; number <= 6; ++number)
        putAt(number, static_cast<OpcUa_DateTime>(number) * 10, 1);
    {
        const std::vector<SinkItem> gone{item(4)};
        Sink::Filling filling;
        filling.drop(*sink, gone); // what came is recorded
    }
    const auto batch = sink->take();
    EXPECT_THAT(texts(batch.values), ElementsAre("3=x", "4=x", "5=x", "6=x"));
    EXPECT_EQ(batch.values[0].received, 30);
    EXPECT_EQ(batch.values[0].sequenceNumber, 7u);
    ASSERT_EQ(batch.incidents.size(), 2u);
    EXPECT_EQ(batch.incidents[0].place, 0u); // what was before and behind it is lost
    EXPECT_EQ(batch.incidents[1].place, 1u);
    EXPECT_EQ(batch.loss.values, 2u);
    EXPECT_EQ(batch.loss.from, 10);
    EXPECT_EQ(batch.loss.to, 20);
    putAt(7, 70, 600);
    note(3);
    putAt(8, 80, 600); // more bytes than it may keep
    const auto second = sink->take();
    EXPECT_EQ(second.values.size(), 1u);
    EXPECT_EQ(second.loss.values, 1u);
    ASSERT_EQ(second.incidents.size(), 1u);
    EXPECT_EQ(second.incidents[0].place, 0u);
}

TEST_F(SinkTest, OwnerIsToldOnceUntilHeTakesAndTwentyTimesASecondAtMost)
{
    const auto sink = std::make_shared<LatestSink>([this] { ++told; }, pacer);
    put(*sink, 1, 1);
    put(*sink, 2, 1);
    ASSERT_TRUE(waitFor([&] { return told == 1; })); // at once
    now += 1000;
    put(*sink, 1, 2); // he has not taken yet
    static_cast<void>(sink->take());
    put(*sink, 1, 3);
    ASSERT_TRUE(waitFor([&] { return told == 2; }));
    static_cast<void>(sink->take());
    now += HandOverPacer::pause - 1;
    put(*sink, 1, 4);
    const int before = looks;
    ASSERT_TRUE(waitFor([&] { return looks >= before + 3; })); // it looks, and waits
    EXPECT_EQ(told, 2);
    now += 1;
    EXPECT_TRUE(waitFor([&] { return told == 3; }));
    EXPECT_EQ(sink->take().values[0].merged, 0u);
}

TEST_F(SinkTest, AClosedSinkIsSilentOnceCloseHasReturned)
{
    std::mutex mutex;
    std::condition_variable changed;
    bool entered = false;
    bool mayLeave = false;
    std::atomic<bool> left{false};
    const auto sink = std::make_shared<LatestSink>(
        [&] {
            std::unique_lock lock(mutex);
            entered = true;
            changed.notify_all();
            changed.wait(lock, [&] { return mayLeave; });
            left = true;
        },
        pacer);
    put(*sink, 1, 1);
    {
        std::unique_lock lock(mutex);
        ASSERT_TRUE(changed.wait_for(lock, std::chrono::seconds(10), [&] { return entered; }));
    }
    std::atomic<bool> closed{false};
    std::thread closer([&] {
        sink->close();
        EXPECT_TRUE(left); // it has waited for the owner's function
        closed = true;
    });
    {
        const std::lock_guard lock(mutex);
        mayLeave = true;
    }
    changed.notify_all();
    closer.join();
    now += 1000;
    put(*sink, 1, 2);
    EXPECT_TRUE(closed);
    EXPECT_TRUE(sink->take().values.empty());
}

} // namespace
