#pragma once
#include <app/api/qlumservertypes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/historyresults.h>
#include <uaclientsdk/methodcall.h>
#include <uaclientsdk/operationlimits.h>
#include <uaclientsdk/querycontext.h>
#include <uaclientsdk/servicesettings.h>

#include <functional>
#include <memory>

namespace UaClientSdk {
class UaSession;
}

/// The services of one session that tools call; tests answer them by a script. Whoever holds them holds the
/// session: after its server was removed every call ends with BadConnectionClosed. Every function may be
/// called from any thread and blocks for at most the call timeout (and a channel's worth of steps of it where
/// a request is split). Result arrays hold as many entries as the request when the status is Good; when it is
/// bad, those of services that change something hold what was carried out. What the settings say of the
/// purpose reaches the session's guard and observer.
class QlumSessionServices
{
public:
    /// What a caller says about one call.
    using Settings = UaClientSdk::ServiceSettings;

    QlumSessionServices() = default;
    virtual ~QlumSessionServices() = default;
    QlumSessionServices(const QlumSessionServices&) = delete;
    QlumSessionServices& operator=(const QlumSessionServices&) = delete;

    /// Whether calls can reach the server at the moment.
    [[nodiscard]] virtual bool isConnected() const = 0;
    /// As the server of the present session told them.
    [[nodiscard]] virtual UaClientSdk::OperationLimits operationLimits() const = 0;
    /// Namespace URIs by index, as last read.
    [[nodiscard]] virtual UaStringArray namespaceTable() const = 0;
    /// Which of the server's sessions this one is.
    [[nodiscard]] virtual UaNodeId sessionId() const = 0;
    /// The data types of the server; owned by the session, never null.
    [[nodiscard]] virtual UaDataTypeDictionary* dataTypeDictionary() = 0;
    /// Waits while those data types are being read beside the connection. True when none are any more within
    /// the time, which is in milliseconds.
    [[nodiscard]] virtual bool waitForDataTypes(OpcUa_UInt32 timeout) const = 0;
    /// Names and enumerations of the server's types, kept for all tools; valid as long as these services.
    /// Null where nobody keeps them, as for a session beside the project's servers.
    [[nodiscard]] virtual QlumServerTypes* types() = 0;
    /// The session itself, for subscriptions; null when scripted.
    [[nodiscard]] virtual std::shared_ptr<UaClientSdk::UaSession> session() const = 0;

    /// Reads attributes; one value for each node to read.
    virtual UaStatus read(Settings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                          const UaReadValueIds& nodesToRead, UaDataValues& values) = 0;
    /// Writes attributes; one result for each value to write.
    virtual UaStatus write(Settings& settings, const UaWriteValues& nodesToWrite,
                           UaStatusCodeArray& results) = 0;

    /// Calls a method. The status is that of the service, the method's own is in callOut.
    virtual UaStatus call(Settings& settings, const UaClientSdk::CallIn& callIn,
                          UaClientSdk::CallOut& callOut) = 0;
    /// Calls several methods; one result for each.
    virtual UaStatus callList(Settings& settings, const UaCallMethodRequests& requests,
                              UaCallMethodResults& results) = 0;
    /// What a method takes and gives; empty where it says nothing of it.
    virtual UaStatus getMethodArguments(Settings& settings, const UaNodeId& methodId,
                                        UaArguments& inputArguments, UaArguments& outputArguments) = 0;

    /// Begins to browse a node. The continuation point is empty when the references are all there are.
    virtual UaStatus browse(Settings& settings, const UaNodeId& nodeToBrowse,
                            const UaClientSdk::BrowseContext& context, UaByteString& continuationPoint,
                            UaReferenceDescriptions& references) = 0;
    /// Continues a browse, or gives its continuation point up; the continuation point becomes the next one.
    virtual UaStatus browseNext(Settings& settings, bool releaseContinuationPoint,
                                UaByteString& continuationPoint, UaReferenceDescriptions& references) = 0;
    /// Begins to browse several nodes; viewId is null for the whole address space.
    virtual UaStatus browseList(Settings& settings, const UaNodeId& viewId, OpcUa_UInt32 maximumReferences,
                                const UaBrowseDescriptions& nodesToBrowse, UaBrowseResults& results) = 0;
    /// Continues several browses, or gives their continuation points up.
    virtual UaStatus browseListNext(Settings& settings, bool releaseContinuationPoints,
                                    const UaByteStringArray& continuationPoints,
                                    UaBrowseResults& results) = 0;
    /// Follows paths of browse names; one result for each path.
    virtual UaStatus translateBrowsePathsToNodeIds(Settings& settings, const UaBrowsePaths& browsePaths,
                                                   UaBrowsePathResults& results) = 0;
    /// Asks the server for ids by which it finds the nodes quickly; they are given back by unregisterNodes.
    virtual UaStatus registerNodes(Settings& settings, const UaNodeIdArray& nodesToRegister,
                                   UaNodeIdArray& registeredNodes) = 0;
    /// Gives registered ids back.
    virtual UaStatus unregisterNodes(Settings& settings, const UaNodeIdArray& nodesToUnregister) = 0;

