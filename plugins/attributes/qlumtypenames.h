#pragma once
#include <uabase/values/uanodeid.h>

#include <QString>

#include <map>
#include <mutex>
#include <optional>

/// The names of data types, by server: jobs read them, the model shows them. Any thread.
class QlumTypeNames
{
public:
    /// Nothing for a type whose name nobody has read yet.
    [[nodiscard]] std::optional<QString> find(unsigned int serverId, const UaNodeId& dataTypeId) const
    {
        const std::lock_guard lock(m_mutex);
        const auto server = m_names.find(serverId);
        if (server == m_names.end())
            return std::nullopt;
        const auto name = server->second.find(dataTypeId);
        return name == server->second.end() ? std::nullopt : std::optional(name->second);
    }
    /// An empty name is kept too: the type has none.
    void insert(unsigned int serverId, const UaNodeId& dataTypeId, const QString& name)
    {
        const std::lock_guard lock(m_mutex);
        m_names[serverId][dataTypeId] = name;
    }
    /// Of a server that may have other types now.
    void forget(unsigned int serverId)
    {
        const std::lock_guard lock(m_mutex);
        m_names.erase(serverId);
    }

private:
    mutable std::mutex m_mutex;
    std::map<unsigned int, std::map<UaNodeId, QString>> m_names;
};
