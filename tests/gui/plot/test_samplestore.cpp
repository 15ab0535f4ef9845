// What the store keeps, in which order, and what it knows of stretches.
#include <tests/gui/plot/randomsamples.h>
#include <uawidgets/plot/qlumsamplestore.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <future>
#include <initializer_list>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

std::vector<std::pair<std::int64_t, double>> contentOf(const QlumSampleStore& store)
{
    std::vector<std::pair<std::int64_t, double>> content;
    for (std::size_t i = 0; i < store.size(); ++i)
        content.emplace_back(store.at(i).time, store.at(i).value);
    return content;
}

// Stretches of all lengths, short ones more often.
std::pair<std::size_t, std::size_t> randomStretch(std::size_t size, std::mt19937& random)
{
    const std::size_t first = std::uniform_int_distribution<std::size_t>(0, size)(random);
    const std::size_t longest = std::min<std::size_t>(size - first, std::size_t{1} << (random() % 18));
    return {first, first + std::uniform_int_distribution<std::size_t>(0, longest)(random)};
}

} // namespace

TEST(SampleStore, KnowsTheExtremesOfEveryStretch)
{
    std::mt19937 random(1);
    QlumSampleStore store(40'000);
    store.append(randomSamples(50'001, 5, random)); // the first block is begun in the middle
    ASSERT_EQ(store.size(), 40'000U);
    for (int round = 0; round < 2000; ++round) {
        const auto [first, last] = randomStretch(store.size(), random);
        double minimum = std::numeric_limits<double>::infinity(), maximum = -minimum;
        std::size_t firstBreak = last, lastBreak = last, firstUncertain = last;
        for (std::size_t i = first; i < last; ++i) {
            const QlumSample sample = store.at(i);
            if (sample.isBreak()) {
                firstBreak = std::min(firstBreak, i);
                lastBreak = i;
                continue;
            }
            minimum = std::min(minimum, sample.value);
            maximum = std::max(maximum, sample.value);
            if (sample.isUncertain())
                firstUncertain = std::min(firstUncertain, i);
        }
        const QlumSampleSummary summary = store.summary(first, last);
        ASSERT_EQ(summary.minimum, minimum) << first << " to " << last;
        ASSERT_EQ(summary.maximum, maximum) << first << " to " << last;
        if (summary.hasValue()) {
            ASSERT_EQ(store.at(summary.minimumAt).value, minimum);
            ASSERT_EQ(store.at(summary.maximumAt).value, maximum);
        }
        ASSERT_EQ(store.findFirst(qlumHasBreak, first, last), firstBreak);
        ASSERT_EQ(store.findLast(qlumHasBreak, first, last), lastBreak);
        ASSERT_EQ(store.findFirst(qlumHasUncertain, first, last), firstUncertain);
        ASSERT_EQ((summary.traits & qlumHasBreak) != 0, firstBreak != last);
    }
}

TEST(SampleStore, KeepsStatusesAndTimesOfTheServerHoweverTheyChange)
{
    std::mt19937 random(9);
    std::vector<QlumSample> samples;
    for (std::int64_t i = 0; i < 30'000; ++i) {
        QlumSample sample{1'000'000'000'000 + i * 10'000, 1.0, 0};
        const std::int64_t block = i / 4096; // each in another way
        if (block == 1 || block == 5)
            sample.status = random() % 100 == 0 ? 0x40000000U : 0;
        if (block >= 2 && block != 6)
            sample.serverTime =
                sample.time + (block == 3 ? 777 : static_cast<std::int64_t>(random() % 100'000));
        if (block == 4 && random() % 50 == 0)
            sample.serverTime = 0;
        if (block >= 5 && random() % 50 == 0)
            sample.serverTime = 9'000'000'000'000;
        samples.push_back(sample);
    }
    QlumSampleStore store;
    store.append(samples);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        ASSERT_EQ(store.at(i).status, samples[i].status) << i;
        ASSERT_EQ(store.at(i).serverTime, samples[i].serverTime) << i;
    }
}

TEST(SampleStore, FindsTimesAsASearchThroughAllDoes)
{
    std::mt19937 random(2);
    QlumSampleStore store(20'000);
    store.append(randomSamples(23'456, 0, random));
    const std::int64_t first = store.timeAt(0), last = store.timeAt(store.size() - 1);
    std::uniform_int_distribution<std::int64_t> anyTime(first - 1000, last + 1000);
    for (int round = 0; round < 300; ++round) {
        const std::int64_t time = anyTime(random);
        const std::size_t from = random() % store.size();
        std::size_t expected = from;
        while (expected < store.size() && store.timeAt(expected) < time)
            ++expected;
        ASSERT_EQ(store.lowerBound(time, from), expected) << time;
    }
}

TEST(SampleStore, KeepsTheNewestAndCountsWhatItDrops)
{
    for (const std::size_t capacity : std::initializer_list<std::size_t>{1, 5, 4095, 4096, 4097, 10'000}) {
        QlumSampleStore store(capacity);
        constexpr int count = 20'000;
        for (int i = 0; i < count; ++i)
            store.append({startOfSamples + i, static_cast<double>(i), 0});
        ASSERT_EQ(store.size(), capacity);
        EXPECT_EQ(store.at(0).value, count - static_cast<double>(capacity));
        EXPECT_EQ(store.at(capacity - 1).value, count - 1);
        EXPECT_EQ(store.dropped(), count - capacity);
        EXPECT_EQ(store.summary(0, capacity).minimum, count - static_cast<double>(capacity));
    }
}

TEST(SampleStore, PutsLateSamplesInTheirPlacesWhileNewOnesArrive)
{
    std::mt19937 random(3);
    for (const std::size_t capacity : std::initializer_list<std::size_t>{100'000, 12'000}) {
        std::vector<QlumSample> samples = randomSamples(20'000, 0, random);
        for (std::size_t i = 0; i < samples.size();
             ++i) // told apart, and in a known order where times are equal
            samples[i] = {startOfSamples + static_cast<std::int64_t>(i) * 7, static_cast<double>(i), 0};
        std::vector<QlumSample> arriving = samples;
        for (std::size_t i = 0; i + 1 < arriving.size(); i += 1 + random() % 3)
            std::swap(arriving[i], arriving[i + random() % std::min<std::size_t>(arriving.size() - i, 5000)]);

        QlumSampleStore store(capacity);
        for (std::size_t i = 0; i < arriving.size();) {
            const QlumSampleStore copy = store;
            auto sorting = std::async(std::launch::async, [copy] { return copy.sorted(); });
            for (const std::size_t end = std::min(i + 1500, arriving.size()); i < end; ++i)
                store.append(arriving[i]);
            ASSERT_TRUE(store.adopt(sorting.get()));
        }
        ASSERT_TRUE(store.adopt(store.sorted()));
        EXPECT_EQ(store.unsorted(), 0U);
        EXPECT_EQ(store.received(), samples.size());
        EXPECT_EQ(store.dropped() + store.size(), samples.size());
        const auto content = contentOf(store);
        EXPECT_TRUE(std::is_sorted(content.begin(), content.end()));
        if (capacity > samples.size()) {
            ASSERT_EQ(content.size(), samples.size());
            for (std::size_t i = 0; i < samples.size(); ++i)
                ASSERT_EQ(content[i].second, samples[i].value) << i;
        }
    }
}

TEST(SampleStore, DoesNotTakeBackWhatWasClearedOrSortedMeanwhile)
{
    QlumSampleStore store(10);
    store.append({startOfSamples + 2, 2, 0});
    store.append({startOfSamples + 1, 1, 0});
    const QlumSampleStore early = store.sorted();
    ASSERT_TRUE(store.adopt(store.sorted()));
    EXPECT_FALSE(store.adopt(early));
    EXPECT_EQ(contentOf(store).size(), 2U);
    const QlumSampleStore again = store.sorted();
    store.clear();
    store.append({startOfSamples + 3, 3, 0});
    EXPECT_FALSE(store.adopt(again));
    ASSERT_EQ(store.size(), 1U);
    EXPECT_EQ(store.at(0).value, 3);
}

TEST(SampleStore, IsBoundedWhenNobodySorts)
{
    QlumSampleStore store(1000);
    for (int i = 0; i < 100'000; ++i) // newest first
        store.append({startOfSamples - i, static_cast<double>(-i), 0});
    EXPECT_LT(store.unsorted(), 1000U);
    EXPECT_EQ(store.received(), store.size() + store.unsorted() + store.dropped());
    ASSERT_TRUE(store.adopt(store.sorted()));
    ASSERT_EQ(store.size(), 1000U);
    EXPECT_EQ(store.at(999).value, 0); // the newest in time are kept, whenever they came
    EXPECT_EQ(store.at(0).value, -999);
}

TEST(SampleStore, CopiesAreIndependent)
{
    std::mt19937 random(4);
    QlumSampleStore store;
    store.append(randomSamples(5000, 0, random));
    const QlumSampleStore copy = store;
    const auto before = contentOf(copy);
    store.append(QlumSample{startOfSamples * 2, 1e9, 0});
    EXPECT_EQ(contentOf(copy), before);
    EXPECT_LT(copy.summary(0, copy.size()).maximum, 1e9);
    EXPECT_EQ(store.summary(0, store.size()).maximum, 1e9);
}

TEST(SampleStore, TamesTimesThatAreNone)
{
    QlumSampleStore store;
    store.append({std::numeric_limits<std::int64_t>::min(), 1, 0});
    store.append({std::numeric_limits<std::int64_t>::max(), 2, 0});
    EXPECT_EQ(store.timeAt(0), 0);
    EXPECT_LT(store.timeAt(1), 2'650'467'744'000'000'000);
}