    /// Adds nodes; one result for each.
    virtual UaStatus addNodes(Settings& settings, const UaAddNodesItems& nodesToAdd,
                              UaAddNodesResults& results) = 0;
    /// Adds references; one result for each.
    virtual UaStatus addReferences(Settings& settings, const UaAddReferencesItems& referencesToAdd,
                                   UaStatusCodeArray& results) = 0;
    /// Deletes nodes; one result for each.
    virtual UaStatus deleteNodes(Settings& settings, const UaDeleteNodesItems& nodesToDelete,
                                 UaStatusCodeArray& results) = 0;
    /// Deletes references; one result for each.
    virtual UaStatus deleteReferences(Settings& settings, const UaDeleteReferencesItems& referencesToDelete,
                                      UaStatusCodeArray& results) = 0;

    /// Raw or modified values; one result for each node, with a continuation point when there is more.
    virtual UaStatus historyReadRawModified(Settings& settings,
                                            const UaClientSdk::HistoryReadRawModifiedContext& context,
                                            const UaHistoryReadValueIds& nodesToRead,
                                            UaClientSdk::HistoryReadDataResults& results) = 0;
    /// Aggregates; BadAggregateListMismatch unless there is one for each node.
    virtual UaStatus historyReadProcessed(Settings& settings,
                                          const UaClientSdk::HistoryReadProcessedContext& context,
                                          const UaHistoryReadValueIds& nodesToRead,
                                          UaClientSdk::HistoryReadDataResults& results) = 0;
    /// Values at certain times.
    virtual UaStatus historyReadAtTime(Settings& settings,
                                       const UaClientSdk::HistoryReadAtTimeContext& context,
                                       const UaHistoryReadValueIds& nodesToRead,
                                       UaClientSdk::HistoryReadDataResults& results) = 0;
    /// Events, with the fields that are selected.
    virtual UaStatus historyReadEvent(Settings& settings, const UaClientSdk::HistoryReadEventContext& context,
                                      const UaHistoryReadValueIds& nodesToRead,
                                      UaClientSdk::HistoryReadEventResults& results) = 0;
    /// Inserts, replaces or removes values; one result for each of the details.
    virtual UaStatus historyUpdateData(Settings& settings, const UaUpdateDataDetailsArray& details,
                                       UaHistoryUpdateResults& results) = 0;
    /// Inserts or replaces events.
    virtual UaStatus historyUpdateEvents(Settings& settings, const UaUpdateEventDetailsArray& details,
                                         UaHistoryUpdateResults& results) = 0;
    /// Deletes the values of a time range.
    virtual UaStatus historyDeleteRawModified(Settings& settings,
                                              const UaDeleteRawModifiedDetailsArray& details,
                                              UaHistoryUpdateResults& results) = 0;
    /// Deletes the values of certain times.
    virtual UaStatus historyDeleteAtTime(Settings& settings, const UaDeleteAtTimeDetailsArray& details,
                                         UaHistoryUpdateResults& results) = 0;
    /// Deletes events by their ids.
    virtual UaStatus historyDeleteEvents(Settings& settings, const UaDeleteEventDetailsArray& details,
                                         UaHistoryUpdateResults& results) = 0;

    /// Begins a query. A continuation point that is not empty asks for queryNext, or its release.
    virtual UaStatus queryFirst(Settings& settings, const UaClientSdk::QueryContext& context,
                                const UaNodeTypeDescriptions& nodeTypes, UaQueryDataSets& dataSets,
                                UaByteString& continuationPoint, UaClientSdk::QueryFindings& findings) = 0;
    /// Continues a query, or gives its continuation point up.
    virtual UaStatus queryNext(Settings& settings, bool releaseContinuationPoint,
                               UaByteString& continuationPoint, UaQueryDataSets& dataSets) = 0;
    /// Asks the server to give up the requests with that handle.
    virtual UaStatus cancel(Settings& settings, OpcUa_UInt32 requestHandle, OpcUa_UInt32& cancelCount) = 0;
};

/// Finds the services of a server by its id; a null pointer for an unknown server. Any thread.
using QlumSessionServicesProvider =
    std::function<std::shared_ptr<QlumSessionServices>(unsigned int serverId)>;

/// The services of a session, with what is kept of its server's types. Null for null.
[[nodiscard]] std::shared_ptr<QlumSessionServices>
qlumServicesOf(std::shared_ptr<UaClientSdk::UaSession> session,
               std::shared_ptr<QlumServerTypes> types = nullptr);

/// Makes the services of a server known under its id for as long as it exists; owned by whoever owns the
/// session. GUI thread.
class QlumServicesRegistration
{
public:
    /// Takes the place of services that the id had before.
    QlumServicesRegistration(unsigned int serverId, std::shared_ptr<QlumSessionServices> services);
    ~QlumServicesRegistration();
    QlumServicesRegistration(const QlumServicesRegistration&) = delete;
    QlumServicesRegistration& operator=(const QlumServicesRegistration&) = delete;

private:
    const unsigned int m_serverId;
};

/// The provider of the services that are registered.
[[nodiscard]] QlumSessionServicesProvider qlumApplicationServices();
