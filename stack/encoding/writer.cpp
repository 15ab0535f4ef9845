#include <stack/encoding/writer.h>

#include <stack/encoding/nodeidformat.h>
#include <stack/encoding/values.h>

#include <algorithm>

namespace opcua {

Writer::Writer(ByteBuffer& buffer, const EncodingLimits& limits)
    : m_buffer(buffer), m_start(buffer.size()), m_at(buffer.data() + m_start),
      m_end(buffer.data() + buffer.capacity()), m_limits(limits)
{
}

OpcUa_StatusCode Writer::finish()
{
    m_buffer.setSize(OpcUa_IsGood(m_status) ? used() : m_start);
    return m_status;
}

void Writer::grow(size_t bytes)
{
    const size_t written = used();
    m_buffer.grow(written, bytes);
    m_at = m_buffer.data() + written;
    m_end = m_buffer.data() + m_buffer.capacity();
}

void Writer::bytes(const void* data, size_t size)
{
    if (size == 0)
        return;
    ensure(size);
    std::memcpy(m_at, data, size);
    m_at += size;
}

bool Writer::enter()
{
    if (m_depth >= m_limits.maxNestingLevel || OpcUa_IsBad(m_status)) {
        fail(OpcUa_BadEncodingLimitsExceeded);
        return false;
    }
    ++m_depth;
    return true;
}

// ---- texts and ids

template <typename Text>
void Writer::text(const Text& value, OpcUa_UInt32 limit)
{
    if (value.Data == nullptr || value.Length < 0)
        return fixed(OpcUa_Int32{-1});
    const auto size = static_cast<OpcUa_UInt32>(value.Length);
    if (size > limit)
        return fail(OpcUa_BadEncodingLimitsExceeded);
    ensure(sizeof value.Length + size);
    std::memcpy(m_at, &value.Length, sizeof value.Length);
    m_at += sizeof value.Length;
    if (size > 0)
        std::memcpy(m_at, value.Data, size);
    m_at += size;
}

namespace {

inline OpcUa_Byte* placeNumericNodeId(OpcUa_Byte* at, const OpcUa_NodeId& value, OpcUa_Byte flags)
{
    const OpcUa_UInt32 numeric = value.Identifier.Numeric;
    const OpcUa_UInt16 space = value.NamespaceIndex;
    // the short forms have no room for flags in every reader
    if (flags == 0 && space == 0 && numeric <= UINT8_MAX) {
        at[0] = NodeIdFormat::twoByteId;
        at[1] = static_cast<OpcUa_Byte>(numeric);
        return at + 2;
    }
    if (flags == 0 && space <= UINT8_MAX && numeric <= UINT16_MAX) {
        const auto number = static_cast<OpcUa_UInt16>(numeric);
        at[0] = NodeIdFormat::fourByteId;
        at[1] = static_cast<OpcUa_Byte>(space);
        std::memcpy(at + 2, &number, sizeof number);
        return at + 4;
    }
    at[0] = static_cast<OpcUa_Byte>(NodeIdFormat::numericId | flags);
    std::memcpy(at + 1, &space, sizeof space);
    std::memcpy(at + 3, &numeric, sizeof numeric);
    return at + longestNumericNodeId;
}

} // namespace

inline void Writer::nodeId(const OpcUa_NodeId& value, OpcUa_Byte flags)
{
    if (value.IdentifierType != OpcUa_IdentifierType_Numeric)
        return otherNodeId(value, flags);
    ensure(longestNumericNodeId);
    m_at = placeNumericNodeId(m_at, value, flags);
}

void Writer::otherNodeId(const OpcUa_NodeId& value, OpcUa_Byte flags)
{
    const auto start = [&](OpcUa_Byte format) {
        fixed(static_cast<OpcUa_Byte>(format | flags));
        fixed(value.NamespaceIndex);
    };
    switch (value.IdentifierType) {
    case OpcUa_IdentifierType_String:
        start(NodeIdFormat::stringId);
        return string(value.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        start(NodeIdFormat::guidId);
        return fixed(value.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        start(NodeIdFormat::byteStringId);
        return byteString(value.Identifier.ByteString);
    default:
        fail(OpcUa_BadEncodingError);
    }
}

void Writer::numericNodeId(OpcUa_UInt32 id)
{
    OpcUa_NodeId value{};
    value.Identifier.Numeric = id;
    nodeId(value, 0);
}

void Writer::expandedNodeId(const OpcUa_ExpandedNodeId& value)
{
    const bool hasUri = value.NamespaceUri.Data != nullptr && value.NamespaceUri.Length >= 0;
    const bool hasServer = value.ServerIndex != 0;
    nodeId(value.NodeId, static_cast<OpcUa_Byte>((hasUri ? NodeIdFormat::namespaceUriFlag : 0) |
                                                 (hasServer ? NodeIdFormat::serverIndexFlag : 0)));
    if (hasUri)
        string(value.NamespaceUri);
    if (hasServer)
        fixed(value.ServerIndex);
}

void Writer::localizedText(const OpcUa_LocalizedText& value)
{
    const bool hasLocale = value.Locale.Data != nullptr && value.Locale.Length >= 0;
    const bool hasText = value.Text.Data != nullptr && value.Text.Length >= 0;
    fixed(static_cast<OpcUa_Byte>((hasLocale ? 0x01 : 0) | (hasText ? 0x02 : 0)));
    if (hasLocale)
        string(value.Locale);
    if (hasText)
        string(value.Text);
}

// ---- values

void Writer::variant(const OpcUa_Variant& value)
{
    if (value.Datatype == OpcUaType_Null)
        return fixed(OpcUa_Byte{0});
    if (!isBuiltInType(value.Datatype))
        return fail(OpcUa_BadEncodingError);
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar)
        return variantArray(value);
    const void* const scalar = scalarOf(value);
    if (scalar == nullptr || value.Datatype == OpcUaType_Variant)
        return fail(OpcUa_BadEncodingError);
    const ElementType type = ElementType::of(value.Datatype);
    fixed(value.Datatype);
    if (!type.canNest())
        return element(type, scalar);
    if (enter()) {
        element(type, scalar);
        leave();
    }
}

void Writer::variantArray(const OpcUa_Variant& value)
{
    const OpcUa_VariantArray& array = value.Value.Array;
    const ElementType type = ElementType::of(value.Datatype);
    const bool matrix = value.ArrayType == OpcUa_VariantArrayType_Matrix;
    if (type.canNest() && !enter())
        return;
    fixed(static_cast<OpcUa_Byte>(value.Datatype | 0x80 | (matrix ? 0x40 : 0)));
    elements(type, array.Data, array.Length);
    if (matrix)
        elements(ElementType::of(OpcUaType_Int32), array.Dimensions, array.NoOfDimensions);
    if (type.canNest())
        leave();
}

namespace {

template <typename T>
inline OpcUa_Byte* place(OpcUa_Byte* at, bool present, const T& value)
{
    if (!present)
        return at;
    std::memcpy(at, &value, sizeof(T));
    return at + sizeof(T);
}

// A scalar number with its type; null when the value is none.
inline OpcUa_Byte* placeNumber(OpcUa_Byte* at, const OpcUa_Variant& value)
{
    if (value.ArrayType != OpcUa_VariantArrayType_Scalar)
        return nullptr;
    OpcUa_Byte* const number = place(at, true, value.Datatype);
    switch (numberSize(value.Datatype)) {
    case 8:
        return place(number, true, value.Value.UInt64);
    case 4:
        return place(number, true, value.Value.UInt32);
    case 2:
        return place(number, true, value.Value.UInt16);
    case 1:
        return place(number, true, value.Value.Byte);
    default:
        return nullptr;
    }
}

inline int presentParts(const OpcUa_DataValue& value)
{
    return (value.Value.Datatype != OpcUaType_Null ? 0x01 : 0) | (value.StatusCode != OpcUa_Good ? 0x02 : 0) |
           (value.SourceTimestamp != 0 ? 0x04 : 0) | (value.ServerTimestamp != 0 ? 0x08 : 0) |
           (value.SourcePicoseconds != 0 ? 0x10 : 0) | (value.ServerPicoseconds != 0 ? 0x20 : 0);
}

// All but mask and value.
inline OpcUa_Byte* placeStatusAndTimes(OpcUa_Byte* at, int mask, const OpcUa_DataValue& value)
{
    at = place(at, (mask & 0x02) != 0, value.StatusCode);
    at = place(at, (mask & 0x04) != 0, value.SourceTimestamp);
    at = place(at, (mask & 0x10) != 0, value.SourcePicoseconds);
    at = place(at, (mask & 0x08) != 0, value.ServerTimestamp);
    return place(at, (mask & 0x20) != 0, value.ServerPicoseconds);
}

// Writes a data value that holds a number or nothing, for which there is room; null when it is another one.
inline OpcUa_Byte* placePlainDataValue(OpcUa_Byte* at, const OpcUa_DataValue& value)
{
    const int mask = presentParts(value);
    *at++ = static_cast<OpcUa_Byte>(mask);
    if ((mask & 0x01) != 0)
        at = placeNumber(at, value.Value);
    return at != nullptr ? placeStatusAndTimes(at, mask, value) : nullptr;
}

} // namespace

// The usual data values: numbers. Stops at the first that is something else; answers how many there were.
size_t Writer::plainDataValues(const OpcUa_DataValue* values, size_t count)
{
    OpcUa_Byte* at = m_at;
    size_t done = 0;
    while (done < count) {
        if (static_cast<size_t>(m_end - at) < largestPlainDataValue) {
            m_at = at;
            grow(largestPlainDataValue);
            at = m_at;
        }
        OpcUa_Byte* const behind = placePlainDataValue(at, values[done]);
        if (behind == nullptr)
            break;
        at = behind;
        ++done;
    }
    m_at = at;
    return done;
}

void Writer::dataValue(const OpcUa_DataValue& value)
{
    if (plainDataValues(&value, 1) == 1)
        return;
    const int mask = presentParts(value);
    fixed(static_cast<OpcUa_Byte>(mask));
    variant(value.Value);
    ensure(largestPlainDataValue);
    m_at = placeStatusAndTimes(m_at, mask, value);
}

void Writer::diagnosticInfo(const OpcUa_DiagnosticInfo& value)
{
    const bool hasInfo = value.AdditionalInfo.Data != nullptr && value.AdditionalInfo.Length >= 0;
    const OpcUa_DiagnosticInfo* const inner = value.InnerDiagnosticInfo;
    const auto mask = (value.SymbolicId >= 0 ? 0x01 : 0) | (value.NamespaceUri >= 0 ? 0x02 : 0) |
                      (value.LocalizedText >= 0 ? 0x04 : 0) | (value.Locale >= 0 ? 0x08 : 0) |
                      (hasInfo ? 0x10 : 0) | (value.InnerStatusCode != OpcUa_Good ? 0x20 : 0) |
                      (inner != nullptr ? 0x40 : 0);
    fixed(static_cast<OpcUa_Byte>(mask));
    for (const OpcUa_Int32 index : {value.SymbolicId, value.NamespaceUri, value.Locale, value.LocalizedText})
        if (index >= 0)
            fixed(index);
    if (hasInfo)
        string(value.AdditionalInfo);
    if (value.InnerStatusCode != OpcUa_Good)
        fixed(value.InnerStatusCode);
    if (inner != nullptr && enter()) {
        diagnosticInfo(*inner);
        leave();
    }
}

void Writer::extensionObject(const OpcUa_ExtensionObject& value)
{
    if (value.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject)
        return encodeableBody(value);
    expandedNodeId(value.TypeId);
    fixed(value.Encoding);
    if (value.Encoding == OpcUa_ExtensionObjectEncoding_Binary)
        byteString(value.Body.Binary);
    else if (value.Encoding == OpcUa_ExtensionObjectEncoding_Xml)
        text(value.Body.Xml, m_limits.maxStringLength);
    else if (value.Encoding != OpcUa_ExtensionObjectEncoding_None)
        fail(OpcUa_BadEncodingError);
}

void Writer::encodeableBody(const OpcUa_ExtensionObject& value)
{
    const auto& [object, type] = value.Body.EncodeableObject;
    if (object == nullptr || type == nullptr || type->BinaryEncodingTypeId == 0)
        return fail(OpcUa_BadEncodingError);
    if (!enter())
        return;
    numericNodeId(type->BinaryEncodingTypeId);
    fixed(static_cast<OpcUa_Byte>(OpcUa_ExtensionObjectEncoding_Binary));
    const size_t lengthAt = used();
    fixed(OpcUa_Int32{0});
    structure(*type, object);
    leave();
    const size_t length = used() - lengthAt - sizeof(OpcUa_Int32);
    if (length > m_limits.maxByteStringLength)
        return fail(OpcUa_BadEncodingLimitsExceeded);
    const auto written = static_cast<OpcUa_Int32>(length);
    std::memcpy(m_buffer.data() + lengthAt, &written, sizeof written);
}

// ---- elements of any type

void Writer::element(ElementType type, const void* source)
{
    switch (type.kind) {
    case OpcUaType_Boolean:
        return fixed(*static_cast<const OpcUa_Byte*>(source));
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_StatusCode:
        return fixed(*static_cast<const OpcUa_UInt32*>(source));
    case OpcUaType_String:
        return string(*static_cast<const OpcUa_String*>(source));
    case OpcUaType_ByteString:
        return byteString(*static_cast<const OpcUa_ByteString*>(source));
    case OpcUaType_XmlElement:
        return text(*static_cast<const OpcUa_XmlElement*>(source), m_limits.maxStringLength);
    case OpcUaType_NodeId:
        return nodeId(*static_cast<const OpcUa_NodeId*>(source), 0);
    case OpcUaType_ExpandedNodeId:
        return expandedNodeId(*static_cast<const OpcUa_ExpandedNodeId*>(source));
    case OpcUaType_QualifiedName:
        fixed(static_cast<const OpcUa_QualifiedName*>(source)->NamespaceIndex);
        return string(static_cast<const OpcUa_QualifiedName*>(source)->Name);
    case OpcUaType_LocalizedText:
        return localizedText(*static_cast<const OpcUa_LocalizedText*>(source));
    case OpcUaType_ExtensionObject:
        return extensionObject(*static_cast<const OpcUa_ExtensionObject*>(source));
    case OpcUaType_DataValue:
        return dataValue(*static_cast<const OpcUa_DataValue*>(source));
    case OpcUaType_Variant:
        return variant(*static_cast<const OpcUa_Variant*>(source));
    case OpcUaType_DiagnosticInfo:
        return diagnosticInfo(*static_cast<const OpcUa_DiagnosticInfo*>(source));
    case OpcUa_FieldKind_Structure:
        return structure(*type.structure, source);
    default:
        bytes(source, type.size());
    }
}

// With the number of elements in front; null data is a null array.
void Writer::elements(ElementType type, const void* data, OpcUa_Int32 count)
{
    if (data == nullptr || count < 0)
        return fixed(OpcUa_Int32{-1});
    const auto size = static_cast<OpcUa_UInt32>(count);
    if (size > m_limits.maxArrayLength)
        return fail(OpcUa_BadEncodingLimitsExceeded);
    fixed(count);
    if (type.isFixed())
        return bytes(data, type.size() * size);
    size_t done = 0;
    if (type.kind == OpcUaType_DataValue)
        done = plainDataValues(static_cast<const OpcUa_DataValue*>(data), size);
    for (; done < size && OpcUa_IsGood(m_status); ++done)
        element(type, elementAt(data, type.size(), done));
}

namespace {

// Room that is made sure of before each field of a structure; what may take more is no plain field.
constexpr size_t largestPlainField = 160;
constexpr size_t longestPlainText = 64;

// Null for a text that is too long.
inline OpcUa_Byte* placeText(OpcUa_Byte* at, const OpcUa_String& value, size_t longest)
{
    const bool isNull = value.Data == nullptr || value.Length < 0;
    const OpcUa_Int32 length = isNull ? -1 : value.Length;
    const size_t size = isNull ? 0 : static_cast<size_t>(length);
    if (size > longest)
        return nullptr;
    at = place(at, true, length);
    if (size > 0)
        std::memcpy(at, value.Data, size);
    return at + size;
}

inline OpcUa_Byte* placeLocalizedText(OpcUa_Byte* at, const OpcUa_LocalizedText& value, size_t longest)
{
    const bool hasLocale = value.Locale.Data != nullptr && value.Locale.Length >= 0;
    const bool hasText = value.Text.Data != nullptr && value.Text.Length >= 0;
    *at++ = static_cast<OpcUa_Byte>((hasLocale ? 0x01 : 0) | (hasText ? 0x02 : 0));
    if (hasLocale)
        at = placeText(at, value.Locale, longest);
    if (hasText && at != nullptr)
        at = placeText(at, value.Text, longest);
    return at;
}

inline OpcUa_Byte* placePlainNodeId(OpcUa_Byte* at, const OpcUa_NodeId& value)
{
    return value.IdentifierType == OpcUa_IdentifierType_Numeric ? placeNumericNodeId(at, value, 0) : nullptr;
}

// The usual forms of the usual fields, for which there is room; null for all else.
inline OpcUa_Byte* placePlainField(OpcUa_Byte* at, OpcUa_Byte kind, const void* source, size_t longestText)
{
    switch (kind) {
    case OpcUaType_Boolean:
    case OpcUaType_Byte:
        return place(at, true, *static_cast<const OpcUa_Byte*>(source));
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_StatusCode:
    case OpcUaType_Float:
    case OpcUa_FieldKind_Enumeration:
        return place(at, true, *static_cast<const OpcUa_UInt32*>(source));
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
    case OpcUaType_DateTime:
        return place(at, true, *static_cast<const OpcUa_UInt64*>(source));
    case OpcUaType_String:
        return placeText(at, *static_cast<const OpcUa_String*>(source), longestText);
    case OpcUaType_NodeId:
        return placePlainNodeId(at, *static_cast<const OpcUa_NodeId*>(source));
    case OpcUaType_ExpandedNodeId: {
        const auto& value = *static_cast<const OpcUa_ExpandedNodeId*>(source);
        const bool plain = value.NamespaceUri.Data == nullptr && value.ServerIndex == 0;
        return plain ? placePlainNodeId(at, value.NodeId) : nullptr;
    }
    case OpcUaType_QualifiedName: {
        const auto& value = *static_cast<const OpcUa_QualifiedName*>(source);
        return placeText(place(at, true, value.NamespaceIndex), value.Name, longestText);
    }
    case OpcUaType_LocalizedText:
        return placeLocalizedText(at, *static_cast<const OpcUa_LocalizedText*>(source), longestText);
    default:
        return nullptr;
    }
}

} // namespace

void Writer::structure(const OpcUa_EncodeableType& type, const void* object)
{
    if (type.IsUnion || type.HasOptionalFields)
        return prefixedStructure(type, object);
    const size_t longestText = std::min<size_t>(longestPlainText, m_limits.maxStringLength);
    for (OpcUa_UInt32 i = 0; i < type.FieldCount && OpcUa_IsGood(m_status); ++i) {
        const OpcUa_FieldDescriptor& descriptor = type.Fields[i];
        if (!descriptor.IsArray && !descriptor.IsPointer) {
            ensure(largestPlainField);
            OpcUa_Byte* const behind =
                placePlainField(m_at, descriptor.Kind, elementAt(object, 1, descriptor.Offset), longestText);
            if (behind != nullptr) {
                m_at = behind;
                continue;
            }
        }
        field(descriptor, object);
    }
}

void Writer::prefixedStructure(const OpcUa_EncodeableType& type, const void* object)
{
    const PresentFields present(type, object);
    if (!present.isValid(type))
        return fail(OpcUa_BadEncodingError);
    fixed(memberAt<OpcUa_UInt32>(object, 0));
    for (OpcUa_UInt32 i = 0; i < type.FieldCount && OpcUa_IsGood(m_status); ++i)
        if (present.has(i))
            field(type.Fields[i], object);
}

inline void Writer::field(const OpcUa_FieldDescriptor& descriptor, const void* object)
{
    if (descriptor.IsArray || descriptor.IsPointer)
        return indirectField(descriptor, object);
    element(ElementType::of(descriptor), elementAt(object, 1, descriptor.Offset));
}

void Writer::indirectField(const OpcUa_FieldDescriptor& descriptor, const void* object)
{
    const ElementType type = ElementType::of(descriptor);
    const void* const data = memberAt<void*>(object, descriptor.Offset);
    if (descriptor.IsPointer && data == nullptr)
        return fail(OpcUa_BadEncodingError);
    if (type.isStructure() && !enter())
        return;
    if (descriptor.IsArray)
        elements(type, data, memberAt<OpcUa_Int32>(object, descriptor.LengthOffset));
    else
        element(type, data);
    if (type.isStructure())
        leave();
}

} // namespace opcua
