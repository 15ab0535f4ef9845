#include <uaclientsdk/connection/endpointcomparison.h>

#include <uaclientsdk/connection/endpointurl.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace UaClientSdk {

namespace {

// An endpoint of the scheme, by the form of its URL that compares.
struct Candidate
{
    std::string url; // empty: not given
    const OpcUa_EndpointDescription* endpoint;
};
using Candidates = std::vector<Candidate>;

std::string comparable(const EndpointUrl& url)
{
    std::string result = url.scheme + "://" + url.host + ':' + std::to_string(url.port);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result + (url.path == "/" ? std::string() : url.path);
}

Candidates candidatesOf(EndpointSpan endpoints, const std::string& scheme)
{
    Candidates result;
    for (const OpcUa_EndpointDescription& endpoint : endpoints) {
        const EndpointUrl url = parseEndpointUrl(textOf(endpoint.EndpointUrl));
        if (endpoint.EndpointUrl.Length <= 0)
            result.push_back({std::string(), &endpoint});
        else if (url.valid && url.scheme == scheme)
            result.push_back({comparable(url), &endpoint});
    }
    return result;
}

std::span<const OpcUa_UserTokenPolicy> tokensOf(const OpcUa_EndpointDescription& endpoint)
{
    return {endpoint.UserIdentityTokens,
            static_cast<std::size_t>(std::max(endpoint.NoOfUserIdentityTokens, 0))};
}

// ---- what was kept from the user

// For passwords and for user certificates, the rank of the best policy that protects them.
struct TokenRanks
{
    int password = noSecurityRank;
    int certificate = noSecurityRank;
};

TokenRanks ranksOf(const OpcUa_EndpointDescription& endpoint)
{
    TokenRanks result;
    for (const OpcUa_UserTokenPolicy& token : tokensOf(endpoint)) {
        const std::string_view own = textOf(token.SecurityPolicyUri);
        const int rank = securityPolicyRank(own.empty() ? textOf(endpoint.SecurityPolicyUri) : own);
        if (token.TokenType == OpcUa_UserTokenType_UserName)
            result.password = std::max(result.password, rank);
        else if (token.TokenType == OpcUa_UserTokenType_Certificate)
            result.certificate = std::max(result.certificate, rank);
    }
    return result;
}

class ShownEndpoints
{
public:
    explicit ShownEndpoints(const Candidates& discovered)
    {
        for (const Candidate& one : discovered) {
            m_urls.insert(one.url);
            const TokenRanks ranks = ranksOf(*one.endpoint);
            add(one.url, *one.endpoint, ranks);
            add(std::string(), *one.endpoint, ranks); // whatever the URL
        }
    }

    // Null for security settings that were not shown. A host that goes by several names may have been shown
    // by one of them only.
    [[nodiscard]] const TokenRanks* find(const Candidate& wanted) const
    {
        const bool knownUrl = m_urls.contains(wanted.url);
        const auto found = m_ranks.find(keyOf(knownUrl ? wanted.url : std::string(), *wanted.endpoint));
        return found == m_ranks.end() ? nullptr : &found->second;
    }

private:
    using Key = std::tuple<std::string, int, std::string_view>;

    static Key keyOf(std::string url, const OpcUa_EndpointDescription& endpoint)
    {
        return {std::move(url), static_cast<int>(endpoint.SecurityMode), textOf(endpoint.SecurityPolicyUri)};
    }

    void add(const std::string& url, const OpcUa_EndpointDescription& endpoint, const TokenRanks& ranks)
    {
        TokenRanks& best = m_ranks[keyOf(url, endpoint)];
        best.password = std::max(best.password, ranks.password);
        best.certificate = std::max(best.certificate, ranks.certificate);
    }

