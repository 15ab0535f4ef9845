#include <opcua/opcua_encodeable.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uastructurecodec_p.h>

#include <algorithm>

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

// Elements that are decoded one after the other; memory grows with what was there to decode, not with the
// length that a body claims.
class ElementBlock
{
public:
    explicit ElementBlock(OpcUa_BuiltInType type) noexcept
        : m_type(static_cast<OpcUa_Byte>(type)), m_size(OpcUa_BuiltInType_Size(m_type))
    {
    }
    ElementBlock(const ElementBlock&) = delete;
    ElementBlock& operator=(const ElementBlock&) = delete;
    ~ElementBlock()
    {
        if (m_data)
            OpcUa_BuiltInType_ClearArray(m_type, m_data, m_count);
        OpcUa_Memory_Free(m_data);
    }
    // Room for the next element; null when out of memory.
    void* next(std::size_t expected) noexcept
    {
        if (m_count == m_capacity && !grow(std::min(std::max<std::size_t>(m_capacity * 2, 256), expected)))
            return nullptr;
        return m_data + m_count * m_size;
    }
    void keep() noexcept { ++m_count; }
    void* release() noexcept
    {
        m_count = 0;
        return std::exchange(m_data, nullptr);
    }

private:
    bool grow(std::size_t capacity) noexcept
    {
        auto* data = static_cast<unsigned char*>(OpcUa_Memory_AllocArray(capacity, m_size));
        if (!data)
            return false;
        if (m_data)
            std::memcpy(data, m_data, m_count * m_size);
        OpcUa_Memory_Free(m_data);
        m_data = data;
        m_capacity = capacity;
        return true;
    }
    OpcUa_Byte m_type;
    std::size_t m_size;
    unsigned char* m_data = nullptr;
    std::size_t m_count = 0;
    std::size_t m_capacity = 0;
};

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

OpcUa_StatusCode StructureReader::readStructure(const UaStructureDefinition& definition, FieldValues* target,
                                                int depth)
{
    if (depth > maxNesting || !m_budget.take())
        return OpcUa_BadEncodingLimitsExceeded;
    OpcUa_UInt32 mask = 0;
    OpcUa_StatusCode status = definition.hasOptionalFields() ? readUInt32(mask) : OpcUa_Good;
    unsigned optionalIndex = 0;
    for (int i = 0; i < definition.fieldCount() && OpcUa_IsGood(status); ++i) {
        const UaStructureField field = definition.field(i);
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
