#pragma once
#include <app/api/qlumjobpool.h>

#include <map>
#include <memory>

/// One thread for each server on which the jobs of all views of a tool run in their order, so that no server
/// holds up another, and a closed view leaves what is left to be done behind. GUI thread.
class QlumServerPools
{
public:
    /// Made with the first use.
    [[nodiscard]] QlumJobPool& of(unsigned int serverId)
    {
        std::unique_ptr<QlumJobPool>& pool = m_pools[serverId];
        if (!pool)
            pool = std::make_unique<QlumJobPool>(1);
        return *pool;
    }
    /// The server goes away: ends what is under way there, and waits for it.
    void endServer(unsigned int serverId)
    {
        if (const auto found = m_pools.find(serverId); found != m_pools.end()) {
            found->second->endServer(serverId);
            m_pools.erase(found);
        }
    }

private:
    std::map<unsigned int, std::unique_ptr<QlumJobPool>> m_pools;
};
