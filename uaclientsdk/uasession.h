// One client session with one server.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/uaarrays.h>
#include <uabase/uadatatypedictionary.h>
#include <uabase/uanodeid.h>
#include <uabase/uarefcounter.h>
#include <uabase/uastatus.h>
#include <uaclientsdk/browsecontext.h>
#include <uaclientsdk/certificatevalidationcallback.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasessioncallback.h>

namespace UaClientSdk {

class UaSessionPrivate;

// Owns the secure channel, creates and activates the session, watches it from a thread of its own and
// reconnects by itself. All operations may be called from any thread; services block their caller, never
// longer than their timeout (and a channel's worth of steps of it where a request is split). Nothing throws.
class UaSession : public UaDataTypeDictionary, private CertificateValidationCallback
{
public:
    UaSession();
    ~UaSession() override; // disconnects
    UaSession(const UaSession&) = delete;
    UaSession& operator=(const UaSession&) = delete;

    // Blocks until the session is active. BadInternalError when a connect was requested already;
    // GoodCompletesAsynchronously when the first try failed and retryInitialConnect goes on with it.
    UaStatus connect(const UaString& url, const SessionConnectInfo& connectInfo,
                     const SessionSecurityInfo& securityInfo, UaSessionCallback* callback);
    // No callback runs after it has returned. BadInternalError when nothing is connected. Not from a
    // callback.
    UaStatus disconnect(const ServiceSettings& settings, bool deleteSubscriptions);

    // Activates the session with another user, who is borrowed for the call and kept for reconnects when the
    // server takes him; null is BadInvalidArgument. GoodCompletesAsynchronously while a reconnect is under
    // way, which then logs him in; BadConnectionClosed without a connection. After a refusal the session goes
    // on with the user it had.
    UaStatus changeUser(ServiceSettings& settings, const UaUserIdentityToken* identity);

    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] UaClient::ServerStatus serverStatus() const;
    [[nodiscard]] OpcUa_ServerState serverState() const;
    [[nodiscard]] UaString currentlyUsedEndpointUrl() const;
    [[nodiscard]] UaNodeId sessionId() const;
    [[nodiscard]] UaByteString serverCertificate() const;
    [[nodiscard]] OpcUa_UInt32 connectTimeout() const;
    void setConnectTimeout(OpcUa_UInt32 milliseconds);
    [[nodiscard]] OpcUa_UInt32 maxOperationsPerServiceCall() const;
    void setMaxOperationsPerServiceCall(OpcUa_UInt32 count);
    [[nodiscard]] OpcUa_UInt32 watchdogTime() const;
    // Kept between 1000 ms and half the revised session timeout, the latter winning.
    void setWatchdogTime(OpcUa_UInt32 milliseconds);
    [[nodiscard]] OpcUa_UInt32 watchdogTimeout() const;
    void setWatchdogTimeout(OpcUa_UInt32 milliseconds);
    [[nodiscard]] OpcUa_UInt32 revisedSecureChannelLifetime() const;
    [[nodiscard]] double revisedSessionTimeout() const;
    [[nodiscard]] OpcUa_UInt32 maxArrayLength() const; // limits of the stack
    [[nodiscard]] OpcUa_UInt32 maxStringLength() const;
    [[nodiscard]] OpcUa_UInt32 maxByteStringLength() const;

    [[nodiscard]] UaStringArray getNamespaceTable() const; // as last read
    UaStatus updateNamespaceTable();

    UaStatus loadDataTypeDictionaries();
    void clearDataTypeDictionaries();
    // UaDataTypeDictionary: loads on first use unless the mode is Manual.
    [[nodiscard]] DefinitionType definitionType(const UaNodeId& dataTypeId) override;
    [[nodiscard]] UaStructureDefinition structureDefinition(const UaNodeId& dataTypeOrEncodingId) override;
    [[nodiscard]] UaEnumDefinition enumDefinition(const UaNodeId& dataTypeId) override;
    [[nodiscard]] UaOptionSetDefinition optionSetDefinition(const UaNodeId& dataTypeId) override;

    // Services of OPC 10000-4. Result arrays are cleared first and hold as many entries as the request when
    // the status is Good. BadConnectionClosed without a connection, BadNothingToDo for an empty request,
    // 0x80460000 when the counts differ.
    UaStatus read(ServiceSettings& settings, double maxAge, OpcUa_TimestampsToReturn timestampsToReturn,
                  const UaReadValueIds& nodesToRead, UaDataValues& values,
                  UaDiagnosticInfos& diagnosticInfos);
    UaStatus write(ServiceSettings& settings, const UaWriteValues& nodesToWrite, UaStatusCodeArray& results,
                   UaDiagnosticInfos& diagnosticInfos);
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

    // Parts of an endpoint URL; an empty host and port 0 when it can not be parsed, 4840 without a port.
    [[nodiscard]] static UaString getHostFromUrl(const UaString& url);
    [[nodiscard]] static OpcUa_UInt16 getPortFromUrl(const UaString& url);

private:
    friend class UaSessionPrivate;
    // Of the check that a connect makes: the application decides whether it goes on.
    int verificationError(SessionSecurityInfo* security, void* context, const UaByteString& certificate,
                          unsigned int errorCode, unsigned int depth) override;

    UaRefPtr<UaSessionPrivate> d;
};

} // namespace UaClientSdk
