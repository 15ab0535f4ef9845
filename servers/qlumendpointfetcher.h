#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <servers/qlumendpoint.h>

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QVector>

#include <functional>

/// Asks a server for its endpoints without blocking. One question at a time: a new one, cancel() and the
/// destructor end the one before, and do not wait for its server.
class QlumEndpointFetcher : public QObject
{
    Q_OBJECT
public:
    /// Blocks for at most so many milliseconds; called on a thread of the fetcher. Nothing ends it early.
    using Getter =
        std::function<unsigned int(const QString& url, int milliseconds, QVector<QlumEndpoint>& endpoints)>;

    /// Asks the servers themselves.
    explicit QlumEndpointFetcher(QObject* parent = nullptr);
    /// Asks the getter.
    QlumEndpointFetcher(Getter getter, QObject* parent);
    ~QlumEndpointFetcher() override;

    /// Whose calls the next ones are, for whoever looks at the services; else they go by the address.
    void setServer(const QString& name, unsigned int serverId);
    void fetch(const QString& url, int milliseconds);
    /// What is under way ends unheard.
    void cancel();
    [[nodiscard]] bool isBusy() const { return m_busy; }

signals:
    /// The status of the call; the endpoints are empty when it is not Good. Not sent after cancel(), but when
    /// the user cancels the running work.
    void finished(unsigned int status, const QVector<QlumEndpoint>& endpoints);
    /// Before finished: the TLS certificate (DER) of an HTTPS server that nobody trusts yet.
    void untrustedCertificate(unsigned int status, const QByteArray& certificate);

private:
    struct Question
    {
        QString url;
        int milliseconds;
        QString name;
        unsigned int serverId;
    };

    [[nodiscard]] unsigned int getEndpoints(QlumJob& job, const Question& question,
                                            QVector<QlumEndpoint>& endpoints);
    void deliver(unsigned int status, const QVector<QlumEndpoint>& endpoints);

    const Getter m_getter;
    QString m_name;
    unsigned int m_serverId = qlumNoServer;
    bool m_busy = false;
    QlumJobPool m_pool; ///< last: joined first
};
