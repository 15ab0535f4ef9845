#pragma once
#include <QHash>
#include <QList>
#include <QString>

#include <mutex>

namespace UaClientSdk {
class UaSession;
}

/// What threads other than the GUI thread may know of the project's servers. Every function may be called
/// from any thread.
class QlumServerRegistry
{
public:
    void insert(unsigned int serverId, const QString& name, UaClientSdk::UaSession* session);
    void rename(unsigned int serverId, const QString& name);
    void remove(unsigned int serverId);

    /// Empty for an unknown server.
    [[nodiscard]] QString name(unsigned int serverId) const;
    /// Null for an unknown server.
    [[nodiscard]] UaClientSdk::UaSession* session(unsigned int serverId) const;
    /// In the order in which they were added.
    [[nodiscard]] QList<unsigned int> ids() const;

private:
    struct Server
    {
        QString name;
        UaClientSdk::UaSession* session = nullptr;
    };

    mutable std::mutex m_mutex;
    QHash<unsigned int, Server> m_servers;
    QList<unsigned int> m_order;
};
