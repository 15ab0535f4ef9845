#pragma once
#include <app/api/qlumsettings.h>

/// The settings of the attribute view.
namespace QlumAttributeSettings {
/// How old a value may be that the server has in memory, in milliseconds; 0 has it read anew.
inline constexpr QlumSetting<double> maxAge{"AttributePlugin.MaxAge", 0.0};
/// Values are edited although the node says that they may not be written.
inline constexpr QlumSetting<bool> editLocked{"AttributePlugin.EditLocked", false};
} // namespace QlumAttributeSettings
