#include <servers/qlumendpoint.h>

#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_types.h>

#include <algorithm>

namespace {
using namespace QlumEndpointLimits;

QString text(const OpcUa_String& value)
{
    if (!value.Data || value.Length <= 0)
        return {};
    return QString::fromUtf8(value.Data, std::min(value.Length, textLength * 4)).left(textLength);
}

QByteArray bytes(const OpcUa_ByteString& value)
{
    // A cut certificate is none; one that is too long is left out.
    if (!value.Data || value.Length <= 0 || value.Length > certificateSize)
        return {};
    return QByteArray(reinterpret_cast<const char*>(value.Data), value.Length);
}

void takeServer(const OpcUa_ApplicationDescription& server, QlumEndpoint& endpoint)
{
    endpoint.applicationUri = text(server.ApplicationUri);
    endpoint.productUri = text(server.ProductUri);
    endpoint.applicationNameLocale = text(server.ApplicationName.Locale);
    endpoint.applicationName = text(server.ApplicationName.Text);
    endpoint.applicationType = static_cast<int>(server.ApplicationType);
    endpoint.gatewayServerUri = text(server.GatewayServerUri);
    endpoint.discoveryProfileUri = text(server.DiscoveryProfileUri);
    for (int i = 0; i < std::min(server.NoOfDiscoveryUrls, discoveryUrls); ++i)
        endpoint.discoveryUrls.append(text(server.DiscoveryUrls[i]));
}

QlumUserTokenPolicy tokenPolicy(const OpcUa_UserTokenPolicy& policy)
{
    return {text(policy.PolicyId), static_cast<int>(policy.TokenType), text(policy.IssuedTokenType),
            text(policy.IssuerEndpointUrl), text(policy.SecurityPolicyUri)};
}
} // namespace

QlumEndpoint qlumEndpoint(const OpcUa_EndpointDescription& description)
{
    QlumEndpoint endpoint;
    endpoint.url = text(description.EndpointUrl);
    takeServer(description.Server, endpoint);
    endpoint.serverCertificate = bytes(description.ServerCertificate);
    const auto mode = static_cast<int>(description.SecurityMode);
    endpoint.securityMode = mode >= 1 && mode <= 3 ? mode : 0;
    endpoint.securityPolicyUri = text(description.SecurityPolicyUri);
    for (int i = 0; i < std::min(description.NoOfUserIdentityTokens, userTokens); ++i)
        endpoint.userTokens.append(tokenPolicy(description.UserIdentityTokens[i]));
    endpoint.transportProfileUri = text(description.TransportProfileUri);
    endpoint.securityLevel = description.SecurityLevel;
    return endpoint;
}

QLatin1String qlumSchemeOf(const QString& url)
{
    const QByteArray text = url.toUtf8();
    return QLatin1String(OpcUa_EndpointUrl_GetScheme(text.constData(), static_cast<size_t>(text.size())));
}

QString qlumPolicyName(const QString& securityPolicyUri)
{
    return securityPolicyUri.section(QLatin1Char('#'), -1);
}

QString qlumSecurityModeName(int securityMode)
{
    switch (securityMode) {
    case OpcUa_MessageSecurityMode_None:
        return QStringLiteral("None");
    case OpcUa_MessageSecurityMode_Sign:
        return QStringLiteral("Sign");
    case OpcUa_MessageSecurityMode_SignAndEncrypt:
        return QStringLiteral("SignAndEncrypt");
    default:
        return QStringLiteral("Invalid");
    }
}

QString qlumPolicyNone()
{
    return QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#None");
}

QString qlumPasswordPolicy(const QlumEndpoint& endpoint)
{
    for (const QlumUserTokenPolicy& token : endpoint.userTokens)
        if (token.tokenType == OpcUa_UserTokenType_UserName)
            return token.securityPolicyUri.isEmpty() ? endpoint.securityPolicyUri : token.securityPolicyUri;
    return endpoint.securityPolicyUri;
}

bool qlumSendsClearPassword(const QlumEndpoint& endpoint)
{
    return endpoint.securityMode != OpcUa_MessageSecurityMode_SignAndEncrypt &&
           qlumSchemeOf(endpoint.url) != QLatin1String("https") &&
           qlumPasswordPolicy(endpoint) == qlumPolicyNone();
}
