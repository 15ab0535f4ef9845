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
#include <functional>
#include <map>
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

    /// From then on the listener hears nothing more. Any thread but those of the session.
    void detach();
    /// Whether the server has it, as far as we know. Any thread.
    [[nodiscard]] bool isOpen() const { return m_isOpen; }

    // ---- for jobs

    /// Makes the subscription unless there is one; false when there is none then.
    bool open(const std::shared_ptr<QlumSessionServices>& services);
    /// Whether there is one that the server still has.
    [[nodiscard]] bool isValid() const;
    /// What belongs in it from the next createItems() on.
    void add(const UaMonitoredItemCreateRequests& requests);
    /// Creates what is missing; those that were tried.
    [[nodiscard]] QlumItemOutcomes createItems();
    /// Other filters, each under a new client handle; see KeptItems.
    [[nodiscard]] QlumItemOutcomes modifyItems(std::vector<monitoring::KeptItems::Change> changes);
    /// Deletes these.
    void removeItems(std::vector<OpcUa_UInt32> clientHandles);
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

    void create(const std::shared_ptr<QlumSessionServices>& services);
    void drop(OpcUa_UInt32 timeout);
    [[nodiscard]] OpcUa_UInt32 handleOf(OpcUa_UInt32 handle) const;
    void logOutcome(OpcUa_UInt32 handle, OpcUa_StatusCode status) const;
    [[nodiscard]] UaClientSdk::ServiceSettings settings(const QString& purpose) const;

    const QlumLog m_log;
    const unsigned int m_serverId;
    std::shared_ptr<QlumSessionServices> m_services; ///< of the session that has the subscription
    UaClientSdk::UaSubscription* m_subscription = nullptr;
    std::atomic<bool> m_isOpen{false};
    std::atomic<OpcUa_UInt32> m_subscriptionId{0};
    monitoring::KeptItems m_items;
    std::vector<OpcUa_UInt32> m_handles;            ///< of all items
    std::map<OpcUa_UInt32, OpcUa_UInt32> m_refused; ///< handles of changes that were, and those of the items
    std::mutex m_mutex;
    UaClientSdk::UaSubscriptionCallback* m_listener; ///< guarded; null once it hears no more
};
