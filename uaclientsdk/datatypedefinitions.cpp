#include <uaclientsdk/datatypedefinitions.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/uanamespacezero.h>
#include <uabase/uatrace.h>
#include <uaclientsdk/uasession.h>

namespace UaClientSdk {

namespace {

// More than any server defines, few enough to stay harmless: a hostile one may invent types for ever.
constexpr std::size_t maxTypes = 50000;
constexpr int maxDepth = 100;
constexpr int maxBrowseNextCalls = 1000;

void fillBrowse(const UaNodeId& dataType, OpcUa_BrowseDescription& description)
{
    dataType.copyTo(&description.NodeId);
    description.BrowseDirection = OpcUa_BrowseDirection_Forward;
    description.ReferenceTypeId.Identifier.Numeric = OpcUaId_HasSubtype;
    description.IncludeSubtypes = OpcUa_True;
    description.NodeClassMask = OpcUa_NodeClass_DataType;
    description.ResultMask = OpcUa_BrowseResultMask_BrowseName;
}

// The structure of one type inside a value; null when the value holds something else.
template <class T>
const T* decodedAs(const OpcUa_Variant& value, const OpcUa_EncodeableType& type)
{
    if (value.Datatype != OpcUaType_ExtensionObject || value.ArrayType != OpcUa_VariantArrayType_Scalar ||
        !value.Value.ExtensionObject) {
        return nullptr;
    }
    const OpcUa_ExtensionObject& object = *value.Value.ExtensionObject;
    const bool matches = object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                         object.Body.EncodeableObject.Type == &type;
    return matches ? static_cast<const T*>(object.Body.EncodeableObject.Object) : nullptr;
}

} // namespace

UaStatus DataTypeDefinitions::load(ServiceSettings settings)
{
    UaTrace::tInOut("--> UaSession::loadDataTypeDictionaries");
    TypeTree types;
    Loaded loaded;
    UaStatus status = browseTypes(settings, types);
    if (status.isGood()) {
        status = readDefinitions(settings, types, loaded);
    }
    if (status.isBad()) {
        UaTrace::tError("Error: UaSession::loadDataTypeDictionaries failed [status=0x%x]",
                        status.statusCode());
    }
    {
        std::lock_guard lock(m_mutex);
        m_loaded = std::move(loaded);
        m_isLoaded = true;
    }
    UaTrace::tInOut("<-- UaSession::loadDataTypeDictionaries [ret=0x%lx]",
                    static_cast<unsigned long>(status.statusCode()));
    return status;
}

void DataTypeDefinitions::clear()
{
    std::lock_guard lock(m_mutex);
    m_loaded = Loaded();
    m_isLoaded = false;
}

bool DataTypeDefinitions::isLoaded() const
{
    std::lock_guard lock(m_mutex);
    return m_isLoaded;
}

UaStatus DataTypeDefinitions::browseTypes(ServiceSettings& settings, TypeTree& types) const
{
    const UaNodeId root(OpcUaId_BaseDataType);
    types.emplace(root, DataType{root, UaNodeId(), UaString("BaseDataType")});
    std::vector<UaNodeId> level{root};
    for (int depth = 0; !level.empty() && depth < maxDepth; ++depth) {
        std::vector<UaNodeId> next;
        const UaStatus status = browseLevel(settings, level, types, next);
        if (status.isBad()) {
            return status;
        }
        level = std::move(next);
    }
    return UaStatus();
}

UaStatus DataTypeDefinitions::browseLevel(ServiceSettings& settings, const std::vector<UaNodeId>& level,
                                          TypeTree& types, std::vector<UaNodeId>& next) const
{
    UaBrowseDescriptions descriptions(static_cast<OpcUa_UInt32>(level.size()));
    for (OpcUa_UInt32 i = 0; i < descriptions.length(); ++i) {
        fillBrowse(level[i], descriptions[i]);
    }
    UaBrowseResults results;
    UaDiagnosticInfos diagnosticInfos;
    UaStatus status = m_session.browseList(settings, UaNodeId(), 0, descriptions, results, diagnosticInfos);
    std::vector<UaNodeId> parents(level);
    for (int calls = 0; status.isGood() && calls < maxBrowseNextCalls; ++calls) {
        UaByteStringArray points;
        std::vector<UaNodeId> waiting;
        for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
            const OpcUa_BrowseResult& result = results[i];
            for (OpcUa_Int32 r = 0; r < result.NoOfReferences && types.size() < maxTypes; ++r) {
                const OpcUa_ReferenceDescription& reference = result.References[r];
                const UaNodeId id(reference.NodeId.NodeId);
                if (types.emplace(id, DataType{id, parents[i], UaString(reference.BrowseName.Name)}).second) {
                    next.push_back(id);
                }
            }
            if (result.ContinuationPoint.Length > 0) {
                points.append(result.ContinuationPoint);
                waiting.push_back(parents[i]);
            }
        }
        if (points.isEmpty()) {
            break;
        }
        parents = std::move(waiting);
        status = m_session.browseListNext(settings, false, points, results, diagnosticInfos);
    }
    return status;
}

