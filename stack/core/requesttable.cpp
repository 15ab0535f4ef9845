#include <stack/core/requesttable.h>

#include <algorithm>
#include <vector>

namespace opcua {

OpcUa_UInt32 RequestTable::reserveId()
{
    do {
        m_wrapped |= ++m_lastId == 0;
    } while (m_lastId == 0 || contains(m_lastId));
    return m_lastId;
}

void RequestTable::add(OpcUa_UInt32 id, TimePoint deadline)
{
    m_earliest = m_deadlines.empty() ? deadline : std::min(m_earliest, deadline);
    m_deadlines.emplace(id, deadline);
}

std::vector<OpcUa_UInt32> RequestTable::takeExpired(TimePoint now)
{
    std::vector<OpcUa_UInt32> expired;
    if (nextDeadline() > now)
        return expired;
    m_earliest = never;
    for (auto entry = m_deadlines.begin(); entry != m_deadlines.end();) {
        if (entry->second <= now) {
            expired.push_back(entry->first);
            entry = m_deadlines.erase(entry);
        } else {
            m_earliest = std::min(m_earliest, entry->second);
            ++entry;
        }
    }
    std::sort(expired.begin(), expired.end());
    return expired;
}

std::vector<OpcUa_UInt32> RequestTable::takeAll()
{
    return takeExpired(never);
}

} // namespace opcua
