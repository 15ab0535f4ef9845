// What a curve shows: many samples in little memory, and their extremes at hand for any stretch of them.
#pragma once
#include <QtGlobal>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <span>
#include <vector>

class QlumSampleBlock;

/// One value of a curve.
struct QlumSample
{
    std::int64_t time = 0;    ///< 100 ns since 1601, UTC, as in UaDateTime
    double value = 0;         ///< what is not finite stands for no value: a curve ends there and begins anew
    std::uint32_t status = 0; ///< status code of OPC UA
    std::int64_t serverTime = 0; ///< as time, when the server had it; 0 where nobody said

    /// Whether a curve must not be drawn through it.
    [[nodiscard]] bool isBreak() const noexcept;
    /// A value that is to be taken with care.
    [[nodiscard]] bool isUncertain() const noexcept { return status >> 30 == 1; }
    /// A status that says that there is no usable value.
    [[nodiscard]] bool isBad() const noexcept { return status >> 31 == 1; }
};

/// What is true of some of the samples in a stretch.
enum QlumSampleTrait : unsigned {
    qlumHasValue = 1,     ///< a value to draw
    qlumHasBreak = 2,     ///< a place where curves end
    qlumHasUncertain = 4, ///< a value to draw whose status is Uncertain
    qlumHasBad = 8,       ///< a bad status
};

/// Extremes of a stretch of samples; those that are breaks do not count.
struct QlumSampleSummary
{
    double minimum = std::numeric_limits<double>::infinity();  ///< infinite without a value
    double maximum = -std::numeric_limits<double>::infinity(); ///< infinite without a value
    std::size_t minimumAt = 0; ///< index of the first smallest; valid when there is a value
    std::size_t maximumAt = 0; ///< index of the first largest
    unsigned traits = 0;       ///< QlumSampleTrait, or-ed

    /// Whether there is anything to draw.
    [[nodiscard]] bool hasValue() const noexcept { return (traits & qlumHasValue) != 0; }
};

/// Samples in the order of their times, at most as many as its capacity: the oldest make room. Takes 16 bytes
/// a sample and 2 for a pyramid of extremes, which is kept while samples arrive; 4 more where statuses
/// differ, and up to 8 where times of the server do not follow those of the samples.
///
/// A sample that is older than its predecessor waits until it is sorted in: give a copy to another thread,
/// call sorted() there and adopt() the result. Copies share what is complete, so they are cheap. One store is
/// used by one thread at a time; copies may be used by different threads. Knows no widgets.
class QlumSampleStore
{
public:
    /// Room for at least one sample.
    explicit QlumSampleStore(std::size_t capacity = 1'000'000);

    /// At once in its place when it is not older than the newest. Times are cut to 1601 to 9999.
    void append(const QlumSample& sample);
    /// In this order.
    void append(std::span<const QlumSample> samples);
    /// Forgets samples and counters.
    void clear();

    /// Samples in order; those that wait to be sorted in do not count.
    [[nodiscard]] std::size_t size() const noexcept;
    [[nodiscard]] bool isEmpty() const noexcept { return size() == 0; }           ///< no sample in order
    [[nodiscard]] std::size_t capacity() const noexcept { return m_capacity; }    ///< samples at most
    [[nodiscard]] std::uint64_t received() const noexcept { return m_received; }  ///< since made or cleared
    [[nodiscard]] std::uint64_t dropped() const noexcept;                         ///< for want of room
    [[nodiscard]] std::size_t unsorted() const noexcept { return m_late.size(); } ///< those that wait
    [[nodiscard]] std::uint64_t revision() const noexcept { return m_revision; }  ///< another after a change
    [[nodiscard]] QlumSample at(std::size_t index) const;                         ///< index below size()
    [[nodiscard]] std::int64_t timeAt(std::size_t index) const;                   ///< index below size()

    /// Index of the first sample at or after a time, from an index on; size() for none.
    [[nodiscard]] std::size_t lowerBound(std::int64_t time, std::size_t from = 0) const;
    /// Of the samples from first to before last.
    [[nodiscard]] QlumSampleSummary summary(std::size_t first, std::size_t last) const;
    /// Index of the first sample with a trait from first to before last; last for none.
    [[nodiscard]] std::size_t findFirst(QlumSampleTrait trait, std::size_t first, std::size_t last) const;
    /// Index of the last sample with a trait from first to before last; last for none.
    [[nodiscard]] std::size_t findLast(QlumSampleTrait trait, std::size_t first, std::size_t last) const;

    /// A store with those that waited in their places.
    [[nodiscard]] QlumSampleStore sorted() const;
    /// Takes what sorted() made of a copy, and adds what has arrived since. False when the copy is of a time
    /// before another adoption or clear(): then nothing changes.
    bool adopt(QlumSampleStore sorted);

private:
    struct Place
    {
        const QlumSampleBlock* block;
        std::size_t offset;
        std::size_t blockNumber;
    };

    [[nodiscard]] Place placeOf(std::size_t index) const;
    [[nodiscard]] const QlumSampleBlock& block(std::size_t number) const;
    void appendInOrder(const QlumSample& sample);
    [[nodiscard]] QlumSampleStore keptBefore(std::size_t blocks) const;

    /// The one that grows is a store's own; those that are full never change again.
    class Tail
    {
    public:
        Tail();
        Tail(const Tail& other);
        Tail(Tail&& other) noexcept;
        Tail& operator=(Tail other) noexcept;
        ~Tail();
        std::unique_ptr<QlumSampleBlock> block;
    };

    std::size_t m_capacity;
    std::deque<std::shared_ptr<const QlumSampleBlock>> m_full;
    Tail m_tail;
    std::size_t m_first = 0; // samples of the first block that are dropped already
    std::vector<QlumSample> m_late;
    std::uint64_t m_received = 0;
    std::uint64_t m_inOrder = 0;
    std::uint64_t m_revision = 0;
    std::uint64_t m_generation = 0;
    std::size_t m_lateTaken = 0; // by sorted(), of those that waited in its origin
};
