#pragma once
#include <uabase/values/uastatus.h>

#include <QString>

/// What the answer of a configuration method means to whoever has called it, with the name of the status:
/// "BadTransactionPending: another user has changes there that are not applied yet".
[[nodiscard]] QString qlumPushWords(const QString& method, const UaStatus& status);

/// False for what was not sent at all because of the server's role in the project.
[[nodiscard]] bool qlumPushIsOfServer(const UaStatus& status);
