#pragma once
#include <QStringList>

/// Makes the user's settings file safe to be read, before anything reads it: entries that are no plain values
/// are taken out, and the file as it was is kept with ".bad" at its end. Gives what is to be told in the log.
[[nodiscard]] QStringList qlumCleanSettingsFile();
