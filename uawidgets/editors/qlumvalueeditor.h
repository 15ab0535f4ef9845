// Editors for one scalar value, chosen by its type; small enough for the cell of a table.
#pragma once
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumnumbertext.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

#include <functional>

class QObject;
class QWidget;

/// The editor for values of the value's type, or of the declared type when there is no value: a combo box for
/// Boolean, enumerations and status codes; date and time with milliseconds, in UTC as it is shown; a line
/// with validation for the others, with the bits of an option set and the nodes of the server to choose from.
/// It holds no value before the user has given one. Null where qlumWhyNoValueEditor() says something.
[[nodiscard]] QWidget* qlumCreateValueEditor(const UaVariant& value, const QlumValueContext& context,
                                             QWidget* parent);
/// Why a cell cannot edit the value, in words; empty when it can. The window for whole values can.
[[nodiscard]] QString qlumWhyNoValueEditor(const UaVariant& value, const QlumValueContext& context);

/// Why what the user has entered is no value of the type, in words; empty when it is one.
[[nodiscard]] QString qlumEditorFault(const QWidget* editor);
/// What speaks against sending what the user has entered; nothing while he has changed nothing.
[[nodiscard]] QlumValueCheck qlumEditorCheck(const QWidget* editor);
/// What the editor holds. False, and value unchanged, when that is no value of its type or when the user
/// changed nothing.
[[nodiscard]] bool qlumValueFromEditor(const QWidget* editor, UaVariant& value);
/// Calls the function, for as long as the receiver lives, when the user changes something.
void qlumOnEdited(QWidget* editor, QObject* receiver, const std::function<void()>& edited);
/// Enters a value as the user would; false when the editor is for another type.
bool qlumSetEditorValue(QWidget* editor, const UaVariant& value);
/// Writes whole numbers in that base from now on; editors for other types do not mind.
void qlumSetEditorBase(QWidget* editor, QlumNumberBase base);
/// An editor that only shows; its text can still be copied.
void qlumSetEditorReadOnly(QWidget* editor, bool readOnly);
