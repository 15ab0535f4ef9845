#include <uaclientsdk/connection/endpointselector.h>

#include <opcua/opcua_channel.h>
#include <uabase/system/uatrace.h>
#include <uaclientsdk/connection/endpointurl.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <strings.h>

namespace UaClientSdk {

namespace {

bool beginsWithIgnoringCase(std::string_view text, std::string_view prefix)
{
    return text.size() >= prefix.size() && strncasecmp(text.data(), prefix.data(), prefix.size()) == 0;
}

// The first endpoint that fits best among those that are wanted.
template <typename Wanted>
const OpcUa_EndpointDescription* selectBest(EndpointSpan endpoints, const UaString& connectUrl,
                                            const Wanted& wanted)
{
    const EndpointUrl url = parseEndpointUrl(connectUrl.view());
    const OpcUa_EndpointDescription* samePort = nullptr;
    const OpcUa_EndpointDescription* sameScheme = nullptr;
    for (const OpcUa_EndpointDescription& endpoint : endpoints) {
        if (!wanted(endpoint))
            continue;
        if (beginsWithIgnoringCase(textOf(endpoint.EndpointUrl), connectUrl.view()))
            return &endpoint;
        const EndpointUrl offered = parseEndpointUrl(textOf(endpoint.EndpointUrl));
        if (!offered.valid || offered.scheme != url.scheme)
            continue;
        if (!samePort && offered.port == url.port)
            samePort = &endpoint;
        if (!sameScheme)
            sameScheme = &endpoint;
    }
    return samePort ? samePort : sameScheme;
}

void traceUserTokens(const OpcUa_EndpointDescription& endpoint)
{
    for (OpcUa_Int32 i = 0; i < endpoint.NoOfUserIdentityTokens; ++i) {
        const std::string_view id = textOf(endpoint.UserIdentityTokens[i].PolicyId);
        const std::string_view uri = textOf(endpoint.UserIdentityTokens[i].SecurityPolicyUri);
        UaTrace::tData("UserIdentityToken %i:", i);
        UaTrace::tData("  PolicyId: %.*s", static_cast<int>(id.size()), id.data());
        UaTrace::tData("  SecurityPolicyUri: %.*s", static_cast<int>(uri.size()), uri.data());
    }
}

// The weakest first.
constexpr std::array<std::string_view, 6> rankedPolicies = {
    OpcUa_SecurityPolicy_None,           OpcUa_SecurityPolicy_Basic128Rsa15,
    OpcUa_SecurityPolicy_Basic256,       OpcUa_SecurityPolicy_Aes128Sha256RsaOaep,
    OpcUa_SecurityPolicy_Basic256Sha256, OpcUa_SecurityPolicy_Aes256Sha256RsaPss};
constexpr int firstStrongRank = noSecurityRank + 3;

// How well a policy protects a user's secrets; those that are still thought safe are equals.
int strengthOf(std::string_view policyUri)
{
    const int rank = securityPolicyRank(policyUri);
    return rank > noSecurityRank && rank < firstStrongRank ? firstStrongRank - 1
                                                           : std::min(rank, firstStrongRank);
}

} // namespace

std::string_view textOf(const OpcUa_String& text)
{
    return text.Length > 0 ? std::string_view(text.Data, static_cast<std::size_t>(text.Length))
                           : std::string_view("");
}

int securityPolicyRank(std::string_view policyUri)
{
    if (policyUri.empty())
        return noSecurityRank;
    const auto found = std::find(rankedPolicies.begin(), rankedPolicies.end(), policyUri);
    return found == rankedPolicies.end()
               ? 0
               : noSecurityRank + static_cast<int>(std::distance(rankedPolicies.begin(), found));
}

const OpcUa_EndpointDescription* selectEndpoint(EndpointSpan endpoints, const UaString& connectUrl,
                                                const UaString& securityPolicyUri,
                                                OpcUa_MessageSecurityMode securityMode)
{
    return selectBest(
        endpoints, connectUrl,
        [&](const OpcUa_EndpointDescription& endpoint) {
            return endpoint.SecurityMode == securityMode &&
                   textOf(endpoint.SecurityPolicyUri) == securityPolicyUri.view();
        });
}

const OpcUa_EndpointDescription* selectEndpointOfAnySecurity(EndpointSpan endpoints,
                                                             const UaString& connectUrl)
{
    return selectBest(
        endpoints, connectUrl, [](const OpcUa_EndpointDescription&) { return true; });
}

const OpcUa_UserTokenPolicy* selectUserTokenPolicy(const OpcUa_EndpointDescription& endpoint,
                                                   OpcUa_UserTokenType type, const UaString& channelPolicyUri)
{
    traceUserTokens(endpoint);
    const OpcUa_UserTokenPolicy* found = nullptr;
    int best = 0;
    for (OpcUa_Int32 i = 0; i < endpoint.NoOfUserIdentityTokens; ++i) {
        const OpcUa_UserTokenPolicy& policy = endpoint.UserIdentityTokens[i];
        if (policy.TokenType != type)
            continue;
        const std::string_view own = textOf(policy.SecurityPolicyUri);
        // an anonymous user has no secret to protect
        const int strength = type == OpcUa_UserTokenType_Anonymous
                                 ? 1
                                 : strengthOf(own.empty() ? channelPolicyUri.view() : own);
        if (strength > best) {
            best = strength;
            found = &policy;
        }
    }
    return found;
}

} // namespace UaClientSdk
