#include <app/settings/qlumdiscoverysettings.h>

#include <opcua/opcua_endpointurl.h>
#include <opcua/opcua_statuscodes.h>

#include <QByteArray>
#include <QLatin1String>
#include <QSettings>
#include <QString>

#include <algorithm>

namespace {
const QLatin1String olderGroup("DiscoveryUrls");
const QLatin1String olderKey("Url");

bool isOfAServer(const QString& url)
{
    const QByteArray text = url.toUtf8();
    OpcUa_EndpointUrl parts;
    return OpcUa_IsGood(OpcUa_EndpointUrl_Parse(text.constData(), static_cast<size_t>(text.size()), &parts));
}
} // namespace

QStringList QlumDiscoverySettings::keepable(const QStringList& urls)
{
    QStringList kept;
    for (const QString& url : urls)
        if (kept.size() < maximumUrls && !kept.contains(url) && isOfAServer(url))
            kept.append(url);
    return kept;
}

void QlumDiscoverySettings::convertOlder(QSettings& settings)
{
    if (!settings.childGroups().contains(olderGroup))
        return;
    const QString key = QLatin1String(customUrls);
    QStringList urls = settings.value(key).toStringList();
    const int count = std::min(settings.beginReadArray(olderGroup), maximumUrls);
    for (int i = 0; i < count; ++i) {
        settings.setArrayIndex(i);
        urls.append(settings.value(olderKey).toString());
    }
    settings.endArray();
    settings.setValue(key, keepable(urls));
    settings.remove(olderGroup);
}
