#include <stack/encoding/reader.h>

#include <stack/encoding/lifecycle.h>
#include <stack/encoding/nodeidformat.h>

#include <algorithm>

namespace opcua {

namespace {

// A decoded message takes at most this times its bytes; small ones may always take the second figure.
constexpr size_t memoryPerByte = 8;
constexpr size_t memoryOfSmallMessages = 16u * 1024 * 1024;

} // namespace

Reader::Reader(std::span<const OpcUa_Byte> bytes, const EncodingLimits& limits)
    : m_at(bytes.data()), m_end(bytes.data() + bytes.size()), m_limits(limits), m_texts(bytes.size()),
      m_memoryLeft(std::max(bytes.size() * memoryPerByte, memoryOfSmallMessages))
{
}

bool Reader::takeMemory(size_t size)
{
    if (size > m_memoryLeft)
        return fail(OpcUa_BadEncodingLimitsExceeded);
    m_memoryLeft -= size;
    return true;
}

void* Reader::accept(void* memory)
{
    if (memory == nullptr)
        fail(OpcUa_BadOutOfMemory);
    return memory;
}

void* Reader::allocate(size_t size)
{
    size = std::max<size_t>(size, 1);
    return takeMemory(size) ? accept(allocateMemory(size)) : nullptr;
}

void* Reader::allocateText(size_t size)
{
    return takeMemory(size) ? accept(m_texts.allocate(size)) : nullptr;
}

bool Reader::enter()
{
    if (m_depth >= m_limits.maxNestingLevel)
        return fail(OpcUa_BadEncodingLimitsExceeded);
    ++m_depth;
    return true;
}

// ---- texts and names

bool Reader::boolean(OpcUa_Boolean& value)
{
    const bool result = fixed(value);
    value = value != 0;
    return result;
}

// No date lies before the smallest one.
bool Reader::date(OpcUa_DateTime& value)
{
    const bool result = fixed(value);
    value = std::max<OpcUa_DateTime>(value, 0);
    return result;
}

bool Reader::textLength(OpcUa_Int32& length, OpcUa_UInt32 limit)
{
    if (!fixed(length))
        return false;
    if (length < 0)
        return true;
    const auto bytes = static_cast<OpcUa_UInt32>(length);
    if (bytes > left())
        return fail(OpcUa_BadDecodingError);
    return bytes <= limit || fail(OpcUa_BadEncodingLimitsExceeded);
}

template <typename Text>
bool Reader::text(Text& value, OpcUa_UInt32 limit)
{
    value = {-1, nullptr};
    OpcUa_Int32 length = -1;
    if (!textLength(length, limit))
        return false;
    if (length < 0)
        return true;
    const auto bytes = static_cast<size_t>(length);
    value.Data = static_cast<decltype(value.Data)>(allocateText(bytes + 1));
    if (value.Data == nullptr)
        return false;
    std::memcpy(value.Data, m_at, bytes);
    value.Data[bytes] = 0;
    value.Length = length;
    m_at += bytes;
    return true;
}

bool Reader::string(OpcUa_String& value)
{
    return text(value, m_limits.maxStringLength);
}

bool Reader::byteString(OpcUa_ByteString& value)
{
    return text(value, m_limits.maxByteStringLength);
}

bool Reader::qualifiedName(OpcUa_QualifiedName& value)
{
    initialize(value);
    if (fixed(value.NamespaceIndex) && string(value.Name))
        return true;
    value.NamespaceIndex = 0;
    return false;
}

bool Reader::localizedText(OpcUa_LocalizedText& value)
{
    initialize(value);
    OpcUa_Byte mask = 0;
    if (fixed(mask) && ((mask & 0x01) == 0 || string(value.Locale)) &&
        ((mask & 0x02) == 0 || string(value.Text)))
        return true;
    clear(value);
    return false;
}

// ---- node ids

bool Reader::identifier(OpcUa_Byte format, OpcUa_NodeId& value)
{
    initialize(value);
    OpcUa_Byte small = 0;
    OpcUa_UInt16 medium = 0;
    bool result = false;
    switch (format) {
    case NodeIdFormat::twoByteId:
        result = fixed(small);
        value.Identifier.Numeric = small;
        return result;
    case NodeIdFormat::fourByteId:
        result = fixed(small) && fixed(medium);
        value.NamespaceIndex = small;
        value.Identifier.Numeric = medium;
        return result;
    case NodeIdFormat::numericId:
        return fixed(value.NamespaceIndex) && fixed(value.Identifier.Numeric);
    case NodeIdFormat::stringId:
        value.IdentifierType = OpcUa_IdentifierType_String;
        initialize(value.Identifier.String);
        return fixed(value.NamespaceIndex) && string(value.Identifier.String);
    case NodeIdFormat::guidId:
        value.IdentifierType = OpcUa_IdentifierType_Guid;
        return fixed(value.NamespaceIndex) && fixed(value.Identifier.Guid);
    case NodeIdFormat::byteStringId:
        value.IdentifierType = OpcUa_IdentifierType_Opaque;
        initialize(value.Identifier.ByteString);
        return fixed(value.NamespaceIndex) && byteString(value.Identifier.ByteString);
    default:
        return fail(OpcUa_BadDecodingError);
    }
}

bool Reader::nodeId(OpcUa_NodeId& value)
{
    OpcUa_Byte format = 0;
    if (fixed(format) && identifier(format, value))
        return true;
    initialize(value);
    return false;
}

bool Reader::expandedNodeId(OpcUa_ExpandedNodeId& value)
{
    initialize(value);
    OpcUa_Byte format = 0;
    if (!fixed(format))
        return false;
    const auto plain =
        static_cast<OpcUa_Byte>(format & ~(NodeIdFormat::namespaceUriFlag | NodeIdFormat::serverIndexFlag));
    if (identifier(plain, value.NodeId) &&
        ((format & NodeIdFormat::namespaceUriFlag) == 0 || string(value.NamespaceUri)) &&
        optional((format & NodeIdFormat::serverIndexFlag) != 0, value.ServerIndex))
        return true;
    clear(value);
    return false;
}

// ---- data values and diagnostics

namespace {

template <typename T>
inline const OpcUa_Byte* take(const OpcUa_Byte* at, bool present, T& target)
{
    if (!present)
        return at;
    std::memcpy(&target, at, sizeof(T));
    return at + sizeof(T);
}

// Reads a scalar number with its type into a variant of zero bytes; null when it is something else.
inline const OpcUa_Byte* takeNumber(const OpcUa_Byte* at, OpcUa_Variant& value)
{
    const OpcUa_Byte type = *at++;
    const size_t size = numberSize(type);
    if (size == 8)
        std::memcpy(&value.Value, at, 8);
    else if (size == 4)
        std::memcpy(&value.Value, at, 4);
    else if (size == 2)
        std::memcpy(&value.Value, at, 2);
    else if (size == 1)
        std::memcpy(&value.Value, at, 1);
    else
        return nullptr;
    if (type == OpcUaType_Boolean)
        value.Value.Boolean = value.Value.Boolean != 0;
    else if (type == OpcUaType_DateTime)
        value.Value.DateTime = std::max<OpcUa_DateTime>(value.Value.DateTime, 0);
    value.Datatype = type;
    return at + size;
}

constexpr OpcUa_Byte valueAndTimestamps = 0x0D;

inline OpcUa_DateTime dateFrom(const OpcUa_Byte* at)
{
    OpcUa_DateTime date = 0;
    std::memcpy(&date, at, sizeof date);
    return std::max<OpcUa_DateTime>(date, 0);
}

// A number of eight bytes behind its type, and both timestamps: each member is written once.
inline const OpcUa_Byte* takeWideNumberWithTimestamps(const OpcUa_Byte* at, OpcUa_DataValue& value)
{
    const OpcUa_Byte type = *at++;
    value.Value = OpcUa_Variant{};
    value.Value.Datatype = type;
    std::memcpy(&value.Value.Value, at, 8);
    if (type == OpcUaType_DateTime)
        value.Value.Value.DateTime = std::max<OpcUa_DateTime>(value.Value.Value.DateTime, 0);
    value.StatusCode = OpcUa_Good;
    value.SourcePicoseconds = 0;
    value.ServerPicoseconds = 0;
    value.SourceTimestamp = dateFrom(at + 8);
    value.ServerTimestamp = dateFrom(at + 16);
    return at + 24;
}

// Reads a data value that holds a number or nothing, of which largestPlainDataValue bytes are there; null
// when it is another one.
inline const OpcUa_Byte* takePlainDataValue(const OpcUa_Byte* at, OpcUa_DataValue& value)
{
    const OpcUa_Byte mask = *at++;
    if (mask == valueAndTimestamps && numberSize(*at) == 8) // what most servers answer to most Reads
        return takeWideNumberWithTimestamps(at, value);
    value = OpcUa_DataValue{};
    if ((mask & 0x01) != 0) {
        at = takeNumber(at, value.Value);
        if (at == nullptr)
            return nullptr;
    }
    OpcUa_DateTime source = 0;
    OpcUa_DateTime server = 0;
    at = take(at, (mask & 0x02) != 0, value.StatusCode);
    at = take(at, (mask & 0x04) != 0, source);
    at = take(at, (mask & 0x10) != 0, value.SourcePicoseconds);
    at = take(at, (mask & 0x08) != 0, server);
    at = take(at, (mask & 0x20) != 0, value.ServerPicoseconds);
    value.SourceTimestamp = std::max<OpcUa_DateTime>(source, 0);
    value.ServerTimestamp = std::max<OpcUa_DateTime>(server, 0);
    return at;
}

} // namespace

// The usual data values: numbers, with one check of the bytes left for each. Stops at the first that is
// something else or stands too near the end; answers how many there were.
size_t Reader::plainDataValues(OpcUa_DataValue* values, size_t count)
{
    const OpcUa_Byte* at = m_at;
    const OpcUa_Byte* const end = m_end;
    size_t done = 0;
    while (done < count && static_cast<size_t>(end - at) >= largestPlainDataValue) {
        const OpcUa_Byte* const next = takePlainDataValue(at, values[done]);
        if (next == nullptr)
            break;
        at = next;
        ++done;
    }
    m_at = at;
    return done;
}

// The same for one within a structure; null for another, of which nothing was read.
const OpcUa_Byte* Reader::plainDataValue(const OpcUa_Byte* at, OpcUa_DataValue& value) const
{
    return static_cast<size_t>(m_end - at) < largestPlainDataValue ? nullptr : takePlainDataValue(at, value);
}

bool Reader::dataValue(OpcUa_DataValue& value)
{
    if (plainDataValues(&value, 1) == 1)
        return true;
    initialize(value);
    OpcUa_Byte mask = 0;
    if (fixed(mask) && ((mask & 0x01) == 0 || variant(value.Value)) &&
        optional((mask & 0x02) != 0, value.StatusCode) &&
        ((mask & 0x04) == 0 || date(value.SourceTimestamp)) &&
        optional((mask & 0x10) != 0, value.SourcePicoseconds) &&
        ((mask & 0x08) == 0 || date(value.ServerTimestamp)) &&
        optional((mask & 0x20) != 0, value.ServerPicoseconds))
        return true;
    clear(value);
    return false;
}

// Every index that points at nothing is -1.
bool Reader::stringIndex(bool present, OpcUa_Int32& index)
{
    const bool result = optional(present, index);
    index = std::max(index, -1);
    return result;
}

bool Reader::diagnosticInfo(OpcUa_DiagnosticInfo& value)
{
    initialize(value);
    OpcUa_Byte mask = 0;
    bool result = fixed(mask) && stringIndex((mask & 0x01) != 0, value.SymbolicId) &&
                  stringIndex((mask & 0x02) != 0, value.NamespaceUri) &&
                  stringIndex((mask & 0x08) != 0, value.Locale) &&
                  stringIndex((mask & 0x04) != 0, value.LocalizedText) &&
                  ((mask & 0x10) == 0 || string(value.AdditionalInfo)) &&
                  optional((mask & 0x20) != 0, value.InnerStatusCode);
    if (result && (mask & 0x40) != 0) {
        void* inner = nullptr;
        result = nested(ElementType::of(OpcUaType_DiagnosticInfo), 1, inner);
        value.InnerDiagnosticInfo = static_cast<OpcUa_DiagnosticInfo*>(inner);
    }
    if (!result)
        clear(value);
    return result;
}

// ---- elements of any type

bool Reader::element(ElementType type, void* target)
{
    switch (type.kind) {
    case OpcUaType_Boolean:
        return boolean(*static_cast<OpcUa_Boolean*>(target));
    case OpcUaType_SByte:
    case OpcUaType_Byte:
        return fixed(*static_cast<OpcUa_Byte*>(target));
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
        return fixed(*static_cast<OpcUa_UInt16*>(target));
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_Float:
    case OpcUaType_StatusCode:
        return fixed(*static_cast<OpcUa_UInt32*>(target));
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
        return fixed(*static_cast<OpcUa_UInt64*>(target));
    case OpcUaType_String:
        return string(*static_cast<OpcUa_String*>(target));
    case OpcUaType_DateTime:
        return date(*static_cast<OpcUa_DateTime*>(target));
    case OpcUaType_Guid:
        return fixed(*static_cast<OpcUa_Guid*>(target));
    case OpcUaType_ByteString:
        return byteString(*static_cast<OpcUa_ByteString*>(target));
    case OpcUaType_XmlElement:
        return text(*static_cast<OpcUa_XmlElement*>(target), m_limits.maxStringLength);
    case OpcUaType_NodeId:
        return nodeId(*static_cast<OpcUa_NodeId*>(target));
    case OpcUaType_ExpandedNodeId:
        return expandedNodeId(*static_cast<OpcUa_ExpandedNodeId*>(target));
    case OpcUaType_QualifiedName:
        return qualifiedName(*static_cast<OpcUa_QualifiedName*>(target));
    case OpcUaType_LocalizedText:
        return localizedText(*static_cast<OpcUa_LocalizedText*>(target));
    case OpcUaType_ExtensionObject:
        return extensionObject(*static_cast<OpcUa_ExtensionObject*>(target));
    case OpcUaType_DataValue:
        return dataValue(*static_cast<OpcUa_DataValue*>(target));
    case OpcUaType_Variant:
        return variant(*static_cast<OpcUa_Variant*>(target));
    case OpcUaType_DiagnosticInfo:
        return diagnosticInfo(*static_cast<OpcUa_DiagnosticInfo*>(target));
    case OpcUa_FieldKind_Structure:
        return structure(*type.structure, target);
    default:
        return fail(OpcUa_BadDecodingError);
    }
}

bool Reader::arrayLength(size_t minimum, OpcUa_Int32& count)
{
    if (!fixed(count) || count < 0) {
        count = -1;
        return OpcUa_IsGood(m_status);
    }
    const auto elementCount = static_cast<OpcUa_UInt64>(count);
    if (elementCount * minimum > left())
        return fail(OpcUa_BadDecodingError);
    return elementCount <= m_limits.maxArrayLength || fail(OpcUa_BadEncodingLimitsExceeded);
}

bool Reader::fixedElements(ElementType type, size_t count, void* data)
{
    const size_t bytes = type.size() * count;
    if (bytes > left())
        return fail(OpcUa_BadDecodingError);
    std::memcpy(data, m_at, bytes);
    m_at += bytes;
    if (type.kind == OpcUaType_Boolean)
        for (OpcUa_Boolean& value : std::span(static_cast<OpcUa_Boolean*>(data), count))
            value = value != 0;
    else if (type.kind == OpcUaType_DateTime)
        for (OpcUa_DateTime& value : std::span(static_cast<OpcUa_DateTime*>(data), count))
            value = std::max<OpcUa_DateTime>(value, 0);
    return true;
}

// A block of count elements; null on failure.
bool Reader::elements(ElementType type, size_t count, void*& data)
{
    const size_t size = type.size();
    data = allocate(size * count);
    if (data == nullptr)
        return false;
    size_t done = 0;
    bool result = true;
    if (type.isFixed())
        result = count == 0 || fixedElements(type, count, data);
    else if (type.kind == OpcUaType_DataValue)
        done = plainDataValues(static_cast<OpcUa_DataValue*>(data), count);
    while (result && done < count && !type.isFixed())
        result = element(type, elementAt(data, size, done++));
    if (!result) {
        deleteElements(type, data, done);
        data = nullptr;
    }
    return result;
}

} // namespace opcua
