#include <uaclientsdk/types/datatypedefinitions.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/calls/tracescope.h>
#include <uaclientsdk/types/olderdatatypes.h>
#include <uaclientsdk/uasession.h>

#include <new>
#include <utility>

namespace UaClientSdk {

namespace {

// The structure of one type inside a value; null when the value holds something else.
template <typename T>
const T* decodedAs(const OpcUa_Variant& value, const OpcUa_EncodeableType& type)
{
    if (value.Datatype != OpcUaType_ExtensionObject || value.ArrayType != OpcUa_VariantArrayType_Scalar ||
        !value.Value.ExtensionObject)
        return nullptr;
    const OpcUa_ExtensionObject& object = *value.Value.ExtensionObject;
    const bool matches = object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                         object.Body.EncodeableObject.Type == &type;
    return matches ? static_cast<const T*>(object.Body.EncodeableObject.Object) : nullptr;
}

void warn(const DataType& type, const char* what)
{
    UaTrace::tWarning("Warning: UaSession::loadDataTypeDictionaries - %s of data type %s", what,
                      type.id.toFullString().toUtf8());
}

void addStructure(const DataType& type, const DataTypeTree& tree, const OpcUa_StructureDefinition& attribute,
                  UaTypeDefinitionStore& store)
{
    const UaStructureDefinition definition =
        uaStructureDefinition(attribute, type.name, type.id,
                              [&tree](const UaNodeId& dataTypeId) { return tree.wireType(dataTypeId); });
    if (definition.isNull())
        warn(type, "a field of unknown type");
    store.add(definition);
}

void addEnumeration(const DataType& type, const DataTypeTree& tree, const OpcUa_EnumDefinition& attribute,
                    UaTypeDefinitionStore& store)
{
    const OpcUa_BuiltInType wire = tree.wireType(type.id);
    if (wire == OpcUaType_Int32) {
        store.add(uaEnumDefinition(attribute, type.name, type.id));
    } else {
        // option sets derive from an unsigned integer instead of Enumeration
        store.add(uaOptionSetDefinition(attribute, type.name, type.id, wire));
    }
}

// False when the attribute says nothing: abstract types and those of older servers have none.
bool addDefinition(const DataType& type, const DataTypeTree& tree, const OpcUa_DataValue& value,
                   UaTypeDefinitionStore& store)
{
    if (OpcUa_IsBad(value.StatusCode) || value.Value.Datatype == OpcUaType_Null)
        return false;
    if (const auto* structure =
            decodedAs<OpcUa_StructureDefinition>(value.Value, OpcUa_StructureDefinition_EncodeableType))
        addStructure(type, tree, *structure, store);
    else if (const auto* enumeration =
                 decodedAs<OpcUa_EnumDefinition>(value.Value, OpcUa_EnumDefinition_EncodeableType))
        addEnumeration(type, tree, *enumeration, store);
    else
        warn(type, "unusable definition");
    return true;
}

// Whether the program knows a type without asking: that of a newer standard it does not.
bool isBuiltIn(const UaNodeId& id)
{
    return id.namespaceIndex() == 0 && uaNamespaceZeroBuiltInType(id) != OpcUaType_Null;
}

// Whether a type may have fields, values or bits; a subtype of Double has nothing more to tell.
bool hasContent(const DataTypeTree& tree, const UaNodeId& id)
{
    switch (tree.wireType(id)) {
    case OpcUaType_ExtensionObject:
        return true;
    case OpcUaType_Int32:
        return tree.derivesFrom(id, UaNodeId(OpcUaId_Enumeration));
    case OpcUaType_Byte:
    case OpcUaType_UInt16:
    case OpcUaType_UInt32:
    case OpcUaType_UInt64:
        return true;
    default:
        return false;
    }
}

} // namespace

UaStatus DataTypeDefinitions::load(ServiceSettings settings, OpcUa_UInt32 link)
{
    OpcUa_UInt32 clears = 0;
    {
        std::unique_lock lock(m_mutex);
        if (m_loading) {
            m_loadEnded.wait(lock, [this] { return !m_loading; });
            return m_lastResult;
        }
        m_loading = true;
        clears = m_clears;
    }
    TraceScope trace("UaSession", "loadDataTypeDictionaries");
    UaTypeDefinitionStore loaded;
    const UaStatus status = trace.ending(loadGuarded(settings, loaded));
    if (status.isBad()) {
        UaTrace::tError("Error: UaSession::loadDataTypeDictionaries failed [status=0x%x]",
                        status.statusCode());
    }
    const std::lock_guard lock(m_mutex);
    m_loading = false;
    m_lastResult = status;
    m_loadEnded.notify_all();
    if (clears != m_clears)
        return status;
    if (status.isGood() || !m_isLoaded)
        m_loaded = std::move(loaded);
    m_isLoaded = m_isLoaded || status.isGood();
    m_failedLink = status.isGood() ? std::nullopt : std::make_optional(link);
    return status;
}

// Whoever waits for the load must hear of its end.
UaStatus DataTypeDefinitions::loadGuarded(ServiceSettings& settings, UaTypeDefinitionStore& store) const
try {
    return loadAll(settings, store);
} catch (const std::bad_alloc&) {
    return UaStatus(OpcUa_BadOutOfMemory);
}

UaStatus DataTypeDefinitions::loadAll(ServiceSettings& settings, UaTypeDefinitionStore& store) const
{
    DataTypeTree tree;
    UaStatus status = tree.browse(m_session, settings);
    std::vector<UaNodeId> types;
    for (const auto& [id, type] : tree.types())
        if (!isBuiltIn(id) && hasContent(tree, id))
            types.push_back(id);
    if (status.isBad() || types.empty())
        return status;
    status = readDefinitions(settings, tree, types, store);
    if (status.isGood() && !types.empty())
        status = OlderDataTypes(m_session, settings, tree, store).load(types);
    return status;
}

void DataTypeDefinitions::clear()
{
    const std::lock_guard lock(m_mutex);
    m_loaded.clear();
    m_isLoaded = false;
    m_failedLink.reset();
    ++m_clears;
}

bool DataTypeDefinitions::needsLoad(OpcUa_UInt32 link) const
{
    const std::lock_guard lock(m_mutex);
    return !m_isLoaded && m_failedLink != link;
}

bool DataTypeDefinitions::hasFailed() const
{
    const std::lock_guard lock(m_mutex);
    return m_failedLink.has_value();
}

UaStatus DataTypeDefinitions::readDefinitions(ServiceSettings& settings, const DataTypeTree& tree,
                                              std::vector<UaNodeId>& types,
                                              UaTypeDefinitionStore& store) const
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(types.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        if (OpcUa_IsBad(types[i].copyTo(&nodes[i].NodeId)))
            return UaStatus(OpcUa_BadOutOfMemory);
        nodes[i].AttributeId = OpcUa_Attributes_DataTypeDefinition;
    }
    UaDataValues values;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        m_session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, nodes, values, diagnosticInfos);
    std::vector<UaNodeId> without;
    for (OpcUa_UInt32 i = 0; i < values.length() && i < types.size(); ++i)
        if (!addDefinition(tree.types().at(types[i]), tree, values[i], store))
            without.push_back(types[i]);
    types = std::move(without);
    return status;
}

UaStructureDefinition DataTypeDefinitions::structure(const UaNodeId& dataTypeOrEncodingId) const
{
    std::lock_guard lock(m_mutex);
    return m_loaded.structure(dataTypeOrEncodingId);
}

UaEnumDefinition DataTypeDefinitions::enumeration(const UaNodeId& dataTypeId) const
{
    std::lock_guard lock(m_mutex);
    return m_loaded.enumeration(dataTypeId);
}

UaOptionSetDefinition DataTypeDefinitions::optionSet(const UaNodeId& dataTypeId) const
{
    std::lock_guard lock(m_mutex);
    return m_loaded.optionSet(dataTypeId);
}

} // namespace UaClientSdk
