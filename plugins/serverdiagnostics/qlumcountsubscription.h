#pragma once
#include <app/api/qlumjob.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

/// The subscription by which a view hears how many sessions and subscriptions a server has. Its calls block:
/// they belong on the thread of the server's jobs, one after the other.
class QlumCountSubscription : private UaClientSdk::UaSubscriptionCallback
{
public:
    /// Which of the counts.
    enum Count { Sessions = 1, Subscriptions = 2 };
    /// Hears of a count, on a thread of the session.
    using Listener = std::function<void(Count count, OpcUa_UInt32 number)>;

    /// The listener is called until detach().
    QlumCountSubscription(unsigned int serverId, Listener listener);
    /// Deletes the subscription, as far as the server answers soon.
    ~QlumCountSubscription() override;

    /// What is asked of the server.
    [[nodiscard]] static UaClientSdk::SubscriptionSettings wanted();
    /// From then on the listener hears nothing more. Any thread but those of the session.
    void detach();
    /// The server's id of it; 0 while there is none. Any thread.
    [[nodiscard]] OpcUa_UInt32 subscriptionId() const { return m_id; }

    // ---- for jobs

    /// Makes the subscription unless the session has it, and watches the counts. What failed, if anything.
    [[nodiscard]] UaStatus open(const std::shared_ptr<QlumSessionServices>& services, const QlumJob& job);

private:
    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void dataChange(OpcUa_UInt32 handle, UaMonitoredItemNotifications& notifications,
                    UaDiagnosticInfos& diagnosticInfos) override;
    void newEvents(OpcUa_UInt32, UaEventFieldLists&) override {}

    [[nodiscard]] UaStatus createSubscription(const QlumJob& job);
    [[nodiscard]] UaStatus subscribeCounts(const QlumJob& job);
    void drop();

    const QlumLog m_log;
    std::shared_ptr<QlumSessionServices> m_services; ///< of the session that has the subscription
    UaClientSdk::UaSubscription* m_subscription = nullptr;
    std::atomic<OpcUa_UInt32> m_id{0};
    std::mutex m_mutex;
    Listener m_listener; ///< guarded; null once it hears no more
};
