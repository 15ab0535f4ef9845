#include <uawidgets/plot/qlumsampleblock_p.h>

#include <uawidgets/plot/qlumsamplestore.h>

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace {

unsigned traitsOf(const QlumSample& sample)
{
    const unsigned bad = sample.isBad() ? qlumHasBad : 0U;
    if (sample.isBreak())
        return qlumHasBreak | bad;
    return qlumHasValue | (sample.isUncertain() ? qlumHasUncertain : 0U);
}

} // namespace

bool QlumSample::isBreak() const noexcept
{
    return isBad() || !std::isfinite(value);
}

void QlumSampleBlock::append(const QlumSample& sample)
{
    const std::size_t offset = size();
    const unsigned found = traitsOf(sample);
    m_times.push_back(sample.time);
    m_values.push_back(sample.value);
    appendStatus(sample.status);
    appendDelay(sample.serverTime == 0 ? noDelay : sample.serverTime - sample.time);
    for (std::size_t level = 0; level < levels; ++level) {
        std::vector<Node>& nodes = m_nodes[level];
        const std::size_t number = offset >> (levelBits * (level + 1));
        if (number == nodes.size())
            nodes.emplace_back();
        Node& node = nodes[number];
        node.traits = static_cast<std::uint16_t>(node.traits | found);
        if ((found & qlumHasValue) != 0 && sample.value < node.minimum) {
            node.minimum = sample.value;
            node.minimumAt = static_cast<std::uint16_t>(offset);
        }
        if ((found & qlumHasValue) != 0 && sample.value > node.maximum) {
            node.maximum = sample.value;
            node.maximumAt = static_cast<std::uint16_t>(offset);
        }
    }
}

// Most blocks have one status only.
void QlumSampleBlock::appendStatus(std::uint32_t status)
{
    if (size() == 1)
        m_status = status;
    else if (m_statuses.empty() && status != m_status)
        m_statuses.assign(size() - 1, m_status);
    if (!m_statuses.empty())
        m_statuses.push_back(status);
}

void QlumSampleBlock::appendDelay(std::int64_t delay)
{
    const std::size_t before = size() - 1;
    if (before == 0)
        m_delay = delay;
    if (m_delays.empty() && m_wideDelays.empty()) {
        if (delay == m_delay)
            return;
        if (isNarrow(m_delay))
            m_delays.assign(before, narrow(m_delay));
        else
            m_wideDelays.assign(before, m_delay);
    }
    if (m_wideDelays.empty() && !isNarrow(delay)) {
        m_wideDelays.reserve(capacity);
        for (const std::int32_t one : m_delays)
            m_wideDelays.push_back(widened(one));
        m_delays = {};
    }
    if (m_wideDelays.empty())
        m_delays.push_back(narrow(delay));
    else
        m_wideDelays.push_back(delay);
}

void QlumSampleBlock::addNode(const Node& node, std::size_t base, QlumSampleSummary& summary) const
{
    summary.traits |= node.traits;
    if (node.minimum < summary.minimum) {
        summary.minimum = node.minimum;
        summary.minimumAt = base + node.minimumAt;
    }
    if (node.maximum > summary.maximum) {
        summary.maximum = node.maximum;
        summary.maximumAt = base + node.maximumAt;
    }
}

void QlumSampleBlock::summarize(std::size_t first, std::size_t last, std::size_t base,
                                QlumSampleSummary& summary) const
{
    while (first < last) {
        std::size_t level = 0;
        while (level < levels && first % span(level + 1) == 0 && first + span(level + 1) <= last)
            ++level;
        if (level == 0) {
            const unsigned found = traitsOf(at(first));
            const double value = (found & qlumHasValue) != 0 ? m_values[first] : std::nan("");
            const auto offset = static_cast<std::uint16_t>(first);
            addNode({value, value, offset, offset, static_cast<std::uint16_t>(found)}, base, summary);
        } else {
            addNode(m_nodes[level - 1][first >> (levelBits * level)], base, summary);
        }
        first += span(level);
    }
}

// Of the samples at an offset that is a multiple of the level's span.
unsigned QlumSampleBlock::traits(std::size_t level, std::size_t offset) const
{
    return level == 0 ? traitsOf(at(offset)) : m_nodes[level - 1][offset >> (levelBits * level)].traits;
}

std::size_t QlumSampleBlock::findFirst(unsigned trait, std::size_t first, std::size_t last) const
{
    const std::size_t none = last;
    while (first < last) {
        std::size_t level = 0;
        while (level < levels && first % span(level + 1) == 0 && first + span(level + 1) <= last)
            ++level;
        while (level > 0 && (traits(level, first) & trait) != 0)
            --level;
        if (level == 0 && (traits(0, first) & trait) != 0)
            return first;
        first += span(level);
    }
    return none;
}

std::size_t QlumSampleBlock::findLast(unsigned trait, std::size_t first, std::size_t last) const
{
    const std::size_t none = last;
    while (first < last) {
        std::size_t level = 0;
        while (level < levels && last % span(level + 1) == 0 && first + span(level + 1) <= last)
            ++level;
        while (level > 0 && (traits(level, last - span(level)) & trait) != 0)
            --level;
        if (level == 0 && (traits(0, last - 1) & trait) != 0)
            return last - 1;
        last -= span(level);
    }
    return none;
}
