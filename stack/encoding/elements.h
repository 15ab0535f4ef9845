// What the elements of arrays and the fields of structures have in common, whatever their type.
#pragma once

#include <opcua/opcua_encodeable.h>

#include <algorithm>
#include <array>
#include <cstddef>

namespace opcua {

class TextReleaser;

struct BuiltInLayout
{
    const char* name;
    OpcUa_Byte size;    ///< of the C type
    OpcUa_Byte minimum; ///< bytes on the wire, at least
    bool fixed;         ///< the wire holds the C type's bytes
    bool nullIsZero;    ///< the null value is all zero bytes
};

/// by OpcUa_BuiltInType
inline constexpr std::array<BuiltInLayout, 26> builtInLayouts = {{
    {"Null", 0, 0, false, true},
    {"Boolean", sizeof(OpcUa_Boolean), 1, true, true},
    {"SByte", sizeof(OpcUa_SByte), 1, true, true},
    {"Byte", sizeof(OpcUa_Byte), 1, true, true},
    {"Int16", sizeof(OpcUa_Int16), 2, true, true},
    {"UInt16", sizeof(OpcUa_UInt16), 2, true, true},
    {"Int32", sizeof(OpcUa_Int32), 4, true, true},
    {"UInt32", sizeof(OpcUa_UInt32), 4, true, true},
    {"Int64", sizeof(OpcUa_Int64), 8, true, true},
    {"UInt64", sizeof(OpcUa_UInt64), 8, true, true},
    {"Float", sizeof(OpcUa_Float), 4, true, true},
    {"Double", sizeof(OpcUa_Double), 8, true, true},
    {"String", sizeof(OpcUa_String), 4, false, false},
    {"DateTime", sizeof(OpcUa_DateTime), 8, true, true},
    {"Guid", sizeof(OpcUa_Guid), 16, true, true},
    {"ByteString", sizeof(OpcUa_ByteString), 4, false, false},
    {"XmlElement", sizeof(OpcUa_XmlElement), 4, false, false},
    {"NodeId", sizeof(OpcUa_NodeId), 2, false, true},
    {"ExpandedNodeId", sizeof(OpcUa_ExpandedNodeId), 2, false, false},
    {"StatusCode", sizeof(OpcUa_StatusCode), 4, true, true},
    {"QualifiedName", sizeof(OpcUa_QualifiedName), 6, false, false},
    {"LocalizedText", sizeof(OpcUa_LocalizedText), 1, false, false},
    {"ExtensionObject", sizeof(OpcUa_ExtensionObject), 3, false, false},
    {"DataValue", sizeof(OpcUa_DataValue), 1, false, true},
    {"Variant", sizeof(OpcUa_Variant), 1, false, true},
    {"DiagnosticInfo", sizeof(OpcUa_DiagnosticInfo), 1, false, false},
}};

/// Number of bytes of a type for which isNumber() holds, else 0. Branches instead of a table: what they
/// answer is predicted, and the next value need not wait for it.
inline size_t numberSize(OpcUa_Byte type)
{
    switch (type) {
    case OpcUaType_Int64:
    case OpcUaType_UInt64:
    case OpcUaType_Double:
    case OpcUaType_DateTime:
        return 8;
    case OpcUaType_Int32:
    case OpcUaType_UInt32:
    case OpcUaType_Float:
    case OpcUaType_StatusCode:
        return 4;
    case OpcUaType_Int16:
    case OpcUaType_UInt16:
        return 2;
    case OpcUaType_Boolean:
    case OpcUaType_SByte:
    case OpcUaType_Byte:
        return 1;
    default:
        return 0;
    }
}

/// A data value that holds a number or nothing takes at most this: mask, type, number, status, two
/// timestamps.
inline constexpr size_t largestPlainDataValue = 1 + 1 + 8 + 4 + 2 * (8 + 2);

/// Type of an element or field: a built-in type, an enumeration or a structure.
struct ElementType
{
    OpcUa_Byte kind;                       ///< OpcUa_BuiltInType; an enumeration counts as Int32
    const OpcUa_EncodeableType* structure; ///< of kind OpcUa_FieldKind_Structure

