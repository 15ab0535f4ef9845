#include <servers/qlumendpointchoice.h>

#include <opcua/opcua_types.h>
#include <uaclientsdk/connection/endpointselector.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QString>
#include <QUrl>
#include <QVector>

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

namespace {
struct ChoiceTexts
{
    Q_DECLARE_TR_FUNCTIONS(QlumEndpointChoice)
};

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

QUrl urlOfAuthority(const QString& text)
{
    return QUrl(QLatin1String("opc.tcp://") + text.trimmed());
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

// ---- what the user types, and what is dialled

QString qlumCompleteUrl(const QString& text)
{
    const QString trimmed = text.trimmed();
    const int scheme = trimmed.indexOf(QLatin1String("://"));
    if (trimmed.isEmpty() || scheme == 0)
        return trimmed;
    return scheme < 0 ? QLatin1String("opc.tcp://") + trimmed
                      : trimmed.left(scheme).toLower() + trimmed.mid(scheme);
}

bool qlumIsUsableUrl(const QString& url)
{
    const QUrl parsed(url);
    const QString scheme = parsed.scheme();
    return parsed.isValid() && !parsed.host().isEmpty() &&
           (scheme == QLatin1String("opc.tcp") || scheme == QLatin1String("https"));
}

QString qlumDialledUrl(const QVector<QlumEndpoint>& endpoints, const QString& chosenUrl,
                       const QString& askedUrl)
{
    QUrl url(chosenUrl);
    const QUrl asked(askedUrl);
    if (!url.isValid() || asked.host().isEmpty() || !sameScheme(chosenUrl, askedUrl))
        return chosenUrl;
    const auto isNamed = [&](auto sameAsAsked) {
        return std::any_of(endpoints.begin(), endpoints.end(), [&](const QlumEndpoint& endpoint) {
            return sameScheme(endpoint.url, askedUrl) && sameAsAsked(QUrl(endpoint.url));
        });
    };
    url.setHost(asked.host());
    if (!isNamed([&](const QUrl& named) { return named.port(defaultPort) == asked.port(defaultPort); }))
        url.setPort(asked.port());
    const QString path = pathOf(asked);
    if (!path.isEmpty() && !path.endsWith(QLatin1String("/discovery")) &&
        !isNamed([&](const QUrl& named) { return pathOf(named) == path; }))
        url.setPath(path);
    return url.toString();
}

QString qlumAuthority(const QUrl& url)
{
    if (url.host().isEmpty())
        return {};
    const bool isAddress = url.host().contains(QLatin1Char(':')); // of the longer kind
    return QStringLiteral("%1:%2")
        .arg(isAddress ? QLatin1Char('[') + url.host() + QLatin1Char(']') : url.host())
        .arg(url.port(defaultPort));
}

bool qlumIsAuthority(const QString& text)
{
    const QUrl url = urlOfAuthority(text);
    return url.isValid() && !url.host().isEmpty() && url.userInfo().isEmpty() && pathOf(url).isEmpty() &&
           !url.hasQuery() && !url.hasFragment();
}

QString qlumUrlAtHost(const QString& url, const QString& authority)
{
    QUrl changed(url);
    const QUrl wanted = urlOfAuthority(authority);
    if (!changed.isValid() || !qlumIsAuthority(authority) || qlumAuthority(changed) == qlumAuthority(wanted))
        return url;
    changed.setHost(wanted.host());
    changed.setPort(wanted.port(changed.port()));
    return changed.toString();
}

int qlumPreferredEndpoint(const QVector<QlumEndpoint>& endpoints, const QString& askedUrl)
{
    const QUrl asked(askedUrl);
    const auto rank = [&](const QlumEndpoint& endpoint) {
        const QUrl url(endpoint.url);
        return std::make_tuple(qlumWhyUnsupported(endpoint).isEmpty(), sameScheme(endpoint.url, askedUrl),
                               url.host().compare(asked.host(), Qt::CaseInsensitive) == 0,
                               url.port(defaultPort) == asked.port(defaultPort), endpoint.securityLevel,
                               endpoint.securityMode);
    };
    const auto best = std::max_element(
        endpoints.begin(), endpoints.end(),
        [&](const QlumEndpoint& left, const QlumEndpoint& right) { return rank(left) < rank(right); });
    if (best == endpoints.end() || !qlumWhyUnsupported(*best).isEmpty())
        return -1;
    return static_cast<int>(best - endpoints.begin());
}

QString qlumWhyUnsupported(const QlumEndpoint& endpoint)
{
    const QByteArray policy = endpoint.securityPolicyUri.toUtf8();
    if (!qlumIsUsableUrl(endpoint.url))
        return ChoiceTexts::tr("This transport is not supported.");
    if (endpoint.securityMode == 0)
        return ChoiceTexts::tr("The security mode is not known.");
    if (UaClientSdk::securityPolicyRank(
            std::string_view(policy.constData(), static_cast<std::size_t>(policy.size()))) == 0)
        return ChoiceTexts::tr("The security policy '%1' is not supported.")
            .arg(qlumPolicyName(endpoint.securityPolicyUri));
    return {};
}
