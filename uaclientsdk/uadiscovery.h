// Discovery services, each over a short-lived unsecured channel of its own.
#pragma once

#include <uabase/uaarrays.h>
#include <uabase/uastatus.h>
#include <uabase/uastring.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/servicesettings.h>

namespace UaClientSdk {

// Stateless; one object may be used from several threads. The call timeout of the settings also limits the
// connect. Results are cleared first. BadInvalidArgument for an unknown scheme.
class UaDiscovery
{
public:
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
};

} // namespace UaClientSdk
