#include <servers/qlumendpoint.h>

#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uastring.h>
#include <uaclientsdk/connection/endpointselector.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

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

// A text that there is no memory for stays null, and is then not compared.
void copyText(const QString& text, OpcUa_String& to)
{
    const QByteArray utf8 = text.toUtf8();
    static_cast<void>(OpcUa_String_Assign(&to, utf8.constData(), utf8.size()));
}

void copyTokens(const QVector<QlumUserTokenPolicy>& tokens, OpcUa_EndpointDescription& description)
{
    UaUserTokenPolicys policies(static_cast<OpcUa_UInt32>(tokens.size()));
    for (OpcUa_UInt32 i = 0; i < policies.length(); ++i) {
        const QlumUserTokenPolicy& token = tokens.at(static_cast<int>(i));
        copyText(token.policyId, policies[i].PolicyId);
        policies[i].TokenType = static_cast<OpcUa_UserTokenType>(token.tokenType);
        copyText(token.issuedTokenType, policies[i].IssuedTokenType);
        copyText(token.issuerEndpointUrl, policies[i].IssuerEndpointUrl);
        copyText(token.securityPolicyUri, policies[i].SecurityPolicyUri);
    }
    policies.detach(&description.NoOfUserIdentityTokens, &description.UserIdentityTokens);
}

struct EndpointTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumEndpoint)
};

QString tokenName(int tokenType)
{
    switch (tokenType) {
    case OpcUa_UserTokenType_Anonymous:
        return EndpointTexts::tr("Anonymous");
    case OpcUa_UserTokenType_UserName:
        return EndpointTexts::tr("User name");
    case OpcUa_UserTokenType_Certificate:
        return EndpointTexts::tr("Certificate");
    case OpcUa_UserTokenType_IssuedToken:
        return EndpointTexts::tr("Issued token");
    default:
        return EndpointTexts::tr("Unknown (%1)").arg(tokenType);
    }
}

bool encryptsEverything(const QlumEndpoint& endpoint)
{
    return endpoint.securityMode == OpcUa_MessageSecurityMode_SignAndEncrypt ||
           qlumSchemeOf(endpoint.url) == QLatin1String("https");
}
} // namespace

UaEndpointDescriptions qlumEndpointDescriptions(const QVector<QlumEndpoint>& endpoints)
{
    UaEndpointDescriptions descriptions(static_cast<OpcUa_UInt32>(endpoints.size()));
    for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
        const QlumEndpoint& endpoint = endpoints.at(static_cast<int>(i));
        OpcUa_EndpointDescription& description = descriptions[i];
        copyText(endpoint.url, description.EndpointUrl);
        copyText(endpoint.applicationUri, description.Server.ApplicationUri);
        description.SecurityMode = static_cast<OpcUa_MessageSecurityMode>(endpoint.securityMode);
        copyText(endpoint.securityPolicyUri, description.SecurityPolicyUri);
        copyTokens(endpoint.userTokens, description);
        copyText(endpoint.transportProfileUri, description.TransportProfileUri);
        description.SecurityLevel = static_cast<OpcUa_Byte>(endpoint.securityLevel);
    }
    return descriptions;
}

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

QlumEndpointProtection qlumEndpointProtection(const QlumEndpoint& endpoint)
{
    const bool isTls = qlumSchemeOf(endpoint.url) == QLatin1String("https");
    const QString policy = qlumPolicyName(endpoint.securityPolicyUri);
    if (policy == QLatin1String("Basic128Rsa15") || policy == QLatin1String("Basic256"))
        return QlumEndpointProtection::Deprecated;
    if (encryptsEverything(endpoint))
        return QlumEndpointProtection::Full;
    if (endpoint.securityPolicyUri == qlumPolicyNone() ||
        endpoint.securityMode == OpcUa_MessageSecurityMode_None)
        return isTls ? QlumEndpointProtection::Full : QlumEndpointProtection::None;
    return QlumEndpointProtection::SignedOnly;
}

QString qlumTransportName(const QlumEndpoint& endpoint)
{
    const QString profile = endpoint.transportProfileUri.section(QLatin1Char('/'), -1);
    const QLatin1String scheme = qlumSchemeOf(endpoint.url);
    if (profile == QLatin1String("uatcp-uasc-uabinary") ||
        (profile.isEmpty() && scheme == QLatin1String("opc.tcp")))
        return QStringLiteral("TCP");
    if (profile == QLatin1String("https-uabinary") || (profile.isEmpty() && scheme == QLatin1String("https")))
        return QStringLiteral("HTTPS");
    return profile.isEmpty() ? endpoint.url.section(QLatin1Char(':'), 0, 0) : profile;
}

QString qlumTokenNames(const QlumEndpoint& endpoint)
{
    QStringList names;
    for (const QlumUserTokenPolicy& token : endpoint.userTokens) {
        const QString name = tokenName(token.tokenType);
        if (!names.contains(name))
            names.append(name);
    }
    return names.join(QLatin1String(", "));
}

QString qlumPolicyNone()
{
    return QStringLiteral("http://opcfoundation.org/UA/SecurityPolicy#None");
}

QString qlumPasswordPolicy(const QlumEndpoint& endpoint)
{
    const UaEndpointDescriptions description = qlumEndpointDescriptions({endpoint});
    const OpcUa_UserTokenPolicy* used = nullptr; // by the session
    if (description.length() == 1)
        used = UaClientSdk::selectUserTokenPolicy(description[0], OpcUa_UserTokenType_UserName,
                                                  UaString(description[0].SecurityPolicyUri));
    const QString own = used ? text(used->SecurityPolicyUri) : QString();
    return own.isEmpty() ? endpoint.securityPolicyUri : own;
}

bool qlumSendsClearPassword(const QlumEndpoint& endpoint)
{
    return !encryptsEverything(endpoint) && qlumPasswordPolicy(endpoint) == qlumPolicyNone();
}

bool qlumSendsUnprotectedPassword(const QlumEndpoint& endpoint)
{
    return qlumSendsClearPassword(endpoint) ||
           (!encryptsEverything(endpoint) && endpoint.serverCertificate.isEmpty());
}
