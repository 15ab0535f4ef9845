// Texts of servers made fit for display: whatever a server sends, it stays text and stays small.
#pragma once
#include <QString>
#include <app/api/qlumtext.h>

/// At most maxLength UTF-16 units, with "..." after a cut; a surrogate pair is not cut in two.
[[nodiscard]] QString qlumCutText(const QString& text, int maxLength = 256);
/// One line: line breaks, other control characters and characters that reverse the writing direction become
/// spaces.
[[nodiscard]] QString qlumSingleLine(const QString& text);
