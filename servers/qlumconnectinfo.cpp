#include <servers/qlumconnectinfo.h>

#include <app/api/qlumsettings.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumpkifolders.h>
#include <servers/qlumsessionoptions.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/useridentitytoken.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QSysInfo>

#include <memory>
#include <span>

namespace {
using UaClientSdk::SessionConnectInfo;
using UaClientSdk::SessionSecurityInfo;
using UaClientSdk::UaClient;

struct ConnectTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumConnectFlow)
};

UaClient::TypeDictionaryMode dictionaryMode(const QString& text)
{
    if (text == QLatin1String("FirstUse"))
        return UaClient::FirstUse;
    if (text == QLatin1String("Manual"))
        return UaClient::Manual;
    if (text == QLatin1String("Connect"))
        return UaClient::Connect;
    return UaClient::Reconnect;
}
} // namespace

UaByteString qlumToUaByteString(const QByteArray& bytes)
{
    return UaByteString(bytes.size(), reinterpret_cast<const OpcUa_Byte*>(bytes.constData()));
}

SessionConnectInfo qlumConnectInfo(unsigned int serverId, const QString& sessionName)
{
    SessionConnectInfo info;
    info.clientConnectionId = serverId;
    info.connectTimeout = QlumSettings::connectTimeout.value();
    info.sessionTimeout = QlumSettings::sessionTimeout.value();
    info.publishTimeout = QlumSettings::publishTimeout.value();
    info.secureChannelLifetime = QlumSettings::secureChannelLifetime.value();
    info.localeId = toUaString(QlumSettings::localeId.value());
    const UaPkiCertificate& own = QlumCertificates::instance()->certificate();
    info.applicationUri =
        own.isNull() ? toUaString(QStringLiteral("urn:%1:Korvanda:Tavelin").arg(QSysInfo::machineHostName()))
                     : own.info().URI;
    info.applicationName = toUaString(ConnectTexts::tr("Korvanda Tavelin"));
    info.productUri = toUaString(ConnectTexts::tr("urn:Korvanda:Tavelin"));
    info.sessionName = toUaString(sessionName);
    info.automaticReconnect = QlumSettings::automaticReconnect.value();
    info.watchdogTime = QlumSettings::watchdogTime.value();
    info.watchdogTimeout = QlumSettings::watchdogTimeout.value();
    info.maxOperationsPerServiceCall = QlumSettings::maxOperations.value();
    info.typeDictionaryMode = dictionaryMode(QlumSettings::typeDictionaryMode.value());
    info.internalServiceCallTimeout = QlumSettings::internalCallTimeout.value();
    return info;
}

SessionConnectInfo qlumConnectInfo(unsigned int serverId, const QlumDiscoverySetting& setting)
{
    SessionConnectInfo info = qlumConnectInfo(serverId, setting.sessionName);
    const QlumSessionOptions& options = setting.session;
    options.applyTo(info);
    if (!options.typeDictionaryMode.isEmpty())
        info.typeDictionaryMode = dictionaryMode(options.typeDictionaryMode);
    return info;
}

void qlumFillConnectSecurity(SessionSecurityInfo& security, const QlumEndpoint& wanted,
                             const QlumEndpoint& chosen, const QVector<QlumEndpoint>& discovered)
{
    security.securityPolicyUri = toUaString(wanted.securityPolicyUri);
    security.messageSecurityMode = static_cast<OpcUa_MessageSecurityMode>(wanted.securityMode);
    security.serverCertificate = qlumToUaByteString(chosen.serverCertificate);
    security.discoveredEndpoints =
        std::make_shared<const UaEndpointDescriptions>(qlumEndpointDescriptions(discovered));
    security.verifyServerCertificateOnConnect = false; // the user judges it
    const QlumCertificates& own = *QlumCertificates::instance();
    if (!own.certificate().isNull()) {
        security.clientCertificate = own.certificate().toByteStringDER();
        security.clientPrivateKey = std::make_shared<const UaClientSdk::SecretBytes>(own.keyPair().toDER());
    }
    qlumFillPkiFolders(security);
}

bool qlumNeedsServerCertificate(const SessionSecurityInfo& security, const QlumDiscoverySetting& setting,
                                const QlumEndpoint& chosen)
{
    switch (setting.userTokenType) {
    case QlumDiscoverySetting::UserName:
        return security.isSecured() || qlumPasswordPolicy(chosen) != qlumPolicyNone();
    case QlumDiscoverySetting::Certificate:
        return true; // the user signs for this server
    default:
        return security.isSecured();
    }
}

void qlumSetIdentity(QlumDiscoverySetting& setting, const UaClientSdk::UaUserIdentityToken& identity)
{
    setting.userTokenType = QlumDiscoverySetting::Anonymous;
    if (identity.tokenType() == OpcUa_UserTokenType_Certificate)
        setting.userTokenType = QlumDiscoverySetting::Certificate;
    const auto* named = dynamic_cast<const UaClientSdk::UaUserNameIdentityToken*>(&identity);
    if (!named)
        return;
    const std::span<const OpcUa_Byte> password = named->password().bytes();
    setting.userTokenType = QlumDiscoverySetting::UserName;
    setting.userName = toQString(named->userName());
    setting.password =
        QString::fromUtf8(reinterpret_cast<const char*>(password.data()), static_cast<int>(password.size()));
    setting.storePassword = true;
}

QString qlumSetUserCertificate(SessionSecurityInfo& security, const QlumUserChoice& user)
{
    const UaPkiCertificate certificate = UaPkiCertificate::fromDERFile(toUaString(user.certificateFile));
    if (certificate.isNull())
        return ConnectTexts::tr("Could not load certificate for X509 user token from file '%1'")
            .arg(user.certificateFile);
    const UaPkiRsaKeyPair key = UaPkiRsaKeyPair::fromPEMFile(toUaString(user.privateKeyFile));
    if (key.isNull() || key.isMissingParameters())
        return ConnectTexts::tr("Could not load private key for X509 user token from file '%1'")
            .arg(user.privateKeyFile);
    security.setCertificateUserIdentity(certificate.toByteStringDER(), UaClientSdk::SecretBytes(key.toDER()));
    return {};
}

QlumKeyringKey qlumPasswordKey(const QlumDiscoverySetting& setting, const QString& serverUri)
{
    const QlumEndpoint& endpoint = setting.endpoint;
    return {serverUri.toStdString(),
            QStringLiteral("%1 %2 %3")
                .arg(endpoint.url, qlumPolicyName(endpoint.securityPolicyUri),
                     qlumSecurityModeName(endpoint.securityMode))
                .toStdString(),
            setting.userName.toStdString()};
}

QString qlumConnectStepName(UaClient::ConnectServiceType step)
{
    switch (step) {
    case UaClient::CertificateValidation:
        return QStringLiteral("CertificateValidation");
    case UaClient::OpenSecureChannel:
        return QStringLiteral("OpenSecureChannel");
    case UaClient::CreateSession:
        return QStringLiteral("CreateSession");
    case UaClient::ActivateSession:
        return QStringLiteral("ActivateSession");
    }
    return QString::number(step);
}
