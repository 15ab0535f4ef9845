// Texts that a user gives for values of any type, and what is to be said against them.
#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

/// A value of the place from a text: a scalar as its cell is edited, an array as "[1, 2]", everything in the
/// form that copying gives. shown is what is there now, whose type counts where none is declared; the index
/// range of one element takes a scalar. Empty when value was read, else why not, for the user.
[[nodiscard]] QString qlumReadStaged(const QString& text, const QlumValueContext& context,
                                     const UaVariant& shown, const QString& indexRange, UaVariant& value);
