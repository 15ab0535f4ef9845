// Parts of a value: what they are, and how the whole looks when one of them is replaced.
#pragma once
#include <plugins/attributes/qlumattributenode.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <span>

/// The part to which the steps lead; a null value when there is none.
[[nodiscard]] QlumTypedValue qlumPartOf(const QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                                        UaDataTypeDictionary* dictionary);
/// The whole with that part replaced. BadTypeMismatch, BadIndexRangeInvalid, BadNotWritable for a detail, or
/// why a structure does not decode or encode; whole is then unchanged.
[[nodiscard]] UaStatusCode qlumReplacePart(QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                                           const UaVariant& part, UaDataTypeDictionary* dictionary);
