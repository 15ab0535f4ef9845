#pragma once
#include <app/api/qlumsettingsregistry.h>

#include <QHash>
#include <QObject>
#include <QSet>
#include <QSettings>
#include <QString>
#include <QVariant>

#include <shared_mutex>

/// The application's settings by dotted key ("General.CallTimeout"), kept in the user's settings file.
/// value() may be called from any thread; everything else belongs on the GUI thread.
class QlumSettingsModel : public QObject
{
    Q_OBJECT
public:
    /// The settings file of the user.
    explicit QlumSettingsModel(QObject* parent = nullptr);

    /// The stored value in the type of its default when it can be converted, else fallback when that is
    /// valid, else the default; an invalid QVariant when there is none of them.
    [[nodiscard]] QVariant value(const QString& key, const QVariant& fallback = QVariant()) const;
    void setValue(const QString& key, const QVariant& value);
    /// Writes what was set; false when the file cannot be written and it holds for this run only.
    [[nodiscard]] bool flush();
    [[nodiscard]] QString fileName() const { return m_settings.fileName(); }
    /// The default of a registered key, invalid for others.
    [[nodiscard]] QVariant defaultValue(const QString& key) const;
    /// What is known of the settings; the application's own are in it.
    [[nodiscard]] const QlumSettingsRegistry& registry() const { return m_registry; }

signals:
    void valueChanged(const QString& key);

private:
    QSettings m_settings;
    QlumSettingsRegistry m_registry;
    QHash<QString, QVariant>
        m_stored;              ///< what the file holds, so that reading needs no file and little locking
    QSet<QString> m_unchecked; ///< come from the file, which somebody may have edited
    mutable std::shared_mutex m_mutex;
};
