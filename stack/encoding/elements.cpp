#include <stack/encoding/elements.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/values.h>

#include <cstring>
#include <span>

namespace opcua {

namespace {

template <typename T>
void initializeAll(void* data, size_t count)
{
    for (T& value : std::span(static_cast<T*>(data), count))
        initialize(value);
}

void initializeBuiltIn(OpcUa_Byte kind, void* data, size_t count)
{
    switch (kind) {
    case OpcUaType_String:
        return initializeAll<OpcUa_String>(data, count);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return initializeAll<OpcUa_ByteString>(data, count);
    case OpcUaType_ExpandedNodeId:
        return initializeAll<OpcUa_ExpandedNodeId>(data, count);
    case OpcUaType_QualifiedName:
        return initializeAll<OpcUa_QualifiedName>(data, count);
    case OpcUaType_LocalizedText:
        return initializeAll<OpcUa_LocalizedText>(data, count);
    case OpcUaType_ExtensionObject:
        return initializeAll<OpcUa_ExtensionObject>(data, count);
    case OpcUaType_DiagnosticInfo:
        return initializeAll<OpcUa_DiagnosticInfo>(data, count);
    default:
        std::memset(data, 0, builtInLayouts[kind].size * count);
    }
}

template <typename T>
OpcUa_StatusCode copyAs(const void* source, void* destination)
{
    return copy(*static_cast<const T*>(source), *static_cast<T*>(destination));
}

OpcUa_StatusCode copyElement(ElementType type, const void* source, void* destination)
{
    switch (type.kind) {
    case OpcUaType_String:
        return copyAs<OpcUa_String>(source, destination);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return copyAs<OpcUa_ByteString>(source, destination);
    case OpcUaType_NodeId:
        return copyAs<OpcUa_NodeId>(source, destination);
    case OpcUaType_ExpandedNodeId:
        return copyAs<OpcUa_ExpandedNodeId>(source, destination);
    case OpcUaType_QualifiedName:
        return copyAs<OpcUa_QualifiedName>(source, destination);
    case OpcUaType_LocalizedText:
        return copyAs<OpcUa_LocalizedText>(source, destination);
    case OpcUaType_ExtensionObject:
        return copyAs<OpcUa_ExtensionObject>(source, destination);
    case OpcUaType_DataValue:
        return copyAs<OpcUa_DataValue>(source, destination);
    case OpcUaType_Variant:
        return copyAs<OpcUa_Variant>(source, destination);
    case OpcUaType_DiagnosticInfo:
        return copyAs<OpcUa_DiagnosticInfo>(source, destination);
    default:
        return copyStructure(*type.structure, source, destination);
    }
}

template <typename T>
int orderOf(const void* left, const void* right)
{
    return order(*static_cast<const T*>(left), *static_cast<const T*>(right));
}

template <typename T>
int compareAs(const void* left, const void* right)
{
    return compare(*static_cast<const T*>(left), *static_cast<const T*>(right));
}

// Floating point goes by its bits: a NaN equals itself, and -0 is not 0.
int compareNumber(OpcUa_Byte kind, const void* left, const void* right)
{
    switch (kind) {
    case OpcUaType_SByte:
        return orderOf<OpcUa_SByte>(left, right);
    case OpcUaType_Int16:
        return orderOf<OpcUa_Int16>(left, right);
    case OpcUaType_UInt16:
        return orderOf<OpcUa_UInt16>(left, right);
    case OpcUaType_Int32:
        return orderOf<OpcUa_Int32>(left, right);
    case OpcUaType_UInt32:
    case OpcUaType_Float:
    case OpcUaType_StatusCode:
        return orderOf<OpcUa_UInt32>(left, right);
    case OpcUaType_Int64:
    case OpcUaType_DateTime:
        return orderOf<OpcUa_Int64>(left, right);
    case OpcUaType_UInt64:
    case OpcUaType_Double:
        return orderOf<OpcUa_UInt64>(left, right);
    default:
        return orderOf<OpcUa_Byte>(left, right);
    }
}

int compareElement(ElementType type, const void* left, const void* right)
{
    switch (type.kind) {
    case OpcUaType_String:
        return compareAs<OpcUa_String>(left, right);
    case OpcUaType_Guid:
        return compareAs<OpcUa_Guid>(left, right);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return compareAs<OpcUa_ByteString>(left, right);
    case OpcUaType_NodeId:
        return compareAs<OpcUa_NodeId>(left, right);
    case OpcUaType_ExpandedNodeId:
        return compareAs<OpcUa_ExpandedNodeId>(left, right);
    case OpcUaType_QualifiedName:
        return compareAs<OpcUa_QualifiedName>(left, right);
    case OpcUaType_LocalizedText:
        return compareAs<OpcUa_LocalizedText>(left, right);
    case OpcUaType_ExtensionObject:
        return compareAs<OpcUa_ExtensionObject>(left, right);
    case OpcUaType_DataValue:
        return compareAs<OpcUa_DataValue>(left, right);
    case OpcUaType_Variant:
        return compareAs<OpcUa_Variant>(left, right);
    case OpcUaType_DiagnosticInfo:
        return compareAs<OpcUa_DiagnosticInfo>(left, right);
    case OpcUa_FieldKind_Structure:
        return compareStructures(*type.structure, left, right);
    default:
        return compareNumber(type.kind, left, right);
    }
}

} // namespace

void initializeElements(ElementType type, void* data, size_t count)
{
    if (!type.isStructure())
        return initializeBuiltIn(type.kind, data, count);
    for (size_t i = 0; i < count; ++i)
        initializeStructure(*type.structure, elementAt(data, type.size(), i));
}

void clearElements(ElementType type, void* data, size_t count)
{
    releaseElements(type, data, count);
    initializeElements(type, data, count);
}

void releaseElements(ElementType type, void* data, size_t count)
{
    if (type.isFlat())
        return;
    if (type.kind == OpcUaType_DataValue) { // the longest arrays of all, most of which own nothing
        for (OpcUa_DataValue& value : std::span(static_cast<OpcUa_DataValue*>(data), count))
            release(value.Value);
        return;
    }
    TextReleaser texts;
    if (type.isStructure())
        return releaseStructures(*type.structure, data, count, texts);
    for (size_t i = 0; i < count; ++i)
        releaseBuiltIn(type.kind, elementAt(data, type.size(), i), texts);
}

OpcUa_StatusCode copyElements(ElementType type, const void* source, void* destination, size_t count)
{
    const size_t size = type.size();
    if (type.isFlat()) {
        if (count > 0)
            std::memcpy(destination, source, size * count);
        return OpcUa_Good;
    }
    for (size_t i = 0; i < count; ++i) {
        const OpcUa_StatusCode status =
            copyElement(type, elementAt(source, size, i), elementAt(destination, size, i));
        if (OpcUa_IsBad(status)) {
            clearElements(type, destination, i);
            initializeElements(type, elementAt(destination, size, i), count - i);
            return status;
        }
    }
    return OpcUa_Good;
}

int compareElements(ElementType type, const void* left, const void* right, size_t count)
{
    const size_t size = type.size();
    for (size_t i = 0; i < count; ++i) {
        const int result = compareElement(type, elementAt(left, size, i), elementAt(right, size, i));
        if (result != 0)
            return result;
    }
    return 0;
}

void* allocateElements(ElementType type, size_t count)
{
    size_t bytes = 0;
    if (__builtin_mul_overflow(type.size(), count, &bytes))
        return nullptr;
    return allocateMemory(std::max<size_t>(bytes, 1));
}

void deleteElements(ElementType type, void* data, size_t count)
{
    if (data == nullptr)
        return;
    releaseElements(type, data, count);
    freeMemory(data);
}

void* cloneElements(ElementType type, const void* source, size_t count, OpcUa_StatusCode& status)
{
    status = OpcUa_Good;
    if (source == nullptr)
        return nullptr;
    void* const copy = allocateElements(type, count);
    status = copy == nullptr ? OpcUa_BadOutOfMemory : copyElements(type, source, copy, count);
    if (OpcUa_IsBad(status)) {
        freeMemory(copy);
        return nullptr;
    }
    return copy;
}

PresentFields::PresentFields(const OpcUa_EncodeableType& type, const void* object)
    : PresentFields(type, type.IsUnion || type.HasOptionalFields ? memberAt<OpcUa_UInt32>(object, 0) : 0u)
{
}

PresentFields::PresentFields(const OpcUa_EncodeableType& type, OpcUa_UInt32 maskOrSwitch)
    : m_isUnion(type.IsUnion != 0), m_optional(type.HasOptionalFields ? type.OptionalMask : 0u),
      m_value(maskOrSwitch)
{
}

bool PresentFields::isValid(const OpcUa_EncodeableType& type) const
{
    if (m_isUnion)
        return m_value <= type.FieldCount;
    const int bits = __builtin_popcount(m_optional);
    return bits == 32 || (m_value >> bits) == 0;
}

} // namespace opcua
