// What an entry of the log means to somebody who reads it in a hurry.
#pragma once
#include <QIcon>
#include <QString>

/// Beside the icon of the level: whether something went well or badly, by what the message says and the
/// statuses that it names. Empty, but as wide as the others, where it says neither.
[[nodiscard]] QIcon qlumLogMeaningIcon(const QString& message);
/// Each status that the message names, with what it means in words, one a line; empty when it names none.
[[nodiscard]] QString qlumStatusesInWords(const QString& message);
