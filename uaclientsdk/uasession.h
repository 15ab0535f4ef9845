// One client session with one server.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uarefcounter.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/certificatevalidationcallback.h>
#include <uaclientsdk/historycontexts.h>
#include <uaclientsdk/operationlimits.h>
#include <uaclientsdk/querycontext.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/servicewatch.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

#include <memory>

namespace UaClientSdk {

class UaSessionPrivate;
class UaSubscription;
class UaSubscriptionCallback;
struct NotificationMessage;
struct SubscriptionSettings;

/// Owns the secure channel, creates and activates the session, watches it from a thread of its own and
/// reconnects by itself. All operations may be called from any thread; services block their caller, never
/// longer than their timeout (and a channel's worth of steps of it where a request is split). Nothing throws.
class UaSession : public UaDataTypeDictionary, private CertificateValidationCallback
{
public:
    UaSession();
    ~UaSession() override; ///< disconnects; not in a callback of the session
    UaSession(const UaSession&) = delete;
    UaSession& operator=(const UaSession&) = delete;

    /// Blocks until the session is active. BadInternalError when a connect was requested already;
    /// GoodCompletesAsynchronously when the first try failed and retryInitialConnect goes on with it.
    UaStatus connect(const UaString& url, const SessionConnectInfo& connectInfo,
                     const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    /// Ends everything within a second, whatever the server does: CloseSession has what is left of it, then
    /// calls that are under way end with BadConnectionClosed; asynchronous ones are dropped. No callback
    /// begins after it has returned. Also ends a connect of another thread. What CloseSession came to;
    /// BadInternalError when nothing is connected, BadInvalidState in a callback of this session.
    UaStatus disconnect(const ServiceSettings& settings, bool deleteSubscriptions);

    /// Makes the next attempt to reconnect at once, when one is waited for: somebody has reason to believe
    /// that the server can be reached again. A connection that stands is checked at once. False when no
    /// attempt will come: nothing is connected, automatic reconnect is off, or the server refused the user.
    bool reconnectNow();

    /// Activates the session with another user, who is borrowed for the call and kept for reconnects when the
    /// server takes him; null is BadInvalidArgument. GoodCompletesAsynchronously while a reconnect is under
    /// way, which then logs him in; BadConnectionClosed without a connection. After a refusal the session
    /// goes on with the user it had.
    UaStatus changeUser(ServiceSettings& settings, const UaUserIdentityToken* identity);

    /// From the next call on; null for none. Both live as long as a call that they watch.
    void setServiceGuard(std::shared_ptr<ServiceGuard> guard);
    void setServiceObserver(std::shared_ptr<ServiceObserver> observer);

    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] UaClient::ServerStatus serverStatus() const;
    [[nodiscard]] OpcUa_ServerState serverState() const;
    [[nodiscard]] UaString currentlyUsedEndpointUrl() const;
    [[nodiscard]] UaNodeId sessionId() const;
    [[nodiscard]] UaByteString serverCertificate() const;
    /// How the messages of the connection are protected; None before the first connect.
    [[nodiscard]] OpcUa_MessageSecurityMode messageSecurityMode() const;
    [[nodiscard]] OpcUa_UInt32 connectTimeout() const;
    void setConnectTimeout(OpcUa_UInt32 milliseconds);
    [[nodiscard]] OpcUa_UInt32 maxOperationsPerServiceCall() const;
    void setMaxOperationsPerServiceCall(OpcUa_UInt32 count);
    [[nodiscard]] OpcUa_UInt32 watchdogTime() const;
    /// Kept between 1000 ms and half the revised session timeout, the latter winning.
    void setWatchdogTime(OpcUa_UInt32 milliseconds);
    [[nodiscard]] OpcUa_UInt32 watchdogTimeout() const;
    void setWatchdogTimeout(OpcUa_UInt32 milliseconds);
    [[nodiscard]] OpcUa_UInt32 revisedSecureChannelLifetime() const;
    [[nodiscard]] double revisedSessionTimeout() const;
    [[nodiscard]] OpcUa_UInt32 maxArrayLength() const; ///< limits of the stack
    [[nodiscard]] OpcUa_UInt32 maxStringLength() const;
    [[nodiscard]] OpcUa_UInt32 maxByteStringLength() const;

