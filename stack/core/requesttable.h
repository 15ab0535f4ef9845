// The calls that wait for an answer, and when they give up.
#pragma once

#include <stack/core/protocol.h>

#include <unordered_map>
#include <vector>

namespace opcua {

class RequestTable
{
public:
    /// A new request id, neither 0 nor in use.
    [[nodiscard]] OpcUa_UInt32 reserveId();
    /// Whether reserveId has ever answered this one.
    [[nodiscard]] bool wasReserved(OpcUa_UInt32 id) const { return id != 0 && (m_wrapped || id <= m_lastId); }
    void add(OpcUa_UInt32 id, TimePoint deadline);
    [[nodiscard]] bool contains(OpcUa_UInt32 id) const { return m_deadlines.contains(id); }
    /// False when the id was not there.
    bool remove(OpcUa_UInt32 id) { return m_deadlines.erase(id) != 0; }
    /// Takes out and answers those whose time is over.
    [[nodiscard]] std::vector<OpcUa_UInt32> takeExpired(TimePoint now);
    [[nodiscard]] std::vector<OpcUa_UInt32> takeAll();

    /// At or before the earliest deadline. It may name the deadline of a request that was answered meanwhile:
    /// one look too many in ten seconds is cheaper than a sorted list.
    [[nodiscard]] TimePoint nextDeadline() const { return m_deadlines.empty() ? never : m_earliest; }
    [[nodiscard]] size_t size() const { return m_deadlines.size(); }

private:
    std::unordered_map<OpcUa_UInt32, TimePoint> m_deadlines;
    TimePoint m_earliest = never;
    OpcUa_UInt32 m_lastId = 0;
    bool m_wrapped = false; ///< all ids have been in use
};

} // namespace opcua
