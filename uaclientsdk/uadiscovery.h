// Discovery services, each over a short-lived unsecured channel of its own.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uadatetime.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/servicesettings.h>
#include <uaclientsdk/servicewatch.h>

#include <functional>
#include <memory>

namespace UaClientSdk {

class DiscoveryCalls;
class SessionSecurityInfo;
class UaSession;
struct SessionConnectInfo;

/// One object may be used from several threads. The call timeout of the settings also limits the connect.
/// Results are cleared first. BadInvalidArgument for an unknown scheme; BadRequestCancelledByClient after
/// cancel().
class UaDiscovery
{
public:
    UaDiscovery();
    ~UaDiscovery();
    UaDiscovery(const UaDiscovery&) = delete;
    UaDiscovery& operator=(const UaDiscovery&) = delete;

    /// Ends the calls that are under way, whatever the servers do, and waits until they have returned; no
    /// other begins any more. A directory that is asked on the caller's session ends with that. Any thread,
    /// but not in tlsCertificateRefused.
    void cancel();

    /// Who sees the calls from the next one on: asked for an observer for each service, and for one for each
    /// session that a directory is asked on; null for nobody. Called on the threads of the callers.
    void setServiceObservers(std::function<std::shared_ptr<ServiceObserver>()> make);

    UaStatus findServers(ServiceSettings& settings, const UaString& discoveryUrl,
                         const ClientSecurityInfo& security, UaApplicationDescriptions& servers);
    UaStatus findServers(ServiceSettings& settings, const UaString& discoveryUrl,
                         const ClientSecurityInfo& security, const UaStringArray& localeIds,
                         const UaStringArray& serverUris, UaApplicationDescriptions& servers);
    UaStatus getEndpoints(ServiceSettings& settings, const UaString& discoveryUrl,
                          const ClientSecurityInfo& security, UaEndpointDescriptions& endpoints);
    UaStatus getEndpoints(ServiceSettings& settings, const UaString& discoveryUrl,
                          const ClientSecurityInfo& security, const UaStringArray& localeIds,
                          const UaStringArray& profileUris, UaEndpointDescriptions& endpoints);
    /// Servers that a discovery server has heard of. Its records are numbered: the first wanted one and how
    /// many at most (0: all). lastCounterResetTime says since when the numbers are those.
    UaStatus findServersOnNetwork(ServiceSettings& settings, const UaString& discoveryUrl,
                                  const ClientSecurityInfo& security, OpcUa_UInt32 startingRecordId,
                                  OpcUa_UInt32 maxRecordsToReturn, UaDateTime& lastCounterResetTime,
                                  UaServerOnNetworks& servers);
    UaStatus findServersOnNetwork(ServiceSettings& settings, const UaString& discoveryUrl,
                                  const ClientSecurityInfo& security, OpcUa_UInt32 startingRecordId,
                                  OpcUa_UInt32 maxRecordsToReturn,
                                  const UaStringArray& serverCapabilityFilter,
                                  UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers);

    /// The same of a global discovery server's directory, asked by a method. On a session: BadInvalidArgument
    /// without one, BadConnectionClosed when it is not connected.
    UaStatus queryDirectory(ServiceSettings& settings, UaSession* session, OpcUa_UInt32 startingRecordId,
                            OpcUa_UInt32 maxRecordsToReturn, UaDateTime& lastCounterResetTime,
                            UaServerOnNetworks& servers);
    UaStatus queryDirectory(ServiceSettings& settings, UaSession* session, OpcUa_UInt32 startingRecordId,
                            OpcUa_UInt32 maxRecordsToReturn, const UaString& applicationName,
                            const UaString& applicationUri, const UaString& productUri,
                            const UaStringArray& serverCapabilities, UaDateTime& lastCounterResetTime,
                            UaServerOnNetworks& servers);
    /// On a session of its own, which lives for the call: unsecured and anonymous, or as the caller says.
    UaStatus queryDirectory(ServiceSettings& settings, const UaString& url, OpcUa_UInt32 startingRecordId,
                            OpcUa_UInt32 maxRecordsToReturn, UaDateTime& lastCounterResetTime,
                            UaServerOnNetworks& servers);
    UaStatus queryDirectory(ServiceSettings& settings, const UaString& url,
                            const SessionConnectInfo& connectInfo, const SessionSecurityInfo& securityInfo,
                            OpcUa_UInt32 startingRecordId, OpcUa_UInt32 maxRecordsToReturn,
                            const UaString& applicationName, const UaString& applicationUri,
                            const UaString& productUri, const UaStringArray& serverCapabilities,
                            UaDateTime& lastCounterResetTime, UaServerOnNetworks& servers);

private:
    std::unique_ptr<DiscoveryCalls> d;
};

} // namespace UaClientSdk
