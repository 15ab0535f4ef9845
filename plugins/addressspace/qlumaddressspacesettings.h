#pragma once
#include <app/api/qlumsettings.h>

/// The settings of the address space view.
namespace QlumAddressSpaceSettings {
/// Whether names are sorted as people read them.
inline constexpr QlumSetting<bool> readingOrder{"AddressSpace.ReadingOrder", false};
} // namespace QlumAddressSpaceSettings
