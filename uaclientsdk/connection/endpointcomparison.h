// The endpoints that discovery returned, beside those that the server names when the session is made.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/endpointselector.h>

namespace UaClientSdk {

enum class EndpointDifference {
    None,
    Harmless, ///< nothing that would have protected better was kept from the user
    Concealed ///< discovery showed less than there is: somebody may want weak security to be chosen
};

/// What a session has chosen from what discovery returned.
struct ChosenSecurity
{
    UaString url;
    UaString securityPolicyUri;
    OpcUa_MessageSecurityMode securityMode;
};

/// OPC 10000-4, 5.6.2: endpoints of the scheme of chosen.url, in any order, by the fields that a server is
/// asked to repeat; what created leaves null does not count. Concealed is an endpoint with a stronger mode or
/// policy than the chosen one, or a better protected password or user certificate at one that is not weaker.
/// Takes n log n steps for n endpoints and user token policies.
[[nodiscard]] EndpointDifference compareEndpoints(EndpointSpan discovered, EndpointSpan created,
                                                  const ChosenSecurity& chosen);

} // namespace UaClientSdk
