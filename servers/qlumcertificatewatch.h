#pragma once
#include <servers/qlumendpoint.h>
#include <servers/qlumendpointfetcher.h>
#include <uabase/values/uastatuscode.h>

#include <QByteArray>
#include <QObject>
#include <QVector>

/// Finds out whether a channel that cannot be opened any more fails because the server has another
/// certificate now. Asks for endpoints in the background, one question at a time. GUI thread.
class QlumCertificateWatch : public QObject
{
    Q_OBJECT
public:
    explicit QlumCertificateWatch(QObject* parent = nullptr);
    /// With a fetcher of one's own, which the watch takes.
    QlumCertificateWatch(QlumEndpointFetcher* fetcher, QObject* parent);

    /// The channel to the endpoint was not opened; it was once, with the certificate (DER) of the endpoint.
    void channelFailed(const UaStatusCode& status, const QlumEndpoint& endpoint);
    void stop();

signals:
    /// The server presents this one (DER) at the endpoint.
    void changed(const QByteArray& certificate);

private:
    void take(unsigned int status, const QVector<QlumEndpoint>& endpoints);

    QlumEndpointFetcher* m_fetcher;
    QlumEndpoint m_endpoint;
};

/// The first certificate of a chain; empty when there is none.
[[nodiscard]] QByteArray qlumFirstCertificate(const QByteArray& chain);
