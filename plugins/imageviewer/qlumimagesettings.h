#pragma once
#include <app/api/qlumsettings.h>

/// The settings of the image viewer.
namespace QlumImageSettings {
/// Images that are dropped are watched at once.
inline constexpr QlumSetting<bool> watchesAtFirst{"ImageViewer.WatchAtFirst", true};
/// How often new images are asked for, in ms, in documents that have not been told otherwise.
inline constexpr QlumSetting<int> interval{"ImageViewer.Interval", 500};
} // namespace QlumImageSettings
