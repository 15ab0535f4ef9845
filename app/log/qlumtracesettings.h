#pragma once
#include <QString>

class QlumSettingsModel;

/// Brings trace and log level in line with the settings.
class QlumTraceSettings
{
public:
    explicit QlumTraceSettings(const QlumSettingsModel* settings) : m_settings(settings) {}

    /// Opens, changes or closes the trace of this program and of the communication stack. What is wrong with
    /// the settings is told in the log.
    void apply() const;
    /// The minimum level that the log window shows.
    [[nodiscard]] int logLevel() const;

private:
    [[nodiscard]] int sdkLevel() const;
    [[nodiscard]] unsigned int stackLevel() const;
    [[nodiscard]] bool openTrace(int level) const;

    const QlumSettingsModel* m_settings;
};