UaStatus DataTypeDefinitions::readDefinitions(ServiceSettings& settings, const TypeTree& types,
                                              Loaded& loaded) const
{
    std::vector<const DataType*> asked;
    UaReadValueIds nodes;
    for (const auto& [id, type] : types) {
        if (id.namespaceIndex() != 0) {
            asked.push_back(&type);
        }
    }
    if (asked.empty()) {
        return UaStatus();
    }
    nodes.create(static_cast<OpcUa_UInt32>(asked.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        asked[i]->id.copyTo(&nodes[i].NodeId);
        nodes[i].AttributeId = OpcUa_Attributes_DataTypeDefinition;
    }
    UaDataValues values;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        m_session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnosticInfos);
    for (OpcUa_UInt32 i = 0; i < values.length(); ++i) {
        addDefinition(*asked[i], types, values[i], loaded);
    }
    return status;
}

void DataTypeDefinitions::addDefinition(const DataType& type, const TypeTree& types,
                                        const OpcUa_DataValue& value, Loaded& loaded)
{
    if (OpcUa_IsBad(value.StatusCode)) {
        return; // abstract types and those of older servers have none
    }
    if (const auto* structure =
            decodedAs<OpcUa_StructureDefinition>(value.Value, OpcUa_StructureDefinition_EncodeableType)) {
        addStructure(type, types, *structure, loaded);
    } else if (const auto* enumeration =
                   decodedAs<OpcUa_EnumDefinition>(value.Value, OpcUa_EnumDefinition_EncodeableType)) {
        addEnumeration(type, types, *enumeration, loaded);
    } else {
        UaTrace::tWarning(
            "Warning: UaSession::loadDataTypeDictionaries - unusable definition of data type %s",
            type.id.toFullString().toUtf8());
    }
}

void DataTypeDefinitions::addStructure(const DataType& type, const TypeTree& types,
                                       const OpcUa_StructureDefinition& attribute, Loaded& loaded)
{
    UaStructureDefinition definition =
        uaStructureDefinition(attribute, type.name, type.id,
                              [&types](const UaNodeId& dataTypeId) { return wireType(dataTypeId, types); });
    if (definition.isNull()) {
        UaTrace::tWarning(
            "Warning: UaSession::loadDataTypeDictionaries - data type %s has a field of an unknown type",
            type.id.toFullString().toUtf8());
        return;
    }
    if (!definition.binaryEncodingId().isNull()) {
        loaded.encodings.emplace(definition.binaryEncodingId(), type.id);
    }
    loaded.structures.emplace(type.id, std::move(definition));
}

void DataTypeDefinitions::addEnumeration(const DataType& type, const TypeTree& types,
                                         const OpcUa_EnumDefinition& attribute, Loaded& loaded)
{
    const OpcUa_BuiltInType wire = wireType(type.id, types);
    if (wire == OpcUaType_Int32) {
        loaded.enumerations.emplace(type.id, uaEnumDefinition(attribute, type.name, type.id));
    } else {
        // option sets derive from an unsigned integer instead of Enumeration
        loaded.optionSets.emplace(type.id, uaOptionSetDefinition(attribute, type.name, type.id, wire));
    }
}

OpcUa_BuiltInType DataTypeDefinitions::wireType(const UaNodeId& dataTypeId, const TypeTree& types)
{
    UaNodeId id = dataTypeId;
    for (int depth = 0; depth < maxDepth; ++depth) {
        if (id.namespaceIndex() == 0) {
            const OpcUa_BuiltInType known = uaNamespaceZeroBuiltInType(id);
            if (known != OpcUaType_Null) {
                return known;
            }
        }
        const auto type = types.find(id);
        if (type == types.end() || type->second.parent.isNull()) {
            break;
        }
        id = type->second.parent;
    }
    return OpcUaType_Null;
}

UaStructureDefinition DataTypeDefinitions::structure(const UaNodeId& dataTypeOrEncodingId) const
{
    {
        std::lock_guard lock(m_mutex);
        const auto encoding = m_loaded.encodings.find(dataTypeOrEncodingId);
        const auto found = m_loaded.structures.find(
            encoding == m_loaded.encodings.end() ? dataTypeOrEncodingId : encoding->second);
        if (found != m_loaded.structures.end()) {
            return found->second;
        }
    }
    return uaNamespaceZeroStructure(dataTypeOrEncodingId);
}

UaEnumDefinition DataTypeDefinitions::enumeration(const UaNodeId& dataTypeId) const
{
    {
        std::lock_guard lock(m_mutex);
        const auto found = m_loaded.enumerations.find(dataTypeId);
        if (found != m_loaded.enumerations.end()) {
            return found->second;
        }
    }
    return uaNamespaceZeroEnum(dataTypeId);
}

UaOptionSetDefinition DataTypeDefinitions::optionSet(const UaNodeId& dataTypeId) const
{
    {
        std::lock_guard lock(m_mutex);
        const auto found = m_loaded.optionSets.find(dataTypeId);
        if (found != m_loaded.optionSets.end()) {
            return found->second;
        }
    }
    return uaNamespaceZeroOptionSet(dataTypeId);
}

} // namespace UaClientSdk
