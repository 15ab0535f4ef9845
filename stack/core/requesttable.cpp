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
    m_earliest = m_requests.empty() ? deadline : std::min(m_earliest, deadline);
    m_requests.emplace(id, PendingRequest{deadline});
}

std::vector<OpcUa_UInt32> RequestTable::takeExpired(TimePoint now)
{
    std::vector<OpcUa_UInt32> expired;
    if (nextDeadline() > now)
        return expired;
    m_earliest = never;
    for (auto entry = m_requests.begin(); entry != m_requests.end();) {
        if (entry->second.deadline <= now) {
            expired.push_back(entry->first);
            entry = m_requests.erase(entry);
        } else {
            m_earliest = std::min(m_earliest, entry->second.deadline);
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
