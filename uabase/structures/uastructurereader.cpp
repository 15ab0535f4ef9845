// StructureReader of uastructurecodec_p.h: bodies in the form of OPC 10000-6, 5.2.6 to 5.2.8.
#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uastructurecodec_p.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaelementblock_p.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uavariant.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

namespace uabase {

namespace {

// Bytes that a value takes at least; a nested structure may take none.
std::size_t leastSize(OpcUa_BuiltInType type) noexcept
{
    switch (type) {
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
    case OpcUaType_NodeId:
    case OpcUaType_ExpandedNodeId:
        return 2;
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_Float:
    case OpcUaType_StatusCode:
    case OpcUaType_String:
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return 4;
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
    case OpcUaType_DateTime:
        return 8;
    case OpcUaType_Guid:
        return 16;
    case OpcUaType_QualifiedName:
        return 6;
    default:
        return 1;
    }
}

template <typename T>
T loaded(const OpcUa_Byte*& at) noexcept
{
    T number{};
    if constexpr (std::endian::native == std::endian::little)
        std::memcpy(&number, at, sizeof(T));
    else
        for (std::size_t i = 0; i < sizeof(T); ++i)
            number = static_cast<T>(number | static_cast<T>(T{at[i]} << 8 * i));
    at += sizeof(T);
    return number;
}

// A number of fixed size by its bits; signed ones and floating ones keep them.
void loadBits(OpcUa_Variant& value, OpcUa_Byte type, const OpcUa_Byte*& at) noexcept
{
    value.Datatype = type;
    switch (type) {
    case OpcUaType_Boolean:
        value.Value.Boolean = loaded<OpcUa_Byte>(at) != 0 ? OpcUa_True : OpcUa_False;
        break;
    case OpcUaType_SByte:
    case OpcUaType_Byte:
        value.Value.Byte = loaded<OpcUa_Byte>(at);
        break;
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
        value.Value.UInt16 = loaded<OpcUa_UInt16>(at);
        break;
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
    case OpcUaType_DateTime:
        value.Value.UInt64 = loaded<OpcUa_UInt64>(at);
        break;
    default:
        value.Value.UInt32 = loaded<OpcUa_UInt32>(at);
    }
}

} // namespace

OpcUa_StatusCode StructureReader::readUInt32(OpcUa_UInt32& value) noexcept
{
    value = 0;
    if (left() < 4)
        return OpcUa_BadDecodingError;
    for (unsigned i = 0; i < 4; ++i)
        value |= static_cast<OpcUa_UInt32>(m_bytes[m_position + i]) << 8 * i;
    m_position += 4;
    return OpcUa_Good;
}

OpcUa_StatusCode StructureReader::readLength(OpcUa_Int32& length) noexcept
{
    OpcUa_UInt32 bits = 0;
    const OpcUa_StatusCode status = readUInt32(bits);
    length = std::max<OpcUa_Int32>(static_cast<OpcUa_Int32>(bits), -1);
    return status;
}

OpcUa_StatusCode StructureReader::readDimensions(std::vector<OpcUa_Int32>& dimensions, OpcUa_Int32& length)
{
    OpcUa_Int32 count = 0;
    OpcUa_StatusCode status = readLength(count);
    if (OpcUa_IsGood(status) && count > 0 && static_cast<std::size_t>(count) > left() / 4)
        return OpcUa_BadDecodingError;
    OpcUa_Int64 product = count > 0 ? 1 : -1;
    for (OpcUa_Int32 i = 0; i < count && OpcUa_IsGood(status); ++i) {
        OpcUa_Int32 dimension = 0;
        status = readLength(dimension);
        dimensions.push_back(std::max<OpcUa_Int32>(dimension, 0));
        if (__builtin_mul_overflow(product, dimensions.back(), &product))
            return OpcUa_BadEncodingLimitsExceeded;
    }
    if (product > maxBodyArrayLength)
        return OpcUa_BadEncodingLimitsExceeded;
    length = static_cast<OpcUa_Int32>(product);
    return status;
}

OpcUa_StatusCode StructureReader::skipBody(const UaStructureDefinition& definition, int depth)
{
    OpcUa_UInt32 switchValue = 0;
    return definition.isUnion() ? readUnion(definition, switchValue, nullptr, depth)
                                : readStructure(definition, nullptr, depth);
}

OpcUa_StatusCode StructureReader::readNested(const UaStructureDefinition& nested,
                                             OpcUa_ExtensionObject* element, int depth)
{
    const std::size_t start = m_position;
    const OpcUa_StatusCode status = skipBody(nested, depth + 1);
    if (!OpcUa_IsGood(status) || !element)
        return status;
    const UaByteString body(m_bytes.subspan(start, m_position - start));
    return UaExtensionObject(UaExpandedNodeId(bodyTypeId(nested)), body).detach(element);
}

OpcUa_StatusCode StructureReader::readElement(OpcUa_BuiltInType type, const UaStructureDefinition& nested,
                                              void* element, int depth)
{
    if (!nested.isNull())
        return readNested(nested, static_cast<OpcUa_ExtensionObject*>(element), depth);
    const auto id = static_cast<OpcUa_Byte>(type);
    AnyBuiltIn skipped;
    void* value = element ? element : &skipped;
    std::size_t consumed = 0;
    const OpcUa_StatusCode status =
        OpcUa_BuiltInType_DecodeBinary(id, m_bytes.data() + m_position, left(), value, &consumed);
    if (OpcUa_IsGood(status))
        m_position += consumed;
    if (!element || !OpcUa_IsGood(status))
        OpcUa_BuiltInType_ClearArray(id, value, 1);
    return status;
}

OpcUa_StatusCode StructureReader::readElements(const UaStructureField& field,
                                               const UaStructureDefinition& nested, OpcUa_Int32 length,
                                               UaVariant* target, int depth)
{
    const OpcUa_BuiltInType type = field.builtInType();
    const auto count = static_cast<std::size_t>(std::max<OpcUa_Int32>(length, 0));
    if (length > maxBodyArrayLength)
        return OpcUa_BadEncodingLimitsExceeded;
    if (nested.isNull() && count > left() / leastSize(type))
        return OpcUa_BadDecodingError;
    ElementBlock block(type);
    for (std::size_t i = 0; i < count; ++i) {
        void* element = target ? block.next(count) : nullptr;
        if (target && !element)
            return OpcUa_BadOutOfMemory;
        if (const OpcUa_StatusCode status = readElement(type, nested, element, depth); !OpcUa_IsGood(status))
            return status;
        if (target)
            block.keep();
    }
    return target ? target->attachArray(type, length, block.release()) : OpcUa_Good;
}

OpcUa_StatusCode StructureReader::readField(const UaStructureField& field, UaVariant* target, int depth)
{
    UaStructureDefinition nested;
    if (field.isNestedStructure()) {
        nested = findDefinition(field, m_dictionary);
        if (nested.isNull())
            return OpcUa_BadDataTypeIdUnknown;
    }
    if (!isBuiltInType(field.builtInType()))
        return OpcUa_BadDataTypeIdUnknown;
    if (field.valueRank() < 0) {
        AnyBuiltIn element;
        const OpcUa_StatusCode status =
            readElement(field.builtInType(), nested, target ? &element : nullptr, depth);
        if (target && OpcUa_IsGood(status))
            *target = takeScalar(field.builtInType(), &element);
        return status;
    }
    OpcUa_Int32 length = -1;
    std::vector<OpcUa_Int32> dimensions;
    OpcUa_StatusCode status = field.valueRank() > 1 ? readDimensions(dimensions, length) : readLength(length);
    if (OpcUa_IsGood(status))
        status = readElements(field, nested, length, target, depth);
    if (OpcUa_IsGood(status) && target && !dimensions.empty())
        status = target->setDimensions(dimensions);
    return status;
}

// Scalars of fixed size one after the other, the usual content of structures.
OpcUa_StatusCode StructureReader::readPlain(std::span<const OpcUa_Byte> types, FieldValues* target)
{
    std::size_t size = 0;
    for (const OpcUa_Byte type : types)
        size += leastSize(static_cast<OpcUa_BuiltInType>(type));
    if (left() < size)
        return OpcUa_BadDecodingError;
    const OpcUa_Byte* at = m_bytes.data() + m_position;
    m_position += size;
    if (!target)
        return OpcUa_Good;
    target->values.reserve(types.size());
    OpcUa_Variant value;
    OpcUa_Variant_Initialize(&value);
    for (const OpcUa_Byte type : types) {
        loadBits(value, type, at);
        target->values.emplace_back(UaPlain(), value);
    }
    return OpcUa_Good;
}

OpcUa_StatusCode StructureReader::readStructure(const UaStructureDefinition& definition, FieldValues* target,
                                                int depth)
{
    if (depth > maxNesting || !m_budget.take())
        return OpcUa_BadEncodingLimitsExceeded;
    if (const StructureLayout* layout = definition.layout())
        return readLayout(definition, *layout, target, depth);
    if (const std::span<const OpcUa_Byte> types = definition.plainTypes(); !types.empty())
        return readPlain(types, target);
    OpcUa_UInt32 mask = 0;
    OpcUa_StatusCode status = definition.hasOptionalFields() ? readUInt32(mask) : OpcUa_Good;
    unsigned optionalIndex = 0;
    for (int i = 0; i < definition.fieldCount() && OpcUa_IsGood(status); ++i) {
        const UaStructureField& field = definition.fieldAt(i);
        bool present = true;
        if (field.isOptional()) {
            if (optionalIndex >= 32)
                return OpcUa_BadEncodingLimitsExceeded;
            present = (mask >> optionalIndex & 1u) != 0;
            mask &= ~(1u << optionalIndex++);
        }
        UaVariant value;
        if (present)
            status = readField(field, target ? &value : nullptr, depth);
        if (target) {
            target->values.push_back(std::move(value));
            target->present.push_back(present);
        }
    }
    // a field that we do not know would shift all that follows
    return OpcUa_IsGood(status) && mask != 0 ? OpcUa_BadDecodingError : status;
}

OpcUa_StatusCode StructureReader::readUnion(const UaStructureDefinition& definition,
                                            OpcUa_UInt32& switchValue, UaVariant* target, int depth)
{
    if (depth > maxNesting || !m_budget.take())
        return OpcUa_BadEncodingLimitsExceeded;
    const OpcUa_StatusCode status = readUInt32(switchValue);
    if (!OpcUa_IsGood(status) || switchValue == 0)
        return status;
    if (switchValue > static_cast<OpcUa_UInt32>(definition.fieldCount()))
        return OpcUa_BadDecodingError;
    return readField(definition.field(static_cast<int>(switchValue) - 1), target, depth);
}

} // namespace uabase
