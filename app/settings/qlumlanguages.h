// The languages that are installed: a file tavelin_NAME.qm in a folder that is looked into makes one.
#pragma once
#include <QString>
#include <QStringList>

/// The names of the translations that are there, such as de or pt_BR, sorted.
[[nodiscard]] QStringList qlumLanguages();
/// A language as its speakers call it.
[[nodiscard]] QString qlumLanguageName(const QString& language);
