#pragma once
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

/// A value to begin with where there is none yet: 0, an empty text, now, the first name of an enumeration, an
/// array without elements, a structure whose fields are all so. Null where the type does not tell.
[[nodiscard]] UaVariant qlumDefaultValue(const QlumValueContext& context);
