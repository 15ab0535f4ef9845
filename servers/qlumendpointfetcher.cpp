#include <servers/qlumendpointfetcher.h>

#include <app/api/qlumtext.h>
#include <certificates/qlumtlsoverrules.h>
#include <opcua/opcua_statuscodes.h>
#include <servers/qlumendpointchoice.h>
#include <servers/qlumpkifolders.h>
#include <servers/qlumserviceguard.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uadiscovery.h>

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QVector>

#include <algorithm>
#include <memory>
#include <utility>

QlumEndpointFetcher::QlumEndpointFetcher(QObject* parent) : QlumEndpointFetcher(Getter(), parent) {}

QlumEndpointFetcher::QlumEndpointFetcher(Getter getter, QObject* parent)
    : QObject(parent), m_getter(std::move(getter))
{
}

QlumEndpointFetcher::~QlumEndpointFetcher()
{
    cancel();
}

void QlumEndpointFetcher::setServer(const QString& name, unsigned int serverId)
{
    m_name = name;
    m_serverId = serverId;
}

unsigned int QlumEndpointFetcher::getEndpoints(QlumJob& job, const Question& question,
                                               QVector<QlumEndpoint>& endpoints)
{
    const auto& [url, milliseconds, name, serverId] = question;
    const auto discovery = std::make_shared<UaClientSdk::UaDiscovery>();
    job.whenCancelled([discovery] { discovery->cancel(); });
    qlumWatchDiscovery(*discovery, name.isEmpty() ? qlumAuthority(QUrl(url)) : name, serverId);
    UaClientSdk::ServiceSettings settings = job.serviceSettings();
    settings.callTimeout = static_cast<OpcUa_UInt32>(std::max(milliseconds, 1));
    UaEndpointDescriptions descriptions;
    UaClientSdk::ClientSecurityInfo security;
    qlumFillPkiFolders(security);
    security.tlsCertificateFinding = [this, &job, &url = question.url](const UaStatus& status,
                                                                       const UaByteString& certificate) {
        if (qlumIsTlsOverruled(url, certificate, status.statusCode()))
            return true;
        const QByteArray bytes(reinterpret_cast<const char*>(certificate.data()), certificate.length());
        job.post([this, code = status.statusCode(), bytes] { emit untrustedCertificate(code, bytes); });
        return false;
    };
    const UaStatus status = discovery->getEndpoints(settings, toUaString(url), security, descriptions);
    const auto count =
        std::min(descriptions.length(), static_cast<OpcUa_UInt32>(QlumEndpointLimits::endpoints));
    for (OpcUa_UInt32 i = 0; i < count; ++i)
        endpoints.append(qlumEndpoint(descriptions[i]));
    return status.statusCode();
}

void QlumEndpointFetcher::fetch(const QString& url, int milliseconds)
{
    cancel();
    m_busy = true;
    m_pool.add(
        {tr("Asking %1 for its endpoints").arg(url)},
        [this, question = Question{url, milliseconds, m_name, m_serverId}](QlumJob& job) {
            QVector<QlumEndpoint> endpoints;
            const unsigned int status = m_getter ? m_getter(question.url, question.milliseconds, endpoints)
                                                 : getEndpoints(job, question, endpoints);
            if (!job.isCancelled())
                job.post([this, status, endpoints] { deliver(status, endpoints); });
        },
        [this](QlumWorkEnd end) {
            if (m_busy) // else the answer was on its way already
                deliver(end == QlumWorkEnd::Cancelled ? OpcUa_BadRequestCancelledByClient
                                                      : OpcUa_BadInternalError,
                        {});
        });
}

void QlumEndpointFetcher::cancel()
{
    m_busy = false;
    m_pool.cancelAll();
}

void QlumEndpointFetcher::deliver(unsigned int status, const QVector<QlumEndpoint>& endpoints)
{
    m_busy = false;
    emit finished(status, endpoints);
}
