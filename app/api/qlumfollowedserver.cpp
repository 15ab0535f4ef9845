#include <app/api/qlumfollowedserver.h>

#include <app/api/qlumdocumentservers.h>

#include <QList>

unsigned int QlumFollowedServer::meant(unsigned int selected) const
{
    if (selected != qlumNoServer)
        return selected;
    const QList<unsigned int> all = m_application.projectServerIds();
    return all.size() == 1 ? all.front() : qlumNoServer;
}

QString QlumFollowedServer::name() const
{
    return isAny() ? m_application.serverName(m_id) : QString();
}

QlumConnectionStatus QlumFollowedServer::status() const
{
    return m_status.value(m_id, QlumConnectionStatus::Disconnected);
}

bool QlumFollowedServer::isUp() const
{
    return isAny() && (status() == QlumConnectionStatus::Connected ||
                       status() == QlumConnectionStatus::NewSessionCreated);
}

void QlumFollowedServer::follow(QWidget& document, unsigned int serverId)
{
    m_id = serverId;
    qlumSetDocumentServers(&document, isAny() ? QList<unsigned int>{serverId} : QList<unsigned int>());
}

bool QlumFollowedServer::setStatus(unsigned int serverId, QlumConnectionStatus status)
{
    const bool wasUp = isUp();
    m_status.insert(serverId, status);
    return serverId == m_id && isUp() && (!wasUp || status == QlumConnectionStatus::NewSessionCreated);
}
