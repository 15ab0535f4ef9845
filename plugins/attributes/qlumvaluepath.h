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

#include <span>

/// What is known of a value beyond itself.
struct QlumTypeHint
{
    UaNodeId dataTypeId;             ///< null when unknown
    UaEnumDefinition enumDefinition; ///< null when the type is no enumeration
};

/// A value with its hint.
struct QlumTypedValue
{
    UaVariant value;
    QlumTypeHint hint;
};

/// The definition of a structure by its encoding or, failing that, by the data type; null when nobody has
/// one. The dictionary may be null: types of namespace 0 are known without it.
[[nodiscard]] UaStructureDefinition qlumStructureDefinition(const UaExtensionObject& object,
                                                            const QlumTypeHint& hint,
                                                            UaDataTypeDictionary* dictionary);
/// The definition of an enumeration by its data type; null when nobody has one. The dictionary may be null.
[[nodiscard]] UaEnumDefinition qlumEnumDefinition(const UaNodeId& dataTypeId,
                                                  UaDataTypeDictionary* dictionary);
/// The hint for the values of a structure's field.
[[nodiscard]] QlumTypeHint qlumFieldHint(const UaStructureField& field, UaDataTypeDictionary* dictionary);

/// The part to which the steps lead; a null value when there is none.
[[nodiscard]] QlumTypedValue qlumPartOf(const QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                                        UaDataTypeDictionary* dictionary);
/// The whole with that part replaced. BadTypeMismatch, BadIndexRangeInvalid, BadNotWritable for a detail, or
/// why a structure does not decode or encode; whole is then unchanged.
[[nodiscard]] UaStatusCode qlumReplacePart(QlumTypedValue& whole, std::span<const QlumValueStep> steps,
                                           const UaVariant& part, UaDataTypeDictionary* dictionary);
