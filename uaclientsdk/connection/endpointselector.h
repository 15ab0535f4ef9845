// Chooses the endpoint and the user token policy that a session activates with.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uastring.h>

#include <span>
#include <string_view>

namespace UaClientSdk {

using EndpointSpan = std::span<const OpcUa_EndpointDescription>;

/// What the stack's text says, empty for a null one; as long as it lives.
[[nodiscard]] std::string_view textOf(const OpcUa_String& text);

constexpr int noSecurityRank = 1;
/// How well a policy protects, more is better: noSecurityRank for None and an empty URI, 0 when its
/// algorithms are not offered here.
[[nodiscard]] int securityPolicyRank(std::string_view policyUri);

/// The endpoint of the security settings that fits the connect URL best: the same URL, else the same scheme
/// and port, else the same scheme. Null when none has the settings; the result points into endpoints.
[[nodiscard]] const OpcUa_EndpointDescription* selectEndpoint(EndpointSpan endpoints,
                                                              const UaString& connectUrl,
                                                              const UaString& securityPolicyUri,
                                                              OpcUa_MessageSecurityMode securityMode);
/// The same whatever the settings.
[[nodiscard]] const OpcUa_EndpointDescription* selectEndpointOfAnySecurity(EndpointSpan endpoints,
                                                                           const UaString& connectUrl);

/// The policy of the type that protects secrets best, the first among equals: one with strong encryption,
/// then one with weak, then one with none. An empty policy URI means the channel's. Null when there is none
/// whose algorithms are offered here. Traces what the endpoint offers.
[[nodiscard]] const OpcUa_UserTokenPolicy* selectUserTokenPolicy(const OpcUa_EndpointDescription& endpoint,
                                                                 OpcUa_UserTokenType type,
                                                                 const UaString& channelPolicyUri);

} // namespace UaClientSdk
