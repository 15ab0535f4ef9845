// Ids of the server for which a session has no subscription.
#pragma once

#include <opcua/opcua_platform.h>

#include <algorithm>
#include <deque>

namespace UaClientSdk {

/// Answers for a subscription may come after its end, and for one whose end or beginning the server was told
/// of in vain they come until it is deleted. Bounded: the oldest ids are forgotten first. Not thread-safe.
class FormerSubscriptions
{
public:
    static constexpr std::size_t maxLength = 100;

    /// What an answer for an id is.
    struct Finding
    {
        bool isFirst = false;   ///< none came for it since it ended
        bool isUnknown = false; ///< nothing was done about it yet; from now on something is
    };

    /// The server has no such subscription any more, or has been told to end it.
    void add(OpcUa_UInt32 id)
    {
        forget(id);
        if (m_entries.size() >= maxLength)
            m_entries.pop_front();
        m_entries.push_back({id, false});
    }
    void forget(OpcUa_UInt32 id)
    {
        std::erase_if(
            m_entries, [id](const Entry& entry) { return entry.id == id; });
    }
    [[nodiscard]] Finding find(OpcUa_UInt32 id)
    {
        const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                        [id](const Entry& entry) { return entry.id == id; });
        const bool isUnknown = found == m_entries.end();
        const bool isFirst = isUnknown || !found->answered;
        if (isUnknown)
            add(id);
        (isUnknown ? m_entries.back() : *found).answered = true;
        return {isFirst, isUnknown};
    }
    void clear() { m_entries.clear(); }

private:
    struct Entry
    {
        OpcUa_UInt32 id;
        bool answered;
    };
    std::deque<Entry> m_entries;
};

} // namespace UaClientSdk
