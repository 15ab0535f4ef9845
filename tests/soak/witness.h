// What one session of the soak tells its application, and whether it may.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <cstddef>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace soak {

/// Any thread. Outlives the session by some time, so that a call that comes late finds it.
class Witness : public UaClientSdk::UaSessionCallback, public UaClientSdk::UaSubscriptionCallback
{
public:
    static constexpr OpcUa_UInt32 connectionId = 7;
    static constexpr OpcUa_UInt32 subscriptionHandle = 11;

    /// The number of a call that is about to be begun.
    [[nodiscard]] OpcUa_UInt32 begin();
    /// What beginning it said.
    void begun(OpcUa_UInt32 transactionId, const UaStatus& status);
    /// The disconnect has returned: whatever is told from now on is a violation.
    void disconnected();
    [[nodiscard]] bool isOver() const;
    void violation(const std::string& what);

    [[nodiscard]] std::vector<std::string> violations() const;
    [[nodiscard]] std::size_t completed() const;
    [[nodiscard]] std::size_t notified() const;

private:
    using Lock = std::unique_lock<std::mutex>;

    void connectionStatusChanged(OpcUa_UInt32 id, UaClientSdk::UaClient::ServerStatus status) override;
    void readComplete(OpcUa_UInt32 transactionId, const UaStatus& status, UaDataValues& values,
                      UaDiagnosticInfos& diagnostics) override;
    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void keepAlive(OpcUa_UInt32 handle) override;
    void notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32 previous, OpcUa_UInt32 next) override;
    void dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& notifications,
                    UaDiagnosticInfos& diagnostics) override;
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override;

    void toldOfSubscription(const char* what, OpcUa_UInt32 handle);
    void toldLocked(const char* what, const Lock& lock);

    mutable std::mutex m_mutex;
    bool m_over = false;
    OpcUa_UInt32 m_nextTransaction = 1;
    std::set<OpcUa_UInt32> m_open; ///< begun, neither completed nor refused
    std::size_t m_completed = 0;
    std::size_t m_notified = 0;
    std::vector<UaClientSdk::UaClient::ServerStatus> m_statuses;
    std::vector<std::string> m_violations;
};

} // namespace soak
