// How types of documents are called in the user's language.
#pragma once
#include <QString>

/// What the user reads for a type, which is a key of project files; the type itself when it is not known.
[[nodiscard]] QString qlumDocumentTypeName(const QString& type);
/// What it is for, as rich text under its name; plugins describe their types in words alone.
[[nodiscard]] QString qlumDocumentTypeText(const QString& type, const QString& description);
