#include <uawidgets/editors/qlumeditorstore.h>

#include <QSettings>

#include <utility>

QlumEditorStore::QlumEditorStore(QString group) : m_group(std::move(group)) {}

void* QlumEditorStore::openSettingsStore()
{
    auto* settings = new QSettings;
    settings->beginGroup(m_group);
    settings->beginGroup(QStringLiteral("Editors"));
    return settings;
}

void QlumEditorStore::closeSettingsStore(void* handle)
{
    delete static_cast<QSettings*>(handle);
}

QVariant QlumEditorStore::loadSetting(void* handle, const QString& key)
{
    return handle ? static_cast<QSettings*>(handle)->value(key) : QVariant();
}

void QlumEditorStore::storeSetting(void* handle, const QString& key, const QVariant& value)
{
    if (handle)
        static_cast<QSettings*>(handle)->setValue(key, value);
}
