#pragma once
#include <app/api/qlumlog.h>
#include <servers/qlumconnectprompts.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>

#include <QByteArray>
#include <QObject>
#include <QSemaphore>
#include <QString>

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

    /// Any thread. The certificate is DER.
    void raise(unsigned int status, const QByteArray& certificate);
    void raise(const UaStatus& status, const UaByteString& certificate);

    void setServerName(const QString& name) { m_serverName = name; }
    /// While a connect is under way the question waits: it is of use when the connect has failed.
    void setHeld(bool held);
    /// Whether the user is being asked.
    [[nodiscard]] bool isOpen() const { return m_isOpen; }

signals:
    /// From any thread to ours.
    void newUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate);
    /// The certificate is trusted now: another attempt may succeed.
    void trusted();

private:
    struct Failure
    {
        unsigned int status;
        QByteArray certificate;
    };

    void sltUntrustedSSLCertificate(unsigned int status, const QByteArray& certificate);
    void ask(const Failure& failure);
    void take(bool isTrusted);

    const QlumLog m_log;
    QlumConnectPrompts& m_prompts;
    QString m_serverName;
    QSemaphore m_permit{1};
    std::optional<Failure> m_waiting;
    bool m_isHeld = false;
    bool m_isOpen = false;
};
