#include <uabase/values/uaarray.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant_p.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

namespace uabase {

namespace {

// Where the C variant keeps a scalar of the type: in itself or in a block of its own.
bool liesInside(OpcUa_Byte type) noexcept
{
    switch (type) {
    case OpcUaType_NodeId:
    case OpcUaType_ExpandedNodeId:
    case OpcUaType_QualifiedName:
    case OpcUaType_LocalizedText:
    case OpcUaType_ExtensionObject:
    case OpcUaType_DataValue:
    case OpcUaType_DiagnosticInfo:
        return false;
    default:
        return true;
    }
}

bool isElementOf(OpcUa_BuiltInType type, const UaVariant& value) noexcept
{
    return type == OpcUaType_Variant || (value.isScalar() && value.type() == type);
}

// Deep copy of one scalar as an element of an array of the type (raw memory).
OpcUa_StatusCode copyElement(OpcUa_BuiltInType type, const UaVariant& value, void* destination) noexcept
{
    if (type == OpcUaType_Variant)
        return value.copyTo(static_cast<OpcUa_Variant*>(destination));
    const void* source = scalarData(*value.get());
    if (!source)
        return OpcUa_BadTypeMismatch;
    return OpcUa_BuiltInType_CopyArray(static_cast<OpcUa_Byte>(type), source, destination, 1);
}

} // namespace

UaVariant takeScalar(OpcUa_BuiltInType type, void* element) noexcept
{
    UaVariant result;
    if (type == OpcUaType_Variant) {
        result.attach(static_cast<OpcUa_Variant*>(element));
        return result;
    }
    const std::size_t size = OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(type));
    if (size == 0)
        return result;
    OpcUa_Variant value;
    OpcUa_Variant_Initialize(&value);
    void* place = &value.Value;
    if (!liesInside(static_cast<OpcUa_Byte>(type))) {
        place = OpcUa_Memory_Alloc(size);
        value.Value.NodeId = static_cast<OpcUa_NodeId*>(place);
    }
    if (!place) {
        OpcUa_BuiltInType_ClearArray(static_cast<OpcUa_Byte>(type), element, 1);
        return result;
    }
    std::memcpy(place, element, size);
    OpcUa_BuiltInType_InitializeArray(static_cast<OpcUa_Byte>(type), element, 1);
    value.Datatype = static_cast<OpcUa_Byte>(type);
    result.attach(&value);
    return result;
}

UaVariant copyScalar(OpcUa_BuiltInType type, const void* element) noexcept
{
    AnyBuiltIn copy;
    if (!isBuiltInType(type) ||
        !OpcUa_IsGood(OpcUa_BuiltInType_CopyArray(static_cast<OpcUa_Byte>(type), element, &copy, 1)))
        return {};
    return takeScalar(type, &copy);
}

UaVariant nullScalar(OpcUa_BuiltInType type) noexcept
{
    AnyBuiltIn value;
    if (!isBuiltInType(type))
        return {};
    OpcUa_BuiltInType_InitializeArray(static_cast<OpcUa_Byte>(type), &value, 1);
    return takeScalar(type, &value);
}

UaVariant nullArray(OpcUa_BuiltInType type) noexcept
{
    UaVariant array;
    static_cast<void>(array.attachArray(type, -1, nullptr)); // takes no memory
    return array;
}

const void* scalarData(const OpcUa_Variant& value) noexcept
{
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar || !isBuiltInType(value.Datatype) ||
        value.Datatype == OpcUaType_Variant)
        return nullptr;
    return liesInside(value.Datatype) ? static_cast<const void*>(&value.Value) : value.Value.NodeId;
}

ArrayBuilder::ArrayBuilder(OpcUa_BuiltInType type, std::size_t count) noexcept
    : m_type(type), m_size(OpcUa_BuiltInType_Size(static_cast<OpcUa_Byte>(type))),
      m_data(static_cast<unsigned char*>(OpcUa_Memory_AllocArray(count, m_size)))
{
}

ArrayBuilder::~ArrayBuilder()
{
    if (m_data)
        OpcUa_BuiltInType_ClearArray(static_cast<OpcUa_Byte>(m_type), m_data, m_count);
    OpcUa_Memory_Free(m_data);
}

