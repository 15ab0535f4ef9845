#pragma once
#include <QString>

#include <optional>

/// How well a text answers to a few typed letters: they must come in it in their order, case aside. Higher is
/// better: letters that begin words, letters in a row and short texts go first. Nothing when they are not in
/// it; without letters every text is equally good.
[[nodiscard]] std::optional<int> qlumLetterMatch(const QString& letters, const QString& text);
