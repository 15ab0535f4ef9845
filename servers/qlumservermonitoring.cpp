#include <servers/qlumservermonitoring.h>

#include <monitoring/monitoredserver.h>
#include <uaclientsdk/uasession.h>

QlumServerMonitoring::QlumServerMonitoring(unsigned int serverId, UaClientSdk::UaSession& session)
    : m_session(session), m_server(std::make_shared<monitoring::MonitoredServer>()),
      m_registration(serverId, m_server)
{
}

QlumServerMonitoring::~QlumServerMonitoring()
{
    m_server->close(); // tools may hold it still
}

void QlumServerMonitoring::useSession()
{
    m_server->setSession(&m_session);
}

void QlumServerMonitoring::leaveSession()
{
    m_server->setSession(nullptr);
}

void QlumServerMonitoring::retryRefused()
{
    m_server->retryRefused();
}

void QlumServerMonitoring::noteLink(UaClientSdk::UaClient::ServerStatus status)
{
    m_server->noteLink(status);
}

void QlumServerMonitoring::statusChanged(UaClientSdk::UaClient::ServerStatus status,
                                         const NamespaceMap& namespaces)
{
    m_server->statusChanged(status, namespaces.toStdMap());
}