OpcUa_StatusCode ArrayBuilder::add(const UaVariant& element) noexcept
{
    if (!m_data)
        return OpcUa_BadOutOfMemory;
    if (!isElementOf(m_type, element))
        return OpcUa_BadTypeMismatch;
    const OpcUa_StatusCode status = copyElement(m_type, element, m_data + m_count * m_size);
    m_count += OpcUa_IsGood(status) ? 1 : 0;
    return status;
}

OpcUa_StatusCode ArrayBuilder::finish(UaVariant& array) noexcept
{
    const auto length = static_cast<OpcUa_Int32>(std::exchange(m_count, 0));
    return array.attachArray(m_type, length, std::exchange(m_data, nullptr));
}

} // namespace uabase

using uabase::scalarData;
using uabase::takeScalar;

namespace {

// Deep copy of a C++ value into a scalar, which is the type's null value when out of memory.
template <typename C, typename Value>
UaVariant scalarOf(OpcUa_BuiltInType type, const Value& value) noexcept
{
    C copy;
    static_cast<void>(value.copyTo(&copy));
    return takeScalar(type, &copy);
}

// Whether the content of a null or empty value says nothing.
bool isEmptyScalar(OpcUa_Byte type, const void* data) noexcept
{
    switch (type) {
    case OpcUaType_String:
        return static_cast<const OpcUa_String*>(data)->Length <= 0;
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return static_cast<const OpcUa_ByteString*>(data)->Length <= 0;
    case OpcUaType_NodeId:
        return OpcUa_NodeId_IsNull(static_cast<const OpcUa_NodeId*>(data)) != 0;
    case OpcUaType_ExpandedNodeId:
        return UaExpandedNodeId(*static_cast<const OpcUa_ExpandedNodeId*>(data)).isNull();
    case OpcUaType_QualifiedName:
        return static_cast<const OpcUa_QualifiedName*>(data)->Name.Length <= 0;
    case OpcUaType_LocalizedText:
        return static_cast<const OpcUa_LocalizedText*>(data)->Text.Length <= 0;
    case OpcUaType_ExtensionObject:
        return UaExtensionObject(*static_cast<const OpcUa_ExtensionObject*>(data)).isNull();
    default:
        return false;
    }
}

unsigned char* elementAt(const OpcUa_Variant& value, OpcUa_UInt32 index) noexcept
{
    return static_cast<unsigned char*>(value.Value.Array.Data) +
           index * OpcUa_BuiltInType_Size(value.Datatype);
}

} // namespace

// ---- shape

bool UaVariant::isEmpty() const noexcept
{
    if (isNull())
        return true;
    if (!isScalar())
        return elementCount() == 0;
    const void* data = scalarData(*m_value.get());
    return !data || isEmptyScalar(m_value->Datatype, data);
}

OpcUa_Int32 UaVariant::arraySize() const noexcept
{
    return isScalar() || m_value->Value.Array.Length < 0 ? -1 : m_value->Value.Array.Length;
}

OpcUa_UInt32 UaVariant::elementCount() const noexcept
{
    return elements() ? static_cast<OpcUa_UInt32>(std::max<OpcUa_Int32>(arraySize(), 0)) : 0;
}

UaArray<OpcUa_Int32> UaVariant::dimensions() const noexcept
{
    if (isMatrix())
        return {m_value->Value.Array.NoOfDimensions, m_value->Value.Array.Dimensions};
    const OpcUa_Int32 length = arraySize();
    return length < 0 ? UaArray<OpcUa_Int32>() : UaArray<OpcUa_Int32>(1, &length);
}

const void* UaVariant::elements() const noexcept
{
    return isScalar() ? nullptr : m_value->Value.Array.Data;
}

UaVariant UaVariant::at(OpcUa_UInt32 index) const noexcept
{
    if (index >= elementCount())
        return {};
    return uabase::copyScalar(type(), elementAt(*m_value.get(), index));
}

// ---- scalars

void UaVariant::setBool(bool value) noexcept
{
    OpcUa_Boolean boolean = value ? OpcUa_True : OpcUa_False;
    *this = takeScalar(OpcUaType_Boolean, &boolean);
}

