// Plugins as they are called on the screen.
#pragma once
#include <QString>

/// The name of a plugin in the user's language.
[[nodiscard]] QString qlumPluginShown(const QString& name);
