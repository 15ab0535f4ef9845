#pragma once
#include <functional>
#include <memory>

namespace monitoring {
class MonitoredServer;
}

/// Finds by its server's id who keeps what tools want watched on it; a null pointer for an unknown server. It
/// is there with the server, connected or not, and may be held for longer: of a removed server all items have
/// ended. Any thread.
using QlumMonitoringProvider =
    std::function<std::shared_ptr<monitoring::MonitoredServer>(unsigned int serverId)>;

/// Makes it known under its server's id for as long as this exists; owned by whoever owns the session. GUI
/// thread.
class QlumMonitoringRegistration
{
public:
    /// Takes the place of the one that the id had before.
    QlumMonitoringRegistration(unsigned int serverId, std::shared_ptr<monitoring::MonitoredServer> server);
    ~QlumMonitoringRegistration();
    QlumMonitoringRegistration(const QlumMonitoringRegistration&) = delete;
    QlumMonitoringRegistration& operator=(const QlumMonitoringRegistration&) = delete;

private:
    const unsigned int m_serverId;
};

/// The provider of those that are registered.
[[nodiscard]] QlumMonitoringProvider qlumApplicationMonitoring();
