#pragma once
#include <uabase/values/uastatus.h>

#include <QString>

/// What a status means to a user, by its name: "BadTimeout" gives "the server did not answer in time". Of a
/// status that has no text of its own the words of its name. Any thread.
[[nodiscard]] QString qlumStatusWords(const QString& name);

/// "Not sent: this server is set to Look" of a call that the server's role does not allow; empty of all
/// others, which the server has answered or the connection has lost.
[[nodiscard]] QString qlumNotSentText(const UaStatus& status);
/// What a call came to, wherever it is shown: that it was not sent, or the name of its status.
[[nodiscard]] QString qlumResultText(const UaStatus& status);
/// The same with the meaning of the status: "BadTimeout: the server did not answer in time".
[[nodiscard]] QString qlumResultInWords(const UaStatus& status);