// clang-format off
void UaVariant::setSByte(OpcUa_SByte value) noexcept { *this = takeScalar(OpcUaType_SByte, &value); }
void UaVariant::setByte(OpcUa_Byte value) noexcept { *this = takeScalar(OpcUaType_Byte, &value); }
void UaVariant::setInt16(OpcUa_Int16 value) noexcept { *this = takeScalar(OpcUaType_Int16, &value); }
void UaVariant::setUInt16(OpcUa_UInt16 value) noexcept { *this = takeScalar(OpcUaType_UInt16, &value); }
void UaVariant::setInt32(OpcUa_Int32 value) noexcept { *this = takeScalar(OpcUaType_Int32, &value); }
void UaVariant::setUInt32(OpcUa_UInt32 value) noexcept { *this = takeScalar(OpcUaType_UInt32, &value); }
void UaVariant::setInt64(OpcUa_Int64 value) noexcept { *this = takeScalar(OpcUaType_Int64, &value); }
void UaVariant::setUInt64(OpcUa_UInt64 value) noexcept { *this = takeScalar(OpcUaType_UInt64, &value); }
void UaVariant::setFloat(OpcUa_Float value) noexcept { *this = takeScalar(OpcUaType_Float, &value); }
void UaVariant::setDouble(OpcUa_Double value) noexcept { *this = takeScalar(OpcUaType_Double, &value); }
void UaVariant::setString(const UaString& value) noexcept { *this = scalarOf<OpcUa_String>(OpcUaType_String, value); }
void UaVariant::setGuid(const UaGuid& value) noexcept { *this = scalarOf<OpcUa_Guid>(OpcUaType_Guid, value); }
void UaVariant::setByteString(const UaByteString& value) noexcept { *this = scalarOf<OpcUa_ByteString>(OpcUaType_ByteString, value); }
void UaVariant::setXmlElement(const UaByteString& value) noexcept { *this = scalarOf<OpcUa_ByteString>(OpcUaType_XmlElement, value); }
void UaVariant::setNodeId(const UaNodeId& value) noexcept { *this = scalarOf<OpcUa_NodeId>(OpcUaType_NodeId, value); }
void UaVariant::setExpandedNodeId(const UaExpandedNodeId& value) noexcept { *this = scalarOf<OpcUa_ExpandedNodeId>(OpcUaType_ExpandedNodeId, value); }
void UaVariant::setQualifiedName(const UaQualifiedName& value) noexcept { *this = scalarOf<OpcUa_QualifiedName>(OpcUaType_QualifiedName, value); }
void UaVariant::setLocalizedText(const UaLocalizedText& value) noexcept { *this = scalarOf<OpcUa_LocalizedText>(OpcUaType_LocalizedText, value); }
void UaVariant::setExtensionObject(const UaExtensionObject& value) noexcept { *this = scalarOf<OpcUa_ExtensionObject>(OpcUaType_ExtensionObject, value); }
void UaVariant::setDataValue(const UaDataValue& value) noexcept { *this = scalarOf<OpcUa_DataValue>(OpcUaType_DataValue, value); }
void UaVariant::setDiagnosticInfo(const UaDiagnosticInfo& value) noexcept { *this = scalarOf<OpcUa_DiagnosticInfo>(OpcUaType_DiagnosticInfo, value); }
// clang-format on

void UaVariant::setDateTime(const UaDateTime& value) noexcept
{
    OpcUa_DateTime ticks = value.value();
    *this = takeScalar(OpcUaType_DateTime, &ticks);
}

void UaVariant::setStatusCode(const UaStatusCode& value) noexcept
{
    OpcUa_StatusCode code = value.code();
    *this = takeScalar(OpcUaType_StatusCode, &code);
}

// ---- arrays

OpcUa_StatusCode UaVariant::setArray(OpcUa_BuiltInType type, OpcUa_Int32 length,
                                     const void* elements) noexcept
{
    clear();
    if (!uabase::isBuiltInType(type))
        return OpcUa_BadInvalidArgument;
    if (length <= 0 || !elements)
        return attachArray(type, length, nullptr);
    const auto count = static_cast<std::size_t>(length);
    const auto id = static_cast<OpcUa_Byte>(type);
    void* block = OpcUa_Memory_AllocArray(count, OpcUa_BuiltInType_Size(id));
    OpcUa_StatusCode status = OpcUa_BadOutOfMemory;
    if (block)
        status = OpcUa_BuiltInType_CopyArray(id, elements, block, count);
    if (OpcUa_IsGood(status))
        return attachArray(type, length, block);
    OpcUa_Memory_Free(block);
    return status;
}

