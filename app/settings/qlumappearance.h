#pragma once
#include <QObject>
#include <QPalette>
#include <QString>

class QlumSettingsModel;

/// How the program looks, as it is set: palette, colours of status and times. Follows the settings.
class QlumAppearance : public QObject
{
    Q_OBJECT
public:
    /// Applies the settings at once.
    explicit QlumAppearance(const QlumSettingsModel& settings, QObject* parent = nullptr);

private:
    void applyPalette();
    void applyStatus();
    void applyTimes();
    void sltChanged(const QString& key);

    const QlumSettingsModel& m_settings;
    QString m_systemStyle;
    QPalette m_systemPalette;
};

/// A palette with dark backgrounds, or with bright ones.
[[nodiscard]] QPalette qlumPalette(bool isDark);

/// What the settings file says of a key before anything else may be read from it; empty for nothing.
[[nodiscard]] QString qlumEarlySetting(const QString& key);
/// Has everything drawn in the size that is set, unless the environment says another: by a variable that the
/// application object reads, and that is gone with this.
class QlumScaleAsSet
{
public:
    QlumScaleAsSet();
    /// Programs that are started from here have a size of their own.
    ~QlumScaleAsSet();
    QlumScaleAsSet(const QlumScaleAsSet&) = delete;
    QlumScaleAsSet& operator=(const QlumScaleAsSet&) = delete;

private:
    bool m_isSet = false;
};
