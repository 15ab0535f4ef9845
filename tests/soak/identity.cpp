#include <tests/soak/identity.h>

#include <opcua/opcua.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkicertificateinfo.h>
#include <uabase/uapkicpp/uapkiidentity.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/uadiscovery.h>
#include <uaclientsdk/uasession.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace soak {

namespace {

bool makeOwnPair(UaClientSdk::SessionSecurityInfo& security)
{
    const UaPkiRsaKeyPair pair(2048);
    UaPkiIdentity subject;
    subject.organization = UaString("Korvanda");
    subject.commonName = UaString("Soak");
    UaPkiCertificateInfo info;
    info.URI = UaString("urn:localhost:Korvanda:Soak");
    static_cast<void>(info.DNSNames.create(1));
    static_cast<void>(UaString("localhost").copyTo(&info.DNSNames[0]));
    info.validTime = 86400;
    const UaPkiCertificate certificate(info, subject, pair, false, UaPkiCertificate::Sha256);
    security.clientCertificate = certificate.toByteStringDER();
    security.clientPrivateKey = std::make_shared<const UaClientSdk::SecretBytes>(pair.toDER());
    return security.clientCertificate.length() > 0;
}

} // namespace

bool secure(const std::string& url, UaClientSdk::SessionSecurityInfo& security)
{
    UaClientSdk::ServiceSettings settings;
    UaEndpointDescriptions endpoints;
    UaClientSdk::UaDiscovery discovery;
    const UaStatus status = discovery.getEndpoints(settings, UaString(url.c_str()), security, endpoints);
    if (status.isBad() || !makeOwnPair(security)) {
        std::fprintf(stderr, "no secured session: %s\n", status.toString().toUtf8());
        return false;
    }
    security.securityPolicyUri = UaString(OpcUa_SecurityPolicy_Basic256Sha256);
    security.messageSecurityMode = OpcUa_MessageSecurityMode_SignAndEncrypt;
    for (const OpcUa_EndpointDescription& endpoint : endpoints)
        if (endpoint.SecurityMode == security.messageSecurityMode &&
            UaString(endpoint.SecurityPolicyUri) == security.securityPolicyUri)
            security.serverCertificate = UaByteString(endpoint.ServerCertificate);
    return security.serverCertificate.length() > 0;
}

std::string withPort(const std::string& url, unsigned int port)
{
    const auto host = url.find("//") + 2;
    const auto colon = url.find(':', host);
    const auto path = url.find('/', host);
    return url.substr(0, std::min(colon, path)) + ":" + std::to_string(port) +
           (path == std::string::npos ? std::string() : url.substr(path));
}

} // namespace soak
