#include <plugins/attributes/qlumvisitednodes.h>

#include <algorithm>
#include <cstddef>

namespace {
constexpr std::size_t keptNodes = 200;
}

void QlumVisitedNodes::visit(const QlumVisitedNode& node)
{
    if (m_current < m_nodes.size() && m_nodes[m_current].serverId == node.serverId &&
        m_nodes[m_current].nodeId == node.nodeId)
        return;
    if (!m_nodes.empty())
        m_nodes.resize(m_current + 1);
    m_nodes.push_back(node);
    if (m_nodes.size() > keptNodes)
        m_nodes.erase(m_nodes.begin());
    m_current = m_nodes.size() - 1;
}

void QlumVisitedNodes::forgetServer(unsigned int serverId)
{
    const auto isGone = [serverId](const QlumVisitedNode& node) { return node.serverId == serverId; };
    const auto end = m_nodes.begin() + static_cast<std::ptrdiff_t>(std::min(m_current, m_nodes.size()));
    const auto before = static_cast<std::size_t>(std::count_if(m_nodes.begin(), end, isGone));
    std::erase_if(m_nodes, isGone);
    m_current = m_nodes.empty() ? 0 : std::min(m_current - before, m_nodes.size() - 1);
}
