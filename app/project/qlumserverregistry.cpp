#include <app/project/qlumserverregistry.h>

#include <uaclientsdk/uasession.h>

void QlumServerRegistry::insert(unsigned int serverId, const QString& name, UaClientSdk::UaSession* session)
{
    const std::lock_guard lock(m_mutex);
    if (!m_servers.contains(serverId))
        m_order.append(serverId);
    m_servers.insert(serverId, {name, session});
}

void QlumServerRegistry::rename(unsigned int serverId, const QString& name)
{
    const std::lock_guard lock(m_mutex);
    if (const auto it = m_servers.find(serverId); it != m_servers.end())
        it->name = name;
}

void QlumServerRegistry::remove(unsigned int serverId)
{
    const std::lock_guard lock(m_mutex);
    m_servers.remove(serverId);
    m_order.removeAll(serverId);
}

QString QlumServerRegistry::name(unsigned int serverId) const
{
    const std::lock_guard lock(m_mutex);
    return m_servers.value(serverId).name;
}

UaClientSdk::UaSession* QlumServerRegistry::session(unsigned int serverId) const
{
    const std::lock_guard lock(m_mutex);
    return m_servers.value(serverId).session;
}

QList<unsigned int> QlumServerRegistry::ids() const
{
    const std::lock_guard lock(m_mutex);
    return m_order;
}
