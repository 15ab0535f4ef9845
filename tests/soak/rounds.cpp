#include <tests/soak/rounds.h>

#include <tests/soak/identity.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/uasession.h>
#include <uaclientsdk/uasessioncallback.h>

#include <cstdio>

namespace soak {

namespace {

using namespace UaClientSdk;

class Quiet : public UaSessionCallback
{
public:
    void connectionStatusChanged(OpcUa_UInt32, UaClient::ServerStatus) override {}
};

bool oneRound(const UaString& url, const SessionSecurityInfo& security)
{
    Quiet callback;
    UaSession session;
    SessionConnectInfo info;
    info.applicationUri = UaString("urn:localhost:Korvanda:Soak");
    info.sessionName = UaString("soak");
    ServiceSettings settings;
    UaStatus status = session.connect(url, info, security, &callback);
    if (status.isGood())
        status = session.disconnect(settings, true);
    if (!status.isGood())
        std::fprintf(stderr, "round failed: %s\n", status.toString().toUtf8());
    return status.isGood();
}

} // namespace

bool runRounds(const Options& options, unsigned long rounds)
{
    SessionSecurityInfo plain;
    SessionSecurityInfo secured;
    if (!secure(options.url, secured))
        return false;
    const UaString url(options.url.c_str());
    for (unsigned long n = 0; n < rounds; ++n) {
        if (!oneRound(url, n % 2 == 0 ? plain : secured)) {
            std::fprintf(stderr, "at round %lu\n", n);
            return false;
        }
    }
    std::printf("%lu rounds of connect and disconnect\n", rounds);
    return true;
}

} // namespace soak
