#include <servers/qlumconnectinfo.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <certificates/qlumcertificates.h>
#include <servers/qlumconnectflow.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumpkifolders.h>
#include <uabase/uapkicpp/uapkicertificate.h>
#include <uabase/uapkicpp/uapkirsakeypair.h>
#include <uabase/values/uabytestring.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QSysInfo>
#include <QVariant>

#include <memory>

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

QVariant connectSetting(const char* key)
{
    const QlumApplicationInterface* application = QlumApplicationInterface::instance();
    return application ? application->settingsValue(QLatin1String(key)) : QVariant();
}

UaByteString toUaByteString(const QByteArray& bytes)
{
    return UaByteString(bytes.size(), reinterpret_cast<const OpcUa_Byte*>(bytes.constData()));
}
} // namespace

SessionConnectInfo qlumConnectInfo(unsigned int serverId, const QString& sessionName)
{
    SessionConnectInfo info;
    info.clientConnectionId = serverId;
    info.connectTimeout = connectSetting("General.ConnectTimeout").toUInt();
    info.sessionTimeout = connectSetting("General.SessionTimeout").toDouble();
    info.publishTimeout = connectSetting("General.PublishTimeout").toUInt();
    info.secureChannelLifetime = connectSetting("General.SecureChannelLifetime").toUInt();
    info.localeId = toUaString(connectSetting("General.LocaleId").toString());
    const UaPkiCertificate& own = QlumCertificates::instance()->certificate();
    info.applicationUri =
        own.isNull() ? toUaString(QStringLiteral("urn:%1:Korvanda:Tavelin").arg(QSysInfo::machineHostName()))
                     : own.info().URI;
    info.applicationName = toUaString(ConnectTexts::tr("Korvanda Tavelin"));
    info.productUri = toUaString(ConnectTexts::tr("urn:Korvanda:Tavelin"));
    info.sessionName = toUaString(sessionName);
    info.automaticReconnect = connectSetting("General.AutomaticReconnect").toBool();
    info.watchdogTime = connectSetting("General.WatchdogTime").toUInt();
    info.watchdogTimeout = connectSetting("General.WatchdogTimeout").toUInt();
    info.maxOperationsPerServiceCall = connectSetting("General.MaxOperationsPerServiceCall").toUInt();
    info.typeDictionaryMode = dictionaryMode(connectSetting("General.TypeDictionaryMode").toString());
    info.internalServiceCallTimeout = connectSetting("General.InternalServiceCallTimeout").toUInt();
    return info;
}

void qlumFillConnectSecurity(SessionSecurityInfo& security, const QlumEndpoint& wanted,
                             const QlumEndpoint& chosen, const QVector<QlumEndpoint>& discovered)
{
    security.securityPolicyUri = toUaString(wanted.securityPolicyUri);
    security.messageSecurityMode = static_cast<OpcUa_MessageSecurityMode>(wanted.securityMode);
    security.serverCertificate = toUaByteString(chosen.serverCertificate);
    security.discoveredEndpoints =
        std::make_shared<const UaEndpointDescriptions>(qlumEndpointDescriptions(discovered));
    security.verifyServerCertificateOnConnect = false; // the user judges it
    const QlumCertificates& own = *QlumCertificates::instance();
    if (!own.certificate().isNull()) {
        security.clientCertificate = own.certificate().toByteStringDER();
        security.clientPrivateKey = UaByteString(own.keyPair().toDER());
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
