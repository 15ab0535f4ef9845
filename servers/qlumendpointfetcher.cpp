#include <servers/qlumendpointfetcher.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <servers/qlumpkifolders.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uadiscovery.h>

#include <QByteArray>
#include <QMetaObject>
#include <QString>
#include <QVector>

#include <algorithm>
#include <memory>
#include <utility>

namespace {
class FetchJob final : public QlumJob
{
public:
    explicit FetchJob(std::function<void()> work) : m_work(std::move(work)) {}
    void run() override { m_work(); }

private:
    std::function<void()> m_work;
};
} // namespace

QlumEndpointFetcher::QlumEndpointFetcher(QObject* parent)
    : QlumEndpointFetcher(
          [this](const QString& url, int milliseconds, QVector<QlumEndpoint>& endpoints) {
              return getEndpoints(url, milliseconds, endpoints);
          },
          parent)
{
}

QlumEndpointFetcher::QlumEndpointFetcher(Getter getter, QObject* parent)
    : QObject(parent), m_getter(std::move(getter))
{
}

QlumEndpointFetcher::~QlumEndpointFetcher() = default;

unsigned int QlumEndpointFetcher::getEndpoints(const QString& url, int milliseconds,
                                               QVector<QlumEndpoint>& endpoints)
{
    UaClientSdk::ServiceSettings settings;
    settings.callTimeout = static_cast<OpcUa_UInt32>(std::max(milliseconds, 1));
    UaEndpointDescriptions descriptions;
    UaClientSdk::ClientSecurityInfo security;
    qlumFillPkiFolders(security);
    security.tlsCertificateRefused = [this](const UaStatus& status, const UaByteString& certificate) {
        const QByteArray bytes(reinterpret_cast<const char*>(certificate.data()), certificate.length());
        QMetaObject::invokeMethod(
            this, [this, code = status.statusCode(), bytes] { emit untrustedCertificate(code, bytes); },
            Qt::QueuedConnection);
    };
    const UaStatus status =
        UaClientSdk::UaDiscovery().getEndpoints(settings, toUaString(url), security, descriptions);
    const auto count =
        std::min(descriptions.length(), static_cast<OpcUa_UInt32>(QlumEndpointLimits::endpoints));
    for (OpcUa_UInt32 i = 0; i < count; ++i)
        endpoints.append(qlumEndpoint(descriptions[i]));
    return status.statusCode();
}

void QlumEndpointFetcher::fetch(const QString& url, int milliseconds)
{
    m_busy = true;
    m_pool.cancelAll();
    m_pool.addJob(std::make_unique<FetchJob>([this, url, milliseconds, request = ++m_request] {
        QVector<QlumEndpoint> endpoints;
        const unsigned int status = m_getter(url, milliseconds, endpoints);
        // The pool is joined before this object goes, and its pending events go with it.
        QMetaObject::invokeMethod(
            this, [this, request, status, endpoints] { deliver(request, status, endpoints); },
            Qt::QueuedConnection);
    }));
}

void QlumEndpointFetcher::cancel()
{
    ++m_request;
    m_busy = false;
    m_pool.cancelAll();
}

void QlumEndpointFetcher::deliver(unsigned int request, unsigned int status,
                                  const QVector<QlumEndpoint>& endpoints)
{
    if (request != m_request)
        return;
    m_busy = false;
    emit finished(status, endpoints);
}
