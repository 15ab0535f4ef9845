// What CreateSession returns beside what discovery had returned: what is the same, what differs, and what
// somebody has kept from the user.
#include <opcua/opcua.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/endpointcomparison.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace UaClientSdk;

struct Token
{
    OpcUa_UserTokenType type;
    const char* policyUri;
};

struct Offer
{
    const char* url;
    OpcUa_MessageSecurityMode mode;
    const char* policyUri;
    std::vector<Token> tokens;
};

constexpr auto openMode = OpcUa_MessageSecurityMode_None;
constexpr auto signMode = OpcUa_MessageSecurityMode_Sign;
constexpr auto encryptMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
constexpr const char* noPolicy = OpcUa_SecurityPolicy_None;
constexpr const char* oldPolicy = OpcUa_SecurityPolicy_Basic128Rsa15;
constexpr const char* goodPolicy = OpcUa_SecurityPolicy_Basic256Sha256;
constexpr const char* bestPolicy = OpcUa_SecurityPolicy_Aes256Sha256RsaPss;
constexpr const char* plcUrl = "opc.tcp://plc:4840";

void assign(OpcUa_String& text, const char* value)
{
    OpcUa_String_Clear(&text);
    if (value)
        EXPECT_EQ(OpcUa_String_Assign(&text, value, -1), OpcUa_Good);
}

UaEndpointDescriptions described(const std::vector<Offer>& offers)
{
    UaEndpointDescriptions result(static_cast<OpcUa_UInt32>(offers.size()));
    for (OpcUa_UInt32 i = 0; i < result.length(); ++i) {
        OpcUa_EndpointDescription& endpoint = result[i];
        assign(endpoint.EndpointUrl, offers[i].url);
        assign(endpoint.SecurityPolicyUri, offers[i].policyUri);
        assign(endpoint.Server.ApplicationUri, "urn:plc");
        assign(endpoint.TransportProfileUri, OpcUa_TransportProfile_UaTcp);
        endpoint.SecurityMode = offers[i].mode;
        endpoint.SecurityLevel = 10;
        UaUserTokenPolicys tokens(static_cast<OpcUa_UInt32>(offers[i].tokens.size()));
        for (OpcUa_UInt32 t = 0; t < tokens.length(); ++t) {
            assign(tokens[t].PolicyId, std::to_string(t).c_str());
            tokens[t].TokenType = offers[i].tokens[t].type;
            assign(tokens[t].SecurityPolicyUri, offers[i].tokens[t].policyUri);
        }
        tokens.detach(&endpoint.NoOfUserIdentityTokens, &endpoint.UserIdentityTokens);
    }
    return result;
}

EndpointDifference compared(const UaEndpointDescriptions& discovered, const UaEndpointDescriptions& created,
                            OpcUa_MessageSecurityMode mode, const char* policyUri)
{
    return compareEndpoints(discovered.span(), created.span(), {UaString(plcUrl), UaString(policyUri), mode});
}

const Token anonymous{OpcUa_UserTokenType_Anonymous, nullptr};
const Token clear{OpcUa_UserTokenType_UserName, noPolicy};
const Token password{OpcUa_UserTokenType_UserName, goodPolicy};
const Token ofChannel{OpcUa_UserTokenType_UserName, nullptr};
const Token signedUser{OpcUa_UserTokenType_Certificate, goodPolicy};

TEST(EndpointComparison, WhatWasKeptFromTheUserIsFound)
{
    const Offer open{plcUrl, openMode, noPolicy, {anonymous}};
    const Offer secured{plcUrl, encryptMode, goodPolicy, {anonymous, ofChannel}};
    constexpr auto harmless = EndpointDifference::Harmless;
    constexpr auto concealed = EndpointDifference::Concealed;
    const struct
    {
        const char* what;
        std::vector<Offer> discovered;
        std::vector<Offer> created;
        EndpointDifference difference;
        OpcUa_MessageSecurityMode mode = openMode;
        const char* policyUri = noPolicy;
    } cases[] = {
        {"secured endpoint", {open}, {open, secured}, concealed},
        {"of a host by another name",
         {open},
         {{"opc.tcp://10.0.0.1", encryptMode, goodPolicy, {}}},
         concealed},
        {"without its URL", {open}, {{nullptr, encryptMode, goodPolicy, {}}}, concealed},
        {"stronger mode",
         {{plcUrl, signMode, goodPolicy, {}}},
         {{plcUrl, signMode, goodPolicy, {}}, {plcUrl, encryptMode, goodPolicy, {}}},
         concealed,
         signMode,
         goodPolicy},
        {"stronger policy",
         {{plcUrl, encryptMode, goodPolicy, {}}},
         {{plcUrl, encryptMode, goodPolicy, {}}, {plcUrl, encryptMode, bestPolicy, {}}},
         concealed,
         encryptMode,
         goodPolicy},
        {"shown at a URL of somebody else only",
         {open, {"opc.tcp://bait:4840", encryptMode, goodPolicy, {anonymous, ofChannel}}},
         {open, secured},
         concealed},
        {"protected password",
         {{plcUrl, openMode, noPolicy, {anonymous, clear}}},
         {{plcUrl, openMode, noPolicy, {anonymous, clear, password}}},
         concealed},
        {"password of a better policy",
         {{plcUrl, openMode, noPolicy, {{OpcUa_UserTokenType_UserName, oldPolicy}}}},
         {{plcUrl, openMode, noPolicy, {password}}},
         concealed},
        {"user certificate",
         {{plcUrl, openMode, noPolicy, {anonymous}}},
         {{plcUrl, openMode, noPolicy, {anonymous, signedUser}}},
         concealed},
        {"password of a secured endpoint, whose policy it takes",
         {open, {plcUrl, encryptMode, goodPolicy, {anonymous}}},
         {open, secured},
         concealed},
        {"less than was chosen", {secured}, {secured, open}, harmless, encryptMode, goodPolicy},
        {"weaker endpoint with a password",
         {secured},
         {secured, {plcUrl, openMode, noPolicy, {password}}},
         harmless,
         encryptMode,
         goodPolicy},
        {"password that nothing protects",
         {open},
         {{plcUrl, openMode, noPolicy, {anonymous, clear}}},
         harmless},
        {"policy that nobody speaks here", {open}, {open, {plcUrl, encryptMode, "urn:new", {}}}, harmless},
        {"something is missing", {open, secured}, {open}, harmless},
        {"nothing at all", {open}, {}, harmless},
        {"another name of the host",
         {open, secured},
         {open, secured, {"opc.tcp://10.0.0.1:4840", encryptMode, goodPolicy, {anonymous, ofChannel}}},
         harmless},
    };
    for (const auto& test : cases)
        EXPECT_EQ(compared(described(test.discovered), described(test.created), test.mode, test.policyUri),
                  test.difference)
            << test.what;
}

