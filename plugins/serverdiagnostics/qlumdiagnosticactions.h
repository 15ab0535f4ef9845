#pragma once

/// The actions of a view of server diagnostics.
namespace QlumDiagnosticActions {
enum Id { Refresh, KeepServer, CopyReport, SaveReport };
} // namespace QlumDiagnosticActions
