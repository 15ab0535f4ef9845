// Variants, extension objects and structures: what can hold each other.
#include <stack/encoding/lookup.h>
#include <stack/encoding/nodeidformat.h>
#include <stack/encoding/reader.h>
#include <stack/encoding/values.h>

#include <cstring>
#include <span>

namespace opcua {

namespace {

constexpr OpcUa_Byte arrayFlag = 0x80;
constexpr OpcUa_Byte dimensionsFlag = 0x40;
constexpr OpcUa_Byte typeMask = 0x3F;
constexpr OpcUa_Byte lastReservedType = 31;

// Dimensions fit when their product is the number of elements. It stops before it can overflow.
bool dimensionsFit(std::span<const OpcUa_Int32> dimensions, OpcUa_Int32 length)
{
    OpcUa_Int64 product = 1;
    bool empty = false;
    for (const OpcUa_Int32 dimension : dimensions) {
        if (dimension < 0)
            return false;
        empty = empty || dimension == 0;
        if (!empty && (product *= dimension) > length)
            return false;
    }
    return (empty ? 0 : product) == length;
}

const OpcUa_EncodeableType* typeOf(const OpcUa_ExpandedNodeId& id)
{
    const bool standard =
        id.NodeId.NamespaceIndex == 0 && id.NamespaceUri.Data == nullptr && id.ServerIndex == 0;
    if (!standard || id.NodeId.IdentifierType != OpcUa_IdentifierType_Numeric)
        return nullptr;
    return findTypeByBinaryId(id.NodeId.Identifier.Numeric);
}

} // namespace

// Elements that stand one level deeper than what holds them.
bool Reader::nested(ElementType type, size_t count, void*& data)
{
    if (!type.canNest())
        return elements(type, count, data);
    return enter() && leave(elements(type, count, data));
}

// ---- variants

bool Reader::variant(OpcUa_Variant& value)
{
    initialize(value);
    OpcUa_Byte encoding = 0;
    if (!fixed(encoding))
        return false;
    auto type = static_cast<OpcUa_Byte>(encoding & typeMask);
    if (type > lastReservedType)
        return fail(OpcUa_BadDecodingError);
    if (type > OpcUaType_DiagnosticInfo)
        type = OpcUaType_ByteString; // reserved for later versions, which encode them so
    if ((encoding & arrayFlag) != 0)
        return variantArray(type, (encoding & dimensionsFlag) != 0, value);
    return (encoding & dimensionsFlag) == 0 ? variantScalar(type, value) : fail(OpcUa_BadDecodingError);
}

bool Reader::variantScalar(OpcUa_Byte type, OpcUa_Variant& value)
{
    if (type == OpcUaType_Null)
        return true;
    if (type == OpcUaType_Variant) // not allowed, yet means no more than what is inside
        return enter() && leave(variant(value));
    value.Datatype = type;
    const bool result =
        isHeldByPointer(type) ? variantBlock(type, value) : element(ElementType::of(type), &value.Value);
    if (!result)
        initialize(value);
    return result;
}

bool Reader::variantBlock(OpcUa_Byte type, OpcUa_Variant& value)
{
    void* block = nullptr;
    const bool result = nested(ElementType::of(type), 1, block);
    value.Value.NodeId = static_cast<OpcUa_NodeId*>(block); // the pointers of all types share one place
    return result;
}

bool Reader::variantArray(OpcUa_Byte type, bool hasDimensions, OpcUa_Variant& value)
{
    OpcUa_Int32 length = -1;
    if (type == OpcUaType_Null) // an array of nothing has no elements
        return fixed(length) && ((length <= 0 && !hasDimensions) || fail(OpcUa_BadDecodingError));
    const ElementType elementType = ElementType::of(type);
    if (!arrayLength(elementType.minimum(), length))
        return false;
    void* data = nullptr;
    if (length >= 0 && !nested(elementType, static_cast<size_t>(length), data))
        return false;
    value.Datatype = type;
    value.ArrayType = OpcUa_VariantArrayType_Array;
    value.Value.Array = {length, 0, nullptr, data};
    if (!hasDimensions || dimensions(value))
        return true;
    clear(value);
    return false;
}

// What does not fit the elements, or is one dimension only, leaves a plain array.
bool Reader::dimensions(OpcUa_Variant& value)
{
    OpcUa_Int32 count = -1;
    if (!arrayLength(sizeof(OpcUa_Int32), count) || count < 0)
        return OpcUa_IsGood(m_status);
    void* data = nullptr;
    const ElementType type = ElementType::of(OpcUaType_Int32);
    if (!elements(type, static_cast<size_t>(count), data))
        return false;
    auto* const sizes = static_cast<OpcUa_Int32*>(data);
    OpcUa_VariantArray& array = value.Value.Array;
    if (count < 2 || !dimensionsFit({sizes, static_cast<size_t>(count)}, array.Length)) {
        freeMemory(data);
        return true;
    }
    value.ArrayType = OpcUa_VariantArrayType_Matrix;
    array.NoOfDimensions = count;
    array.Dimensions = sizes;
    return true;
}

// ---- extension objects

bool Reader::extensionObject(OpcUa_ExtensionObject& value)
{
    initialize(value);
    if (expandedNodeId(value.TypeId) && extensionBody(value))
        return true;
    clear(value);
    return false;
}

bool Reader::extensionBody(OpcUa_ExtensionObject& value)
{
    OpcUa_Byte encoding = OpcUa_ExtensionObjectEncoding_None;
    if (!fixed(encoding))
        return false;
    if (encoding == OpcUa_ExtensionObjectEncoding_None)
        return true;
    if (encoding > OpcUa_ExtensionObjectEncoding_Xml)
        return fail(OpcUa_BadDecodingError);
    if (encoding == OpcUa_ExtensionObjectEncoding_Xml) {
        value.Encoding = encoding;
        return text(value.Body.Xml, m_limits.maxStringLength);
    }
    if (const OpcUa_EncodeableType* const type = typeOf(value.TypeId)) {
        OpcUa_Int32 length = -1;
        const OpcUa_Byte* const start = m_at;
        if (!textLength(length, m_limits.maxByteStringLength))
            return false;
        if (length >= 0 && knownBody(*type, length, value))
            return true;
        if (OpcUa_IsBad(m_status))
            return false;
        m_at = start;
    }
    value.Encoding = encoding;
    return byteString(value.Body.Binary);
}

// Reads within the body's own length and skips what is left of it. False with a good status when the body is
// not what its type says: then its bytes are kept.
bool Reader::knownBody(const OpcUa_EncodeableType& type, OpcUa_Int32 length, OpcUa_ExtensionObject& value)
{
    const size_t memoryBefore = m_memoryLeft;
    const OpcUa_Byte* const outerEnd = m_end;
    m_end = m_at + length;
    void* object = nullptr;
    const bool result = nested({OpcUa_FieldKind_Structure, &type}, 1, object);
    m_at = m_end;
    m_end = outerEnd;
    if (result) {
        value.Encoding = OpcUa_ExtensionObjectEncoding_EncodeableObject;
        value.Body.EncodeableObject.Object = object;
        value.Body.EncodeableObject.Type = &type;
    } else if (m_status == OpcUa_BadDecodingError) {
        m_status = OpcUa_Good;
        m_memoryLeft = memoryBefore;
    }
    return result;
}

// ---- structures

namespace {

// Reads a numeric node id, of which as many bytes are there as the longest takes; null for another.
inline const OpcUa_Byte* takeNumericNodeId(const OpcUa_Byte* at, OpcUa_NodeId& value)
{
    OpcUa_UInt16 medium = 0;
    value = OpcUa_NodeId{};
    switch (at[0]) {
    case NodeIdFormat::twoByteId:
        value.Identifier.Numeric = at[1];
        return at + 2;
    case NodeIdFormat::fourByteId:
        std::memcpy(&medium, at + 2, sizeof medium);
        value.NamespaceIndex = at[1];
        value.Identifier.Numeric = medium;
        return at + 4;
    case NodeIdFormat::numericId:
        std::memcpy(&value.NamespaceIndex, at + 1, sizeof value.NamespaceIndex);
        std::memcpy(&value.Identifier.Numeric, at + 3, sizeof value.Identifier.Numeric);
        return at + longestNumericNodeId;
    default:
        return nullptr;
    }
}

} // namespace

// A text that lies whole at this place and fits into the memory at hand; null for another, which leaves
// nothing behind. at lies within the message.
inline const OpcUa_Byte* Reader::plainText(const OpcUa_Byte* at, OpcUa_String& value)
{
    OpcUa_Int32 length = 0;
    if (static_cast<size_t>(m_end - at) < sizeof length)
        return nullptr;
    std::memcpy(&length, at, sizeof length);
    at += sizeof length;
    value = {-1, nullptr};
    if (length < 0)
        return at;
    const auto bytes = static_cast<size_t>(length);
    if (bytes > static_cast<size_t>(m_end - at) || bytes > m_limits.maxStringLength || bytes >= m_memoryLeft)
        return nullptr;
    auto* const memory = static_cast<char*>(m_texts.allocateAtHand(bytes + 1));
    if (memory == nullptr)
        return nullptr;
    m_memoryLeft -= bytes + 1;
    std::memcpy(memory, at, bytes);
    memory[bytes] = 0;
    value = {length, memory};
    return at + bytes;
}

// The usual forms of the usual fields, with one look at the bytes left for each. Null, with nothing read, for
// all else.
inline const OpcUa_Byte* Reader::plainField(const OpcUa_Byte* at, OpcUa_Byte kind, void* target)
{
    const auto bytesLeft = static_cast<size_t>(m_end - at);
    switch (kind) {
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_Float:
    case OpcUaType_StatusCode:
    case OpcUa_FieldKind_Enumeration:
        return plainNumber(at, *static_cast<OpcUa_UInt32*>(target));
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
        return plainNumber(at, *static_cast<OpcUa_UInt64*>(target));
    case OpcUaType_Boolean:
        if (bytesLeft == 0)
            return nullptr;
        *static_cast<OpcUa_Boolean*>(target) = *at != 0;
        return at + 1;
    case OpcUaType_NodeId:
        if (bytesLeft < longestNumericNodeId)
            return nullptr;
        return takeNumericNodeId(at, *static_cast<OpcUa_NodeId*>(target));
    case OpcUaType_ExpandedNodeId: {
        if (bytesLeft < longestNumericNodeId)
            return nullptr;
        auto& value = *static_cast<OpcUa_ExpandedNodeId*>(target);
        value.NamespaceUri = {-1, nullptr};
        value.ServerIndex = 0;
        return takeNumericNodeId(at, value.NodeId);
    }
    case OpcUaType_String:
        return plainText(at, *static_cast<OpcUa_String*>(target));
    case OpcUaType_QualifiedName: {
        if (bytesLeft < sizeof(OpcUa_UInt16))
            return nullptr;
        auto& value = *static_cast<OpcUa_QualifiedName*>(target);
        std::memcpy(&value.NamespaceIndex, at, sizeof value.NamespaceIndex);
        return plainText(at + sizeof value.NamespaceIndex, value.Name);
    }
    case OpcUaType_LocalizedText:
        return plainLocalizedText(at, *static_cast<OpcUa_LocalizedText*>(target));
    case OpcUaType_DataValue:
        return plainDataValue(at, *static_cast<OpcUa_DataValue*>(target));
    default:
        return nullptr;
    }
}

inline const OpcUa_Byte* Reader::plainLocalizedText(const OpcUa_Byte* at, OpcUa_LocalizedText& value)
{
    if (at == m_end)
        return nullptr;
    const OpcUa_Byte mask = *at++;
    value = {{-1, nullptr}, {-1, nullptr}};
    if ((mask & 0x01) != 0)
        at = plainText(at, value.Locale);
    if (at != nullptr && (mask & 0x02) != 0)
        at = plainText(at, value.Text);
    if (at == nullptr)
        freeMemory(value.Locale.Data);
    return at;
}

bool Reader::structure(const OpcUa_EncodeableType& type, void* object)
{
    if (type.IsUnion || type.HasOptionalFields)
        return prefixedStructure(type, object);
    if (type.FieldCount == 0)
        initializeStructure(type, object);
    const OpcUa_Byte* at = m_at; // in a register: one field need not wait until memory has the last one's end
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i) {
        const OpcUa_FieldDescriptor& descriptor = type.Fields[i];
        if (!descriptor.IsArray && !descriptor.IsPointer) {
            const OpcUa_Byte* const next =
                plainField(at, descriptor.Kind, elementAt(object, 1, descriptor.Offset));
            if (next != nullptr) {
                at = next;
                continue;
            }
        }
        m_at = at;
        if (!field(descriptor, object)) {
            initializeFields(type, i, object);
            clearStructure(type, object);
            return false;
        }
        at = m_at;
    }
    m_at = at;
    return true;
}

