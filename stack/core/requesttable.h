// The calls that wait for an answer, and when they give up.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/core/protocol.h>

#include <unordered_map>
#include <vector>

namespace opcua {

struct PendingRequest
{
    TimePoint deadline;
    OpcUa_CallMeasure* measure = nullptr;
};

class RequestTable
{
public:
    /// A new request id, neither 0 nor in use.
    [[nodiscard]] OpcUa_UInt32 reserveId();
    /// Whether reserveId has ever answered this one.
    [[nodiscard]] bool wasReserved(OpcUa_UInt32 id) const { return id != 0 && (m_wrapped || id <= m_lastId); }
    void add(OpcUa_UInt32 id, TimePoint deadline);
    /// The record of the measured call with this id, which must be there; kept until it is taken out.
    void measure(OpcUa_UInt32 id, OpcUa_CallMeasure& measure)
    {
        m_requests.find(id)->second.measure = &measure;
    }
    [[nodiscard]] bool contains(OpcUa_UInt32 id) const { return m_requests.contains(id); }
    /// Null when the id is not there.
    [[nodiscard]] const PendingRequest* find(OpcUa_UInt32 id) const
    {
        const auto found = m_requests.find(id);
        return found != m_requests.end() ? &found->second : nullptr;
    }
    /// False when the id was not there.
    bool remove(OpcUa_UInt32 id) { return m_requests.erase(id) != 0; }
    /// Takes out and answers those whose time is over.
    [[nodiscard]] std::vector<OpcUa_UInt32> takeExpired(TimePoint now);
    [[nodiscard]] std::vector<OpcUa_UInt32> takeAll();

    /// At or before the earliest deadline. It may name the deadline of a request that was answered meanwhile:
    /// one look too many in ten seconds is cheaper than a sorted list.
    [[nodiscard]] TimePoint nextDeadline() const { return m_requests.empty() ? never : m_earliest; }
    [[nodiscard]] size_t size() const { return m_requests.size(); }

private:
    friend class EngineProbe; // for tests

    std::unordered_map<OpcUa_UInt32, PendingRequest> m_requests;
    TimePoint m_earliest = never;
    OpcUa_UInt32 m_lastId = 0;
    bool m_wrapped = false; ///< all ids have been in use
};

} // namespace opcua
