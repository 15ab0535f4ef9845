#include <uaclientsdk/connection/channelconnector.h>

#include <opcua/opcua_statuscodes.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/calls/stackcall.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/connection/channelconnectinfo.h>
#include <uaclientsdk/connection/endpointurl.h>
#include <uaclientsdk/uaclient.h>

namespace UaClientSdk {

namespace {

OpcUa_StatusCode channelEvent(OpcUa_Channel /*channel*/, OpcUa_Channel_Event event, OpcUa_StatusCode status,
                              void* details, void* context)
{
    auto& session = *static_cast<SessionContext*>(context);
    if (event == OpcUa_Channel_Event_Disconnected) {
        UaTrace::tInfo("UaSession_ChannelConnectionStateChanged to Disconnected [Session=%u] [status=0x%x]",
                       session.traceId, status);
        session.linkLost();
    } else if (event == OpcUa_Channel_Event_VerifyCertificate) {
        const auto& validation = *static_cast<OpcUa_CertificateValidation*>(details);
        const bool accepted =
            session.reportTlsFinding(UaStatus(validation.Status), UaByteString(validation.Certificate));
        return accepted ? static_cast<OpcUa_StatusCode>(OpcUa_Good) : validation.Status;
    }
    return OpcUa_Good;
}

} // namespace

UaStatus ChannelConnector::connectChannel()
{
    TraceScope trace("UaSessionPrivate", "connectChannel");
    UaString url;
    UaStringArray alternatives;
    bool inUse = false;
    {
        SessionLock lock(m_context.mutex);
        inUse = m_use != Use::Free;
        url = m_context.url;
        alternatives = m_context.connectInfo.alternativeEndpointUrls;
    }
    if (inUse) {
        UaTrace::tError("UaSessionPrivate::connectChannel: Channel still in use");
        trace.keepSilent();
        return UaStatus(OpcUa_BadInvalidState);
    }
    UaStatus result = connectTo(url);
    for (OpcUa_UInt32 i = 0; result.isBad() && i < alternatives.length(); ++i)
        result = connectTo(UaString(alternatives[i]));
    if (result.isBad())
        m_context.reportConnectError(UaClient::OpenSecureChannel, result, false);
    return trace.ending(result);
}

UaStatus ChannelConnector::connectTo(const UaString& url)
{
    SessionConnectInfo connectInfo;
    SessionSecurityInfo security;
    {
        SessionLock lock(m_context.mutex);
        connectInfo = m_context.connectInfo;
        security = m_context.securityInfo;
    }
    ChannelConnectInfo info(url, security);
    if (!info.isSupported())
        return UaStatus(OpcUa_BadInvalidArgument);
    info->Callback = channelEvent;
    info->CallbackContext = &m_context;
    info->ServerCertificate = security.serverCertificate.get();
    // a certificate that was judged before the connect is pinned by the channel, and not judged again
    if (!isHttpsUrl(url.view()))
        info->PkiConfiguration = nullptr;
    info->SecurityPolicyUri = security.securityPolicyUri.toUtf8();
    info->RequestedLifetime = connectInfo.secureChannelLifetime;
    info->SecurityMode = security.messageSecurityMode;
    info->AllowBasic128Rsa15 = security.basic128Rsa15Accepted ? OpcUa_True : OpcUa_False;
    info->Reserved = connectInfo.reserved.toUtf8();
    info->ConnectTimeout = connectInfo.connectTimeout;

    if (!beginOpening())
        return UaStatus(OpcUa_BadConnectionClosed);
    OpcUa_UInt32 revisedLifetime = 0;
    m_context.mutex.assertUnlocked();
    const StackCall call("OpcUa_Channel_Connect");
    const OpcUa_StatusCode status =
        call.done(OpcUa_Channel_Connect(m_context.channel, info.get(), &revisedLifetime));
    SessionLock lock(m_context.mutex);
    m_use = OpcUa_IsGood(status) ? Use::Open : Use::Free;
    if (OpcUa_IsGood(status)) {
        m_context.revisedChannelLifetime = revisedLifetime;
        m_context.currentEndpointUrl = url;
    }
    return UaStatus(status);
}

bool ChannelConnector::beginOpening()
{
    SessionLock lock(m_context.mutex);
    if (!m_context.connection.mayCall(CallKind::Identity))
        return false;
    m_use = Use::Opening;
    return true;
}

void ChannelConnector::disconnectChannel()
{
    Use use = Use::Free;
    {
        SessionLock lock(m_context.mutex);
        use = m_use;
        if (m_use == Use::Open)
            m_use = Use::Free;
    }
    if (use == Use::Opening) {
        OpcUa_Channel_CancelConnect(m_context.channel);
    } else if (use == Use::Open) {
        const StackCall call("OpcUa_Channel_Disconnect");
        call.done(OpcUa_Channel_Disconnect(m_context.channel)); // nothing could be done about it
    }
}

bool ChannelConnector::isOpen() const
{
    SessionLock lock(m_context.mutex);
    return m_use == Use::Open;
}

} // namespace UaClientSdk
