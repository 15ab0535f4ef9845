// A piece of a sample store: 4,096 samples by column, and the extremes of each 16, 256 and 4,096 of them.
#pragma once
#include <uawidgets/plot/qlumsamplestore.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

class QlumSampleBlock
{
public:
    static constexpr std::size_t capacity = 4096;
    static constexpr std::size_t levelBits = 4;
    static constexpr std::size_t levels = 3;

    [[nodiscard]] std::size_t size() const noexcept { return m_times.size(); }
    [[nodiscard]] bool isFull() const noexcept { return size() == capacity; }
    [[nodiscard]] std::int64_t time(std::size_t offset) const { return m_times[offset]; }
    [[nodiscard]] std::int64_t lastTime() const { return m_times.back(); }
    [[nodiscard]] QlumSample at(std::size_t offset) const
    {
        const std::int64_t delay = delayAt(offset);
        return {m_times[offset], m_values[offset], statusAt(offset),
                delay == noDelay ? 0 : m_times[offset] + delay};
    }

    void append(const QlumSample& sample);
    [[nodiscard]] std::size_t lowerBound(std::int64_t time, std::size_t from) const
    {
        return static_cast<std::size_t>(
            std::lower_bound(m_times.begin() + static_cast<std::ptrdiff_t>(from), m_times.end(), time) -
            m_times.begin());
    }

    /// Adds the samples from first to before last; indexes count from the given one of the block's first
    /// sample.
    void summarize(std::size_t first, std::size_t last, std::size_t base, QlumSampleSummary& summary) const;
    /// Offset of the first with the trait, last for none.
    [[nodiscard]] std::size_t findFirst(unsigned trait, std::size_t first, std::size_t last) const;
    [[nodiscard]] std::size_t findLast(unsigned trait, std::size_t first, std::size_t last) const;

private:
    struct Node
    {
        double minimum = std::numeric_limits<double>::infinity();
        double maximum = -std::numeric_limits<double>::infinity();
        std::uint16_t minimumAt = 0;
        std::uint16_t maximumAt = 0;
        std::uint16_t traits = 0;
    };

    [[nodiscard]] std::uint32_t statusAt(std::size_t offset) const
    {
        return m_statuses.empty() ? m_status : m_statuses[offset];
    }
    /// Samples without a time of the server.
    static constexpr std::int64_t noDelay = std::numeric_limits<std::int64_t>::min();
    static constexpr std::int32_t noNarrowDelay = std::numeric_limits<std::int32_t>::min();

    [[nodiscard]] static bool isNarrow(std::int64_t delay)
    {
        return delay == noDelay || (delay > noNarrowDelay && static_cast<std::int32_t>(delay) == delay);
    }
    [[nodiscard]] static std::int32_t narrow(std::int64_t delay)
    {
        return delay == noDelay ? noNarrowDelay : static_cast<std::int32_t>(delay);
    }
    [[nodiscard]] static std::int64_t widened(std::int32_t delay)
    {
        return delay == noNarrowDelay ? noDelay : delay;
    }
    [[nodiscard]] std::int64_t delayAt(std::size_t offset) const
    {
        if (!m_wideDelays.empty())
            return m_wideDelays[offset];
        return m_delays.empty() ? m_delay : widened(m_delays[offset]);
    }
    void appendStatus(std::uint32_t status);
    void appendDelay(std::int64_t delay);

    [[nodiscard]] static std::size_t span(std::size_t level) { return std::size_t{1} << (levelBits * level); }
    [[nodiscard]] unsigned traits(std::size_t level, std::size_t offset) const;
    void addNode(const Node& node, std::size_t base, QlumSampleSummary& summary) const;

    std::vector<std::int64_t> m_times;
    std::vector<double> m_values;
    std::uint32_t m_status = 0; // of all, as long as none differs
    std::vector<std::uint32_t> m_statuses;
    std::int64_t m_delay = 0;                      // of all, as long as none differs
    std::vector<std::int32_t> m_delays;            // as long as all fit
    std::vector<std::int64_t> m_wideDelays;        // when one does not
    std::array<std::vector<Node>, levels> m_nodes; // of 16, 256 and 4,096 samples
};
