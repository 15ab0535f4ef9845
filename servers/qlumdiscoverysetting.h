#pragma once
#include <app/api/qlumsecret.h>
#include <app/api/qlumserverrole.h>
#include <servers/qlumendpoint.h>
#include <servers/qlumsessionoptions.h>

#include <QByteArray>
#include <QString>

class QSettings;

/// The stored connection settings of one server.
struct QlumDiscoverySetting
{
    enum UserTokenType { Anonymous = 0, UserName = 1, Certificate = 2 };

    /// What to connect to, and the server's description as it was discovered.
    QlumEndpoint endpoint;
    QString displayName;
    int userTokenType = Anonymous;
    QString sessionName;
    QlumSessionOptions session;  ///< where this server has others than all
    QString discoveryHost;       ///< where the endpoint was found
    QString ignoredHost;         ///< of the endpoint, which cannot be found: the URL is dialled as it stands
    QString dialledHost;         ///< host and port of the URL where the server names others; else empty
    QByteArray givenCertificate; ///< DER, that the user has given for the server; mostly empty
    QString userName;
    bool storePassword = false;                   ///< keep the password while the program runs
    QlumSecretText password;                      ///< in memory only; never written
    QString certificateFile;                      ///< DER, of the user
    QString privateKeyFile;                       ///< PEM, of the user
    QlumServerRole role = qlumRoleOfNewServers(); ///< what may be sent
    QByteArray trustedCertificate; ///< DER, that of the server which it was last connected with as trusted

    /// Whether a password that was given for one is one for the other: server, security and user.
    [[nodiscard]] bool isSameLogIn(const QlumDiscoverySetting& other) const;
    /// What was given or decided for another server, policy or user is forgotten: the password that the
    /// settings before had, and the certificate.
    void forgetWhatBelongsTo(const QlumDiscoverySetting& before);
    /// Writes everything but the password into the open group.
    void storeSettings(QSettings& settings) const;
    /// Reads the open group. Whatever the file holds, counts and lengths stay within QlumEndpointLimits, and
    /// a security mode that does not exist is read as invalid, never as none.
    [[nodiscard]] static QlumDiscoverySetting fromSetting(const QSettings& settings);

    friend bool operator==(const QlumDiscoverySetting&, const QlumDiscoverySetting&) = default;
};