    std::set<std::string> m_urls;
    std::map<Key, TokenRanks> m_ranks;
};

bool isConcealed(const Candidate& candidate, const ShownEndpoints& shown, const ChosenSecurity& chosen)
{
    const OpcUa_EndpointDescription& endpoint = *candidate.endpoint;
    if (endpoint.SecurityMode == OpcUa_MessageSecurityMode_Invalid || endpoint.SecurityPolicyUri.Length <= 0)
        return false;
    const int rank = securityPolicyRank(textOf(endpoint.SecurityPolicyUri));
    const int chosenRank = securityPolicyRank(chosen.securityPolicyUri.view());
    if (rank == 0)
        return false; // nobody could have chosen it here
    const bool stronger = endpoint.SecurityMode > chosen.securityMode || rank > chosenRank;
    const bool same = endpoint.SecurityMode == chosen.securityMode && rank == chosenRank;
    const TokenRanks* const ranks = shown.find(candidate);
    if (!stronger && !same)
        return false;
    if (!ranks && stronger)
        return true;
    const TokenRanks before = ranks ? *ranks : TokenRanks();
    const TokenRanks now = ranksOf(endpoint);
    return now.password > before.password || now.certificate > before.certificate;
}

// ---- any difference

// Which fields are given wherever a server names its endpoints.
struct GivenFields
{
    bool url = true;
    bool mode = true;
    bool policy = true;
    bool tokens = true;
    bool application = true;
    bool transport = true;
    bool level = true;
};

GivenFields givenFieldsOf(const Candidates& candidates)
{
    GivenFields given;
    for (const auto& [url, endpoint] : candidates) {
        given.url = given.url && !url.empty();
        given.mode = given.mode && endpoint->SecurityMode != OpcUa_MessageSecurityMode_Invalid;
        given.policy = given.policy && endpoint->SecurityPolicyUri.Length > 0;
        given.tokens = given.tokens && endpoint->NoOfUserIdentityTokens > 0;
        given.application = given.application && endpoint->Server.ApplicationUri.Length > 0;
        given.transport = given.transport && endpoint->TransportProfileUri.Length > 0;
        given.level = given.level && endpoint->SecurityLevel != 0;
    }
    return given;
}

void addText(std::string& line, std::string_view text)
{
    line.append(text).append(1, '\n');
}

std::string tokenText(const OpcUa_UserTokenPolicy& token)
{
    std::string result = std::to_string(static_cast<int>(token.TokenType));
    for (const OpcUa_String* text :
         {&token.PolicyId, &token.IssuedTokenType, &token.IssuerEndpointUrl, &token.SecurityPolicyUri})
        addText(result, textOf(*text));
    return result;
}

std::string comparedText(const Candidate& candidate, const GivenFields& given)
{
    const OpcUa_EndpointDescription& endpoint = *candidate.endpoint;
    std::string result;
    addText(result, given.url ? std::string_view(candidate.url) : std::string_view());
    addText(result, given.mode ? std::to_string(static_cast<int>(endpoint.SecurityMode)) : std::string());
    addText(result, given.level ? std::to_string(endpoint.SecurityLevel) : std::string());
    const std::array<std::pair<bool, const OpcUa_String*>, 3> texts = {
        {{given.policy, &endpoint.SecurityPolicyUri},
         {given.application, &endpoint.Server.ApplicationUri},
         {given.transport, &endpoint.TransportProfileUri}}};
    for (const auto& [counts, text] : texts)
        addText(result, counts ? textOf(*text) : std::string_view());
    if (!given.tokens)
        return result;
    std::set<std::string> tokens;
    for (const OpcUa_UserTokenPolicy& token : tokensOf(endpoint))
        tokens.insert(tokenText(token));
    for (const std::string& token : tokens)
        addText(result, token);
    return result;
}

std::set<std::string> comparedTexts(const Candidates& candidates, const GivenFields& given)
{
    std::set<std::string> result;
    for (const Candidate& candidate : candidates)
        result.insert(comparedText(candidate, given));
    return result;
}

} // namespace

EndpointDifference compareEndpoints(EndpointSpan discovered, EndpointSpan created,
                                    const ChosenSecurity& chosen)
{
    const std::string scheme = parseEndpointUrl(chosen.url.view()).scheme;
    const Candidates before = candidatesOf(discovered, scheme);
    const Candidates now = candidatesOf(created, scheme);
    const ShownEndpoints shown(before);
    if (std::any_of(now.begin(), now.end(),
                    [&](const Candidate& candidate) { return isConcealed(candidate, shown, chosen); }))
        return EndpointDifference::Concealed;
    const GivenFields given = givenFieldsOf(now);
    return comparedTexts(before, given) == comparedTexts(now, given) ? EndpointDifference::None
                                                                     : EndpointDifference::Harmless;
}

} // namespace UaClientSdk
