// Which versions of what the program is made of are at work.
#pragma once
#include <QString>
#include <QStringList>

/// A line for each part, "Name version", the program with its build first. Not translated: whoever is asked
/// for help has to read it.
[[nodiscard]] QStringList qlumVersions();
