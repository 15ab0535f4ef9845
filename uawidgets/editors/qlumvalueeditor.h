// Editors for one scalar value, chosen by its type; small enough for the cell of a table.
#pragma once
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uavariant.h>

class QWidget;

/// The editor for values of the value's type, showing the value: a combo box for Boolean and, with a
/// definition, for enumerations; date and time with milliseconds, in local time; a line with validation for
/// the others. Null for arrays and for types without an editor.
[[nodiscard]] QWidget* qlumCreateValueEditor(const UaVariant& value, const UaEnumDefinition& enumDefinition,
                                             QWidget* parent);
/// What the editor holds. False, and value unchanged, when that is no value of its type or when the user
/// changed nothing.
[[nodiscard]] bool qlumValueFromEditor(const QWidget* editor, UaVariant& value);
