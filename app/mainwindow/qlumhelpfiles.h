// The manual in the program's language. Its pages stand in a folder "help/LANGUAGE" beside the folder of the
// program, so that a new language needs no more than files; a page that is missing there is English.
#pragma once
#include <QString>
#include <QStringList>

/// A page such as "settings.html" in the program's language; null when there is none but the English one,
/// which is part of the program.
[[nodiscard]] QString qlumTranslatedHelpPage(const QString& file);
/// The files that contents, index and search can be read from, that of the program's language first.
[[nodiscard]] QStringList qlumHelpFiles();
