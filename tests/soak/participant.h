// One client of the soak: a session with subscriptions that it keeps alive, and calls of all kinds.
#pragma once

#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace soak {

using Clock = std::chrono::steady_clock;

/// What happened so far; any thread.
struct Counts
{
    std::atomic<std::uint64_t> notifications{0};
    std::atomic<std::uint64_t> keepAlives{0};
    std::atomic<std::uint64_t> gaps{0};
    std::atomic<std::uint64_t> newSessions{0};
    std::atomic<std::uint64_t> reconnects{0};
    std::atomic<std::uint64_t> subscriptionsLost{0};
    std::atomic<std::uint64_t> callsGood{0};
    std::atomic<std::uint64_t> callsBad{0};
    std::atomic<std::uint64_t> begun{0};
    std::atomic<std::uint64_t> completed{0};
    std::atomic<std::uint64_t> violations{0};
};

class Participant : private UaClientSdk::UaSessionCallback, private UaClientSdk::UaSubscriptionCallback
{
public:
    Participant(std::string name, std::uint64_t seed, Counts& counts);
    ~Participant() override;
    Participant(const Participant&) = delete;
    Participant& operator=(const Participant&) = delete;

    /// False, with the reason on the error stream, when the first connect failed.
    bool start(const UaString& url, const UaClientSdk::SessionSecurityInfo& security);
    /// Disconnects and joins. Callbacks after this are violations.
    void stop();
    /// Whether every subscription has delivered data since then.
    [[nodiscard]] bool deliveredSince(Clock::time_point time) const;
    [[nodiscard]] const std::string& name() const { return m_name; }
    [[nodiscard]] std::string state() const;

private:
    static constexpr std::size_t subscriptionCount = 3;
    static constexpr OpcUa_UInt32 itemsOfEach = 30;

    struct Slot
    {
        UaClientSdk::UaSubscription* subscription = nullptr; ///< the worker's alone
        std::atomic<bool> lost{false};
        std::atomic<Clock::time_point> delivered{Clock::time_point()};
    };

    void connectionStatusChanged(OpcUa_UInt32 id, UaClientSdk::UaClient::ServerStatus status) override;
    void readComplete(OpcUa_UInt32 transactionId, const UaStatus& status, UaDataValues& values,
                      UaDiagnosticInfos& diagnostics) override;
    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void keepAlive(OpcUa_UInt32 handle) override;
    void notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32 previous, OpcUa_UInt32 next) override;
    void dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& notifications,
                    UaDiagnosticInfos& diagnostics) override;
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override;

    void work();
    void repair();
    bool createSubscription(std::size_t slot);
    void dropSubscription(Slot& slot);
    void readSomething();
    void beginSomething();
    void noteCall(const UaStatus& status);
    void violation(const std::string& what);
    [[nodiscard]] Slot* slotOf(OpcUa_UInt32 handle);

    const std::string m_name;
    Counts& m_counts;
    std::mt19937_64 m_random;
    UaClientSdk::UaSession m_session;
    std::vector<std::unique_ptr<Slot>> m_slots;
    std::atomic<bool> m_over{false};
    std::mutex m_mutex;
    std::condition_variable m_wake;
    bool m_stop = false;
    std::set<OpcUa_UInt32> m_pending; ///< transactions that were begun and have not completed
    OpcUa_UInt32 m_nextTransaction = 1;
    std::thread m_worker;
};

} // namespace soak
