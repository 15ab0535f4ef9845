// Settings of the user for data access views.
#pragma once
#include <app/api/qlumsettings.h>
#include <watching/qlumwatchsettings.h>

#include <QString>

/// What new views begin with. Intervals in milliseconds.
namespace QlumDaSettings {
/// Between two notifications.
inline constexpr QlumSetting<double> publishingInterval{"DataAccessPlugin.PublishingInterval", 1000.0};
/// Between two looks of the server; -1: as often as it is published.
inline constexpr QlumSetting<double> samplingInterval{"DataAccessPlugin.SamplingInterval", -1.0};
/// Values kept at the server.
inline constexpr QlumSetting<unsigned int> queueSize{"DataAccessPlugin.QueueSize", 1};
/// When that is full.
inline constexpr QlumSetting<bool> discardOldest{"DataAccessPlugin.DiscardOldest", true};
/// One of qlumDaDeadbands().
inline constexpr QlumSetting<QString> deadband{"DataAccessPlugin.Deadband", "None"};
/// In its unit.
inline constexpr QlumSetting<double> deadbandValue{"DataAccessPlugin.DeadbandValue", 0.0};
/// One of qlumDaTriggers().
inline constexpr QlumSetting<QString> trigger{"DataAccessPlugin.Trigger", "Status, value"};
/// One of qlumDaTimestamps().
inline constexpr QlumSetting<QString> timestamps{"DataAccessPlugin.Timestamps", "Both"};
/// Of subscriptions.
inline constexpr QlumSetting<unsigned int> priority{"DataAccessPlugin.Priority", 0};
/// Publishing intervals.
inline constexpr QlumSetting<unsigned int> lifetimeCount{"DataAccessPlugin.LifetimeCount", 1200};
/// Whether the engineering unit of each variable is asked for.
inline constexpr QlumSetting<bool> readUnits{"DataAccessPlugin.ReadUnits", true};
/// Of a branch that is dropped.
inline constexpr QlumSetting<int> branchLimit{"DataAccessPlugin.BranchLimit", 100000};
} // namespace QlumDaSettings

/// What the user has set for new views.
[[nodiscard]] QlumDataSettings qlumDaDefaults();
/// Has the settings dialog offer them.
void qlumRegisterDaSettings();
