// What is known of a value's type beyond the value itself, for editors and for views that take values apart.
#pragma once
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumvaluecontext.h>

#include <QString>

/// What is known of a value beyond itself.
struct QlumTypeHint
{
    UaNodeId dataTypeId;             ///< null when unknown
    UaEnumDefinition enumDefinition; ///< null when the type is no enumeration
};

/// A value with its hint.
struct QlumTypedValue
{
    UaVariant value;   ///< the value
    QlumTypeHint hint; ///< what is known beyond it
};

/// The definition of a structure by its encoding or, failing that, by the data type; null when nobody has
/// one. The dictionary may be null: types of namespace 0 are known without it.
[[nodiscard]] UaStructureDefinition qlumStructureDefinition(const UaExtensionObject& object,
                                                            const QlumTypeHint& hint,
                                                            UaDataTypeDictionary* dictionary);
/// The structure in a scalar without its body, which may be large: what definitions are found by. Null for
/// what is no structure, and for a null one.
[[nodiscard]] UaExtensionObject qlumWithoutBody(const UaVariant& value);
/// The definition of an enumeration by its data type; null when nobody has one. The dictionary may be null.
[[nodiscard]] UaEnumDefinition qlumEnumDefinition(const UaNodeId& dataTypeId,
                                                  UaDataTypeDictionary* dictionary);
/// What the numbers of a value of that type are called, by its variable or by its data type, and both states
/// of a Boolean; null when they have no names.
[[nodiscard]] UaEnumDefinition qlumValueNames(OpcUa_BuiltInType type, const QlumValueContext& context);
/// The hint for the values of a structure's field.
[[nodiscard]] QlumTypeHint qlumFieldHint(const UaStructureField& field, UaDataTypeDictionary* dictionary);
/// The definition of an option set by its data type; null when nobody has one. The dictionary may be null.
[[nodiscard]] UaOptionSetDefinition qlumOptionSetDefinition(const UaNodeId& dataTypeId,
                                                            UaDataTypeDictionary* dictionary);

/// What is known of the elements of an array or matrix. An array of variants says nothing of what they hold.
[[nodiscard]] QlumValueContext qlumElementContext(const QlumValueContext& array);
/// What is known of a field, in the structure that the context is about.
[[nodiscard]] QlumValueContext qlumFieldContext(const QlumValueContext& structure,
                                                const UaStructureField& field);
/// "[3]" for an element of an array, "[1,2]" for one of a matrix, by its place in row-major order.
[[nodiscard]] QString qlumElementName(int index, const UaArray<OpcUa_Int32>& dimensions);
/// The value to begin with where none is: 0, empty, a structure of such values; null when the type is not
/// known.
[[nodiscard]] UaVariant qlumNullValue(const QlumValueContext& context);
/// What values of a data type are sent as, by the standard or by the dictionary; Null when neither knows it.
[[nodiscard]] OpcUa_BuiltInType qlumBuiltInTypeOf(const UaNodeId& dataTypeId,
                                                  UaDataTypeDictionary* dictionary);
/// The name of a data type: somebody has read it, or it is in its definition, or it is one of the standard's;
/// else its id.
[[nodiscard]] QString qlumTypeNameOf(const UaNodeId& dataTypeId, const QlumValueContext& context);
/// "Double", "Int32[]", "Range": what the value is, with the name of a structure's type.
[[nodiscard]] QString qlumTypeTextOf(const UaVariant& value, const QlumValueContext& context);
