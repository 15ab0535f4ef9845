// What arrays and matrices show of an element.
#pragma once
#include <uabase/values/uaarray.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumelementlist.h>
#include <uawidgets/editors/qlumvaluechecks.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>
#include <QVariant>

/// The roles that cells of arrays and matrices share: texts, alignment, value, dictionary, data type.
[[nodiscard]] QVariant qlumElementCell(const QlumElementList& elements, int index,
                                       const QlumValueContext& context, int role);
/// Whether a cell can edit it; others are opened.
[[nodiscard]] bool qlumIsElementEditable(const QlumElementList& elements, int index);
/// What speaks against an array or matrix of these lengths: its shape, its type, and of the elements that
/// were given the first at fault. What came from the server it has already.
[[nodiscard]] QlumValueCheck qlumCheckGiven(const QlumElementList& elements,
                                            const UaArray<OpcUa_Int32>& lengths,
                                            const QlumValueContext& context);
/// A value from a text in place of the one that is there, for an array of the type: an array of variants
/// keeps the type of each. False, and value unchanged, when it is none.
[[nodiscard]] bool qlumReadElement(const QString& text, OpcUa_BuiltInType arrayType,
                                   const QlumValueContext& context, UaVariant& value);
