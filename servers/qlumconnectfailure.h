#pragma once
#include <uabase/values/uastatuscode.h>

#include <QString>

/// Why a connect, or a change of its user, has come to nothing, in words.
struct QlumConnectFailure
{
    QString reason; ///< names the status
    QString advice; ///< what the user can do about it
};

/// For the status with which it has ended.
[[nodiscard]] QlumConnectFailure qlumConnectFailure(const UaStatusCode& status);
/// The reason alone, also for what a question without a session may end with.
[[nodiscard]] QString qlumFailureReason(const UaStatusCode& status);
/// Whether the server does not take the user: another password, or another user, may help.
[[nodiscard]] bool qlumIsLoginRefused(const UaStatusCode& status);
/// Whether nobody has answered: a server that cannot be reached has refused nothing.
[[nodiscard]] bool qlumIsUnreachable(const UaStatusCode& status);
