#include <servers/qlumdiscoverysettings.h>

#include <app/api/qlumapplicationinterface.h>
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

QStringList QlumDiscoverySettings::urls(const char* key)
{
    const QlumApplicationInterface* application = QlumApplicationInterface::instance();
    if (!application)
        return {};
    // a file that was written by hand may hold anything
    return keepable(application->settingsValue(QLatin1String(key), QStringList()).toStringList());
}

bool QlumDiscoverySettings::remember(const char* key, const QString& url)
{
    QlumApplicationInterface* application = QlumApplicationInterface::instance();
    if (!application || keepable({url}).isEmpty())
        return false;
    QStringList kept = urls(key);
    if (QLatin1String(key) == QLatin1String(recentUrls)) {
        kept.removeAll(url);
        kept.prepend(url);
    } else if (!kept.contains(url)) {
        kept.append(url);
    }
    application->setSettingsValue(QLatin1String(key), keepable(kept));
    return keepable(kept).contains(url);
}

void QlumDiscoverySettings::forget(const char* key, const QString& url)
{
    QStringList kept = urls(key);
    if (kept.removeAll(url) > 0)
        QlumApplicationInterface::instance()->setSettingsValue(QLatin1String(key), kept);
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
