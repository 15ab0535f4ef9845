// Which page edits which value.
#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>
#include <uawidgets/editors/qlumvaluepage.h>

class QWidget;

/// Kinds of values that have a page of their own.
enum class QlumValueKind { Scalar, Array, Matrix, Structure };

/// By the value; where there is none, by what is declared.
[[nodiscard]] QlumValueKind qlumKindOf(const UaVariant& value, const QlumValueContext& context);
/// The page for values that have parts, without a value yet; null for scalars.
[[nodiscard]] QlumValuePage* qlumCreatePartsPage(QlumValueKind kind, const QlumValueContext& context,
                                                 QWidget* parent);
