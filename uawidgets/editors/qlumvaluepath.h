// Parts of a value: what they are, and how the whole looks when one of them is replaced.
#pragma once
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluetype.h>

#include <span>

/// From a value to one of its parts.
struct QlumValueStep
{
    /// What the part is of the value.
    enum Kind : unsigned char {
        None,     ///< the value itself
        Element,  ///< of an array or matrix
        Field,    ///< of a structure
        Selected, ///< the field that a union holds
        Detail    ///< describes the value, and cannot be changed on its own
    };
    Kind kind = None; ///< what the part is
    int index = 0;    ///< of the element or the field

    /// The same part of the same value.
    friend bool operator==(const QlumValueStep&, const QlumValueStep&) = default;
};

/// The part to which the steps lead; a null value when there is none.
[[nodiscard]] QlumTypedValue qlumPartOf(const QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                                        UaDataTypeDictionary* dictionary);
/// The whole with that part replaced. BadTypeMismatch, BadIndexRangeInvalid, BadNotWritable for a detail, or
/// why a structure does not decode or encode; whole is then unchanged.
[[nodiscard]] UaStatusCode qlumReplacePart(QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                                           const UaVariant& part, UaDataTypeDictionary* dictionary);
