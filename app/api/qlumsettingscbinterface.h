#pragma once
#include <QString>
#include <QVariant>

/// Offered by dialogs in whose store the value editors keep settings of their own.
class QlumSettingsCBInterface
{
public:
    virtual ~QlumSettingsCBInterface() = default;

    /// Handle of the opened store, to be given back to closeSettingsStore(); null when there is none.
    virtual void* openSettingsStore() = 0;
    /// Ends what openSettingsStore() began; the handle is of no use afterwards.
    virtual void closeSettingsStore(void* handle) = 0;
    /// The value stored under the key; invalid when there is none.
    virtual QVariant loadSetting(void* handle, const QString& key) = 0;
    /// Keeps a value under the key.
    virtual void storeSetting(void* handle, const QString& key, const QVariant& value) = 0;
};
