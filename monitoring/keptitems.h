// For tools that keep a subscription of their own: which items belong in it, whatever becomes of the session.
#pragma once

#include <monitoring/namespaces.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/uasubscription.h>

#include <map>
#include <vector>

namespace monitoring {

/// The tool makes and deletes its UaSubscription and calls create() whenever there is something to create:
/// after add(), and after a new session with the subscription that it has made there. Each item goes by the
/// client handle that the tool has chosen. Not thread-safe; create() and remove() block for the calls that
/// they make.
class KeptItems
{
public:
    /// One that the server does not have.
    struct Refused
    {
        OpcUa_UInt32 clientHandle = 0;        ///< the tool's
        OpcUa_StatusCode status = OpcUa_Good; ///< why
    };

    /// Another request in the place of an item's own.
    struct Change
    {
        OpcUa_UInt32 clientHandle = 0;         ///< the item's up to now
        UaMonitoredItemCreateRequests request; ///< one
    };

    /// Copies it; one with the same client handle is replaced, and left at the server.
    void add(const OpcUa_MonitoredItemCreateRequest& request);
    /// Forgets them, and deletes at the server those that it has. subscription: may be null for none.
    UaStatus remove(UaClientSdk::UaSubscription* subscription, UaClientSdk::ServiceSettings& settings,
                    const std::vector<OpcUa_UInt32>& clientHandles);
    /// Creates what is neither there nor refused. Refused items do not make the status bad; when it is, those
    /// that were not reached are created the next time. After a call that may have been carried out without
    /// an answer, the server may have items that nobody knows: then mustReplace() is true.
    UaStatus create(UaClientSdk::UaSubscription& subscription, UaClientSdk::ServiceSettings& settings,
                    OpcUa_TimestampsToReturn timestamps);
    /// Asks for other parameters, of items that the server has. Each request is as in add() but has a client
    /// handle of its own, under which the item goes from then on, so that notifications tell which parameters
    /// they were made by. Items that the server does not have are added so. status is that of the service;
    /// statuses, one for each change, are those of the items, which stay as they are where that is bad.
    UaStatus modify(UaClientSdk::UaSubscription& subscription, UaClientSdk::ServiceSettings& settings,
                    OpcUa_TimestampsToReturn timestamps, const std::vector<Change>& changes,
                    std::vector<OpcUa_StatusCode>& statuses);
    /// Whether the subscription should be deleted and made again, or items may be in it twice.
    [[nodiscard]] bool mustReplace() const { return m_mustReplace; }

    /// There is a new subscription, with nothing in it: everything is created again, what was refused is
    /// tried again. For a session that was kept there is nothing to do.
    void subscriptionReplaced();
    /// Before create() in the new session. Items whose namespace is gone are refused with BadNodeIdUnknown
    /// from now on; what refers to namespaces in their filters is remapped too.
    void remap(const NamespaceMap& namespaces);
    /// The next create() tries what was refused as well.
    void retryRefused();

    /// In the order of their client handles.
    [[nodiscard]] std::vector<Refused> refused() const;
    /// The server's id; 0 while it does not have the item.
    [[nodiscard]] OpcUa_UInt32 monitoredItemId(OpcUa_UInt32 clientHandle) const;
    /// What the server said when it created the item, without the result of its filter; null while it has
    /// not.
    [[nodiscard]] const OpcUa_MonitoredItemCreateResult* result(OpcUa_UInt32 clientHandle) const;
    /// What the server said of the item's filter when it created or refused the item or changed it; null when
    /// it said nothing.
    [[nodiscard]] UaExtensionObject filterResult(OpcUa_UInt32 clientHandle) const;

private:
    struct Entry
    {
        UaMonitoredItemCreateRequests request; ///< one
        OpcUa_MonitoredItemCreateResult result{};
        UaExtensionObject filterResult;
        bool isCreated = false;
        bool isRefused = false;
        bool isHomeless = false;
    };

    [[nodiscard]] const Entry* created(OpcUa_UInt32 clientHandle) const;

    std::map<OpcUa_UInt32, Entry> m_entries;
    bool m_mustReplace = false;
};

} // namespace monitoring
