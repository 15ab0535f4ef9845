#include <servers/qlumendpointchoice.h>

#include <opcua/opcua_types.h>

#include <QString>
#include <QUrl>
#include <QVector>

#include <array>

namespace {
constexpr int defaultPort = 4840;

bool sameScheme(const QString& left, const QString& right)
{
    static constexpr std::array<const char*, 3> schemes{"opc.tcp:", "https:", "http:"};
    for (const char* scheme : schemes)
        if (left.startsWith(QLatin1String(scheme)) && right.startsWith(QLatin1String(scheme)))
            return true;
    return false;
}

// A lone slash says as little as no path.
QString pathOf(const QUrl& url)
{
    const QString path = url.path();
    return path == QLatin1String("/") ? QString() : path;
}

bool isExact(const QUrl& endpoint, const QUrl& wanted)
{
    if (!endpoint.isValid() || !wanted.isValid())
        return false;
    const QString path = pathOf(endpoint);
    return endpoint.port(defaultPort) == wanted.port(defaultPort) &&
           (path.isEmpty() || path == pathOf(wanted));
}
} // namespace

QlumEndpointChoice qlumChooseEndpoint(const QVector<QlumEndpoint>& endpoints, const QString& url,
                                      const QString& securityPolicyUri, int securityMode)
{
    QlumEndpointChoice choice;
    const QUrl wanted(url);
    for (int i = 0; i < endpoints.size(); ++i) {
        const QlumEndpoint& endpoint = endpoints.at(i);
        if (!sameScheme(endpoint.url, url) || endpoint.securityPolicyUri != securityPolicyUri ||
            endpoint.securityMode != securityMode || securityMode == 0)
            continue;
        choice.qualified.append(i);
        if (isExact(QUrl(endpoint.url), wanted)) {
            choice.match = QlumEndpointChoice::Exact;
            choice.index = i;
            break;
        }
        if (choice.match == QlumEndpointChoice::NoMatch) {
            choice.match = QlumEndpointChoice::OtherUrl;
            choice.index = i;
        }
    }
    return choice;
}

QString qlumBestPolicy(const QVector<QlumEndpoint>& endpoints, const QString& url, int securityMode)
{
    const QlumEndpoint* best = nullptr;
    for (const QlumEndpoint& endpoint : endpoints)
        if (endpoint.securityMode == securityMode && sameScheme(endpoint.url, url) &&
            (!best || endpoint.securityLevel > best->securityLevel))
            best = &endpoint;
    return best ? best->securityPolicyUri : QString();
}

void qlumSetSecurity(QlumEndpoint& endpoint, int securityMode, const QString& securityPolicyUri)
{
    if (securityMode != 0)
        endpoint.securityMode = securityMode;
    const bool isNone = endpoint.securityMode == OpcUa_MessageSecurityMode_None;
    if (!securityPolicyUri.isEmpty())
        endpoint.securityPolicyUri = securityPolicyUri;
    else if (isNone)
        endpoint.securityPolicyUri = qlumPolicyNone();
    else if (endpoint.securityPolicyUri == qlumPolicyNone())
        endpoint.securityPolicyUri.clear();
}
