// Members of UaDiscovery for the directory of a global discovery server; declared in uadiscovery.h. Apart
// from the others because they need a session.
#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/discovery/discoverycalls.h>
#include <uaclientsdk/methodcall.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <algorithm>

namespace UaClientSdk {

namespace {

constexpr const char* directoryNamespace = "http://opcfoundation.org/UA/GDS/";
constexpr OpcUa_UInt32 directoryObject = 141;
constexpr OpcUa_UInt32 queryServersMethod = 151;
constexpr OpcUa_UInt32 outputCount = 2;

class NoCallback : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

OpcUa_UInt16 directoryNamespaceIndex(const UaSession& session)
{
    const UaStringArray table = session.getNamespaceTable();
    const auto found = std::find_if(table.begin(), table.end(), [](const OpcUa_String& uri) {
        return UaString(uri).view() == directoryNamespace;
    });
    const auto index = found == table.end() ? 0 : found - table.begin();
    return index <= 0xFFFF ? static_cast<OpcUa_UInt16>(index) : 0;
}

bool takeServers(const OpcUa_Variant& argument, UaServerOnNetworks& servers)
{
    UaArray<OpcUa_ExtensionObject> objects;
    if (!UaVariant(argument).toExtensionObjectArray(objects))
        return false;
    for (const OpcUa_ExtensionObject& object : objects) {
        if (object.Encoding != OpcUa_ExtensionObjectEncoding_EncodeableObject ||
            object.Body.EncodeableObject.Type != &OpcUa_ServerOnNetwork_EncodeableType ||
            !servers.append(
                *static_cast<const OpcUa_ServerOnNetwork*>(object.Body.EncodeableObject.Object))) {
            servers.clear();
            return false;
        }
    }
    return true;
}

UaStatus takeResult(const CallOut& answer, UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers)
{
    if (answer.callResult.isBad())
        return answer.callResult;
    if (answer.outputArguments.length() != outputCount) {
        UaTrace::tError("Error: UaDiscovery::queryDirectory - number of call output arguments does not match "
                        "method definition");
        return UaStatus(wrongResultCount);
    }
    bool isTime = false;
    const UaDateTime time = UaVariant(answer.outputArguments[0]).toDateTime(&isTime);
    if (!isTime || !takeServers(answer.outputArguments[1], servers))
        return UaStatus(OpcUa_BadTypeMismatch);
    lastCounterResetTime = time;
    return UaStatus();
}

UaStatus disconnected(UaSession& session, const ServiceSettings& settings, const UaStatus& result)
{
    // what it answers changes nothing about the result
    static_cast<void>(session.disconnect(settings, true));
    return result;
}

} // namespace

UaStatus UaDiscovery::queryDirectory(ServiceSettings& settings, UaSession* session,
                                     OpcUa_UInt32 startingRecordId, OpcUa_UInt32 maxRecordsToReturn,
                                     UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers)
{
    UaTrace::tInOut("--> UaDiscovery::queryDirectory without filter");
    return queryDirectory(settings, session, startingRecordId, maxRecordsToReturn, UaString(), UaString(),
                          UaString(), UaStringArray(), lastCounterResetTime, servers);
}

UaStatus UaDiscovery::queryDirectory(ServiceSettings& settings, UaSession* session,
                                     OpcUa_UInt32 startingRecordId, OpcUa_UInt32 maxRecordsToReturn,
                                     const UaString& applicationName, const UaString& applicationUri,
                                     const UaString& productUri, const UaStringArray& serverCapabilities,
                                     UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers)
{
    TraceScope trace("UaDiscovery", "queryDirectory");
    servers.clear();
    lastCounterResetTime = UaDateTime();
    if (!session) {
        UaTrace::tError("<-- UaDiscovery::queryDirectory [hr=OpcUa_BadInvalidArgument] - Session pointer is "
                        "NULL");
        trace.keepSilent();
        return UaStatus(OpcUa_BadInvalidArgument);
    }
    if (!session->isConnected()) {
        UaTrace::tError(
            "<-- UaDiscovery::queryDirectory [hr=OpcUa_BadConnectionClosed] - Server not connected");
        trace.keepSilent();
        return UaStatus(OpcUa_BadConnectionClosed);
    }
    const OpcUa_UInt16 index = directoryNamespaceIndex(*session);
    CallIn question;
    question.objectId = UaNodeId(directoryObject, index);
    question.methodId = UaNodeId(queryServersMethod, index);
    UaVariant capabilities;
    capabilities.setStringArray(serverCapabilities);
    for (const UaVariant& argument :
         {UaVariant(startingRecordId), UaVariant(maxRecordsToReturn), UaVariant(applicationName),
          UaVariant(applicationUri), UaVariant(productUri), capabilities})
        if (!question.inputArguments.append(*argument.get()))
            return UaStatus(OpcUa_BadOutOfMemory);
    CallOut answer;
    UaStatus status = session->call(settings, question, answer);
    if (!status.isBad())
        status = takeResult(answer, lastCounterResetTime, servers);
    return trace.ending(status);
}

UaStatus UaDiscovery::queryDirectory(ServiceSettings& settings, const UaString& url,
                                     OpcUa_UInt32 startingRecordId, OpcUa_UInt32 maxRecordsToReturn,
                                     UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers)
{
    UaTrace::tInOut("--> UaDiscovery::queryDirectory with URL and without filter");
    SessionConnectInfo connectInfo;
    connectInfo.localeId = "en";
    connectInfo.connectTimeout = settings.callTimeout;
    return queryDirectory(settings, url, connectInfo, SessionSecurityInfo(), startingRecordId,
                          maxRecordsToReturn, UaString(), UaString(), UaString(), UaStringArray(),
                          lastCounterResetTime, servers);
}

UaStatus UaDiscovery::queryDirectory(ServiceSettings& settings, const UaString& url,
                                     const SessionConnectInfo& connectInfo,
                                     const SessionSecurityInfo& securityInfo, OpcUa_UInt32 startingRecordId,
                                     OpcUa_UInt32 maxRecordsToReturn, const UaString& applicationName,
                                     const UaString& applicationUri, const UaString& productUri,
                                     const UaStringArray& serverCapabilities,
                                     UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers)
{
    UaTrace::tInOut("--> UaDiscovery::queryDirectory with connect info");
    servers.clear();
    lastCounterResetTime = UaDateTime();
    NoCallback callback; // outlives the session
    UaSession session;
    session.setServiceObserver(d->observer());
    SessionConnectInfo once = connectInfo;
    once.retryInitialConnect = false; // an answer is wanted now or not at all
    const DiscoveryCalls::Scope scope(
        *d, [&session] { static_cast<void>(session.disconnect(ServiceSettings(), true)); });
    const UaStatus status = scope.mayBegin() ? session.connect(url, once, securityInfo, &callback)
                                             : UaStatus(OpcUa_BadRequestCancelledByClient);
    if (status.isBad()) {
        UaTrace::tError("<-- UaDiscovery::queryDirectory [ret=0x%x] - connect to server failed",
                        status.statusCode());
        return status;
    }
    return disconnected(session, settings,
                        queryDirectory(settings, &session, startingRecordId, maxRecordsToReturn,
                                       applicationName, applicationUri, productUri, serverCapabilities,
                                       lastCounterResetTime, servers));
}

} // namespace UaClientSdk
