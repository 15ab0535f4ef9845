#include <servers/qlumdiscoverysetting.h>

#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <algorithm>

namespace {
using namespace QlumEndpointLimits;

QString textValue(const QSettings& settings, const QString& key)
{
    const QVariant value = settings.value(key);
    // A text with commas comes back as a list.
    const QString text = value.type() == QVariant::StringList ? value.toStringList().join(QLatin1String(", "))
                                                              : value.toString();
    return text.left(textLength);
}

int number(const QSettings& settings, const QString& key, int lowest, int highest, int otherwise)
{
    bool ok = false;
    const int value = settings.value(key).toInt(&ok);
    return ok && value >= lowest && value <= highest ? value : otherwise;
}

QByteArray certificateValue(const QSettings& settings, const QString& key)
{
    const QString text = settings.value(key).toString();
    if (text.size() > certificateSize * 2)
        return {};
    return QByteArray::fromBase64(text.toLatin1());
}

QString tokenKey(int index, const char* name)
{
    return QStringLiteral("UserIdentityToken%1.").arg(index) + QLatin1String(name);
}

void storeServer(QSettings& settings, const QlumEndpoint& endpoint)
{
    settings.setValue("Server.ApplicationUri", endpoint.applicationUri);
    settings.setValue("Server.ProductUri", endpoint.productUri);
    settings.setValue("Server.ApplicationNameLocale", endpoint.applicationNameLocale);
    settings.setValue("Server.ApplicationNameText", endpoint.applicationName);
    settings.setValue("Server.ApplicationType", endpoint.applicationType);
    settings.setValue("Server.GatewayServerUri", endpoint.gatewayServerUri);
    settings.setValue("Server.DiscoveryProfileUri", endpoint.discoveryProfileUri);
    settings.setValue("Server.NoOfDiscoveryUrls", endpoint.discoveryUrls.size());
    settings.setValue("Server.DiscoveryUrl", endpoint.discoveryUrls);
}

void storeTokens(QSettings& settings, const QVector<QlumUserTokenPolicy>& tokens)
{
    settings.setValue("NoOfUserIdentityTokens", tokens.size());
    for (int i = 0; i < tokens.size(); ++i) {
        const QlumUserTokenPolicy& token = tokens.at(i);
        settings.setValue(tokenKey(i, "PolicyId"), token.policyId);
        settings.setValue(tokenKey(i, "TokenType"), token.tokenType);
        settings.setValue(tokenKey(i, "IssuedTokenType"), token.issuedTokenType);
        settings.setValue(tokenKey(i, "IssuerEndpointUrl"), token.issuerEndpointUrl);
        settings.setValue(tokenKey(i, "SecurityPolicyUri"), token.securityPolicyUri);
    }
}

void readServer(const QSettings& settings, QlumEndpoint& endpoint)
{
    endpoint.applicationUri = textValue(settings, "Server.ApplicationUri");
    endpoint.productUri = textValue(settings, "Server.ProductUri");
    endpoint.applicationNameLocale = textValue(settings, "Server.ApplicationNameLocale");
    endpoint.applicationName = textValue(settings, "Server.ApplicationNameText");
    endpoint.applicationType = number(settings, "Server.ApplicationType", 0, 3, 0);
    endpoint.gatewayServerUri = textValue(settings, "Server.GatewayServerUri");
    endpoint.discoveryProfileUri = textValue(settings, "Server.DiscoveryProfileUri");
    const QStringList urls = settings.value("Server.DiscoveryUrl").toStringList();
    const int count = number(settings, "Server.NoOfDiscoveryUrls", 0, discoveryUrls, 0);
    for (int i = 0; i < std::min(count, urls.size()); ++i)
        endpoint.discoveryUrls.append(urls.at(i).left(textLength));
}

void readTokens(const QSettings& settings, QVector<QlumUserTokenPolicy>& tokens)
{
    const int count = number(settings, "NoOfUserIdentityTokens", 0, userTokens, 0);
    for (int i = 0; i < count; ++i)
        tokens.append({textValue(settings, tokenKey(i, "PolicyId")),
                       number(settings, tokenKey(i, "TokenType"), 0, 3, 0),
                       textValue(settings, tokenKey(i, "IssuedTokenType")),
                       textValue(settings, tokenKey(i, "IssuerEndpointUrl")),
                       textValue(settings, tokenKey(i, "SecurityPolicyUri"))});
}
} // namespace

