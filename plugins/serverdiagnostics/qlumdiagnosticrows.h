// What is read of a server's diagnostics, and how it is called.
#pragma once
#include <opcua/opcua_types.h>

#include <span>

/// The groups of the page about the server itself.
enum class QlumDiagnosticGroup { Build, Diagnostics, Status, Redundancy, Capabilities, Limits };

/// How the value of a row is read and shown.
enum class QlumDiagnosticKind {
    Plain,             ///< as it comes
    Counter,           ///< a number that only rises
    ServerState,       ///< a number with a name
    RedundancySupport, ///< a number with a name
    Folder,            ///< an object whose children are the value
    Limit              ///< 0 for none
};

/// A row about the server.
struct QlumServerRow
{
    QlumDiagnosticGroup group; ///< where it stands
    const char* label;         ///< as it is shown
    OpcUa_UInt32 nodeId;       ///< in namespace 0
    QlumDiagnosticKind kind = QlumDiagnosticKind::Plain;
};

/// All of them, in the order of their groups.
[[nodiscard]] std::span<const QlumServerRow> qlumServerRows();

/// A row about a session or a subscription: a child of its diagnostics and a field of their structure.
struct QlumDetailRow
{
    const char* label;               ///< as it is shown, and the browse name
    const char* otherName = nullptr; ///< by which it goes as well; null for none
    QlumDiagnosticKind kind = QlumDiagnosticKind::Plain;
};

/// Of "SessionDiagnostics".
[[nodiscard]] std::span<const QlumDetailRow> qlumSessionRows();
/// Of "SessionSecurityDiagnostics".
[[nodiscard]] std::span<const QlumDetailRow> qlumSessionSecurityRows();
/// Of an element of "SubscriptionDiagnosticsArray".
[[nodiscard]] std::span<const QlumDetailRow> qlumSubscriptionRows();
