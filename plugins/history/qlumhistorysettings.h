#pragma once
#include <app/api/qlumsettings.h>

/// The settings of the history trend view.
namespace QlumHistorySettings {
/// Values that were replaced or deleted are read instead of those that stand.
inline constexpr QlumSetting<bool> readModified{"HistoryPlugin.ReadModified", false};
/// The values at or beyond the ends of the time range are read with it.
inline constexpr QlumSetting<bool> returnBounds{"HistoryPlugin.ReturnBounds", true};
/// Values of one node in one answer; 0 leaves it to the server.
inline constexpr QlumSetting<int> valuesPerNode{"HistoryPlugin.NumValuesPerNode", 10000};
/// How often a read is continued.
inline constexpr QlumSetting<int> maximumNextCalls{"HistoryPlugin.MaxHistoryNextCalls", 1000};
} // namespace QlumHistorySettings
