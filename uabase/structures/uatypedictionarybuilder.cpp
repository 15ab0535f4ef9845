// Makes definitions of what a type dictionary says; declared in uatypedictionary_p.h.
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/structures/uatypedictionary.h>
#include <uabase/structures/uatypedictionary_p.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <algorithm>
#include <bit>
#include <ranges>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace uabase {

namespace {

// What the name of a field's type stands for.
struct ResolvedType
{
    enum Kind { Unknown, Bit, Character, BuiltIn, Opaque };
    Kind kind = Unknown;
    OpcUa_BuiltInType type = OpcUaType_Null;
    UaNodeId dataTypeId;
    OpcUa_Int32 opaqueLength = 0;
    UaEnumDefinition enumDefinition;
    UaOptionSetDefinition optionSetDefinition;
};

ResolvedType builtIn(OpcUa_BuiltInType type)
{
    ResolvedType resolved;
    resolved.kind = ResolvedType::BuiltIn;
    resolved.type = type;
    resolved.dataTypeId = UaNodeId(static_cast<OpcUa_UInt32>(type));
    return resolved;
}

// The types that every dictionary may use.
ResolvedType resolveSchemaType(std::string_view name)
{
    if (name == "Bit") {
        ResolvedType bit;
        bit.kind = ResolvedType::Bit;
        return bit;
    }
    if (name == "Char") {
        ResolvedType character = builtIn(OpcUaType_String);
        character.kind = ResolvedType::Character;
        return character;
    }
    if (name == "CharArray")
        return builtIn(OpcUaType_String);
    if (name == "WideChar")
        return builtIn(OpcUaType_UInt16);
    const UaNodeId id = uaNamespaceZeroDataType(name);
    if (id.isNull() || id.identifierNumeric() > OpcUaType_ByteString)
        return {};
    return builtIn(static_cast<OpcUa_BuiltInType>(id.identifierNumeric()));
}

ResolvedType resolveStandardType(std::string_view name)
{
    const UaNodeId id = uaNamespaceZeroDataType(name);
    if (id.isNull())
        return {};
    ResolvedType resolved = builtIn(uaNamespaceZeroBuiltInType(id));
    resolved.dataTypeId = id;
    resolved.enumDefinition = uaNamespaceZeroEnum(id);
    resolved.optionSetDefinition = uaNamespaceZeroOptionSet(id);
    return resolved;
}

ResolvedType resolveKnownType(const KnownType& known)
{
    ResolvedType resolved = builtIn(OpcUaType_ExtensionObject);
    switch (known.type.kind) {
    case DictionaryType::Structure:
        break;
    case DictionaryType::Enumeration:
        resolved.type = wireTypeOf(known.type);
        resolved.enumDefinition = known.enumDefinition;
        break;
    case DictionaryType::OptionSet:
        resolved.type = wireTypeOf(known.type);
        resolved.optionSetDefinition = known.optionSetDefinition;
        break;
    case DictionaryType::Opaque:
        resolved.kind = ResolvedType::Opaque;
        resolved.type = OpcUaType_ByteString;
        resolved.opaqueLength = static_cast<OpcUa_Int32>(known.type.lengthInBits / 8);
        if (known.type.lengthInBits == 0 || known.type.lengthInBits % 8 != 0)
            resolved.type = OpcUaType_Null;
        break;
    }
    resolved.dataTypeId = known.dataTypeId;
    return resolved;
}

ResolvedType resolve(const TypeName& name, const KnownTypes& types)
{
    if (const auto known = types.find(name); known != types.end())
        return resolveKnownType(known->second);
    if (name.namespaceUri.view() == UaTypeDictionary::schemaNamespace)
        return resolveSchemaType(name.name.view());
    if (name.namespaceUri.view() == UaTypeDictionary::standardNamespace)
        return resolveStandardType(name.name.view());
    return {};
}

// Puts the fields of one structure into steps, its base type's first.
class StructureBuilder
{
public:
    StructureBuilder(const TypeName& name, const KnownTypes& types) : m_name(name), m_types(types) {}

