// What tests of channels over HTTPS share.
#pragma once

#include <tests/protocol/channelfixture.h>
#include <tests/support/httpspeer.h>

#include <string>

namespace opcua::test {

class HttpsChannel : public Channel
{
public:
    HttpsChannel() { info.TransportProfileUri = OpcUa_TransportProfile_HttpsBinary; }
};

class StackHttps : public StackTransport
{
};

inline std::string goodAnswer(const std::string& fields = {})
{
    return httpAnswer(findServersResponse(), fields);
}

/// Answers every request on every connection.
inline void serveAll(TlsPeerSocket& socket, int)
{
    HttpRequest request;
    while (socket.read(request))
        socket.write(goodAnswer());
}

inline testcertificates::Recipe recipe(const std::string& name, EVP_PKEY* pair = ellipticKey())
{
    testcertificates::Recipe result;
    result.name = name;
    result.pair = pair;
    return result;
}

} // namespace opcua::test
