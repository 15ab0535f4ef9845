// Reader and writer of structure bodies by definition; OPC 10000-6, 5.2.5 to 5.2.8.
#pragma once

#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uastructurelayout_p.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uabase/values/uavariant_p.h>

#include <span>
#include <vector>

namespace uabase {

/// Elements of one array in a body.
constexpr OpcUa_Int32 maxBodyArrayLength = 4 * 1024 * 1024;

/// The definition of a field's structure: the field's own, one of the standard, the dictionary's; else null.
[[nodiscard]] UaStructureDefinition findDefinition(const UaStructureField& field,
                                                   UaDataTypeDictionary* dictionary);

/// The id that an ExtensionObject of this type carries: of the encoding, or of the data type when there is
/// none.
[[nodiscard]] UaNodeId bodyTypeId(const UaStructureDefinition& definition);

/// Whether value has the type id of the definition; one that names its namespace by URI cannot be told.
[[nodiscard]] bool isOfType(const UaExtensionObject& value, const UaStructureDefinition& definition);

/// The bytes of a value of the definition; empty when it has no body, as one without fields may come.
/// BadNotSupported for XML, BadDataTypeIdUnknown for another type, BadDecodingError.
[[nodiscard]] OpcUa_StatusCode bodyOf(const UaExtensionObject& value, const UaStructureDefinition& definition,
                                      UaByteString& body);

/// Whether a variant may stand in a field.
[[nodiscard]] bool fitsField(const UaStructureField& field, const UaVariant& value);

/// The fields of one structure.
struct FieldValues
{
    std::vector<UaVariant> values; ///< as many as the definition has fields
    std::vector<bool> present;     ///< as many, or none: all are there

    [[nodiscard]] bool has(std::size_t index) const noexcept { return present.empty() || present[index]; }
    void setPresent(std::size_t index, bool isPresent)
    {
        if (present.empty())
            present.assign(values.size(), true);
        present[index] = isPresent;
    }
};

/// Structures visited for one body. Definitions come from servers, too: without fields of their own, nested
/// ones multiply without a byte in the body.
class VisitBudget
{
public:
    explicit VisitBudget(std::size_t bytes) noexcept : m_left(4 * bytes + 10000) {}
    [[nodiscard]] bool take() noexcept { return m_left > 0 && m_left-- > 0; }

private:
    std::size_t m_left;
};

/// Statuses: Good, BadDecodingError, BadEncodingLimitsExceeded, BadDataTypeIdUnknown, BadOutOfMemory.
class StructureReader
{
public:
    StructureReader(std::span<const OpcUa_Byte> bytes, UaDataTypeDictionary* dictionary) noexcept
        : m_bytes(bytes), m_budget(bytes.size()), m_dictionary(dictionary)
    {
    }

    /// A null target skips.
    [[nodiscard]] OpcUa_StatusCode readStructure(const UaStructureDefinition& definition, FieldValues* target,
                                                 int depth = 0);
    [[nodiscard]] OpcUa_StatusCode readUnion(const UaStructureDefinition& definition,
                                             OpcUa_UInt32& switchValue, UaVariant* target, int depth = 0);
    bool atEnd() const noexcept { return m_position == m_bytes.size(); }

private:
    std::size_t left() const noexcept { return m_bytes.size() - m_position; }
    [[nodiscard]] OpcUa_StatusCode readUInt32(OpcUa_UInt32& value) noexcept;
    [[nodiscard]] OpcUa_StatusCode readLength(OpcUa_Int32& length) noexcept;
    [[nodiscard]] OpcUa_StatusCode readDimensions(std::vector<OpcUa_Int32>& dimensions, OpcUa_Int32& length);
    [[nodiscard]] OpcUa_StatusCode readField(const UaStructureField& field, UaVariant* target, int depth);
    [[nodiscard]] OpcUa_StatusCode readElements(const UaStructureField& field,
                                                const UaStructureDefinition& nested, OpcUa_Int32 length,
                                                UaVariant* target, int depth);
    [[nodiscard]] OpcUa_StatusCode readElement(OpcUa_BuiltInType type, const UaStructureDefinition& nested,
                                               void* element, int depth);
    [[nodiscard]] OpcUa_StatusCode readNested(const UaStructureDefinition& nested,
                                              OpcUa_ExtensionObject* element, int depth);
    [[nodiscard]] OpcUa_StatusCode readPlain(std::span<const OpcUa_Byte> types, FieldValues* target);
    [[nodiscard]] OpcUa_StatusCode skipBody(const UaStructureDefinition& definition, int depth);
    /// Bodies with a layout of their own: uastructurelayoutreader.cpp.
    [[nodiscard]] OpcUa_StatusCode readLayout(const UaStructureDefinition& definition,
                                              const StructureLayout& layout, FieldValues* target, int depth);
    [[nodiscard]] OpcUa_StatusCode readBits(unsigned count, OpcUa_UInt64& number) noexcept;
    [[nodiscard]] OpcUa_StatusCode readStep(const LayoutStep& step, const UaStructureField& field,
                                            OpcUa_Int64 length, UaVariant& value, int depth);
    [[nodiscard]] OpcUa_StatusCode readStepScalar(const LayoutStep& step, const UaStructureDefinition& nested,
                                                  void* element, int depth);
    [[nodiscard]] OpcUa_StatusCode readStepArray(const LayoutStep& step, const UaStructureDefinition& nested,
                                                 OpcUa_Int64 length, UaVariant& value, int depth);
    [[nodiscard]] OpcUa_StatusCode readCharacters(const LayoutStep& step, OpcUa_Int64 length,
                                                  UaVariant& value);
    std::size_t bytesToTerminator(const LayoutStep& step) const noexcept;

