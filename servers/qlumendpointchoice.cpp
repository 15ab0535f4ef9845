#include <servers/qlumendpointchoice.h>

#include <opcua/opcua_endpointurl.h>

#include <QString>
#include <QUrl>
#include <QVector>

namespace {
bool sameScheme(const QString& left, const QString& right)
{
    const QLatin1String scheme = qlumSchemeOf(left);
    return !scheme.isEmpty() && scheme == qlumSchemeOf(right);
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
    return endpoint.port(OPCUA_DEFAULT_PORT) == wanted.port(OPCUA_DEFAULT_PORT) &&
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
