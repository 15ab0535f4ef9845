#pragma once
#include <app/api/qlumsettings.h>

/// The settings of the server diagnostics view.
namespace QlumDiagnosticSettings {
/// After how many seconds without a contact a session of this application is called forgotten.
inline constexpr QlumSetting<unsigned int> forgottenAfter{"ServerDiagnosticPlugin.ForgottenAfter", 60};
} // namespace QlumDiagnosticSettings
