#pragma once
#include <QString>

/// What a status means to a user, by its name: "BadTimeout" gives "the server did not answer in time". Of a
/// status that has no text of its own the words of its name. Any thread.
[[nodiscard]] QString qlumStatusWords(const QString& name);
