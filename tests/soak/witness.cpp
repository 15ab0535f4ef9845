#include <tests/soak/witness.h>

#include <algorithm>

namespace soak {

using namespace UaClientSdk;

// ---- what the round tells

OpcUa_UInt32 Witness::begin()
{
    const std::lock_guard lock(m_mutex);
    m_open.insert(m_nextTransaction);
    return m_nextTransaction++;
}

void Witness::begun(OpcUa_UInt32 transactionId, const UaStatus& status)
{
    const std::lock_guard lock(m_mutex);
    if (status.isBad() && m_open.erase(transactionId) == 0)
        m_violations.emplace_back("a call that was refused completed");
}

void Witness::disconnected()
{
    const std::lock_guard lock(m_mutex);
    m_over = true;
    const auto ends = std::count(m_statuses.begin(), m_statuses.end(), UaClient::Disconnected);
    if (ends != 1 || m_statuses.back() != UaClient::Disconnected)
        m_violations.push_back("told of " + std::to_string(ends) + " ends, or of something after the end");
}

bool Witness::isOver() const
{
    const std::lock_guard lock(m_mutex);
    return m_over;
}

void Witness::violation(const std::string& what)
{
    const std::lock_guard lock(m_mutex);
    m_violations.push_back(what);
}

std::vector<std::string> Witness::violations() const
{
    const std::lock_guard lock(m_mutex);
    return m_violations;
}

std::size_t Witness::completed() const
{
    const std::lock_guard lock(m_mutex);
    return m_completed;
}

std::size_t Witness::notified() const
{
    const std::lock_guard lock(m_mutex);
    return m_notified;
}

// ---- what the session tells

void Witness::toldLocked(const char* what, const Lock&)
{
    if (m_over)
        m_violations.push_back(std::string(what) + " after the disconnect");
}

void Witness::connectionStatusChanged(OpcUa_UInt32 id, UaClient::ServerStatus status)
{
    const Lock lock(m_mutex);
    toldLocked("a status", lock);
    m_statuses.push_back(status);
    if (id != connectionId)
        m_violations.emplace_back("a status of another connection");
}

void Witness::readComplete(OpcUa_UInt32 transactionId, const UaStatus&, UaDataValues&, UaDiagnosticInfos&)
{
    const Lock lock(m_mutex);
    toldLocked("a completion", lock);
    ++m_completed;
    if (m_open.erase(transactionId) == 0)
        m_violations.emplace_back("a call completed twice, or was never begun");
}

void Witness::toldOfSubscription(const char* what, OpcUa_UInt32 handle)
{
    const Lock lock(m_mutex);
    toldLocked(what, lock);
    ++m_notified;
    if (handle != subscriptionHandle)
        m_violations.push_back(std::string(what) + " of another subscription");
}

void Witness::subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus&)
{
    toldOfSubscription("a status of a subscription", handle);
}

void Witness::keepAlive(OpcUa_UInt32 handle)
{
    toldOfSubscription("a keep-alive", handle);
}

void Witness::notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32, OpcUa_UInt32)
{
    toldOfSubscription("a gap", handle);
}

void Witness::dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications&, UaDiagnosticInfos&)
{
    toldOfSubscription("a change", handle);
}

void Witness::newEvents(OpcUa_UInt32 handle, UaEventFieldLists&)
{
    toldOfSubscription("an event", handle);
}

} // namespace soak