    /// As the server of the present session told them. After a reconnect to another session they are read
    /// anew.
    [[nodiscard]] OperationLimits operationLimits() const;
    [[nodiscard]] UaStringArray getNamespaceTable() const; ///< as last read
    UaStatus updateNamespaceTable();

    UaStatus loadDataTypeDictionaries();
    void clearDataTypeDictionaries();
    /// Waits while definitions are loaded beside the connection; look-ups meanwhile find what there is. True
    /// when none are loaded any more within the time, which is in milliseconds. Not from a callback.
    [[nodiscard]] bool waitForDataTypes(OpcUa_UInt32 timeout) const;
    /// UaDataTypeDictionary: loads on first use unless the mode is Manual.
    [[nodiscard]] DefinitionType definitionType(const UaNodeId& dataTypeId) override;
    [[nodiscard]] UaStructureDefinition structureDefinition(const UaNodeId& dataTypeOrEncodingId) override;
    [[nodiscard]] UaEnumDefinition enumDefinition(const UaNodeId& dataTypeId) override;
    [[nodiscard]] UaOptionSetDefinition optionSetDefinition(const UaNodeId& dataTypeId) override;

    /// Services of OPC 10000-4. Requests with more entries than maxOperationsPerServiceCall or the server's
    /// own limits are sent in blocks, one after the other, up to the first that fails. A block that the
    /// server calls too large is halved, unless what it asks for may have been done. Result arrays are
    /// cleared first and hold as many entries as the request when the status is good; when it is bad, those
    /// of services that change something on the server hold the blocks that were carried out, others nothing.
    /// BadConnectionClosed without a connection (browse and browseNext: BadInternalError), BadNothingToDo for
    /// an empty request, 0x80460000 when the counts differ.
    ///
    /// begin... sends and returns; when that is good the completion of that name in UaSessionCallback
    /// follows, with the caller's transactionId. The arguments are copied.
    UaStatus read(ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                  const UaReadValueIds& nodesToRead, UaDataValues& values,
                  UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginRead(ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                       const UaReadValueIds& nodesToRead, OpcUa_UInt32 transactionId);
    UaStatus write(ServiceSettings& settings, const UaWriteValues& nodesToWrite, UaStatusCodeArray& results,
                   UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginWrite(ServiceSettings& settings, const UaWriteValues& nodesToWrite,
                        OpcUa_UInt32 transactionId);

    /// Methods. The status is that of the service, the method's own is in callOut.
    UaStatus call(ServiceSettings& settings, const CallIn& callIn, CallOut& callOut);
    UaStatus beginCall(ServiceSettings& settings, const CallIn& callIn, OpcUa_UInt32 transactionId);
    UaStatus callList(ServiceSettings& settings, const UaCallMethodRequests& requests,
                      UaCallMethodResults& results, UaDiagnosticInfos& diagnosticInfos);
    /// Reads the method's properties InputArguments and OutputArguments; one that it has not gives no
    /// arguments.
    UaStatus getMethodArguments(ServiceSettings& settings, const UaNodeId& methodId,
                                UaArguments& inputArguments, UaArguments& outputArguments);

    UaStatus browse(ServiceSettings& settings, const UaNodeId& nodeToBrowse, const BrowseContext& context,
                    UaByteString& continuationPoint, UaReferenceDescriptions& references);
    UaStatus browseNext(ServiceSettings& settings, bool releaseContinuationPoint,
                        UaByteString& continuationPoint, UaReferenceDescriptions& references);
    UaStatus browseList(ServiceSettings& settings, const UaNodeId& viewId, OpcUa_UInt32 maxReferencesToReturn,
                        const UaBrowseDescriptions& nodesToBrowse, UaBrowseResults& results,
                        UaDiagnosticInfos& diagnosticInfos);
    UaStatus browseListNext(ServiceSettings& settings, bool releaseContinuationPoints,
                            const UaByteStringArray& continuationPoints, UaBrowseResults& results,
                            UaDiagnosticInfos& diagnosticInfos);
    UaStatus translateBrowsePathsToNodeIds(ServiceSettings& settings, const UaBrowsePaths& browsePaths,
                                           UaBrowsePathResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus registerNodes(ServiceSettings& settings, const UaNodeIdArray& nodesToRegister,
                           UaNodeIdArray& registeredNodes);
    UaStatus unregisterNodes(ServiceSettings& settings, const UaNodeIdArray& nodesToUnregister);

    /// Node management.
    UaStatus addNodes(ServiceSettings& settings, const UaAddNodesItems& nodesToAdd,
                      UaAddNodesResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginAddNodes(ServiceSettings& settings, const UaAddNodesItems& nodesToAdd,
                           OpcUa_UInt32 transactionId);
    UaStatus addReferences(ServiceSettings& settings, const UaAddReferencesItems& referencesToAdd,
                           UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginAddReferences(ServiceSettings& settings, const UaAddReferencesItems& referencesToAdd,
                                OpcUa_UInt32 transactionId);
    UaStatus deleteNodes(ServiceSettings& settings, const UaDeleteNodesItems& nodesToDelete,
                         UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginDeleteNodes(ServiceSettings& settings, const UaDeleteNodesItems& nodesToDelete,
                              OpcUa_UInt32 transactionId);
    UaStatus deleteReferences(ServiceSettings& settings, const UaDeleteReferencesItems& referencesToDelete,
                              UaStatusCodeArray& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginDeleteReferences(ServiceSettings& settings,
                                   const UaDeleteReferencesItems& referencesToDelete,
                                   OpcUa_UInt32 transactionId);

    /// History, OPC 10000-11. Processed values: BadAggregateListMismatch unless there is an aggregate for
    /// each node.
    UaStatus historyReadRawModified(ServiceSettings& settings, const HistoryReadRawModifiedContext& context,
                                    const UaHistoryReadValueIds& nodesToRead, HistoryReadDataResults& results,
                                    UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryReadRawModified(ServiceSettings& settings,
                                         const HistoryReadRawModifiedContext& context,
                                         const UaHistoryReadValueIds& nodesToRead,
                                         OpcUa_UInt32 transactionId);
    UaStatus historyReadProcessed(ServiceSettings& settings, const HistoryReadProcessedContext& context,
                                  const UaHistoryReadValueIds& nodesToRead, HistoryReadDataResults& results,
                                  UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryReadProcessed(ServiceSettings& settings, const HistoryReadProcessedContext& context,
                                       const UaHistoryReadValueIds& nodesToRead, OpcUa_UInt32 transactionId);
    UaStatus historyReadAtTime(ServiceSettings& settings, const HistoryReadAtTimeContext& context,
                               const UaHistoryReadValueIds& nodesToRead, HistoryReadDataResults& results,
                               UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryReadAtTime(ServiceSettings& settings, const HistoryReadAtTimeContext& context,
                                    const UaHistoryReadValueIds& nodesToRead, OpcUa_UInt32 transactionId);
    UaStatus historyReadEvent(ServiceSettings& settings, const HistoryReadEventContext& context,
                              const UaHistoryReadValueIds& nodesToRead, HistoryReadEventResults& results,
                              UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryReadEvent(ServiceSettings& settings, const HistoryReadEventContext& context,
                                   const UaHistoryReadValueIds& nodesToRead, OpcUa_UInt32 transactionId);
    UaStatus historyUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                               UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryUpdateData(ServiceSettings& settings, const UaUpdateDataDetailsArray& details,
                                    OpcUa_UInt32 transactionId);
    UaStatus historyUpdateEvents(ServiceSettings& settings, const UaUpdateEventDetailsArray& details,
                                 UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryUpdateEvents(ServiceSettings& settings, const UaUpdateEventDetailsArray& details,
                                      OpcUa_UInt32 transactionId);
    UaStatus historyDeleteRawModified(ServiceSettings& settings,
                                      const UaDeleteRawModifiedDetailsArray& details,
                                      UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryDeleteRawModified(ServiceSettings& settings,
                                           const UaDeleteRawModifiedDetailsArray& details,
                                           OpcUa_UInt32 transactionId);
    UaStatus historyDeleteAtTime(ServiceSettings& settings, const UaDeleteAtTimeDetailsArray& details,
                                 UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryDeleteAtTime(ServiceSettings& settings, const UaDeleteAtTimeDetailsArray& details,
                                      OpcUa_UInt32 transactionId);
    UaStatus historyDeleteEvents(ServiceSettings& settings, const UaDeleteEventDetailsArray& details,
                                 UaHistoryUpdateResults& results, UaDiagnosticInfos& diagnosticInfos);
    UaStatus beginHistoryDeleteEvents(ServiceSettings& settings, const UaDeleteEventDetailsArray& details,
                                      OpcUa_UInt32 transactionId);

    /// Queries are never split. A continuation point that is not empty asks for queryNext, or its release.
    UaStatus queryFirst(ServiceSettings& settings, const QueryContext& context,
                        const UaNodeTypeDescriptions& nodeTypes, UaQueryDataSets& dataSets,
                        UaByteString& continuationPoint, QueryFindings& findings);
    UaStatus queryNext(ServiceSettings& settings, bool releaseContinuationPoint,
                       UaByteString& continuationPoint, UaQueryDataSets& dataSets);

    /// Asks the server to give up the requests with that handle (ServiceSettings::requestHandle).
    UaStatus cancel(ServiceSettings& settings, OpcUa_UInt32 requestHandle, OpcUa_UInt32& cancelCount);

    /// Subscriptions, OPC 10000-4, 5.13. The session owns what it hands out, and asks for notifications as
    /// long as it has any. BadInvalidArgument without a callback or for a subscription that is not this
    /// session's.
    UaStatus createSubscription(ServiceSettings& settings, UaSubscriptionCallback* callback,
                                OpcUa_UInt32 clientSubscriptionHandle,
                                const SubscriptionSettings& subscriptionSettings, bool publishingEnabled,
                                UaSubscription** subscription);
    /// Frees it and nulls the pointer whatever the server says; what the server keeps against our will is
    /// deleted when it shows up again. No callback of it runs after it has returned, but for the one that
    /// called it. In a callback of a subscription it also does not wait for a callback that is itself within
    /// deleteSubscription, so that two which delete each other's subscription both come to an end: whoever
    /// deletes subscriptions in callbacks of others keeps the callback objects until those have returned.
    UaStatus deleteSubscription(ServiceSettings& settings, UaSubscription** subscription);
    UaStatus modifySubscription(ServiceSettings& settings, UaSubscription* subscription,
                                const SubscriptionSettings& subscriptionSettings);
    /// For several at once; results in the order of the ids.
    UaStatus setPublishingMode(ServiceSettings& settings, bool publishingEnabled,
                               const UaUInt32Array& subscriptionIds, UaStatusCodeArray& results,
                               UaDiagnosticInfos& diagnosticInfos);
    /// Takes over a subscription that another session left on the server. subscriptionSettings and
    /// publishingEnabled are what it is known to have. availableSequenceNumbers: what its old owner had not
    /// acknowledged.
    UaStatus transferSubscription(ServiceSettings& settings, UaSubscriptionCallback* callback,
                                  OpcUa_UInt32 clientSubscriptionHandle, OpcUa_UInt32 subscriptionId,
                                  const SubscriptionSettings& subscriptionSettings, bool publishingEnabled,
                                  bool sendInitialValues, UaUInt32Array& availableSequenceNumbers,
                                  UaSubscription** subscription);
    /// Asks for a notification message again that was not acknowledged: BadMessageNotAvailable when the
    /// server has not kept it, BadSubscriptionIdInvalid when the subscription is not the session's at the
    /// server. The message goes to the caller only, and the numbers that the session itself has taken stay as
    /// they are.
    UaStatus republish(ServiceSettings& settings, OpcUa_UInt32 subscriptionId,
                       OpcUa_UInt32 retransmitSequenceNumber, NotificationMessage& message);

    /// Parts of an endpoint URL; an empty host and port 0 when it cannot be parsed, 4840 without a port.
    [[nodiscard]] static UaString getHostFromUrl(const UaString& url);
    [[nodiscard]] static OpcUa_UInt16 getPortFromUrl(const UaString& url);

private:
    friend class UaSessionPrivate;
    /// Of the check that a connect makes: the application decides whether it goes on.
    int verificationError(SessionSecurityInfo* security, void* context, const UaByteString& certificate,
                          unsigned int errorCode, unsigned int depth) override;

    UaRefPtr<UaSessionPrivate> d;
};

} // namespace UaClientSdk
