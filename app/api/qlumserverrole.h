// What the user means to do on a server, so that nothing else is sent to it.
#pragma once
#include <uabase/values/uastatus.h>

#include <QString>

#include <optional>

/// Each role may do what those before it may.
enum class QlumServerRole {
    Look,      ///< reading, browsing, own subscriptions
    Operate,   ///< writing values and calling methods, too
    Commission ///< everything: attributes, history, nodes, the server's configuration and its files
};

/// "Look" as the project keeps it.
[[nodiscard]] QString qlumRoleKey(QlumServerRole role);
/// The reverse. Nothing for a text that names no role.
[[nodiscard]] std::optional<QlumServerRole> qlumRoleFromKey(const QString& key);
/// "Look" as the user reads it.
[[nodiscard]] QString qlumRoleName(QlumServerRole role);
/// What may be done in the role, in a sentence.
[[nodiscard]] QString qlumRoleExplanation(QlumServerRole role);
/// The role of servers that are new in a project, by the user's setting.
[[nodiscard]] QlumServerRole qlumRoleOfNewServers();

/// What a call ends with that was not sent because its server has that role: BadUserAccessDenied, marked as
/// ours.
[[nodiscard]] UaStatus qlumRefusal(QlumServerRole role);
/// The role because of which a call was not sent; nothing for what a server answered, be it the same code.
[[nodiscard]] std::optional<QlumServerRole> qlumRefusingRole(const UaStatus& status);
