#pragma once
#include <app/api/qlumsettingscbinterface.h>

#include <QString>
#include <QVariant>

/// What a dialog derives from that hosts editors and has nothing better: keeps their settings in a group of
/// the program's settings. GUI thread.
class QlumEditorStore : public QlumSettingsCBInterface
{
public:
    void* openSettingsStore() override;
    void closeSettingsStore(void* handle) override;
    QVariant loadSetting(void* handle, const QString& key) override;
    void storeSetting(void* handle, const QString& key, const QVariant& value) override;

protected:
    /// The group of the dialog; the editors have one below it.
    explicit QlumEditorStore(QString group);

private:
    const QString m_group;
};
