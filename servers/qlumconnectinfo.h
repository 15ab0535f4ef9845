// What a session is told when it connects: from the settings of the program and of one server.
#pragma once
#include <servers/passwords/qlumkeyring.h>
#include <servers/qlumendpoint.h>
#include <uabase/values/uabytestring.h>
#include <uaclientsdk/sessionconnectinfo.h>
#include <uaclientsdk/sessionsecurityinfo.h>
#include <uaclientsdk/uaclient.h>
#include <uaclientsdk/useridentitytoken.h>

#include <QByteArray>
#include <QString>
#include <QVector>

struct QlumDiscoverySetting;
struct QlumUserChoice;

/// As the program is set up; the rest are the session's own defaults.
[[nodiscard]] UaClientSdk::SessionConnectInfo qlumConnectInfo(unsigned int serverId,
                                                              const QString& sessionName);
/// The same with what the server's settings have instead.
[[nodiscard]] UaClientSdk::SessionConnectInfo qlumConnectInfo(unsigned int serverId,
                                                              const QlumDiscoverySetting& setting);
/// All but the user: what the server's settings ask for, the certificate of the endpoint that was chosen
/// among those discovered, the program's own one and the trust folders.
void qlumFillConnectSecurity(UaClientSdk::SessionSecurityInfo& security, const QlumEndpoint& wanted,
                             const QlumEndpoint& chosen, const QVector<QlumEndpoint>& discovered);
/// Whether anything on the connection depends on the server's certificate.
[[nodiscard]] bool qlumNeedsServerCertificate(const UaClientSdk::SessionSecurityInfo& security,
                                              const QlumDiscoverySetting& setting,
                                              const QlumEndpoint& chosen);
/// Has the settings name another user; a password that comes with it counts as one that is stored.
void qlumSetIdentity(QlumDiscoverySetting& setting, const UaClientSdk::UaUserIdentityToken& identity);
/// Reads the files of a user who logs in by a certificate. Empty on success, else what cannot be read, for
/// the log.
[[nodiscard]] QString qlumSetUserCertificate(UaClientSdk::SessionSecurityInfo& security,
                                             const QlumUserChoice& user);
/// Whose password the settings ask for, at a server that calls itself so; an empty URI stands for any.
[[nodiscard]] QlumKeyringKey qlumPasswordKey(const QlumDiscoverySetting& setting, const QString& serverUri);
/// A copy of the bytes.
[[nodiscard]] UaByteString qlumToUaByteString(const QByteArray& bytes);
/// Name of a step of UaSession::connect, for the log.
[[nodiscard]] QString qlumConnectStepName(UaClientSdk::UaClient::ConnectServiceType step);
