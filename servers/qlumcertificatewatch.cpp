#include <servers/qlumcertificatewatch.h>

#include <app/api/qlumsettings.h>
#include <opcua/opcua_crypto.h>
#include <servers/qlumconnectfailure.h>
#include <servers/qlumendpointchoice.h>

#include <QByteArray>
#include <QVector>

QlumCertificateWatch::QlumCertificateWatch(QObject* parent)
    : QlumCertificateWatch(new QlumEndpointFetcher, parent)
{
}

QlumCertificateWatch::QlumCertificateWatch(QlumEndpointFetcher* fetcher, QObject* parent)
    : QObject(parent), m_fetcher(fetcher)
{
    m_fetcher->setParent(this);
    connect(m_fetcher, &QlumEndpointFetcher::finished, this, &QlumCertificateWatch::take);
}

void QlumCertificateWatch::channelFailed(const UaStatusCode& status, const QlumEndpoint& endpoint)
{
    if (m_fetcher->isBusy() || qlumIsUnreachable(status) || endpoint.serverCertificate.isEmpty())
        return;
    m_endpoint = endpoint;
    m_fetcher->fetch(endpoint.url, static_cast<int>(QlumSettings::connectTimeout.value()));
}

void QlumCertificateWatch::stop()
{
    m_fetcher->cancel();
}

void QlumCertificateWatch::take(unsigned int status, const QVector<QlumEndpoint>& endpoints)
{
    const QlumEndpointChoice choice =
        qlumChooseEndpoint(endpoints, m_endpoint.url, m_endpoint.securityPolicyUri, m_endpoint.securityMode);
    if (!OpcUa_IsGood(status) || choice.match == QlumEndpointChoice::NoMatch)
        return;
    const QByteArray now = qlumFirstCertificate(endpoints.at(choice.index).serverCertificate);
    if (!now.isEmpty() && now != qlumFirstCertificate(m_endpoint.serverCertificate))
        emit changed(now);
}

QByteArray qlumFirstCertificate(const QByteArray& chain)
{
    const auto* bytes = reinterpret_cast<const OpcUa_Byte*>(chain.constData());
    return chain.left(
        static_cast<int>(OpcUa_Certificate_GetFirstLength(bytes, static_cast<size_t>(chain.size()))));
}
