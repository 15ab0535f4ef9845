#pragma once
#include <app/api/qlumsettings.h>

/// What a data access view keeps of its work with many rows.
namespace QlumWorkSettings {
/// Staged values behind one that was not written are left out.
inline constexpr QlumSetting<bool> stopsAtFailure{"DataAccessPlugin.StagedStopsAtFailure", true};
/// What the server has after a staged value was written is read.
inline constexpr QlumSetting<bool> readsBack{"DataAccessPlugin.StagedReadsBack", true};
/// Changes that the log of a view holds; the oldest go.
inline constexpr QlumSetting<int> logRows{"DataAccessPlugin.ChangeLogRows", 10'000};
} // namespace QlumWorkSettings
