#include <tests/soak/participant.h>

#include <opcua/opcua.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>

#include <cstdint>
#include <cstdio>
#include <sstream>
#include <utility>

namespace soak {

using namespace std::chrono_literals;
using namespace UaClientSdk;

namespace {

constexpr OpcUa_UInt16 demoNs = 2;
constexpr auto turn = 100ms;

SessionConnectInfo connectInfo(const std::string& name)
{
    SessionConnectInfo info;
    info.applicationUri = UaString("urn:localhost:Korvanda:Soak");
    info.sessionName = UaString(name.c_str());
    info.watchdogTime = 1000;
    info.watchdogTimeout = 2000;
    info.connectTimeout = 3000;
    info.publishTimeout = 15000;
    info.sessionTimeout = 30000;
    return info;
}

UaReadValueIds someNodes(std::mt19937_64& random)
{
    constexpr OpcUa_UInt32 many = 100000;
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(1 + random() % 200));
    for (OpcUa_ReadValueId& node : nodes) {
        static_cast<void>(
            UaNodeId(many + static_cast<OpcUa_UInt32>(random() % 10000), 4).copyTo(&node.NodeId));
        node.AttributeId = OpcUa_Attributes_Value;
    }
    return nodes;
}

} // namespace

Participant::Participant(std::string name, std::uint64_t seed, Counts& counts)
    : m_name(std::move(name)), m_counts(counts), m_random(seed)
{
    for (std::size_t n = 0; n < subscriptionCount; ++n)
        m_slots.push_back(std::make_unique<Slot>());
}

Participant::~Participant()
{
    stop();
}

bool Participant::start(const UaString& url, const SessionSecurityInfo& security)
{
    const UaStatus status = m_session.connect(url, connectInfo(m_name), security, this);
    if (status.isBad()) {
        std::fprintf(stderr, "%s: no connection: %s\n", m_name.c_str(), status.toString().toUtf8());
        return false;
    }
    m_worker = std::thread([this] { work(); });
    return true;
}

