#include <stack/encoding/elements.h>

#include <opcua/opcua_statuscodes.h>
#include <stack/encoding/values.h>

#include <cstring>

namespace opcua {

namespace {

template <typename T, typename Function>
void forEach(void* data, size_t count, Function function)
{
    T* const values = static_cast<T*>(data);
    for (size_t i = 0; i < count; ++i)
        function(values + i);
}

void initializeBuiltIn(OpcUa_Byte kind, void* data, size_t count)
{
    switch (kind) {
    case OpcUaType_String:
        return forEach<OpcUa_String>(data, count, OpcUa_String_Initialize);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return forEach<OpcUa_ByteString>(data, count, OpcUa_ByteString_Initialize);
    case OpcUaType_ExpandedNodeId:
        return forEach<OpcUa_ExpandedNodeId>(data, count, OpcUa_ExpandedNodeId_Initialize);
    case OpcUaType_QualifiedName:
        return forEach<OpcUa_QualifiedName>(data, count, OpcUa_QualifiedName_Initialize);
    case OpcUaType_LocalizedText:
        return forEach<OpcUa_LocalizedText>(data, count, OpcUa_LocalizedText_Initialize);
    case OpcUaType_ExtensionObject:
        return forEach<OpcUa_ExtensionObject>(data, count, OpcUa_ExtensionObject_Initialize);
    case OpcUaType_DiagnosticInfo:
        return forEach<OpcUa_DiagnosticInfo>(data, count, OpcUa_DiagnosticInfo_Initialize);
    default:
        std::memset(data, 0, builtInLayouts[kind].size * count);
    }
}

template <typename T>
OpcUa_StatusCode copyOne(OpcUa_StatusCode (*copy)(const T*, T*), const void* source, void* destination)
{
    return copy(static_cast<const T*>(source), static_cast<T*>(destination));
}

OpcUa_StatusCode copyElement(ElementType type, const void* source, void* destination)
{
    switch (type.kind) {
    case OpcUaType_String:
        return copyOne(OpcUa_String_Copy, source, destination);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return copyOne(OpcUa_ByteString_Copy, source, destination);
    case OpcUaType_NodeId:
        return copyOne(OpcUa_NodeId_Copy, source, destination);
    case OpcUaType_ExpandedNodeId:
        return copyOne(OpcUa_ExpandedNodeId_Copy, source, destination);
    case OpcUaType_QualifiedName:
        return copyOne(OpcUa_QualifiedName_Copy, source, destination);
    case OpcUaType_LocalizedText:
        return copyOne(OpcUa_LocalizedText_Copy, source, destination);
    case OpcUaType_ExtensionObject:
        return copyOne(OpcUa_ExtensionObject_Copy, source, destination);
    case OpcUaType_DataValue:
        return copyOne(OpcUa_DataValue_Copy, source, destination);
    case OpcUaType_Variant:
        return copyOne(OpcUa_Variant_Copy, source, destination);
    case OpcUaType_DiagnosticInfo:
        return copyOne(OpcUa_DiagnosticInfo_Copy, source, destination);
    default:
        return OpcUa_EncodeableObject_Copy(type.structure, source, destination);
    }
}

template <typename T>
int orderOf(const void* left, const void* right)
{
    return order(*static_cast<const T*>(left), *static_cast<const T*>(right));
}

template <typename T>
int compareOne(int (*compare)(const T*, const T*), const void* left, const void* right)
{
    return compare(static_cast<const T*>(left), static_cast<const T*>(right));
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
        return compareOne(OpcUa_String_Compare, left, right);
    case OpcUaType_Guid:
        return compareOne(OpcUa_Guid_Compare, left, right);
    case OpcUaType_ByteString:
    case OpcUaType_XmlElement:
        return compareOne(OpcUa_ByteString_Compare, left, right);
    case OpcUaType_NodeId:
        return compareOne(OpcUa_NodeId_Compare, left, right);
    case OpcUaType_ExpandedNodeId:
        return compareOne(OpcUa_ExpandedNodeId_Compare, left, right);
    case OpcUaType_QualifiedName:
        return compareOne(OpcUa_QualifiedName_Compare, left, right);
    case OpcUaType_LocalizedText:
        return compareOne(OpcUa_LocalizedText_Compare, left, right);
    case OpcUaType_ExtensionObject:
        return compareOne(OpcUa_ExtensionObject_Compare, left, right);
    case OpcUaType_DataValue:
        return compareOne(OpcUa_DataValue_Compare, left, right);
    case OpcUaType_Variant:
        return compareOne(OpcUa_Variant_Compare, left, right);
    case OpcUaType_DiagnosticInfo:
        return compareOne(OpcUa_DiagnosticInfo_Compare, left, right);
    case OpcUa_FieldKind_Structure:
        return OpcUa_EncodeableObject_Compare(type.structure, left, right);
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
        OpcUa_EncodeableObject_Initialize(type.structure, elementAt(data, type.size(), i));
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
    if (type.kind == OpcUaType_DataValue) // the longest arrays of all, most of which own nothing
        return forEach<OpcUa_DataValue>(data, count, [](auto* value) { release(value->Value); });
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
    return OpcUa_Memory_Alloc(std::max<size_t>(bytes, 1));
}

void deleteElements(ElementType type, void* data, size_t count)
{
    if (data == nullptr)
        return;
    releaseElements(type, data, count);
    OpcUa_Memory_Free(data);
}

void* cloneElements(ElementType type, const void* source, size_t count, OpcUa_StatusCode& status)
{
    status = OpcUa_Good;
    if (source == nullptr)
        return nullptr;
    void* const copy = allocateElements(type, count);
    status = copy == nullptr ? OpcUa_BadOutOfMemory : copyElements(type, source, copy, count);
    if (OpcUa_IsBad(status)) {
        OpcUa_Memory_Free(copy);
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

size_t OpcUa_BuiltInType_Size(OpcUa_Byte builtInType)
{
    return opcua::isBuiltInType(builtInType) ? opcua::builtInLayouts[builtInType].size : 0;
}

const char* OpcUa_BuiltInType_Name(OpcUa_Byte builtInType)
{
    return builtInType < opcua::builtInLayouts.size() ? opcua::builtInLayouts[builtInType].name : "Unknown";
}

void OpcUa_BuiltInType_InitializeArray(OpcUa_Byte builtInType, void* data, size_t count)
{
    if (opcua::isBuiltInType(builtInType) && data != nullptr)
        opcua::initializeElements(opcua::ElementType::of(builtInType), data, count);
}

void OpcUa_BuiltInType_ClearArray(OpcUa_Byte builtInType, void* data, size_t count)
{
    if (opcua::isBuiltInType(builtInType) && data != nullptr)
        opcua::clearElements(opcua::ElementType::of(builtInType), data, count);
}

OpcUa_StatusCode OpcUa_BuiltInType_CopyArray(OpcUa_Byte builtInType, const void* source, void* destination,
                                             size_t count)
{
    if (!opcua::isBuiltInType(builtInType))
        return OpcUa_BadInvalidArgument;
    return opcua::copyElements(opcua::ElementType::of(builtInType), source, destination, count);
}

int OpcUa_BuiltInType_Compare(OpcUa_Byte builtInType, const void* left, const void* right)
{
    if (!opcua::isBuiltInType(builtInType))
        return 0;
    return opcua::compareElements(opcua::ElementType::of(builtInType), left, right, 1);
}
