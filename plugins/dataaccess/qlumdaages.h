#pragma once
#include <opcua/opcua_types.h>

#include <cstddef>
#include <map>

/// How many rows have had their newest value at which time: tells the oldest of them without a look at every
/// row. Values come many at a time, and those that come together are one step here.
class QlumDaAges
{
public:
    /// A row whose value came at one time has one of a later time now; 0: it had none.
    void renew(OpcUa_DateTime before, OpcUa_DateTime now)
    {
        if (before != m_before || now != m_now) {
            book();
            m_before = before;
            m_now = now;
        }
        ++m_run;
    }
    /// When the oldest value came; 0 while no row has one.
    [[nodiscard]] OpcUa_DateTime oldest()
    {
        book();
        return m_counts.empty() ? 0 : m_counts.begin()->first;
    }
    /// No row any more.
    void clear()
    {
        m_counts.clear();
        m_run = 0;
    }

private:
    void book()
    {
        if (m_run == 0)
            return;
        if (m_now != 0)
            m_counts[m_now] += m_run;
        if (const auto old = m_counts.find(m_before); old != m_counts.end() && (old->second -= m_run) == 0)
            m_counts.erase(old);
        m_run = 0;
    }

    std::map<OpcUa_DateTime, std::size_t> m_counts;
    OpcUa_DateTime m_before = 0;
    OpcUa_DateTime m_now = 0;
    std::size_t m_run = 0; ///< rows that have gone from one to the other and are not in the counts yet
};
