#pragma once
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <monitoring/keptitems.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/subscriptionsettings.h>
#include <uaclientsdk/uasubscription.h>
#include <uaclientsdk/uasubscriptioncallback.h>

#include <QString>
#include <QStringList>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

class QlumApplicationInterface;

/// What became of an event item at the server.
struct QlumItemOutcome
{
    OpcUa_UInt32 clientHandle = 0;
    OpcUa_StatusCode status = OpcUa_Good;
    UaExtensionObject filterResult;
    bool isKept = false; ///< a change was refused, and the item goes on as it was
};
using QlumItemOutcomes = std::vector<QlumItemOutcome>;

/// What is to stand at the server for one notifier.
struct QlumItemChange
{
    std::vector<OpcUa_UInt32>
        formerHandles;                     ///< all that it went by; the subscription has one of them, or none
    UaMonitoredItemCreateRequests request; ///< one, under a client handle of its own
};
using QlumItemChanges = std::vector<QlumItemChange>;

/// What the settings ask of a subscription, with an interval that makes no sense left at its standard.
[[nodiscard]] UaClientSdk::SubscriptionSettings qlumEventSubscriptionSettings();

/// The subscription of one view on one server, with its items. Its calls block: they belong on the thread of
/// the server's jobs, one after the other. It passes on what the session calls, until it is told to stop.
class QlumEventSubscription : private UaClientSdk::UaSubscriptionCallback
{
public:
    /// The listener hears of the subscription under the server's id, until detach().
    QlumEventSubscription(unsigned int serverId, UaClientSdk::UaSubscriptionCallback& listener);
    /// Deletes the subscription, as far as the server answers soon.
    ~QlumEventSubscription() override;

    /// When this returns the listener hears nothing more; it waits for a call of it that is under way. Any
    /// thread but those of the session.
    void detach();
    /// Whether the server has it, as far as we know. Any thread.
    [[nodiscard]] bool isOpen() const { return m_isOpen; }

    // ---- for jobs

    /// Makes the subscription unless there is one; false when there is none then.
    bool open(const std::shared_ptr<QlumSessionServices>& services);
    /// Whether there is one that the server still has.
    [[nodiscard]] bool isValid() const;
    /// Creates the items that there are none of, those missing from before as well, and gives the others
    /// their new filters, each under its new client handle; what became of all that was tried.
    [[nodiscard]] QlumItemOutcomes apply(const QlumItemChanges& changes);
    /// Deletes the notifier's item that goes by one of these, for each notifier.
    void removeItems(const std::vector<OpcUa_UInt32>& clientHandles);
    /// Drops the subscription with all items, at the server too.
    void close();
    /// Has the server send all conditions again.
    UaStatus refresh();
    /// Fetches the messages again, oldest first, up to the first that the server does not have.
    void republish(const std::vector<OpcUa_UInt32>& sequenceNumbers, const std::function<bool()>& isCancelled,
                   std::vector<UaEventFieldLists>& lists);

private:
    void subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status) override;
    void notificationsMissing(OpcUa_UInt32 handle, OpcUa_UInt32 previous, OpcUa_UInt32 next) override;
    void dataChange(OpcUa_UInt32, UaMonitoredItemNotifications&, UaDiagnosticInfos&) override {}
    void newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events) override;

    template <typename Function>
    void tell(Function&& function);
    void create(const std::shared_ptr<QlumSessionServices>& services);
    void drop(OpcUa_UInt32 timeout);
    [[nodiscard]] OpcUa_UInt32 handleAmong(const std::vector<OpcUa_UInt32>& handles) const;
    void add(const OpcUa_MonitoredItemCreateRequest& request);
    void forget(OpcUa_UInt32 handle);
    [[nodiscard]] QlumItemOutcomes createItems();
    [[nodiscard]] QlumItemOutcomes modifyItems(const std::vector<monitoring::KeptItems::Change>& changes);
    void logOutcome(OpcUa_UInt32 handle, OpcUa_StatusCode status) const;
    [[nodiscard]] UaClientSdk::ServiceSettings settings(const QString& purpose) const;

    const QlumLog m_log;
    const unsigned int m_serverId;
    std::shared_ptr<QlumSessionServices> m_services; ///< of the session that has the subscription
    UaClientSdk::UaSubscription* m_subscription = nullptr;
    std::atomic<bool> m_isOpen{false};
    std::atomic<OpcUa_UInt32> m_subscriptionId{0};
    monitoring::KeptItems m_items;
    std::vector<OpcUa_UInt32> m_handles;                   ///< of all items
    OpcUa_StatusCode m_openStatus = OpcUa_BadNotConnected; ///< why there is no subscription
    std::mutex m_mutex;
    UaClientSdk::UaSubscriptionCallback* m_listener; ///< guarded; null once it hears no more
    int m_calls = 0;                                 ///< guarded; of the listener that have not returned
    std::condition_variable m_isIdle;
};
