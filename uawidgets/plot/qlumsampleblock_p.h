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
        return {m_times[offset], m_values[offset], m_statuses[offset]};
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

    [[nodiscard]] static std::size_t span(std::size_t level) { return std::size_t{1} << (levelBits * level); }
    [[nodiscard]] unsigned traits(std::size_t level, std::size_t offset) const;
    void addNode(const Node& node, std::size_t base, QlumSampleSummary& summary) const;

    std::vector<std::int64_t> m_times;
    std::vector<double> m_values;
    std::vector<std::uint32_t> m_statuses;
    std::array<std::vector<Node>, levels> m_nodes; // of 16, 256 and 4,096 samples
};
