#include <stack/encoding/lookup.h>

#include <stack/encoding/nametables.h>

#include <algorithm>
#include <ranges>
#include <span>

namespace opcua {

namespace {

// The first of the entries, which are in order of their key; null when there is none with this key.
template <typename Entry, typename Projection, typename Key>
const Entry* find(std::span<const Entry> entries, Key key, Projection projection)
{
    const auto at = std::ranges::lower_bound(entries, key, {}, projection);
    return at != entries.end() && projection(*at) == key ? &*at : nullptr;
}

} // namespace

const OpcUa_EncodeableType* findTypeByBinaryId(OpcUa_UInt32 binaryEncodingTypeId)
{
    const std::span types(opcua_typesByBinaryId, opcua_typesByBinaryIdCount);
    const auto* const entry =
        find(types, binaryEncodingTypeId, [](const auto* type) { return type->BinaryEncodingTypeId; });
    return entry != nullptr ? *entry : nullptr;
}

const OpcUa_EncodeableType* findTypeByTypeId(OpcUa_UInt32 dataTypeId)
{
    const std::span types(opcua_typesByTypeId, opcua_typesByTypeIdCount);
    const auto* const entry = find(types, dataTypeId, [](const auto* type) { return type->TypeId; });
    return entry != nullptr ? *entry : nullptr;
}

const OpcUa_EnumeratedType* findEnumeratedType(OpcUa_UInt32 dataTypeId)
{
    const std::span types(opcua_enumeratedTypes, opcua_enumeratedTypeCount);
    return find(types, dataTypeId, [](const auto& type) { return type.TypeId; });
}

const char* nameOfEnumValue(OpcUa_UInt32 enumDataTypeId, OpcUa_Int32 value)
{
    const OpcUa_EnumeratedType* const type = findEnumeratedType(enumDataTypeId);
    if (type == nullptr)
        return nullptr;
    const std::span values(type->Values, type->ValueCount);
    const auto at = std::ranges::find(values, OpcUa_Int64{value}, &OpcUa_EnumeratedValue::Value);
    return at != values.end() ? at->Name : nullptr;
}

const char* nameOfStatusCode(OpcUa_StatusCode code)
{
    const std::span names(opcua_statusCodeNames, opcua_statusCodeNameCount);
    const auto* const entry = find(names, code & 0xFFFF0000u, [](const auto& name) { return name.Code; });
    return entry != nullptr ? entry->Name : nullptr;
}

const char* nameOfAttribute(OpcUa_UInt32 attributeId)
{
    return attributeId >= 1 && attributeId <= opcua_attributeNameCount ? opcua_attributeNames[attributeId - 1]
                                                                       : nullptr;
}

} // namespace opcua
