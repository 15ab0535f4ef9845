#include <uaclientsdk/endpointselector.h>

#include <string>
#include <string_view>

#include <strings.h>

#include <uabase/uatrace.h>
#include <uaclientsdk/endpointurl.h>

namespace UaClientSdk {

namespace {

std::string_view textOf(const OpcUa_String& text)
{
    return text.Length > 0 ? std::string_view(text.Data, static_cast<std::size_t>(text.Length))
                           : std::string_view("");
}

bool beginsWithIgnoringCase(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() && strncasecmp(text.data(), prefix.data(), prefix.size()) == 0;
}

} // namespace

const OpcUa_EndpointDescription* selectEndpoint(const UaEndpointDescriptions& endpoints,
                                                const UaString& connectUrl, const UaString& securityPolicyUri,
                                                OpcUa_MessageSecurityMode securityMode)
{
    const EndpointUrl wanted = parseEndpointUrl(connectUrl.view());
    const OpcUa_EndpointDescription* samePort = nullptr;
    const OpcUa_EndpointDescription* sameScheme = nullptr;
    for (OpcUa_UInt32 i = 0; i < endpoints.length(); ++i) {
        const OpcUa_EndpointDescription& endpoint = endpoints[i];
        if (endpoint.SecurityMode != securityMode ||
            textOf(endpoint.SecurityPolicyUri) != securityPolicyUri.view()) {
            continue;
        }
        if (beginsWithIgnoringCase(textOf(endpoint.EndpointUrl), connectUrl.view())) {
            return &endpoint;
        }
        const EndpointUrl offered = parseEndpointUrl(textOf(endpoint.EndpointUrl));
        if (!offered.valid || offered.scheme != wanted.scheme) {
            continue;
        }
        if (!samePort && offered.port == wanted.port) {
            samePort = &endpoint;
        }
        if (!sameScheme) {
            sameScheme = &endpoint;
        }
    }
    return samePort ? samePort : sameScheme;
}

const OpcUa_UserTokenPolicy* selectUserTokenPolicy(const OpcUa_EndpointDescription& endpoint,
                                                   OpcUa_UserTokenType type)
{
    const OpcUa_UserTokenPolicy* found = nullptr;
    for (OpcUa_Int32 i = 0; i < endpoint.NoOfUserIdentityTokens; ++i) {
        const OpcUa_UserTokenPolicy& policy = endpoint.UserIdentityTokens[i];
        const std::string_view id = textOf(policy.PolicyId);
        const std::string_view uri = textOf(policy.SecurityPolicyUri);
        UaTrace::tData("UserIdentityToken %i:", i);
        UaTrace::tData("  PolicyId: %.*s", static_cast<int>(id.size()), id.data());
        UaTrace::tData("  SecurityPolicyUri: %.*s", static_cast<int>(uri.size()), uri.data());
        if (!found && policy.TokenType == type) {
            found = &policy;
        }
    }
    return found;
}

} // namespace UaClientSdk
