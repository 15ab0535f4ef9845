#include <app/api/qlummonitoring.h>

#include <app/api/qlumbyserver_p.h>

#include <utility>

namespace {
QlumByServer<monitoring::MonitoredServer>& monitoredServers()
{
    static QlumByServer<monitoring::MonitoredServer> all;
    return all;
}
} // namespace

QlumMonitoringRegistration::QlumMonitoringRegistration(unsigned int serverId,
                                                       std::shared_ptr<monitoring::MonitoredServer> server)
    : m_serverId(serverId)
{
    monitoredServers().put(serverId, std::move(server));
}

QlumMonitoringRegistration::~QlumMonitoringRegistration()
{
    monitoredServers().remove(m_serverId);
}

QlumMonitoringProvider qlumApplicationMonitoring()
{
    return [](unsigned int serverId) { return monitoredServers().find(serverId); };
}