void Participant::stop()
{
    if (!m_worker.joinable())
        return;
    {
        const std::lock_guard lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_all();
    m_worker.join();
    for (const auto& slot : m_slots)
        dropSubscription(*slot);
    {
        // a disconnect would cut off what is still under way
        std::unique_lock lock(m_mutex);
        if (!m_wake.wait_for(lock, 10s, [this] { return m_pending.empty(); }))
            violation(std::to_string(m_pending.size()) + " calls never completed");
    }
    ServiceSettings settings;
    static_cast<void>(m_session.disconnect(settings, true));
    m_over = true;
}

bool Participant::deliveredSince(Clock::time_point time) const
{
    for (const auto& slot : m_slots)
        if (slot->delivered.load() <= time)
            return false;
    return true;
}

std::string Participant::state() const
{
    std::ostringstream text;
    text << m_name << ": status " << m_session.serverStatus() << ", silent for";
    for (const auto& slot : m_slots)
        text << ' ' << (Clock::now() - slot->delivered.load()) / 1s << (slot->lost ? " s (lost)" : " s");
    return text.str();
}

void Participant::violation(const std::string& what)
{
    ++m_counts.violations;
    std::fprintf(stderr, "%s: %s\n", m_name.c_str(), what.c_str());
}

// ---- worker

void Participant::work()
{
    std::unique_lock lock(m_mutex);
    while (!m_stop) {
        lock.unlock();
        repair();
        if (m_random() % 4 == 0)
            readSomething();
        if (m_random() % 2 == 0)
            beginSomething();
        if (m_random() % 100 == 0) // users close views too
            dropSubscription(*m_slots[m_random() % m_slots.size()]);
        lock.lock();
        m_wake.wait_for(lock, turn, [this] { return m_stop; });
    }
}

void Participant::repair()
{
    for (std::size_t n = 0; n < m_slots.size(); ++n) {
        Slot& slot = *m_slots[n];
        if (slot.lost.exchange(false)) {
            ++m_counts.subscriptionsLost;
            dropSubscription(slot);
        }
        if (!slot.subscription && m_session.serverStatus() == UaClient::Connected && !createSubscription(n))
            dropSubscription(slot);
    }
}

bool Participant::createSubscription(std::size_t n)
{
    ServiceSettings settings;
    SubscriptionSettings wanted;
    wanted.publishingInterval = 200;
    wanted.maxKeepAliveCount = 10;
    wanted.lifetimeCount = 3000;
    Slot& slot = *m_slots[n];
    UaStatus status = m_session.createSubscription(settings, this, static_cast<OpcUa_UInt32>(n), wanted, true,
                                                   &slot.subscription);
    if (status.isBad()) {
        slot.subscription = nullptr;
        return false;
    }
    UaMonitoredItemCreateRequests items(itemsOfEach);
    for (OpcUa_UInt32 item = 0; item < itemsOfEach; ++item) {
        OpcUa_MonitoredItemCreateRequest& request = items[item];
        char id[16];
        std::snprintf(id, sizeof id, "Fast.%03u", (static_cast<OpcUa_UInt32>(n) * itemsOfEach + item) % 100);
        static_cast<void>(UaNodeId(UaString(id), demoNs).copyTo(&request.ItemToMonitor.NodeId));
        request.ItemToMonitor.AttributeId = OpcUa_Attributes_Value;
        request.MonitoringMode = OpcUa_MonitoringMode_Reporting;
        request.RequestedParameters.ClientHandle = item;
        request.RequestedParameters.SamplingInterval = 100;
        request.RequestedParameters.QueueSize = 1;
    }
    UaMonitoredItemCreateResults results;
    UaDiagnosticInfos diagnostics;
    status = slot.subscription->createMonitoredItems(settings, OpcUa_TimestampsToReturn_Both, items, results,
                                                     diagnostics);
    noteCall(status);
    return status.isGood();
}

void Participant::dropSubscription(Slot& slot)
{
    if (!slot.subscription)
        return;
    ServiceSettings settings;
    settings.callTimeout = 3000;
    static_cast<void>(m_session.deleteSubscription(settings, &slot.subscription));
    slot.subscription = nullptr;
}

void Participant::noteCall(const UaStatus& status)
{
    ++(status.isGood() ? m_counts.callsGood : m_counts.callsBad);
}

void Participant::readSomething()
{
    ServiceSettings settings;
    settings.callTimeout = 3000;
    const UaReadValueIds nodes = someNodes(m_random);
    UaDataValues values;
    UaDiagnosticInfos diagnostics;
    const UaStatus status =
        m_session.read(settings, 0, OpcUa_TimestampsToReturn_Both, nodes, values, diagnostics);
    noteCall(status);
    if (status.isGood() && values.length() != nodes.length())
        violation("a read answered with another number of values");
}

void Participant::beginSomething()
{
    ServiceSettings settings;
    settings.callTimeout = 3000;
    OpcUa_UInt32 transaction = 0;
    {
        const std::lock_guard lock(m_mutex);
        transaction = m_nextTransaction++;
        m_pending.insert(transaction);
    }
    if (m_session.beginRead(settings, 0, OpcUa_TimestampsToReturn_Both, someNodes(m_random), transaction)
            .isGood()) {
        ++m_counts.begun;
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (m_pending.erase(transaction) == 0)
        violation("a call that was refused completed");
}

// ---- callbacks

Participant::Slot* Participant::slotOf(OpcUa_UInt32 handle)
{
    if (m_over)
        violation("a callback after the disconnect");
    if (handle < m_slots.size())
        return m_slots[handle].get();
    violation("a callback with a handle that was never given");
    return nullptr;
}

void Participant::connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus status)
{
    if (m_over)
        violation("a status after the disconnect");
    if (status == UaClient::Connected)
        ++m_counts.reconnects;
    if (status == UaClient::NewSessionCreated)
        ++m_counts.newSessions;
}

void Participant::readComplete(OpcUa_UInt32 transactionId, const UaStatus&, UaDataValues&, UaDiagnosticInfos&)
{
    if (m_over)
        violation("a completion after the disconnect");
    ++m_counts.completed;
    {
        const std::lock_guard lock(m_mutex);
        if (m_pending.erase(transactionId) == 0)
            violation("a call completed twice");
    }
    m_wake.notify_all();
}

void Participant::subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status)
{
    Slot* slot = slotOf(handle);
    if (slot && status.isBad())
        slot->lost = true;
}

void Participant::keepAlive(OpcUa_UInt32 handle)
{
    if (slotOf(handle))
        ++m_counts.keepAlives;
}

void Participant::notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32, OpcUa_UInt32)
{
    if (slotOf(handle))
        ++m_counts.gaps;
}

void Participant::dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& notifications,
                             UaDiagnosticInfos&)
{
    Slot* slot = slotOf(handle);
    if (!slot)
        return;
    m_counts.notifications += notifications.length();
    slot->delivered = Clock::now();
}

void Participant::newEvents(OpcUa_UInt32 handle, UaEventFieldLists&)
{
    static_cast<void>(slotOf(handle));
}

} // namespace soak
