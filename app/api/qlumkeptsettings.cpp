#include <app/api/qlumkeptsettings.h>

#include <QString>
#include <QVariant>

void QlumKeptSettings::read(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_values.clear();
    for (const QString& key : settings.allKeys()) {
        const QVariant value = settings.value(key);
        bool isNumber = false;
        const int id = value.toInt(&isNumber);
        const bool isServer = isNumber && key.endsWith(QLatin1String("ServerId"));
        m_values.insert(key, isServer && serverIdMap.contains(id) ? QVariant(serverIdMap.value(id)) : value);
    }
}

void QlumKeptSettings::write(QSettings& settings) const
{
    for (auto kept = m_values.cbegin(); kept != m_values.cend(); ++kept)
        settings.setValue(kept.key(), kept.value());
}
