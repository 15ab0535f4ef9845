// The channel of one discovery call.
#pragma once

#include <opcua/opcua_channel.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/clientsecurityinfo.h>
#include <uaclientsdk/discovery/discoverycalls.h>

#include <functional>

namespace UaClientSdk {

/// Made for one call and used by one thread; closes its channel with its life.
class UaDiscoveryPrivate
{
public:
    UaDiscoveryPrivate() = default;
    ~UaDiscoveryPrivate();
    UaDiscoveryPrivate(const UaDiscoveryPrivate&) = delete;
    UaDiscoveryPrivate& operator=(const UaDiscoveryPrivate&) = delete;

    UaStatus connect(DiscoveryCalls& calls, const UaString& url, const ClientSecurityInfo& security,
                     OpcUa_UInt32 timeout, const UaString& reserved);
    /// Once connected.
    UaStatus call(DiscoveryCalls& calls, const std::function<OpcUa_StatusCode()>& service);
    UaStatus disconnect();
    [[nodiscard]] OpcUa_Channel channel() const { return m_channel; }

private:
    OpcUa_Channel m_channel = nullptr;
};

} // namespace UaClientSdk
