// Editors for one scalar value, chosen by its type; small enough for the cell of a table.
#pragma once
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uavariant.h>

#include <QString>

class QWidget;

/// The editor for values of the value's type, showing the value: a combo box for Boolean and, with a
/// definition, for enumerations; date and time with milliseconds, in UTC as it is shown; a line with
/// validation for the others. Null for arrays and for types without an editor.
[[nodiscard]] QWidget* qlumCreateValueEditor(const UaVariant& value, const UaEnumDefinition& enumDefinition,
                                             QWidget* parent);
/// The same for a value that is still to be given: the editor holds none before the user has entered one of
/// the type. Null for types without an editor.
[[nodiscard]] QWidget* qlumCreateValueEditor(OpcUa_BuiltInType type, const UaEnumDefinition& enumDefinition,
                                             QWidget* parent);
/// Why what the user has entered is no value of the type, in words; empty when it is one.
[[nodiscard]] QString qlumEditorFault(const QWidget* editor);
/// What the editor holds. False, and value unchanged, when that is no value of its type or when the user
/// changed nothing.
[[nodiscard]] bool qlumValueFromEditor(const QWidget* editor, UaVariant& value);
