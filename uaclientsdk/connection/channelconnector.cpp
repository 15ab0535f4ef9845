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
        const SessionLock lock(session.mutex); // so that a wait that is about to begin is ended too
        session.linkLost = true;
        session.wakeUp.notify_all();
    } else if (event == OpcUa_Channel_Event_VerifyCertificate && session.callback) {
        const auto& validation = *static_cast<OpcUa_CertificateValidation*>(details);
        const bool accepted = session.callback->sslCertificateValidationFailed(
            session.connectionId(), UaStatus(validation.Status), UaByteString(validation.Certificate));
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
    {
        SessionLock lock(m_context.mutex);
        if (m_context.channelConnected) {
            UaTrace::tError("UaSessionPrivate::connectChannel: Channel still in use");
            trace.keepSilent();
            return UaStatus(OpcUa_BadInvalidState);
        }
        url = m_context.url;
        alternatives = m_context.connectInfo.alternativeEndpointUrls;
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

    OpcUa_UInt32 revisedLifetime = 0;
    m_context.mutex.assertUnlocked();
    m_context.linkLost = false;
    const StackCall call("OpcUa_Channel_Connect");
    const OpcUa_StatusCode status =
        call.done(OpcUa_Channel_Connect(m_context.channel, info.get(), &revisedLifetime));
    if (OpcUa_IsGood(status)) {
        SessionLock lock(m_context.mutex);
        m_context.channelConnected = true;
        m_context.sessionActive = false;
        m_context.revisedChannelLifetime = revisedLifetime;
        m_context.currentEndpointUrl = url;
    }
    return UaStatus(status);
}

void ChannelConnector::disconnectChannel()
{
    {
        SessionLock lock(m_context.mutex);
        if (!m_context.channelConnected)
            return;
        m_context.channelConnected = false;
        m_context.sessionActive = false;
    }
    const StackCall call("OpcUa_Channel_Disconnect");
    call.done(OpcUa_Channel_Disconnect(m_context.channel)); // nothing could be done about it
}

} // namespace UaClientSdk
