#include <plugins/history/qlumhistoryportions.h>

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

QlumHistoryPortions::QlumHistoryPortions(std::size_t nodes) : m_waiting(nodes), m_size(nodes)
{
    std::iota(m_waiting.begin(), m_waiting.end(), std::size_t{0});
}

const std::vector<std::size_t>& QlumHistoryPortions::next()
{
    const std::size_t refused = std::exchange(m_refused, 0), asked = m_asked.size();
    m_asked.clear();
    if (refused > 0) {
        if (asked == 1)
            return m_asked; // others may have all points there are
        m_size = std::max<std::size_t>(1, refused < asked ? asked - refused : asked / 2);
    }
    const auto end = m_waiting.begin() + static_cast<std::ptrdiff_t>(std::min(m_size, m_waiting.size()));
    m_asked.assign(m_waiting.begin(), end);
    m_waiting.erase(m_waiting.begin(), end);
    return m_asked;
}

void QlumHistoryPortions::refuse(std::size_t node)
{
    ++m_refused;
    m_waiting.push_back(node);
}
