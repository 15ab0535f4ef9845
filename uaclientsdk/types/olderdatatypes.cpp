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

// One step after the other; those behind one that went wrong are left out.
class OlderDataTypes::Steps
{
public:
    template <typename Step>
    Steps& then(const Step& step)
    {
        if (m_status.isGood())
            m_status = step();
        return *this;
    }
    [[nodiscard]] const UaStatus& status() const { return m_status; }

private:
    UaStatus m_status;
};

UaStatus OlderDataTypes::load(const std::vector<UaNodeId>& types)
{
    Steps steps;
    steps.then([&] { return findMembers(types); })
        .then([&] { return readProperties(); })
        .then([&] { return findDescriptions(); })
        .then([&] { return findDictionaries(); })
        .then([&] { return readDictionaries(describingDictionaries()); })
        .then([&] { return readImports(); });
    defineAll();
    return steps.status();
}

UaStatus OlderDataTypes::findMembers(const std::vector<UaNodeId>& types)
{
    std::vector<UaReferenceDescriptions> found;
    const UaStatus status = browseBatch(m_session, m_settings, types,
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

UaStatus OlderDataTypes::readValues(const std::vector<UaNodeId>& nodes, std::vector<UaVariant>& values) const
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
        m_session.read(m_settings, 0.0, OpcUa_TimestampsToReturn_Neither, ids, results, diagnosticInfos);
    for (OpcUa_UInt32 i = 0; i < results.length() && i < nodes.size(); ++i)
        if (!OpcUa_IsBad(results[i].StatusCode))
            values[i].attach(&results[i].Value);
    return status;
}

UaStatus OlderDataTypes::readProperties()
{
    std::vector<UaNodeId> nodes;
    for (const PropertyNode& property : m_properties)
        nodes.push_back(property.node);
    std::vector<UaVariant> values;
    const UaStatus status = readValues(nodes, values);
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

UaStatus OlderDataTypes::findDescriptions()
{
    std::vector<UaNodeId> encodings;
    for (const Described& described : m_described)
        encodings.push_back(described.encoding);
    std::vector<UaReferenceDescriptions> found;
    const UaStatus status =
        browseBatch(m_session, m_settings, encodings, {OpcUaId_HasDescription, false, 0}, found);
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

UaStatus OlderDataTypes::findDictionaries()
{
    std::vector<UaNodeId> descriptions;
    for (const Described& described : m_described)
        descriptions.push_back(described.description);
    std::vector<UaVariant> names;
    UaStatus status = readValues(descriptions, names);
    std::vector<UaReferenceDescriptions> owners;
    if (status.isGood())
        status = browseBatch(m_session, m_settings, descriptions, {OpcUaId_HasComponent, true, 0}, owners);
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

UaStatus OlderDataTypes::readDictionaries(const std::vector<UaNodeId>& nodes)
{
    std::vector<UaVariant> documents;
    UaStatus status = readValues(nodes, documents);
    if (status.isBad() && nodes.size() > 1) { // too much for one message
        for (const UaNodeId& node : nodes)
            status = readDictionaries({node});
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

std::vector<UaNodeId> OlderDataTypes::describingDictionaries() const
{
    std::set<UaNodeId> dictionaries;
    for (const Described& described : m_described)
        dictionaries.insert(described.dictionary);
    return {dictionaries.begin(), dictionaries.end()};
}

// ---- imports

// Dictionaries that others import are found by the namespace that the server tells of each.
UaStatus OlderDataTypes::readImports()
{
    Steps steps;
    for (int round = 0; round < maxImportRounds && steps.status().isGood(); ++round) {
        const std::set<UaString> missing = m_dictionary.missingNamespaces();
        if (missing.empty())
            break;
        const std::vector<UaNodeId> wanted =
            wantedDictionaries(missing, namespacesOf(dictionariesOfServer(steps), steps));
        if (wanted.empty())
            break;
        steps.then([&] { return readDictionaries(wanted); });
    }
    return steps.status();
}

std::vector<UaNodeId> OlderDataTypes::dictionariesOfServer(Steps& steps) const
{
    std::vector<UaReferenceDescriptions> found;
    steps.then([&] {
        return browseBatch(m_session, m_settings, {UaNodeId(binarySchemaId)},
                           {OpcUaId_HasComponent, false, OpcUa_NodeClass_Variable}, found);
    });
    std::vector<UaNodeId> dictionaries;
    for (const UaReferenceDescriptions& references : found)
        for (const OpcUa_ReferenceDescription& reference : references)
            dictionaries.emplace_back(reference.NodeId.NodeId);
    return dictionaries;
}

std::vector<OlderDataTypes::NamespaceOf>
OlderDataTypes::namespacesOf(const std::vector<UaNodeId>& dictionaries, Steps& steps) const
{
    std::vector<UaReferenceDescriptions> properties;
    steps.then([&] {
        return browseBatch(m_session, m_settings, dictionaries, {OpcUaId_HasProperty, false, 0}, properties);
    });
    std::vector<NamespaceOf> result;
    std::vector<UaNodeId> uriNodes;
    for (std::size_t i = 0; i < properties.size(); ++i) {
        for (const OpcUa_ReferenceDescription& property : properties[i]) {
            if (UaString(property.BrowseName.Name) == UaString("NamespaceUri")) {
                result.push_back({dictionaries[i], UaString()});
                uriNodes.emplace_back(property.NodeId.NodeId);
            }
        }
    }
    std::vector<UaVariant> uris;
    steps.then([&] { return readValues(uriNodes, uris); });
    result.resize(uris.size());
    for (std::size_t i = 0; i < uris.size(); ++i)
        result[i].uri = uris[i].toString();
    return result;
}

std::vector<UaNodeId> OlderDataTypes::wantedDictionaries(const std::set<UaString>& missing,
                                                         const std::vector<NamespaceOf>& candidates) const
{
    std::vector<UaNodeId> wanted;
    for (const NamespaceOf& candidate : candidates)
        if (missing.contains(candidate.uri) && !m_namespaces.contains(candidate.dictionary))
            wanted.push_back(candidate.dictionary);
    return wanted;
}

// ---- definitions

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
