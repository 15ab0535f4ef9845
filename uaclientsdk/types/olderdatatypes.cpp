#include <uaclientsdk/types/olderdatatypes.h>

#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_types.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uaoptionsetdefinition.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/system/uatrace.h>
#include <uabase/values/uaarray.h>
#include <uabase/values/uaarrays.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uadiagnosticinfos.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uaclientsdk/types/batchbrowse.h>
#include <uaclientsdk/uasession.h>

#include <set>
#include <utility>

namespace UaClientSdk {

namespace {

// The standard's folder of dictionaries for the binary encoding.
constexpr OpcUa_UInt32 binarySchemaId = 93;
// Dictionaries that import others that import others.
constexpr int maxImportRounds = 3;

void warn(const char* what, const UaString& name, const UaString& reason)
{
    UaTrace::tWarning("Warning: UaSession::loadDataTypeDictionaries - %s %s: %s", what, name.toUtf8(),
                      reason.toUtf8());
}

std::vector<UaEnumValue> valuesOfTexts(const UaVariant& value)
{
    std::vector<UaEnumValue> values;
    UaArray<OpcUa_LocalizedText> texts;
    if (!value.isArray() || !value.toLocalizedTextArray(texts))
        return values;
    for (OpcUa_UInt32 i = 0; i < texts.length(); ++i) {
        const UaLocalizedText text(texts[i]);
        values.push_back({i, text.text(), text, UaLocalizedText()});
    }
    return values;
}

std::vector<UaEnumValue> valuesOfRecords(const UaVariant& value)
{
    std::vector<UaEnumValue> values;
    for (OpcUa_UInt32 i = 0; value.type() == OpcUaType_ExtensionObject && i < value.elementCount(); ++i) {
        const UaExtensionObject object = value.at(i).toExtensionObject();
        const auto* record =
            static_cast<const OpcUa_EnumValueType*>(object.decoded(OpcUa_EnumValueType_EncodeableType));
        if (record) {
            const UaLocalizedText name(record->DisplayName);
            values.push_back({record->Value, name.text(), name, UaLocalizedText(record->Description)});
        }
    }
    return values;
}

} // namespace

UaStatus OlderDataTypes::load(ServiceSettings& settings, const std::vector<UaNodeId>& types)
{
    UaStatus status = findMembers(settings, types);
    if (status.isGood())
        status = readProperties(settings);
    if (status.isGood())
        status = findDescriptions(settings);
    if (status.isGood())
        status = findDictionaries(settings);
    std::set<UaNodeId> dictionaries;
    for (const Described& described : m_described)
        dictionaries.insert(described.dictionary);
    if (status.isGood())
        status = readDictionaries(settings, {dictionaries.begin(), dictionaries.end()});
    if (status.isGood())
        status = readImports(settings);
    defineAll();
    return status;
}

UaStatus OlderDataTypes::findMembers(ServiceSettings& settings, const std::vector<UaNodeId>& types)
{
    std::vector<UaReferenceDescriptions> found;
    const UaStatus status = browseBatch(m_session, settings, types,
                                        {0, false, OpcUa_NodeClass_Object | OpcUa_NodeClass_Variable}, found);
    for (std::size_t i = 0; i < found.size(); ++i)
        for (const OpcUa_ReferenceDescription& reference : found[i])
            addMember(types[i], reference);
    return status;
}

void OlderDataTypes::addMember(const UaNodeId& dataType, const OpcUa_ReferenceDescription& reference)
{
    const UaNodeId node(reference.NodeId.NodeId);
    const UaString name(reference.BrowseName.Name);
    if (UaNodeId(reference.ReferenceTypeId) == UaNodeId(OpcUaId_HasEncoding)) {
        if (name == UaString("Default Binary"))
            m_described.push_back({dataType, node, UaNodeId(), UaNodeId(), UaString()});
    } else if (name == UaString("EnumStrings")) {
        m_properties.push_back({dataType, Property::EnumStrings, node});
    } else if (name == UaString("EnumValues")) {
        m_properties.push_back({dataType, Property::EnumValues, node});
    } else if (name == UaString("OptionSetValues")) {
        m_properties.push_back({dataType, Property::OptionSetValues, node});
    }
}

UaStatus OlderDataTypes::readValues(ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
                                    std::vector<UaVariant>& values) const
{
    values.assign(nodes.size(), UaVariant());
    if (nodes.empty())
        return UaStatus();
    UaReadValueIds ids(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < ids.length(); ++i) {
        if (OpcUa_IsBad(nodes[i].copyTo(&ids[i].NodeId)))
            return UaStatus(OpcUa_BadOutOfMemory);
        ids[i].AttributeId = OpcUa_Attributes_Value;
    }
    UaDataValues results;
    UaDiagnosticInfos diagnosticInfos;
    const UaStatus status =
        m_session.read(settings, 0.0, OpcUa_TimestampsToReturn_Neither, ids, results, diagnosticInfos);
    for (OpcUa_UInt32 i = 0; i < results.length() && i < nodes.size(); ++i)
        if (!OpcUa_IsBad(results[i].StatusCode))
            values[i].attach(&results[i].Value);
    return status;
}

UaStatus OlderDataTypes::readProperties(ServiceSettings& settings)
{
    std::vector<UaNodeId> nodes;
    for (const PropertyNode& property : m_properties)
        nodes.push_back(property.node);
    std::vector<UaVariant> values;
    const UaStatus status = readValues(settings, nodes, values);
    for (std::size_t i = 0; i < m_properties.size(); ++i)
        addProperty(m_properties[i], values[i]);
    return status;
}

void OlderDataTypes::addProperty(const PropertyNode& property, const UaVariant& value)
{
    const std::vector<UaEnumValue> values =
        property.property == Property::EnumValues ? valuesOfRecords(value) : valuesOfTexts(value);
    if (values.empty())
        warn("unusable members of data type", property.dataType.toFullString(), value.toString());
    else if (property.property == Property::OptionSetValues)
        addOptionSet(property.dataType, values);
    else
        addEnumeration(property.dataType, values);
}

void OlderDataTypes::addEnumeration(const UaNodeId& dataType, const std::vector<UaEnumValue>& values)
{
    UaEnumDefinition definition(m_tree.types().at(dataType).name, dataType);
    for (const UaEnumValue& value : values)
        definition.addValue(value);
    m_store.add(definition);
}

void OlderDataTypes::addOptionSet(const UaNodeId& dataType, const std::vector<UaEnumValue>& values)
{
    const UaString name = m_tree.types().at(dataType).name;
    UaOptionSetDefinition definition(name, dataType, m_tree.wireType(dataType));
    for (const UaEnumValue& value : values)
        if (!value.name.isEmpty()) // bits without a text are reserved
            definition.addBit(value);
    m_store.add(definition);
    if (definition.builtInType() == OpcUaType_ExtensionObject) {
        UaStructureDefinition structure = uaNamespaceZeroStructure(UaNodeId(OpcUaId_OptionSet));
        structure.setName(name);
        structure.setDataTypeId(dataType);
        for (const Described& described : m_described)
            if (described.dataType == dataType)
                structure.setBinaryEncodingId(described.encoding);
        m_store.add(structure);
    }
}

UaStatus OlderDataTypes::findDescriptions(ServiceSettings& settings)
{
    std::vector<UaNodeId> encodings;
    for (const Described& described : m_described)
        encodings.push_back(described.encoding);
    std::vector<UaReferenceDescriptions> found;
    const UaStatus status =
        browseBatch(m_session, settings, encodings, {OpcUaId_HasDescription, false, 0}, found);
    std::vector<Described> kept;
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (!found[i].isEmpty()) {
            m_described[i].description = UaNodeId(found[i][0].NodeId.NodeId);
            kept.push_back(m_described[i]);
        }
    }
    m_described = std::move(kept);
    return status;
}