    UaStructureDefinition build(UaString& fault)
    {
        collectFields();
        for (const DictionaryField& field : m_fields) {
            if (field.lengthField.isNull())
                continue;
            m_lengthNames.insert(field.lengthField.view());
        }
        for (const DictionaryField& field : m_fields)
            if (!field.switchField.isNull())
                m_switchNames.insert(field.switchField.view());
        const KnownType& known = m_types.at(m_name);
        m_definition = UaStructureDefinition(known.type.name, known.dataTypeId, known.binaryEncodingId);
        for (const DictionaryField& field : m_fields) {
            if (!m_fault.empty())
                break;
            addField(field);
        }
        if (!m_fault.empty()) {
            fault = UaString(m_fault);
            return {};
        }
        applyLayout(m_definition, std::move(m_layout));
        return m_definition;
    }

private:
    void fail(const DictionaryField& field, std::string_view reason)
    {
        if (m_fault.empty())
            m_fault.append("field ").append(field.name.view()).append(": ").append(reason);
    }

    // A type that does not repeat its base's fields (marked as such) begins with them.
    void collectFields()
    {
        std::vector<const DictionaryType*> chain;
        TypeName name = m_name;
        for (;;) {
            const auto found = m_types.find(name);
            if (found == m_types.end() || found->second.type.kind != DictionaryType::Structure)
                break;
            const DictionaryType& type = found->second.type;
            if (std::ranges::find(chain, &type) != chain.end() || chain.size() > 100) {
                m_fault = "its base types form a circle";
                return;
            }
            if (!type.fault.isNull())
                m_fault = type.fault.toStdString();
            chain.push_back(&type);
            if (std::ranges::any_of(type.fields, &DictionaryField::inherited) || type.base.name.isNull())
                break;
            name = type.base;
        }
        for (auto type = chain.rbegin(); type != chain.rend(); ++type) {
            m_fields.insert(m_fields.end(), (*type)->fields.begin(), (*type)->fields.end());
            if (m_fields.size() > maxDictionaryFields)
                m_fault = "too many fields";
        }
    }

    int stepOf(const UaString& name) const
    {
        const auto found = m_steps.find(name.view());
        return found == m_steps.end() ? -1 : found->second;
    }

    bool isHidden(const DictionaryField& field, const ResolvedType& type) const
    {
        if (m_lengthNames.contains(field.name.view()))
            return true;
        return type.kind == ResolvedType::Bit &&
               (m_switchNames.contains(field.name.view()) || field.name.startsWith("Reserved"));
    }

    bool fillReferences(const DictionaryField& field, LayoutStep& step)
    {
        if (!field.switchField.isNull()) {
            step.switchStep = stepOf(field.switchField);
            step.switchOperand = field.switchOperand;
            step.switchValue = field.switchValue.value_or(1);
            if (step.switchStep < 0 || !isNumber(step.switchStep)) {
                fail(field, "its switch field is no earlier number");
                return false;
            }
        }
        if (field.lengthField.isNull())
            return true;
        step.lengthStep = stepOf(field.lengthField);
        step.lengthInBytes = field.lengthInBytes;
        if (step.lengthStep < 0 || !isNumber(step.lengthStep)) {
            fail(field, "its length field is no earlier number");
            return false;
        }
        return true;
    }

    bool isNumber(int index) const
    {
        const LayoutStep& step = m_layout.steps[static_cast<std::size_t>(index)];
        return step.bits > 0 ||
               (!step.isPlural() && step.type >= OpcUaType_Boolean && step.type <= OpcUaType_UInt64);
    }

    void fillShape(const DictionaryField& field, const ResolvedType& type, LayoutStep& step)
    {
        step.type = type.type;
        step.bigEndian = field.bigEndian && isSwapped(type.type);
        step.terminator = field.terminator;
        if (type.kind == ResolvedType::Bit) {
            step.bits = std::max<OpcUa_UInt32>(field.length, 1);
            step.type = typeOfBits(step.bits);
            if (step.bits > maxStepBits || step.lengthStep >= 0)
                fail(field, "more than 64 bits");
            return;
        }
        if (type.kind == ResolvedType::Opaque) {
            step.characters = true;
            step.fixedLength = type.opaqueLength;
            if (field.length > 0 || step.lengthStep >= 0)
                fail(field, "an array of an opaque type");
            return;
        }
        if (field.length > 0 && step.lengthStep < 0)
            step.fixedLength = static_cast<OpcUa_Int32>(field.length);
        if (type.kind == ResolvedType::Character) {
            step.characters = true;
            if (!step.isPlural())
                step.fixedLength = 1;
        } else if (step.terminator >= 0 && type.type != OpcUaType_Byte && type.type != OpcUaType_SByte) {
            fail(field, "a terminator of an array that is not of bytes");
        }
    }

