#pragma once
#include <app/api/qlumlog.h>
#include <servers/qlumconnectprompts.h>
#include <servers/qlumtlstrap.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

#include <QByteArray>
#include <QObject>
#include <QSemaphore>
#include <QString>

#include <mutex>
#include <optional>

/// Whether to trust a TLS certificate that a connection has failed with. One question of a server at a time:
/// failures that come while it waits for its turn or its answer are dropped. GUI thread, where not said
/// otherwise.
class QlumTlsTrustQuestion : public QObject
{
    Q_OBJECT
public:
    /// The prompts outlive the question.
    QlumTlsTrustQuestion(const QlumLog& log, QlumConnectPrompts& prompts, QObject* parent = nullptr);
    ~QlumTlsTrustQuestion() override;

    /// Where the next failures come from. Begins anew: what the user has declined before is asked again.
    void begin(const QString& url);
    /// Any thread. Whether the user has overruled the finding about this server's certificate (DER).
    [[nodiscard]] bool isOverruled(const UaStatus& finding, const UaByteString& certificate) const;
    /// Any thread. Nobody is asked again about one that he has declined.
    void raise(const QlumTlsFailure& failure);

    void setServerName(const QString& name) { m_serverName = name; }
    /// While a connect is under way the question waits: it is of use when the connect has failed.
    void setHeld(bool held);
    /// The failure's entry in the log. Any thread.
    static void log(const QlumLog& log, const QString& serverName, unsigned int status);
    /// Whether the user is being asked.
    [[nodiscard]] bool isOpen() const { return m_isOpen; }

signals:
    /// From any thread to ours.
    void newUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate);
    /// The certificate is trusted now: another attempt may succeed.
    void trusted();

private:
    void sltUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate);
    void ask(const QlumTlsFailure& failure);
    void take(const QByteArray& certificate, bool isTrusted);

    const QlumLog m_log;
    QlumConnectPrompts& m_prompts;
    QString m_serverName;
    QString m_url; ///< guarded by m_mutex
    mutable std::mutex m_mutex;
    QByteArray m_declined; ///< the certificate; every other one is asked about
    QSemaphore m_permit{1};
    std::optional<QlumTlsFailure> m_waiting;
    bool m_isHeld = false;
    bool m_isOpen = false;
};