UaStatus OlderDataTypes::findDictionaries(ServiceSettings& settings)
{
    std::vector<UaNodeId> descriptions;
    for (const Described& described : m_described)
        descriptions.push_back(described.description);
    std::vector<UaVariant> names;
    UaStatus status = readValues(settings, descriptions, names);
    std::vector<UaReferenceDescriptions> owners;
    if (status.isGood())
        status = browseBatch(m_session, settings, descriptions, {OpcUaId_HasComponent, true, 0}, owners);
    std::vector<Described> kept;
    for (std::size_t i = 0; i < owners.size(); ++i) {
        Described& described = m_described[i];
        described.name = names[i].toString();
        if (owners[i].isEmpty() || described.name.isEmpty()) {
            warn("no dictionary for data type", described.dataType.toFullString(), described.name);
            continue;
        }
        described.dictionary = UaNodeId(owners[i][0].NodeId.NodeId);
        kept.push_back(described);
    }
    m_described = std::move(kept);
    return status;
}

UaStatus OlderDataTypes::readDictionaries(ServiceSettings& settings, const std::vector<UaNodeId>& nodes)
{
    std::vector<UaVariant> documents;
    UaStatus status = readValues(settings, nodes, documents);
    if (status.isBad() && nodes.size() > 1) { // too much for one message
        for (const UaNodeId& node : nodes)
            status = readDictionaries(settings, {node});
        return status;
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        UaString error("no document");
        const bool isText = documents[i].type() == OpcUaType_ByteString && documents[i].isScalar();
        const UaByteString bytes = isText ? documents[i].toByteString() : UaByteString();
        const bool isGood = isText && m_dictionary.addDocument(bytes.bytes(), error);
        m_namespaces[nodes[i]] = isGood ? m_dictionary.targetNamespace() : UaString();
        if (!isGood)
            warn("type dictionary", nodes[i].toFullString(), error);
    }
    return status;
}