    std::span<const OpcUa_Byte> m_bytes;
    std::size_t m_position = 0;
    unsigned m_bit = 0; ///< bits taken of the byte at m_position
    VisitBudget m_budget;
    UaDataTypeDictionary* m_dictionary;
};

/// Statuses: Good, BadEncodingError, BadEncodingLimitsExceeded, BadDataTypeIdUnknown, BadOutOfMemory.
class StructureWriter
{
public:
    explicit StructureWriter(UaDataTypeDictionary* dictionary) noexcept
        : m_budget(0), m_dictionary(dictionary)
    {
    }

    [[nodiscard]] OpcUa_StatusCode writeStructure(const UaStructureDefinition& definition,
                                                  const FieldValues& fields, int depth = 0);
    [[nodiscard]] OpcUa_StatusCode writeUnion(const UaStructureDefinition& definition,
                                              OpcUa_UInt32 switchValue, const UaVariant& value,
                                              int depth = 0);
    /// All fields with the null value of their type, optional ones absent; of a union no field.
    [[nodiscard]] OpcUa_StatusCode writeDefaults(const UaStructureDefinition& definition, int depth = 0);
    UaByteString bytes() const noexcept { return UaByteString(std::span<const OpcUa_Byte>(m_bytes)); }

private:
    void writeUInt32(OpcUa_UInt32 value);
    void writeInt32(OpcUa_Int32 value) { writeUInt32(static_cast<OpcUa_UInt32>(value)); }
    [[nodiscard]] OpcUa_StatusCode writeField(const UaStructureField& field, const UaVariant& value,
                                              int depth);
    [[nodiscard]] OpcUa_StatusCode writeArray(const UaStructureField& field, const UaVariant& value,
                                              int depth);
    [[nodiscard]] OpcUa_StatusCode writeElement(const UaStructureField& field, const void* element,
                                                int depth);
    [[nodiscard]] OpcUa_StatusCode writeNested(const UaStructureField& field,
                                               const OpcUa_ExtensionObject& value, int depth);
    /// Bodies with a layout of their own: uastructurelayoutwriter.cpp.
    struct LayoutImage;
    [[nodiscard]] OpcUa_StatusCode writeLayout(const UaStructureDefinition& definition,
                                               const StructureLayout& layout, const FieldValues& fields,
                                               int depth);
    [[nodiscard]] OpcUa_StatusCode writeContents(const UaStructureDefinition& definition,
                                                 const StructureLayout& layout, const FieldValues& fields,
                                                 LayoutImage& image, int depth);
    [[nodiscard]] OpcUa_StatusCode writeStep(const LayoutStep& step, const UaStructureField& field,
                                             const UaVariant& value, int depth);
    [[nodiscard]] OpcUa_StatusCode writeStepElement(const LayoutStep& step, const UaStructureField& field,
                                                    const void* element, int depth);
    [[nodiscard]] OpcUa_StatusCode writeStepArray(const LayoutStep& step, const UaStructureField& field,
                                                  const UaVariant& value, int depth);
    [[nodiscard]] OpcUa_StatusCode writeCharacters(const LayoutStep& step, const UaVariant& value);
    void writeBits(unsigned count, OpcUa_UInt64 number);

    std::vector<OpcUa_Byte> m_bytes;
    unsigned m_bit = 0; ///< bits written of the last byte; 0: it is full
    VisitBudget m_budget;
    UaDataTypeDictionary* m_dictionary;
};

} // namespace uabase
