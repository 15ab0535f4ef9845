// Texts of servers made fit for display: whatever a server sends, it stays text and stays small.
#pragma once
#include <QString>

/// At most maxLength UTF-16 units, with "..." after a cut; a surrogate pair is not cut in two.
[[nodiscard]] QString qlumCutText(const QString& text, int maxLength = 256);
/// One line: line breaks, other control characters and characters that reverse the writing direction become
/// spaces.
[[nodiscard]] QString qlumSingleLine(const QString& text);
/// A tool tip that shows the text as it stands, even when it looks like markup.
[[nodiscard]] QString qlumPlainToolTip(const QString& text);