// Dictionaries that others import are found by the namespace that the server tells of each.
UaStatus OlderDataTypes::readImports(ServiceSettings& settings)
{
    UaStatus status;
    for (int round = 0; round < maxImportRounds && status.isGood(); ++round) {
        const std::set<UaString> missing = m_dictionary.missingNamespaces();
        if (missing.empty())
            break;
        std::vector<UaReferenceDescriptions> found;
        status = browseBatch(m_session, settings, {UaNodeId(binarySchemaId)},
                             {OpcUaId_HasComponent, false, OpcUa_NodeClass_Variable}, found);
        std::vector<UaNodeId> candidates;
        for (OpcUa_UInt32 i = 0; !found.empty() && i < found[0].length(); ++i)
            candidates.emplace_back(found[0][i].NodeId.NodeId);
        std::vector<UaReferenceDescriptions> properties;
        if (status.isGood()) {
            status =
                browseBatch(m_session, settings, candidates, {OpcUaId_HasProperty, false, 0}, properties);
        }
        std::vector<UaNodeId> owners;
        std::vector<UaNodeId> uriNodes;
        for (std::size_t i = 0; i < properties.size(); ++i) {
            for (const OpcUa_ReferenceDescription& property : properties[i]) {
                if (UaString(property.BrowseName.Name) == UaString("NamespaceUri")) {
                    owners.push_back(candidates[i]);
                    uriNodes.emplace_back(property.NodeId.NodeId);
                }
            }
        }
        std::vector<UaVariant> uris;
        if (status.isGood())
            status = readValues(settings, uriNodes, uris);
        std::vector<UaNodeId> wanted;
        for (std::size_t i = 0; i < uris.size(); ++i)
            if (missing.contains(uris[i].toString()) && !m_namespaces.contains(owners[i]))
                wanted.push_back(owners[i]);
        if (wanted.empty())
            break;
        status = readDictionaries(settings, wanted);
    }
    return status;
}

// Enumerations have no encoding that leads to their description, and fields may name types that have a
// definition of their own: both are found by namespace and name.
void OlderDataTypes::nameTypes()
{
    const UaStringArray table = m_session.getNamespaceTable();
    for (const auto& [id, type] : m_tree.types())
        if (id.namespaceIndex() != 0 && id.namespaceIndex() < table.length())
            m_dictionary.setIds({UaString(table[id.namespaceIndex()]), type.name}, id, UaNodeId());
}

void OlderDataTypes::defineAll()
{
    nameTypes();
    for (const Described& described : m_described) {
        const UaTypeDictionary::TypeName name{m_namespaces[described.dictionary], described.name};
        if (m_dictionary.hasType(name))
            m_dictionary.setIds(name, described.dataType, described.encoding);
        else
            warn("no description of data type", described.dataType.toFullString(), described.name);
    }
    UaTypeDefinitionStore described;
    std::vector<UaTypeDictionary::Fault> faults;
    m_dictionary.define(described, faults);
    for (const UaTypeDictionary::Fault& fault : faults)
        warn("type of a dictionary", fault.type.name, fault.reason);
    m_store.addMissing(described);
}

} // namespace UaClientSdk
