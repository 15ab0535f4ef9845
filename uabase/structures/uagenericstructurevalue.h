// A structure's values, field by field, by its definition; OPC 10000-6, 5.2.6 to 5.2.8.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

class UaGenericStructureValuePrivate;

/// The value that a field has before somebody gives it one: 0, empty, no elements, a structure of such
/// values, a union without a field. Null for an unknown type. The dictionary may be null.
[[nodiscard]] UaVariant uaNullFieldValue(const UaStructureField& field, UaDataTypeDictionary* dictionary);

/// Fields hold variants: a nested structure is an ExtensionObject with its body, an enumeration an Int32, an
/// array or matrix an array or matrix. Copies share the values; one object belongs to one thread.
class UaGenericStructureValue
{
public:
    UaGenericStructureValue() noexcept;
    /// All fields with the null value of their type, optional ones absent. Null for a null definition or a
    /// union.
    explicit UaGenericStructureValue(const UaStructureDefinition& definition,
                                     UaDataTypeDictionary* dictionary = nullptr);
    UaGenericStructureValue(const UaGenericStructureValue&) noexcept;
    UaGenericStructureValue& operator=(const UaGenericStructureValue&) noexcept;
    ~UaGenericStructureValue();

    /// Takes the fields from a body of this definition. The dictionary is asked for nested definitions that
    /// the fields do not carry themselves; those of namespace 0 are known without it. On failure the value is
    /// null: BadDataTypeIdUnknown (another type, or a nested one without definition), BadDecodingError (cut,
    /// left-over or wrong bytes), BadEncodingLimitsExceeded (nested deeper than 100), BadNotSupported (XML
    /// body, or a union).
    UaStatusCode decode(const UaExtensionObject& value, const UaStructureDefinition& definition,
                        UaDataTypeDictionary* dictionary = nullptr);
    UaStatusCode decode(const UaByteString& body, const UaStructureDefinition& definition,
                        UaDataTypeDictionary* dictionary = nullptr);
    /// BadInvalidState when null, BadEncodingError when a value does not fit its field.
    UaStatusCode encode(UaExtensionObject& value) const;

    bool isNull() const noexcept { return !d; }
    UaStructureDefinition definition() const noexcept;
    int fieldCount() const noexcept;
    /// Null when out of range, unknown or absent.
    UaVariant value(int index) const noexcept;
    UaVariant value(const UaString& fieldName) const noexcept;
    bool isFieldSet(int index) const noexcept; ///< false: an absent optional field
    /// A nested structure (of an array: its element), decoded; null when it is none. arrayIndex -1: a scalar.
    [[nodiscard]] UaGenericStructureValue structure(int index, int arrayIndex = -1,
                                                    UaDataTypeDictionary* dictionary = nullptr) const;

    /// BadOutOfRange for an unknown field, BadTypeMismatch when type or rank is not the field's.
    UaStatusCode setField(int index, const UaVariant& value);
    UaStatusCode setField(const UaString& fieldName, const UaVariant& value);
    UaStatusCode setField(int index, const UaGenericStructureValue& value);
    /// Makes an optional field absent; BadNotSupported for one that is not optional.
    UaStatusCode unsetField(int index);

private:
    UaSharedPtr<UaGenericStructureValuePrivate> d;
};
