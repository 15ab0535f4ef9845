#include <uabase/structures/uanamespacezero.h>

#include <opcua/opcua_identifiers.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant_p.h>

#include <algorithm>
#include <bit>
#include <mutex>
#include <string_view>
#include <unordered_map>

namespace {

struct SimpleType
{
    OpcUa_UInt32 id;
    OpcUa_BuiltInType builtInType;
};

// Data types of the standard that are built-in types under another name.
constexpr SimpleType simpleTypes[] = {
    {OpcUaId_BaseDataType, OpcUaType_Variant},
    {OpcUaId_Number, OpcUaType_Variant},
    {OpcUaId_Integer, OpcUaType_Variant},
    {OpcUaId_UInteger, OpcUaType_Variant},
    {OpcUaId_Decimal, OpcUaType_ExtensionObject},
    {OpcUaId_Enumeration, OpcUaType_Int32},
    {OpcUaId_Image, OpcUaType_ByteString},
    {OpcUaId_IntegerId, OpcUaType_UInt32},
    {OpcUaId_Counter, OpcUaType_UInt32},
    {OpcUaId_Duration, OpcUaType_Double},
    {OpcUaId_NumericRange, OpcUaType_String},
    {OpcUaId_UtcTime, OpcUaType_DateTime},
    {OpcUaId_LocaleId, OpcUaType_String},
    {OpcUaId_ApplicationInstanceCertificate, OpcUaType_ByteString},
    {OpcUaId_SessionAuthenticationToken, OpcUaType_NodeId},
    {OpcUaId_ContinuationPoint, OpcUaType_ByteString},
    {OpcUaId_ImageBMP, OpcUaType_ByteString},
    {OpcUaId_ImageGIF, OpcUaType_ByteString},
    {OpcUaId_ImageJPG, OpcUaType_ByteString},
    {OpcUaId_ImagePNG, OpcUaType_ByteString},
    {OpcUaId_AudioDataType, OpcUaType_ByteString},
    {OpcUaId_BitFieldMaskDataType, OpcUaType_UInt64},
    {OpcUaId_NormalizedString, OpcUaType_String},
    {OpcUaId_DecimalString, OpcUaType_String},
    {OpcUaId_DurationString, OpcUaType_String},
    {OpcUaId_TimeString, OpcUaType_String},
    {OpcUaId_DateString, OpcUaType_String},
    {OpcUaId_UriString, OpcUaType_String},
    {OpcUaId_SemanticVersionString, OpcUaType_String},
    {OpcUaId_TrimmedString, OpcUaType_String},
    {OpcUaId_EncodedTicket, OpcUaType_String},
    {OpcUaId_Index, OpcUaType_UInt32},
    {OpcUaId_VersionTime, OpcUaType_UInt32},
    {OpcUaId_Handle, OpcUaType_UInt32},
};

// The number of a local id of namespace 0; 0 for others.
OpcUa_UInt32 standardNumber(const UaNodeId& id) noexcept
{
    return id.namespaceIndex() == 0 && id.isNumeric() ? id.identifierNumeric() : 0;
}

const OpcUa_EncodeableType* findType(OpcUa_UInt32 id) noexcept
{
    const OpcUa_EncodeableType* type = OpcUa_EncodeableType_FindByTypeId(id);
    return type ? type : OpcUa_EncodeableType_FindByBinaryId(id);
}

UaStructureField fieldOf(const OpcUa_FieldDescriptor& descriptor, bool isOptional)
{
    OpcUa_BuiltInType type = static_cast<OpcUa_BuiltInType>(descriptor.Kind);
    if (descriptor.Kind == OpcUa_FieldKind_Enumeration)
        type = OpcUaType_Int32;
    else if (descriptor.Kind == OpcUa_FieldKind_Structure)
        type = OpcUaType_ExtensionObject;
    const UaNodeId dataTypeId(descriptor.DataTypeId);
    UaStructureField field(UaString(descriptor.Name), dataTypeId, type, descriptor.IsArray ? 1 : -1,
                           isOptional);
    // a structure that the standard sends with its type id may be a derived one
    field.setAllowSubTypes(descriptor.Kind == OpcUaType_ExtensionObject);
    field.setEnumDefinition(uaNamespaceZeroEnum(dataTypeId));
    field.setOptionSetDefinition(uaNamespaceZeroOptionSet(dataTypeId));
    return field;
}

UaStructureDefinition definitionOf(const OpcUa_EncodeableType& type)
{
    UaStructureDefinition definition(UaString(type.TypeName), UaNodeId(type.TypeId),
                                     UaNodeId(type.BinaryEncodingTypeId));
    definition.setUnion(type.IsUnion != 0);
    definition.setOptionSet(type.TypeId == OpcUaId_OptionSet);
    definition.setHasOptionalFields(type.HasOptionalFields != 0);
    for (OpcUa_UInt32 i = 0; i < type.FieldCount; ++i)
        definition.addField(fieldOf(type.Fields[i], i < 32 && (type.OptionalMask >> i & 1u) != 0));
    return definition;
}

// Definitions made so far. Thread-safe; the maker runs without the lock, two threads may both make one.
template <typename Key, typename Definition>
class DefinitionCache
{
public:
    template <typename Maker>
    Definition get(Key key, Maker make)
    {
        {
            const std::lock_guard lock(m_mutex);
            if (const auto found = m_definitions.find(key); found != m_definitions.end())
                return found->second;
        }
        Definition made = make(*key);
        const std::lock_guard lock(m_mutex);
        return m_definitions.emplace(key, made).first->second;
    }

private:
    std::mutex m_mutex;
    std::unordered_map<Key, Definition> m_definitions;
};

// Ids of the standard's structures and enumerations by name; the tables are in order of their ids only.
std::unordered_map<std::string_view, OpcUa_UInt32> namesOfTables()
{
    constexpr OpcUa_UInt32 lastId = 65535;
    std::unordered_map<std::string_view, OpcUa_UInt32> names;
    for (OpcUa_UInt32 id = 1; id <= lastId; ++id)
        if (const OpcUa_EncodeableType* type = OpcUa_EncodeableType_FindByTypeId(id))
            names.emplace(type->TypeName, id);
        else if (const OpcUa_EnumeratedType* enumerated = OpcUa_EnumeratedType_Find(id))
            names.emplace(enumerated->TypeName, id);
    return names;
}

const OpcUa_EnumeratedType* findEnumerated(const UaNodeId& dataTypeId, bool isOptionSet) noexcept
{
    const OpcUa_UInt32 number = standardNumber(dataTypeId);
    const OpcUa_EnumeratedType* type = number ? OpcUa_EnumeratedType_Find(number) : nullptr;
    return type && (type->IsOptionSet != 0) == isOptionSet ? type : nullptr;
}

UaEnumDefinition enumOf(const OpcUa_EnumeratedType& type)
{
    UaEnumDefinition definition(UaString(type.TypeName), UaNodeId(type.TypeId));
    for (OpcUa_UInt32 i = 0; i < type.ValueCount; ++i)
        definition.addValue(type.Values[i].Value, UaString(type.Values[i].Name));
    return definition;
}

// The tables hold masks; a mask of no bit or of several names no bit.
UaOptionSetDefinition optionSetOf(const OpcUa_EnumeratedType& type)
{
    UaOptionSetDefinition definition(UaString(type.TypeName), UaNodeId(type.TypeId),
                                     static_cast<OpcUa_BuiltInType>(type.BuiltInType));
    for (OpcUa_UInt32 i = 0; i < type.ValueCount; ++i) {
        const auto mask = static_cast<OpcUa_UInt64>(type.Values[i].Value);
        if (std::has_single_bit(mask))
            definition.addBit(std::countr_zero(mask), UaString(type.Values[i].Name));
    }
    return definition;
}

} // namespace

