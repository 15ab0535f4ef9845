#pragma once
#include <QStringList>

/// Makes the user's settings file safe to be read, before anything reads it: what QSettings would not have
/// written so is written anew. When entries that are no plain values were left out, the file as it was is
/// kept with ".bad" at its end (".bad2" and so on when there is one). Gives what is to be told in the log.
[[nodiscard]] QStringList qlumCleanSettingsFile();
