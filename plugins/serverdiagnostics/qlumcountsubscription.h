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

/// The subscription by which a view hears how many sessions and subscriptions a server has. Its calls block:
/// they belong on the thread of the server's jobs, one after the other.
class QlumCountSubscription : private UaClientSdk::UaSubscriptionCallback
{
public:
    /// Which of the counts.
    enum Count { Sessions = 1, Subscriptions = 2 };
    /// Hears of it on the GUI thread.
    struct Listener
    {
        std::function<void(Count count, OpcUa_UInt32 number)> counted;
        /// The server has the subscription no more, and the next open() makes another one.
        std::function<void(const UaStatus& status)> ended;
    };

    /// The listener is called until detach(). GUI thread.
    QlumCountSubscription(unsigned int serverId, Listener listener);
    /// Deletes the subscription, as far as the server answers soon.
    ~QlumCountSubscription() override;

    /// What is asked of the server.
    [[nodiscard]] static UaClientSdk::SubscriptionSettings wanted();
    /// From then on the listener hears nothing more. GUI thread.
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
    void handOver(std::function<void(const Listener& listener)> tell) const;

    const QlumLog m_log;
    std::shared_ptr<QlumSessionServices> m_services; ///< of the session that has the subscription
    UaClientSdk::UaSubscription* m_subscription = nullptr;
    std::atomic<OpcUa_UInt32> m_id{0};
    const std::shared_ptr<Listener> m_listener; ///< of the GUI thread; outlives what is on its way there
};
