// Chooses the endpoint and the user token policy that a session activates with.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/uaarrays.h>
#include <uabase/uastring.h>

namespace UaClientSdk {

// The endpoint of the security settings that fits the connect URL best: the same URL, else the same scheme
// and port, else the same scheme. Null when none has the settings; the result points into endpoints.
[[nodiscard]] const OpcUa_EndpointDescription* selectEndpoint(const UaEndpointDescriptions& endpoints,
                                                              const UaString& connectUrl,
                                                              const UaString& securityPolicyUri,
                                                              OpcUa_MessageSecurityMode securityMode);

// The first policy of the type; null when there is none. Traces what the endpoint offers.
[[nodiscard]] const OpcUa_UserTokenPolicy* selectUserTokenPolicy(const OpcUa_EndpointDescription& endpoint,
                                                                 OpcUa_UserTokenType type);

} // namespace UaClientSdk
