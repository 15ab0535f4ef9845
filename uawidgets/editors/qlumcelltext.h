// What cells of tables and trees say about values of any type and shape, and what is read from such cells.
#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

/// Bytes of one text or byte string that a cell looks at.
constexpr int qlumCellBytes = 2048;

/// Of a text or a byte string that is longer than cells look at its beginning, with the length of all; else
/// null, with the length or 0. The element is a C value of the type.
[[nodiscard]] UaVariant qlumBeginningOf(OpcUa_BuiltInType type, const void* element, OpcUa_Int32& length);
/// The same for a scalar.
[[nodiscard]] UaVariant qlumBeginningOf(const UaVariant& value, OpcUa_Int32& length);
/// Whether a cell can edit the scalar: a text in one line, and not too long for that.
[[nodiscard]] bool qlumFitsCellEditor(OpcUa_BuiltInType type, OpcUa_Int32 length);
/// One line that fits a cell: of structures the name and the first fields, of arrays the first elements.
[[nodiscard]] QString qlumCellText(const UaVariant& value, const QlumValueContext& context);
/// The value in full, so that qlumReadCell() gives the same value again: what the cell of a scalar is edited
/// as, names of enumerations, JSON of all others.
[[nodiscard]] QString qlumCopyText(const UaVariant& value, const QlumValueContext& context);
/// A value of the type from a cell. False when the text is none, or one of several lines for what has one;
/// value is then unchanged.
[[nodiscard]] bool qlumReadCell(const QString& text, OpcUa_BuiltInType type, const QlumValueContext& context,
                                UaVariant& value);
