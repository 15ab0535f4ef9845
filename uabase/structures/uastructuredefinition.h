// What a structure consists of, OPC 10000-3, 8.47 and 8.48.
#pragma once

#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <memory>
#include <span>

namespace uabase {
struct StructureLayout;
}

class UaStructureDefinition;
class UaStructureFieldPrivate;
class UaStructureDefinitionPrivate;

/// One field. Copies share the content.
class UaStructureField
{
public:
    UaStructureField() noexcept;
    UaStructureField(const UaString& name, const UaNodeId& dataTypeId, OpcUa_BuiltInType builtInType,
                     OpcUa_Int32 valueRank = -1, bool isOptional = false);
    UaStructureField(const UaStructureField&) noexcept;
    UaStructureField& operator=(const UaStructureField&) noexcept;
    ~UaStructureField();

    bool isNull() const noexcept { return !d; }
    UaString name() const noexcept;
    UaLocalizedText description() const noexcept;
    UaNodeId dataTypeId() const noexcept;
    /// The wire type: Int32 for enumerations, ExtensionObject for structures, Variant for abstract types.
    OpcUa_BuiltInType builtInType() const noexcept;
    OpcUa_Int32 valueRank() const noexcept; ///< -1 scalar, 1 array, above 1 matrix
    bool isArray() const noexcept { return valueRank() >= 1; }
    UaArray<OpcUa_UInt32> arrayDimensions() const noexcept;
    OpcUa_UInt32 maxStringLength() const noexcept;
    bool isOptional() const noexcept;
    /// Values of derived types are allowed: structures travel as ExtensionObject, others as Variant.
    bool allowSubTypes() const noexcept;
    /// The bytes lie in the body of the parent without a header of their own.
    bool isNestedStructure() const noexcept;
    /// Definitions of the field's type; null where they do not apply or are to be looked up by dataTypeId.
    UaStructureDefinition structureDefinition() const noexcept;
    UaEnumDefinition enumDefinition() const noexcept;
    UaOptionSetDefinition optionSetDefinition() const noexcept;

    void setName(const UaString& name);
    void setDescription(const UaLocalizedText& description);
    void setDataTypeId(const UaNodeId& dataTypeId);
    void setArrayDimensions(const UaArray<OpcUa_UInt32>& dimensions);
    void setMaxStringLength(OpcUa_UInt32 maxStringLength);
    void setIsOptional(bool isOptional);
    void setAllowSubTypes(bool allowSubTypes);
    /// Never one of a type that contains the field.
    void setStructureDefinition(const UaStructureDefinition& definition);
    void setEnumDefinition(const UaEnumDefinition& definition);
    void setOptionSetDefinition(const UaOptionSetDefinition& definition);

private:
    UaSharedPtr<UaStructureFieldPrivate> d;
};

/// A structure or union. Null until it has an id, a name or a field. Copies share the fields.
class UaStructureDefinition
{
public:
    UaStructureDefinition() noexcept;
    UaStructureDefinition(const UaString& name, const UaNodeId& dataTypeId, const UaNodeId& binaryEncodingId);
    UaStructureDefinition(const UaStructureDefinition&) noexcept;
    UaStructureDefinition& operator=(const UaStructureDefinition&) noexcept;
    ~UaStructureDefinition();

    bool isNull() const noexcept { return !d; }
    UaString name() const noexcept;
    UaNodeId dataTypeId() const noexcept;
    UaNodeId binaryEncodingId() const noexcept;
    UaNodeId baseId() const noexcept; ///< data type that it derives from
    bool isUnion() const noexcept;
    bool isOptionSet() const noexcept; ///< the structured form of an option set: value and valid bits
    bool hasOptionalFields() const noexcept;

    int fieldCount() const noexcept;                     ///< inherited fields come first
    UaStructureField field(int index) const noexcept;    ///< null when out of range
    int fieldIndex(const UaString& name) const noexcept; ///< -1 when there is none

    void setName(const UaString& name);
    void setDataTypeId(const UaNodeId& dataTypeId);
    void setBinaryEncodingId(const UaNodeId& binaryEncodingId);
    void setBaseId(const UaNodeId& baseId);
    void setUnion(bool isUnion);
    void setOptionSet(bool isOptionSet);
    /// The body starts with a mask; set by itself when an optional field is added.
    void setHasOptionalFields(bool hasOptionalFields);
    void addField(const UaStructureField& field);
    void setField(int index, const UaStructureField& field);

    /// The same without a copy; index must be in range, and the definition not be changed meanwhile.
    const UaStructureField& fieldAt(int index) const noexcept;
    /// The built-in types of the fields when all are scalars of fixed size that are always there, else empty:
    /// such bodies are decoded in one go.
    std::span<const OpcUa_Byte> plainTypes() const noexcept;
    /// How bodies lie when not by the standard's rules; else null. For the codec.
    const uabase::StructureLayout* layout() const noexcept;
    void setLayout(std::shared_ptr<const uabase::StructureLayout> layout);

private:
    UaSharedPtr<UaStructureDefinitionPrivate> d;
};