bool QlumDiscoverySetting::isSameLogIn(const QlumDiscoverySetting& other) const
{
    return endpoint.url == other.endpoint.url && userName == other.userName &&
           userTokenType == other.userTokenType &&
           endpoint.securityPolicyUri == other.endpoint.securityPolicyUri &&
           endpoint.securityMode == other.endpoint.securityMode;
}

void QlumDiscoverySetting::forgetWhatBelongsTo(const QlumDiscoverySetting& before)
{
    if (password == before.password && !isSameLogIn(before))
        password.clear();
    if (endpoint.url != before.endpoint.url)
        trustedCertificate.clear();
}

void QlumDiscoverySetting::storeSettings(QSettings& settings) const
{
    settings.setValue("ServerUrl", endpoint.url);
    storeServer(settings, endpoint);
    settings.setValue("ServerCertificate", QString::fromLatin1(endpoint.serverCertificate.toBase64()));
    settings.setValue("MessageSecurityMode", endpoint.securityMode);
    settings.setValue("SecurityPolicy", endpoint.securityPolicyUri);
    storeTokens(settings, endpoint.userTokens);
    settings.setValue("TransportProfileUri", endpoint.transportProfileUri);
    settings.setValue("SecurityLevel", endpoint.securityLevel);
    settings.setValue("DisplayName", displayName);
    settings.setValue("UserTokenType", userTokenType);
    settings.setValue("SessionName", sessionName);
    settings.setValue("DiscoveryHost", discoveryHost);
    settings.setValue("UserName", userName);
    settings.setValue("StorePassword", storePassword);
    settings.setValue("CertificateFile", certificateFile);
    settings.setValue("PrivateKeyFile", privateKeyFile);
    settings.setValue("IgnoredHost", ignoredHost);
    settings.setValue("DialledHost", dialledHost);
    settings.setValue("GivenCertificate", QString::fromLatin1(givenCertificate.toBase64()));
    session.store(settings);
    settings.setValue("Role", qlumRoleKey(role));
    settings.setValue("TrustedCertificate", QString::fromLatin1(trustedCertificate.toBase64()));
}

QlumDiscoverySetting QlumDiscoverySetting::fromSetting(const QSettings& settings)
{
    QlumDiscoverySetting setting;
    setting.endpoint.url = textValue(settings, "ServerUrl");
    readServer(settings, setting.endpoint);
    setting.endpoint.serverCertificate = certificateValue(settings, "ServerCertificate");
    setting.endpoint.securityMode = number(settings, "MessageSecurityMode", 1, 3, 0);
    setting.endpoint.securityPolicyUri = textValue(settings, "SecurityPolicy");
    readTokens(settings, setting.endpoint.userTokens);
    setting.endpoint.transportProfileUri = textValue(settings, "TransportProfileUri");
    setting.endpoint.securityLevel = number(settings, "SecurityLevel", 0, 255, 0);
    setting.displayName = textValue(settings, "DisplayName");
    setting.userTokenType = number(settings, "UserTokenType", Anonymous, Certificate, Anonymous);
    setting.sessionName = textValue(settings, "SessionName");
    setting.discoveryHost = textValue(settings, "DiscoveryHost");
    setting.userName = textValue(settings, "UserName");
    setting.storePassword = settings.value("StorePassword").toBool();
    setting.certificateFile = textValue(settings, "CertificateFile");
    setting.privateKeyFile = textValue(settings, "PrivateKeyFile");
    setting.ignoredHost = textValue(settings, "IgnoredHost");
    setting.dialledHost = textValue(settings, "DialledHost");
    setting.givenCertificate = certificateValue(settings, "GivenCertificate");
    setting.session = QlumSessionOptions::fromSettings(settings);
    if (settings.contains("Role")) // by whom it was written, nobody knows
        setting.role = qlumRoleFromKey(settings.value("Role").toString()).value_or(QlumServerRole::Look);
    setting.trustedCertificate = certificateValue(settings, "TrustedCertificate");
    return setting;
}
