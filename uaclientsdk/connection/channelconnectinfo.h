// What the stack is told about a channel before it opens.
#pragma once

#include <opcua/opcua_channel.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/clientsecurityinfo.h>

namespace UaClientSdk {

/// The folders as the stack takes them; borrowed.
[[nodiscard]] OpcUa_PkiConfiguration pkiConfigurationOf(const PkiFolders& folders);

/// What follows from the URL and the client's own certificate, with the folders of the URL's transport. The
/// rest is the caller's to set. Borrows all that it is given.
class ChannelConnectInfo
{
public:
    ChannelConnectInfo(const UaString& url, const ClientSecurityInfo& security);
    ChannelConnectInfo(const ChannelConnectInfo&) = delete;
    ChannelConnectInfo& operator=(const ChannelConnectInfo&) = delete;

    /// False for a scheme that the stack does not speak.
    [[nodiscard]] bool isSupported() const { return m_info.TransportProfileUri != nullptr; }
    OpcUa_ChannelConnectInfo* operator->() { return &m_info; }
    [[nodiscard]] const OpcUa_ChannelConnectInfo* get() const { return &m_info; }

private:
    OpcUa_PkiConfiguration m_pki;
    OpcUa_ByteString m_privateKey;
    OpcUa_ChannelConnectInfo m_info{};
};

} // namespace UaClientSdk
