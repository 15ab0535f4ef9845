#include <stack/encoding/writer.h>

#include <stack/encoding/values.h>

namespace opcua {

Writer::Writer(std::vector<OpcUa_Byte>& buffer, const EncodingLimits& limits)
    : m_buffer(buffer), m_start(buffer.size()), m_at(buffer.data() + m_start), m_end(m_at), m_limits(limits)
{
}

OpcUa_StatusCode Writer::finish()
{
    m_buffer.resize(OpcUa_IsGood(m_status) ? used() : m_start);
    return m_status;
}

void Writer::grow(size_t bytes)
{
    constexpr size_t least = 256;
    const size_t written = used();
    m_buffer.resize(std::max({m_buffer.capacity(), written + bytes, 2 * written, written + least}));
    m_at = m_buffer.data() + written;
    m_end = m_buffer.data() + m_buffer.size();
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

// -- texts and ids ----------------------------------------------------------------------------------------

template <class Text>
void Writer::text(const Text& value, OpcUa_UInt32 limit)
{
    if (value.Data == nullptr || value.Length < 0)
        return fixed(OpcUa_Int32{-1});
    const auto size = static_cast<OpcUa_UInt32>(value.Length);
    if (size > limit)
        return fail(OpcUa_BadEncodingLimitsExceeded);
    fixed(value.Length);
    bytes(value.Data, size);
}

void Writer::nodeId(const OpcUa_NodeId& value, OpcUa_Byte flags)
{
    const auto format = [&](int number) { fixed(static_cast<OpcUa_Byte>(number | flags)); };
    const OpcUa_UInt32 numeric = value.Identifier.Numeric;
    switch (value.IdentifierType) {
    case OpcUa_IdentifierType_Numeric:
        // the short forms have no room for flags in every reader
        if (flags == 0 && value.NamespaceIndex == 0 && numeric <= UINT8_MAX) {
            format(0);
            return fixed(static_cast<OpcUa_Byte>(numeric));
        }
        if (flags == 0 && value.NamespaceIndex <= UINT8_MAX && numeric <= UINT16_MAX) {
            format(1);
            fixed(static_cast<OpcUa_Byte>(value.NamespaceIndex));
            return fixed(static_cast<OpcUa_UInt16>(numeric));
        }
        format(2);
        fixed(value.NamespaceIndex);
        return fixed(numeric);
    case OpcUa_IdentifierType_String:
        format(3);
        fixed(value.NamespaceIndex);
        return string(value.Identifier.String);
    case OpcUa_IdentifierType_Guid:
        format(4);
        fixed(value.NamespaceIndex);
        return fixed(value.Identifier.Guid);
    case OpcUa_IdentifierType_Opaque:
        format(5);
        fixed(value.NamespaceIndex);
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
    nodeId(value.NodeId, static_cast<OpcUa_Byte>((hasUri ? 0x80 : 0) | (hasServer ? 0x40 : 0)));
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

// -- values -----------------------------------------------------------------------------------------------

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
    fixed(value.Datatype);
    if (value.Datatype < OpcUaType_ExtensionObject)
        return element(ElementType::of(value.Datatype), scalar);
    if (enter()) {
        element(ElementType::of(value.Datatype), scalar);
        leave();
    }
}

void Writer::variantArray(const OpcUa_Variant& value)
{
    const OpcUa_VariantArray& array = value.Value.Array;
    const bool matrix = value.ArrayType == OpcUa_VariantArrayType_Matrix;
    if (!enter())
        return;
    fixed(static_cast<OpcUa_Byte>(value.Datatype | 0x80 | (matrix ? 0x40 : 0)));
    elements(ElementType::of(value.Datatype), array.Data, array.Length);
    if (matrix)
        elements(ElementType::of(OpcUaType_Int32), array.Dimensions, array.NoOfDimensions);
    leave();
}

namespace {

template <class T>
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

} // namespace

void Writer::dataValue(const OpcUa_DataValue& value)
{
    const bool hasValue = value.Value.Datatype != OpcUaType_Null;
    const auto mask = (hasValue ? 0x01 : 0) | (value.StatusCode != OpcUa_Good ? 0x02 : 0) |
                      (value.SourceTimestamp != 0 ? 0x04 : 0) | (value.ServerTimestamp != 0 ? 0x08 : 0) |
                      (value.SourcePicoseconds != 0 ? 0x10 : 0) | (value.ServerPicoseconds != 0 ? 0x20 : 0);
    ensure(LargestPlainDataValue);
    OpcUa_Byte* at = place(m_at, true, static_cast<OpcUa_Byte>(mask));
    if (hasValue) {
        OpcUa_Byte* const behind = placeNumber(at, value.Value);
        if (behind == nullptr) {
            m_at = at;
            variant(value.Value);
            ensure(LargestPlainDataValue);
        }
        at = behind != nullptr ? behind : m_at;
    }
    at = place(at, (mask & 0x02) != 0, value.StatusCode);
    at = place(at, (mask & 0x04) != 0, value.SourceTimestamp);
    at = place(at, (mask & 0x10) != 0, value.SourcePicoseconds);
    at = place(at, (mask & 0x08) != 0, value.ServerTimestamp);
    m_at = place(at, (mask & 0x20) != 0, value.ServerPicoseconds);
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
    for (const OpcUa_Int32 index :
         {value.SymbolicId, value.NamespaceUri, value.Locale, value.LocalizedText}) {
        if (index >= 0)
            fixed(index);
    }
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

// -- elements of any type ---------------------------------------------------------------------------------

void Writer::element(ElementType type, const void* source)
{
    switch (type.kind) {
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
    for (size_t i = 0; i < size && OpcUa_IsGood(m_status); ++i)
        element(type, elementAt(data, type.size(), i));
}

void Writer::structure(const OpcUa_EncodeableType& type, const void* object)
{
    const PresentFields present(type, object);
    if (type.IsUnion || type.HasOptionalFields) {
        if (!present.isValid(type))
            return fail(OpcUa_BadEncodingError);
        fixed(memberAt<OpcUa_UInt32>(object, 0));
    }
    for (OpcUa_UInt32 i = 0; i < type.FieldCount && OpcUa_IsGood(m_status); ++i) {
        if (present.has(i))
            field(type.Fields[i], object);
    }
}

void Writer::field(const OpcUa_FieldDescriptor& descriptor, const void* object)
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
