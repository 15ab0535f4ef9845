// Both ends of a secured channel in one thread, and who they are.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/security/securitypolicies.h>
#include <tests/protocol/memorypipe.h>
#include <tests/support/testcertificates.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>

namespace opcua::test {

inline constexpr auto signOnly = OpcUa_MessageSecurityMode_Sign;
inline constexpr auto signAndEncrypt = OpcUa_MessageSecurityMode_SignAndEncrypt;

struct Identity
{
    Bytes certificate;
    Bytes key;
};

inline const Identity& identity(int bits, const std::string& name)
{
    static std::map<std::pair<int, std::string>, Identity> made;
    Identity& entry = made[{bits, name}];
    if (entry.certificate.empty()) {
        testcertificates::Recipe recipe;
        recipe.name = name;
        recipe.pair = testcertificates::key(bits, name);
        entry = {testcertificates::make(recipe), testcertificates::privateDer(recipe.pair)};
    }
    return entry;
}

inline std::unique_ptr<SecurityPolicy> policy(const char* uri, OpcUa_MessageSecurityMode mode,
                                              const Identity& own, const Identity& peer)
{
    std::unique_ptr<SecurityPolicy> made;
    EXPECT_EQ(makeSecurityPolicy(uri, mode, {own.certificate, own.key, peer.certificate}, made), OpcUa_Good);
    return made;
}

struct Suite
{
    const char* uri;
    OpcUa_MessageSecurityMode mode;
    int clientBits;
    int serverBits;
};

/// Server ids are the same in each, so that bytes of one conversation fit another.
struct SecurePipe
{
    explicit SecurePipe(const Suite& suite, const char* clientName = "client")
        : client(identity(suite.clientBits, clientName)), server(identity(suite.serverBits, "server")),
          pipe(configOf(suite), {}, policy(suite.uri, suite.mode, client, server),
               policy(suite.uri, suite.mode, server, client))
    {
    }
    static ClientChannelConfig configOf(const Suite& suite)
    {
        ClientChannelConfig config;
        config.securityMode = suite.mode;
        return config;
    }
    /// Up to the point where the server's answer to Open is on its way.
    Bytes openAnswer()
    {
        pipe.start();
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        pipe.toClient(std::exchange(pipe.server.output(), {}));
        pipe.toServer(std::exchange(pipe.client.output(), {}));
        return std::exchange(pipe.server.output(), {});
    }

    const Identity& client;
    const Identity& server;
    MemoryPipe pipe;
};

} // namespace opcua::test
