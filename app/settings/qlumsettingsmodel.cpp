#include <app/settings/qlumsettingsmodel.h>

#include <app/settings/qlumsettingspages.h>

#include <QString>
#include <QStringList>

#include <mutex>

QlumSettingsModel::QlumSettingsModel(QObject* parent) : QObject(parent)
{
    qlumAddApplicationSettings(m_registry);
    const QStringList keys = m_settings.childKeys();
    for (const QString& key : keys)
        if (key.contains(QLatin1Char('.'))) {
            m_stored.insert(key, m_settings.value(key));
            m_unchecked.insert(key);
        }
}

QVariant QlumSettingsModel::value(const QString& key, const QVariant& fallback) const
{
    QVariant stored;
    bool isUnchecked = false;
    {
        const std::shared_lock lock(m_mutex);
        stored = m_stored.value(key);
        isUnchecked = m_unchecked.contains(key);
    }
    const QVariant standard = fallback.isValid() ? fallback : m_registry.standard(key);
    if (!stored.isValid())
        return standard;
    // A file edited by hand must not turn a time-out into 0.
    if (standard.isValid() && !stored.convert(static_cast<int>(standard.userType())))
        return standard;
    if (isUnchecked && !m_registry.isInRange(key, stored))
        return standard;
    return stored;
}

void QlumSettingsModel::setValue(const QString& key, const QVariant& value)
{
    {
        const std::unique_lock lock(m_mutex);
        m_stored.insert(key, value);
        m_unchecked.remove(key);
    }
    m_settings.setValue(key, value);
    emit valueChanged(key);
}

bool QlumSettingsModel::flush()
{
    m_settings.sync();
    return m_settings.status() == QSettings::NoError;
}

QVariant QlumSettingsModel::defaultValue(const QString& key) const
{
    return m_registry.standard(key);
}
