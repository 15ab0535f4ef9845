#include <uaclientsdk/connection/channelconnectinfo.h>

#include <uaclientsdk/connection/endpointurl.h>

namespace UaClientSdk {

OpcUa_PkiConfiguration pkiConfigurationOf(const PkiFolders& folders)
{
    return {folders.trustedCertificates.toUtf8(), folders.trustedRevocationLists.toUtf8(),
            folders.issuerCertificates.toUtf8(), folders.issuerRevocationLists.toUtf8()};
}

ChannelConnectInfo::ChannelConnectInfo(const UaString& url, const ClientSecurityInfo& security)
    : m_pki(pkiConfigurationOf(isHttpsUrl(url.view()) ? security.httpsPki() : security.pki())),
      m_privateKey(SecretBytes::viewOf(security.clientPrivateKey))
{
    m_info.Url = url.toUtf8();
    m_info.TransportProfileUri = transportProfileOf(url.view());
    m_info.ClientCertificate = security.clientCertificate.get();
    m_info.ClientPrivateKey = &m_privateKey;
    m_info.PkiConfiguration = &m_pki;
}

} // namespace UaClientSdk