    static ElementType of(const OpcUa_FieldDescriptor& field)
    {
        const bool enumeration = field.Kind == OpcUa_FieldKind_Enumeration;
        return {enumeration ? static_cast<OpcUa_Byte>(OpcUaType_Int32) : field.Kind, field.StructureType};
    }
    static ElementType of(OpcUa_Byte builtInType) { return {builtInType, nullptr}; }
    static ElementType of(const OpcUa_EncodeableType& type) { return {OpcUa_FieldKind_Structure, &type}; }

    bool isStructure() const { return kind == OpcUa_FieldKind_Structure; }
    /// Whether an element may hold others of its kind, so that its depth counts.
    bool canNest() const { return isStructure() || kind >= OpcUaType_ExtensionObject; }
    bool isFixed() const { return !isStructure() && builtInLayouts[kind].fixed; }
    bool isFlat() const { return isStructure() ? structure->IsFlat != 0 : builtInLayouts[kind].fixed; }
    size_t size() const { return isStructure() ? structure->AllocationSize : builtInLayouts[kind].size; }
    /// never 0, so that a count is bounded by the bytes left
    size_t minimum() const
    {
        return isStructure() ? std::max<size_t>(structure->MinimumSize, 1) : builtInLayouts[kind].minimum;
    }
};

inline bool isBuiltInType(OpcUa_Byte kind)
{
    return kind >= OpcUaType_Boolean && kind <= OpcUaType_DiagnosticInfo;
}

void initializeElements(ElementType type, void* data, size_t count);
void clearElements(ElementType type, void* data, size_t count);
/// Frees what the elements own and leaves them as they are: for memory that goes away.
void releaseElements(ElementType type, void* data, size_t count);
void releaseStructures(const OpcUa_EncodeableType& type, void* objects, size_t count, TextReleaser& texts);
/// On failure the destination is left initialised.
[[nodiscard]] OpcUa_StatusCode copyElements(ElementType type, const void* source, void* destination,
                                            size_t count);
[[nodiscard]] int compareElements(ElementType type, const void* left, const void* right, size_t count);

/// Blocks of elements; one of no elements is a block all the same, for null means "no array".
[[nodiscard]] void* allocateElements(ElementType type, size_t count);
void deleteElements(ElementType type, void* data, size_t count);
/// Null for a null source; also null, with a bad status, when out of memory.
[[nodiscard]] void* cloneElements(ElementType type, const void* source, size_t count,
                                  OpcUa_StatusCode& status);

/// Three-way order of anything with operators.
template <typename T>
int order(const T& left, const T& right)
{
    return left < right ? -1 : right < left ? 1 : 0;
}

/// Members of structures by their offset.
template <typename T>
T& memberAt(void* object, size_t offset)
{
    return *reinterpret_cast<T*>(static_cast<char*>(object) + offset);
}
template <typename T>
const T& memberAt(const void* object, size_t offset)
{
    return *reinterpret_cast<const T*>(static_cast<const char*>(object) + offset);
}
inline void* elementAt(void* data, size_t size, size_t index)
{
    return static_cast<char*>(data) + size * index;
}
inline const void* elementAt(const void* data, size_t size, size_t index)
{
    return static_cast<const char*>(data) + size * index;
}

/// Gives the fields from this one on their null values, whatever they hold.
void initializeFields(const OpcUa_EncodeableType& type, OpcUa_UInt32 from, void* object);

/// Which fields of a structure hold a value: all, those that a mask names, or the one of a union.
class PresentFields
{
public:
    PresentFields(const OpcUa_EncodeableType& type, const void* object);
    PresentFields(const OpcUa_EncodeableType& type, OpcUa_UInt32 maskOrSwitch);
    bool has(OpcUa_UInt32 index) const
    {
        if (m_isUnion)
            return m_value == index + 1;
        if (index >= 32 || ((m_optional >> index) & 1u) == 0)
            return true;
        return ((m_value >> bitOf(index)) & 1u) != 0;
    }
    /// No bit, and no place in a union, that the type does not have.
    bool isValid(const OpcUa_EncodeableType& type) const;

private:
    OpcUa_UInt32 bitOf(OpcUa_UInt32 index) const
    {
        return static_cast<OpcUa_UInt32>(__builtin_popcount(m_optional & ((1u << index) - 1u)));
    }

    bool m_isUnion;
    OpcUa_UInt32 m_optional;
    OpcUa_UInt32 m_value;
};

} // namespace opcua