UaStructureDefinition uaNamespaceZeroStructure(const UaNodeId& dataTypeOrEncodingId)
{
    static DefinitionCache<const OpcUa_EncodeableType*, UaStructureDefinition> cache;
    const OpcUa_UInt32 number = standardNumber(dataTypeOrEncodingId);
    const OpcUa_EncodeableType* type = number ? findType(number) : nullptr;
    return type ? cache.get(type, definitionOf) : UaStructureDefinition();
}

UaEnumDefinition uaNamespaceZeroEnum(const UaNodeId& dataTypeId)
{
    static DefinitionCache<const OpcUa_EnumeratedType*, UaEnumDefinition> cache;
    const OpcUa_EnumeratedType* type = findEnumerated(dataTypeId, false);
    return type ? cache.get(type, enumOf) : UaEnumDefinition();
}

UaOptionSetDefinition uaNamespaceZeroOptionSet(const UaNodeId& dataTypeId)
{
    static DefinitionCache<const OpcUa_EnumeratedType*, UaOptionSetDefinition> cache;
    const OpcUa_EnumeratedType* type = findEnumerated(dataTypeId, true);
    return type ? cache.get(type, optionSetOf) : UaOptionSetDefinition();
}

OpcUa_BuiltInType uaNamespaceZeroBuiltInType(const UaNodeId& dataTypeId)
{
    const OpcUa_UInt32 number = standardNumber(dataTypeId);
    for (const SimpleType& simple : simpleTypes)
        if (simple.id == number)
            return simple.builtInType;
    if (number <= OpcUaType_DiagnosticInfo)
        return static_cast<OpcUa_BuiltInType>(number);
    if (const OpcUa_EnumeratedType* type = OpcUa_EnumeratedType_Find(number); type)
        return static_cast<OpcUa_BuiltInType>(type->BuiltInType);
    return OpcUa_EncodeableType_FindByTypeId(number) ? OpcUaType_ExtensionObject : OpcUaType_Null;
}

UaNodeId uaNamespaceZeroDataType(std::string_view name)
{
    static const std::unordered_map<std::string_view, OpcUa_UInt32> names = namesOfTables();
    if (const OpcUa_BuiltInType builtIn = uabase::builtInTypeOf(name); builtIn != OpcUaType_Null)
        return UaNodeId(static_cast<OpcUa_UInt32>(builtIn));
    const auto found = names.find(name);
    return found == names.end() ? UaNodeId() : UaNodeId(found->second);
}
