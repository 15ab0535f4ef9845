#pragma once
#include <app/api/qlumsecret.h>
#include <servers/qlumconnectfailure.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatuscode.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

/// Who could read a password on its way.
enum class QlumPasswordDanger {
    Nobody,
    Anyone,     ///< it travels as clear text
    FalseServer ///< it is encrypted with a certificate that nobody can check
};

struct QlumCredentials
{
    QString userName;
    QlumSecretText password;
};

/// For whom a password is asked, and where it goes.
struct QlumPasswordQuestion
{
    QString server; ///< as the user calls it
    QString userName;
    QString host; ///< that receives the password
    QlumPasswordDanger danger = QlumPasswordDanger::Nobody;
    QString problem{}; ///< why a password that was remembered is not at hand; may be empty
};

/// Who is to use a session: a QlumDiscoverySetting::UserTokenType and what belongs to it.
struct QlumUserChoice
{
    int tokenType = 0;
    QString userName;
    QlumSecretText password;
    QString certificateFile;
    QString privateKeyFile;
};

/// A server whose certificate (DER) is not the one that the user has trusted for it.
struct QlumCertificateChange
{
    QString server;
    QString url;
    UaByteString before;
    UaByteString now;
    bool isTrusted = false; ///< the new one passes all checks
};

/// A server's certificate that did not pass all checks; the bytes are those of security.
struct QlumCertificateQuestion
{
    QString serverName; ///< by which the server calls itself
    QString applicationUri;
    QString url;
    UaClientSdk::SessionSecurityInfo security;
};

struct QlumCertificateVerdict
{
    bool isAccepted = false;
    bool isForOnce = false; ///< accepted although the checks still fail
    QStringList findings;   ///< for the log
};

/// An error of a connect that the user may override.
struct QlumConnectError
{
    QString status;
    QString step;
    QString details; ///< what the session has to say of it; may be empty
};

/// What a connect asks its user. One question at a time, each on the GUI thread, and none blocks: the answer
/// comes by its callback, once, then or later. A question that went away unanswered counts as declined.
class QlumConnectPrompts
{
public:
    using Answered = std::function<void()>;
    using Decided = std::function<void(bool)>;
    using Named = std::function<void(const std::optional<QlumCredentials>&)>;
    using Chosen = std::function<void(const std::optional<QlumUserChoice>&)>;
    using Judged = std::function<void(const QlumCertificateVerdict&)>;

    QlumConnectPrompts() = default;
    virtual ~QlumConnectPrompts() = default;
    QlumConnectPrompts(const QlumConnectPrompts&) = delete;
    QlumConnectPrompts& operator=(const QlumConnectPrompts&) = delete;

    /// Whether to try a security policy that the server does not offer.
    virtual void askUnsupportedPolicy(Decided answer) = 0;
    /// Tells that no endpoint has the URL, and that the certificate of another one is used.
    virtual void tellFirstCertificate(Answered answer) = 0;
    /// Whether to keep to the host that was dialled, when the server names one that cannot be found.
    virtual void askDialledHost(const QString& server, const QString& named, const QString& dialled,
                                Decided answer) = 0;
    /// Whether to use a policy that is broken.
    virtual void askWeakPolicy(const QString& server, Decided answer) = 0;
    /// User name and password; nothing: the user thought better of it.
    virtual void askPassword(const QlumPasswordQuestion& question, Named answer) = 0;
    /// The same where somebody else may read the password.
    virtual void askClearPassword(const QlumPasswordQuestion& question, Named answer) = 0;
    /// As whom to go on, with a proposal; nothing: as before. The danger is that of a password.
    virtual void askUser(const QlumPasswordQuestion& question, const QlumUserChoice& proposal,
                         Chosen answer) = 0;
    /// Whether to go on with the new certificate, which is judged then where it is not trusted.
    virtual void askChangedCertificate(const QlumCertificateChange& change, Decided answer) = 0;
    virtual void askCertificate(const QlumCertificateQuestion& question, Judged answer) = 0;
    /// Whether to go on in spite of an error.
    virtual void askConnectError(const QlumConnectError& error, Decided answer) = 0;
    /// In the place of that question, when its connection has gone before the user's word was of use: whether
    /// to connect anew.
    virtual void askConnectAnew(const QlumConnectError& error, Decided answer) = 0;
    /// Whether to trust a TLS certificate (DER) from now on; the trusted one has been stored then, and what
    /// the user has overruled about it at that URL.
    virtual void askTlsTrust(const QString& server, const QString& url, const UaByteString& certificate,
                             const UaStatusCode& status, Decided answer) = 0;
    /// Tells that a connect has failed; whether to try again.
    virtual void tellFailure(const QString& server, const QString& url, const QlumConnectFailure& failure,
                             Decided answer) = 0;
    /// The same of a change of the user, after which the session is what it was.
    virtual void tellUserRefused(const QString& server, const QlumConnectFailure& failure,
                                 Decided answer) = 0;
    /// Takes the open question back: its answer does not come any more.
    virtual void withdraw() = 0;
};