    static bool isSwapped(OpcUa_BuiltInType type) noexcept
    {
        return (type >= OpcUaType_Int16 && type <= OpcUaType_Double) || type == OpcUaType_DateTime ||
               type == OpcUaType_StatusCode;
    }

    void addField(const DictionaryField& field)
    {
        const ResolvedType type = resolve(field.type, m_types);
        if (type.kind == ResolvedType::Unknown ||
            (type.type == OpcUaType_Null && type.kind != ResolvedType::Bit))
            return fail(field, "unknown type " + field.type.name.toStdString());
        LayoutStep step;
        if (!fillReferences(field, step))
            return;
        fillShape(field, type, step);
        if (!isHidden(field, type)) {
            step.field = m_definition.fieldCount();
            addVisible(field, type, step);
        }
        const auto index = static_cast<int>(m_layout.steps.size());
        if (!m_steps.emplace(field.name.view(), index).second && step.field >= 0)
            return fail(field, "its name stands for two fields");
        m_layout.steps.push_back(step);
    }

    void addVisible(const DictionaryField& field, const ResolvedType& type, const LayoutStep& step)
    {
        const bool isArray = step.isPlural() && !step.characters;
        UaStructureField visible(field.name, type.dataTypeId, step.type, isArray ? 1 : -1,
                                 step.switchStep >= 0);
        if (visible.dataTypeId().isNull())
            visible.setDataTypeId(UaNodeId(static_cast<OpcUa_UInt32>(step.type)));
        visible.setDescription(field.description);
        visible.setEnumDefinition(type.enumDefinition);
        visible.setOptionSetDefinition(type.optionSetDefinition);
        m_definition.addField(visible);
    }

    TypeName m_name;
    const KnownTypes& m_types;
    std::vector<DictionaryField> m_fields;
    std::set<std::string_view> m_lengthNames;
    std::set<std::string_view> m_switchNames;
    std::unordered_map<std::string_view, int> m_steps;
    UaStructureDefinition m_definition;
    StructureLayout m_layout;
    std::string m_fault;
};

} // namespace

OpcUa_BuiltInType wireTypeOf(const DictionaryType& type) noexcept
{
    const bool isOptionSet = type.kind == DictionaryType::OptionSet;
    switch (type.lengthInBits) {
    case 8:
        return OpcUaType_Byte;
    case 16:
        return isOptionSet ? OpcUaType_UInt16 : OpcUaType_Int16;
    case 0: // not said: as the standard's own
    case 32:
        return isOptionSet ? OpcUaType_UInt32 : OpcUaType_Int32;
    case 64:
        return isOptionSet ? OpcUaType_UInt64 : OpcUaType_Int64;
    default:
        return OpcUaType_Null;
    }
}

UaStructureDefinition buildStructure(const TypeName& name, const KnownTypes& types, UaString& fault)
{
    return StructureBuilder(name, types).build(fault);
}

UaEnumDefinition buildEnumeration(const KnownType& type)
{
    UaEnumDefinition definition(type.type.name, type.dataTypeId);
    for (const UaEnumValue& value : type.type.values)
        definition.addValue(value);
    return definition;
}

UaOptionSetDefinition buildOptionSet(const KnownType& type)
{
    UaOptionSetDefinition definition(type.type.name, type.dataTypeId, wireTypeOf(type.type));
    for (UaEnumValue value : type.type.values) {
        const auto mask = static_cast<OpcUa_UInt64>(value.value); // a mask of no or several bits names none
        if (!std::has_single_bit(mask))
            continue;
        value.value = std::countr_zero(mask);
        definition.addBit(value);
    }
    return definition;
}

} // namespace uabase