OpcUa_StatusCode UaVariant::attachArray(OpcUa_BuiltInType type, OpcUa_Int32 length, void* elements) noexcept
{
    clear();
    if (!uabase::isBuiltInType(type)) {
        OpcUa_Memory_Free(elements);
        return OpcUa_BadInvalidArgument;
    }
    if (length <= 0) {
        OpcUa_Memory_Free(elements);
        elements = nullptr;
    }
    OpcUa_Variant value;
    OpcUa_Variant_Initialize(&value);
    value.Datatype = static_cast<OpcUa_Byte>(type);
    value.ArrayType = OpcUa_VariantArrayType_Array;
    value.Value.Array.Length = length < 0 ? -1 : (elements ? length : 0);
    value.Value.Array.NoOfDimensions = 0;
    value.Value.Array.Dimensions = nullptr;
    value.Value.Array.Data = elements;
    m_value.attach(&value);
    return OpcUa_Good;
}

OpcUa_StatusCode UaVariant::setArray(OpcUa_BuiltInType type, std::span<const UaVariant> elements) noexcept
{
    clear();
    if (!uabase::isBuiltInType(type) || elements.size() > INT32_MAX)
        return OpcUa_BadInvalidArgument;
    uabase::ArrayBuilder builder(type, elements.size());
    for (const UaVariant& element : elements)
        if (const OpcUa_StatusCode status = builder.add(element); !OpcUa_IsGood(status))
            return status;
    return builder.finish(*this);
}

OpcUa_StatusCode UaVariant::setDimensions(std::span<const OpcUa_Int32> dimensions) noexcept
{
    OpcUa_Int64 product = dimensions.empty() ? -1 : 1;
    for (const OpcUa_Int32 dimension : dimensions)
        if (dimension < 0 || __builtin_mul_overflow(product, dimension, &product))
            return OpcUa_BadInvalidArgument;
    if (isScalar() || product != arraySize())
        return OpcUa_BadInvalidArgument;
    UaArray<OpcUa_Int32> copy(static_cast<OpcUa_Int32>(dimensions.size()), dimensions.data());
    OpcUa_Variant value;
    if (copy.length() != dimensions.size() || !OpcUa_IsGood(m_value.detach(&value)))
        return OpcUa_BadOutOfMemory;
    OpcUa_Memory_Free(value.Value.Array.Dimensions);
    value.Value.Array.Dimensions = nullptr;
    value.Value.Array.NoOfDimensions = 0;
    value.ArrayType = OpcUa_VariantArrayType_Array;
    if (copy.length() > 1) {
        value.ArrayType = OpcUa_VariantArrayType_Matrix;
        copy.detach(&value.Value.Array.NoOfDimensions, &value.Value.Array.Dimensions);
    }
    m_value.attach(&value);
    return OpcUa_Good;
}

OpcUa_StatusCode UaVariant::setAt(OpcUa_UInt32 index, const UaVariant& element) noexcept
{
    if (index >= elementCount())
        return OpcUa_BadIndexRangeInvalid;
    UaVariant single;
    OpcUa_StatusCode status = single.setArray(type(), std::span<const UaVariant>(&element, 1));
    OpcUa_Variant replacement;
    if (OpcUa_IsGood(status))
        status = single.detach(&replacement);
    if (!OpcUa_IsGood(status))
        return status;
    OpcUa_Variant value;
    status = m_value.detach(&value);
    if (!OpcUa_IsGood(status)) {
        OpcUa_Variant_Clear(&replacement);
        return status;
    }
    // the two elements change places
    unsigned char* place = elementAt(value, index);
    std::swap_ranges(place, place + OpcUa_BuiltInType_Size(value.Datatype), elementAt(replacement, 0));
    OpcUa_Variant_Clear(&replacement);
    m_value.attach(&value);
    return OpcUa_Good;
}