bool Reader::prefixedStructure(const OpcUa_EncodeableType& type, void* object)
{
    initializeStructure(type, object);
    OpcUa_UInt32 prefix = 0;
    if (!fixed(prefix))
        return false;
    const PresentFields present(type, prefix);
    if (!present.isValid(type))
        return fail(OpcUa_BadDecodingError);
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i) {
        if (!present.has(i) || field(type.Fields[i], object))
            continue;
        clearStructure(type, object); // the prefix is not set yet: a union has no member to free
        return false;
    }
    memberAt<OpcUa_UInt32>(object, 0) = prefix;
    return true;
}

bool Reader::field(const OpcUa_FieldDescriptor& descriptor, void* object)
{
    if (descriptor.IsArray || descriptor.IsPointer)
        return indirectField(descriptor, object);
    return element(ElementType::of(descriptor), elementAt(object, 1, descriptor.Offset));
}

bool Reader::indirectField(const OpcUa_FieldDescriptor& descriptor, void* object)
{
    const ElementType type = ElementType::of(descriptor);
    OpcUa_Int32 count = 1;
    void*& data = memberAt<void*>(object, descriptor.Offset);
    data = nullptr;
    if (descriptor.IsArray) {
        memberAt<OpcUa_Int32>(object, descriptor.LengthOffset) = 0;
        if (!arrayLength(type.minimum(), count) || count < 0)
            return OpcUa_IsGood(m_status);
    }
    const auto size = static_cast<size_t>(count);
    if (!(type.isStructure() ? nested(type, size, data) : elements(type, size, data)))
        return false;
    if (descriptor.IsArray)
        memberAt<OpcUa_Int32>(object, descriptor.LengthOffset) = count;
    return true;
}

} // namespace opcua
