// Errors that the application has chosen to go on with.
#pragma once

#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uaclient.h>

#include <string>
#include <utility>
#include <vector>

namespace UaClientSdk {

struct SessionContext;

/// A finding about a server with the words for both ends that it may take.
struct OverridableError
{
    UaClient::ConnectServiceType step;
    OpcUa_StatusCode status;
    std::string text;
    std::string overriddenText;

    /// With the usual words for an error that is overridden.
    OverridableError(UaClient::ConnectServiceType where, OpcUa_StatusCode code, std::string what)
        : step(where), status(code), text(std::move(what)),
          overriddenText(text + " - error overridden by application")
    {
    }
};

/// Remembers what was overridden of which certificate until the next connect: a reconnect must not ask again
/// what nobody can answer on the session's thread. Used by who activates the session, one thread at a time.
class ErrorOverrides
{
public:
    /// Asks the application unless it has answered already; traces the outcome.
    [[nodiscard]] bool overridden(const SessionContext& context, const OverridableError& error,
                                  const UaByteString& certificate);
    void forget() { m_accepted.clear(); }

private:
    struct Accepted
    {
        std::string text;
        UaByteString certificate;
        bool operator==(const Accepted&) const = default;
    };
    std::vector<Accepted> m_accepted;
};

} // namespace UaClientSdk
