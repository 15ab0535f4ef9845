#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlummonitoring.h>
#include <uaclientsdk/uaclient.h>

#include <memory>

namespace UaClientSdk {
class UaSession;
}

/// Has what tools want watched on a server watched by the session of its project node, and lets tools find
/// it. GUI thread: namespaces move for what is watched at the moment at which they do so for the tools.
class QlumServerMonitoring
{
public:
    /// The session is borrowed.
    QlumServerMonitoring(unsigned int serverId, UaClientSdk::UaSession& session);
    /// The server is removed; its session has been disconnected.
    ~QlumServerMonitoring();
    QlumServerMonitoring(const QlumServerMonitoring&) = delete;
    QlumServerMonitoring& operator=(const QlumServerMonitoring&) = delete;

    /// Before a connect.
    void useSession();
    /// After a disconnect, whoever has asked for it.
    void leaveSession();
    /// Another user may be allowed more.
    void retryRefused();
    /// What the session tells, on its thread.
    void noteLink(UaClientSdk::UaClient::ServerStatus status);
    /// All that the session tells in between, in its order; the map with Connected.
    void statusChanged(UaClientSdk::UaClient::ServerStatus status, const NamespaceMap& namespaces);

private:
    UaClientSdk::UaSession& m_session;
    const std::shared_ptr<monitoring::MonitoredServer> m_server;
    const QlumMonitoringRegistration m_registration;
};
