// How many Publish requests a session keeps at its server.
#pragma once

#include <opcua/opcua_platform.h>

#include <limits>

namespace UaClientSdk {

/// A number for each count of subscriptions, below a bound that is learned from a server that refuses more:
/// the bound falls at once and rises by one with each calculation. Not thread-safe.
class PublishSetPoint
{
public:
    [[nodiscard]] OpcUa_UInt32 value() const { return m_value; }

    void calculate(OpcUa_UInt32 subscriptions);
    /// Over a transport that can hold one request at a time only.
    void calculateForHttp(OpcUa_UInt32 subscriptions) { m_value = subscriptions > 0 ? 1 : 0; }
    /// The server has refused a request.
    void lower(OpcUa_UInt32 subscriptions);
    /// For another server session, of which nothing is learned yet.
    void reset() { *this = PublishSetPoint(); }

private:
    OpcUa_UInt32 m_value = 0;
    OpcUa_UInt32 m_cap = std::numeric_limits<OpcUa_UInt32>::max();
};

} // namespace UaClientSdk
