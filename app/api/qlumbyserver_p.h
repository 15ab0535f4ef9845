// What belongs to a server and is looked for by its id.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <utility>

/// Whoever gets something may keep it over its removal. Any thread.
template <typename Thing>
class QlumByServer
{
public:
    /// Takes the place of what the id had before.
    void put(unsigned int serverId, std::shared_ptr<Thing> thing)
    {
        const std::lock_guard lock(m_mutex);
        m_things[serverId].swap(thing);
    }
    /// An id without one is no fault.
    void remove(unsigned int serverId)
    {
        std::shared_ptr<Thing> last; // it may take its time to end, and needs no lock for it
        const std::lock_guard lock(m_mutex);
        if (auto entry = m_things.extract(serverId))
            last = std::move(entry.mapped());
    }
    /// A null pointer for an unknown server.
    [[nodiscard]] std::shared_ptr<Thing> find(unsigned int serverId) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_things.find(serverId);
        return found == m_things.end() ? nullptr : found->second;
    }

private:
    mutable std::mutex m_mutex;
    std::map<unsigned int, std::shared_ptr<Thing>> m_things;
};
