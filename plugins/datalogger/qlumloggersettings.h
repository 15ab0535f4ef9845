// Settings of the user for data logger views.
#pragma once
#include <app/api/qlumsettings.h>
#include <plugins/datalogger/qlumloggeritem.h>

#include <QString>

/// What new views begin with.
namespace QlumLoggerSettings {
/// Empty: the user's folder of documents.
inline constexpr QlumSetting<QString> folder{"DataLoggerPlugin.Folder", ""};
/// MB.
inline constexpr QlumSetting<double> freeFloor{"DataLoggerPlugin.FreeFloor", 1024.0};
/// Values of one server that wait for the disk.
inline constexpr QlumSetting<int> queueSize{"DataLoggerPlugin.QueueSize", 200'000};
} // namespace QlumLoggerSettings

/// Has the settings dialog offer them.
void qlumRegisterLoggerSettings();
/// With a file of a name that is not there yet.
[[nodiscard]] QlumLoggerSetup qlumLoggerDefaults();
/// How values are watched in new views: nothing is left out between two messages.
[[nodiscard]] QlumDataSettings qlumLoggerItemDefaults();