TEST(EndpointComparison, OrderOtherSchemesAndWhatIsLeftOutDoNotCount)
{
    const std::vector<Offer> offers = {{plcUrl, openMode, noPolicy, {anonymous, clear}},
                                       {plcUrl, encryptMode, goodPolicy, {anonymous, password, signedUser}}};
    const UaEndpointDescriptions discovered = described(offers);
    const std::function<void(UaEndpointDescriptions&)> same[] = {
        [](auto&) {},
        [](auto& created) { std::swap(created[0], created[1]); },
        [](auto& created) { assign(created[0].EndpointUrl, "OPC.TCP://Plc/"); },
        [](auto& created) { std::swap(created[1].UserIdentityTokens[0], created[1].UserIdentityTokens[2]); },
        [](auto& created) {
            EXPECT_TRUE(created.append(described({{"https://plc", encryptMode, bestPolicy, {}}})[0]));
        },
        [](auto& created) { created[0].SecurityLevel = created[1].SecurityLevel = 0; },
        [](auto& created) {
            for (OpcUa_EndpointDescription& endpoint : created) {
                assign(endpoint.EndpointUrl, nullptr);
                assign(endpoint.Server.ApplicationUri, nullptr);
                assign(endpoint.TransportProfileUri, nullptr);
                UaUserTokenPolicys tokens;
                tokens.attach(endpoint.NoOfUserIdentityTokens, endpoint.UserIdentityTokens);
                endpoint.NoOfUserIdentityTokens = 0;
                endpoint.UserIdentityTokens = nullptr;
            }
        },
        [](auto& created) { assign(created[0].Server.ProductUri, "urn:never compared"); },
    };
    const std::function<void(UaEndpointDescriptions&)> other[] = {
        [](auto& created) { assign(created[0].EndpointUrl, "opc.tcp://plc:4841"); },
        [](auto& created) { assign(created[0].Server.ApplicationUri, "urn:other"); },
        [](auto& created) { assign(created[0].TransportProfileUri, "urn:other"); },
        [](auto& created) { created[0].SecurityLevel = 11; },
        [](auto& created) { assign(created[1].UserIdentityTokens[1].PolicyId, "other"); },
    };
    const auto outcome = [&](const std::function<void(UaEndpointDescriptions&)>& change) {
        UaEndpointDescriptions created = described(offers);
        change(created);
        return compared(discovered, created, openMode, noPolicy);
    };
    for (std::size_t i = 0; i < std::size(same); ++i)
        EXPECT_EQ(outcome(same[i]), EndpointDifference::None) << i;
    for (std::size_t i = 0; i < std::size(other); ++i)
        EXPECT_EQ(outcome(other[i]), EndpointDifference::Harmless) << i;
}

TEST(EndpointComparison, OneHiddenAmongTenThousandIsFound)
{
    std::vector<std::string> urls;
    std::vector<Offer> offers;
    for (int i = 0; i < 10000; ++i)
        urls.push_back(std::string(plcUrl) + std::string(200, '/') + std::to_string(i));
    for (const std::string& one : urls)
        offers.push_back({one.c_str(), openMode, noPolicy, {clear}});
    const UaEndpointDescriptions discovered = described(offers);
    std::reverse(offers.begin(), offers.end());
    EXPECT_EQ(compared(discovered, described(offers), openMode, noPolicy), EndpointDifference::None);
    offers[5000].tokens.push_back(password);
    EXPECT_EQ(compared(discovered, described(offers), openMode, noPolicy), EndpointDifference::Concealed);
}

} // namespace
