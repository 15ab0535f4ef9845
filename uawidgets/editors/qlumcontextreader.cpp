#include <uawidgets/editors/qlumcontextreader.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumtoolservices.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uanamespacezero.h>
#include <uabase/structures/uastructuredefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastring.h>

#include <QString>
#include <QWidget>

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>

namespace {
constexpr std::size_t maximumTypes = 5000;     // whose definitions are taken along
constexpr OpcUa_UInt32 learnedElements = 1000; // of an array of structures; mostly they are of one type
constexpr int maximumDepth = 100;

constexpr std::array<OpcUa_UInt32, 6> attributes{
    OpcUa_Attributes_DataType,    OpcUa_Attributes_ValueRank,       OpcUa_Attributes_ArrayDimensions,
    OpcUa_Attributes_AccessLevel, OpcUa_Attributes_UserAccessLevel, OpcUa_Attributes_Value};

UaBrowsePaths pathsToProperties(std::span<const UaNodeId> variables)
{
    const std::vector<std::string>& names = qlumEditingProperties();
    UaBrowsePaths paths(static_cast<OpcUa_UInt32>(variables.size() * names.size()));
    for (OpcUa_UInt32 i = 0; i < paths.length(); ++i) {
        UaRelativePathElements elements(1);
        static_cast<void>(variables[i / names.size()].copyTo(&paths[i].StartingNode));
        static_cast<void>(UaNodeId(OpcUaId_HasProperty).copyTo(&elements[0].ReferenceTypeId));
        static_cast<void>(
            UaQualifiedName(UaString(names[i % names.size()].c_str()), 0).copyTo(&elements[0].TargetName));
        elements.detach(&paths[i].RelativePath.NoOfElements, &paths[i].RelativePath.Elements);
    }
    return paths;
}

UaReadValueIds nodesToRead(std::span<const UaNodeId> variables, std::size_t count,
                           std::span<const UaNodeId> properties)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(variables.size() * count + properties.size()));
    for (std::size_t i = 0; i < nodes.length(); ++i) {
        const bool isProperty = i >= variables.size() * count;
        const UaNodeId& id = isProperty ? properties[i - variables.size() * count] : variables[i / count];
        OpcUa_ReadValueId& node = nodes[static_cast<OpcUa_UInt32>(i)];
        static_cast<void>(id.copyTo(&node.NodeId)); // else null, which the server refuses
        node.AttributeId = isProperty ? OpcUa_Attributes_Value : attributes[i % count];
    }
    return nodes;
}

std::optional<OpcUa_Byte> byteOf(const UaVariant& value)
{
    return value.type() == OpcUaType_Byte && value.isScalar() ? std::optional(value.toByte()) : std::nullopt;
}

void take(OpcUa_UInt32 attributeId, const UaVariant& value, QlumValueFacts& facts)
{
    switch (attributeId) {
    case OpcUa_Attributes_DataType:
        facts.dataType = value.toNodeId();
        break;
    case OpcUa_Attributes_ValueRank:
        facts.valueRank = value.toInt32();
        break;
    case OpcUa_Attributes_ArrayDimensions:
        static_cast<void>(value.toUInt32Array(facts.arrayDimensions));
        break;
    case OpcUa_Attributes_AccessLevel:
        facts.accessLevel = byteOf(value);
        break;
    default:
        facts.userAccessLevel = byteOf(value);
        break;
    }
}
} // namespace

std::function<UaNodeId(QWidget* parent, const UaNodeId& start)> qlumNodeChoice(unsigned int serverId)
{
    const QlumToolServices* services = QlumToolServices::instance();
    if (!services || !services->canChooseNode())
        return {};
    return [serverId](QWidget* parent, const UaNodeId& start) {
        QlumToolServices* current = QlumToolServices::instance();
        return current ? current->chooseNode(parent, serverId, start) : UaNodeId();
    };
}

QlumContextReader::QlumContextReader(std::shared_ptr<QlumSessionServices> session,
                                     const QlumSessionServices::Settings& settings, IsCancelled isCancelled)
    : m_session(std::move(session)), m_settings(settings), m_isCancelled(std::move(isCancelled)),
      m_definitions(std::make_shared<UaTypeDefinitionStore>()),
      m_subtypes(std::make_shared<std::map<UaNodeId, std::vector<UaNodeId>>>())
{
}

QlumContextReader::QlumContextReader(std::shared_ptr<QlumSessionServices> session, const QlumJob& job,
                                     Waiting waiting)
    : QlumContextReader(std::move(session), job.serviceSettings(), [&job] { return job.isCancelled(); })
{
    m_waiting = std::move(waiting);
}

// ---- variables

// Asks which properties there are, so that their values can be read with the attributes in one call.
UaStatus QlumContextReader::findProperties(std::span<const UaNodeId> variables,
                                           std::vector<QlumValueFacts>& facts,
                                           std::vector<UaNodeId>& properties,
                                           std::vector<UaVariant*>& targets)
{
    const std::vector<std::string>& names = qlumEditingProperties();
    UaBrowsePathResults found;
    const UaBrowsePaths paths = pathsToProperties(variables);
    const UaStatus status = m_session->translateBrowsePathsToNodeIds(m_settings, paths, found);
    if (status.isBad())
        return status;
    for (OpcUa_UInt32 i = 0; i < found.length() && i < paths.length(); ++i) {
        if (!OpcUa_IsGood(found[i].StatusCode) || found[i].NoOfTargets < 1)
            continue;
        properties.emplace_back(found[i].Targets[0].TargetId.NodeId);
        targets.push_back(&facts[i / names.size()].properties[names[i % names.size()]]);
    }
    return status;
}

UaStatus QlumContextReader::read(std::span<const UaNodeId> variables, std::vector<QlumValueContext>& contexts,
                                 UaDataValues* values)
{
    std::vector<QlumValueFacts> facts(variables.size());
    std::vector<UaNodeId> properties;
    std::vector<UaVariant*> targets;
    const std::size_t count = values ? attributes.size() : attributes.size() - 1;
    UaStatus status = findProperties(variables, facts, properties, targets);
    const UaReadValueIds nodes = nodesToRead(variables, count, properties);
    const std::size_t propertiesBegin = variables.size() * count;
    UaDataValues results;
    // a server that cannot follow paths may read all the same
    if (status.isGood() || status.code() == OpcUa_BadServiceUnsupported)
        status = m_session->read(m_settings, 0, OpcUa_TimestampsToReturn_Both, nodes, results);
    if (status.isBad() || results.length() != nodes.length())
        return status.isBad() ? status : UaStatus(OpcUa_BadUnknownResponse);
    if (values && !values->create(static_cast<OpcUa_UInt32>(variables.size())))
        return UaStatus(OpcUa_BadOutOfMemory);
    for (OpcUa_UInt32 i = 0; i < results.length(); ++i) {
        if (i >= propertiesBegin) {
            *targets[i - propertiesBegin] = UaVariant(results[i].Value);
            continue;
        }
        const OpcUa_UInt32 attributeId = attributes[i % count];
        if (attributeId == OpcUa_Attributes_Value)
            std::swap((*values)[static_cast<OpcUa_UInt32>(i / count)], results[i]);
        else if (!OpcUa_IsBad(results[i].StatusCode))
            take(attributeId, UaVariant(results[i].Value), facts[i / count]);
    }
    contexts.clear();
    for (const QlumValueFacts& fact : facts)
        contexts.push_back(of(fact));
    return status;
}

QlumValueContext QlumContextReader::of(const QlumValueFacts& facts)
{
    QlumValueContext context;
    qlumTakeFacts(facts, context);
    collect(facts.dataType);
    context.builtInType = builtInType(facts.dataType);
    if (context.builtInType == OpcUaType_ExtensionObject)
        offerSubtypes(facts.dataType);
    if (QlumServerTypes* types = m_session->types(); types && !facts.dataType.isNull())
        static_cast<void>(types->typeName(facts.dataType)); // so that it is known to who asks without a call
    context.dictionary = m_definitions;
    context.typeName = [session = m_session](const UaNodeId& dataType) {
        const QlumServerTypes* types = session->types();
        return types ? types->knownTypeName(dataType).value_or(QString()) : QString();
    };
    context.concreteTypes = [subtypes = m_subtypes](const UaNodeId& dataType) {
        const auto found = subtypes->find(dataType);
        return found == subtypes->end() ? std::vector<UaNodeId>() : found->second;
    };
    return context;
}

// ---- types

OpcUa_BuiltInType QlumContextReader::builtInType(const UaNodeId& dataType)
{
    OpcUa_BuiltInType type = uaNamespaceZeroBuiltInType(dataType);
    if (type == OpcUaType_Null && !m_definitions->structureDefinition(dataType).isNull())
        return OpcUaType_ExtensionObject;
    if (type == OpcUaType_Null)
        type = m_definitions->optionSetDefinition(dataType).builtInType();
    if (type == OpcUaType_Null && !m_definitions->enumDefinition(dataType).isNull())
        return OpcUaType_Int32;
    if (QlumServerTypes* types = m_session->types(); type == OpcUaType_Null && types && !dataType.isNull())
        type = types->builtInType(dataType);
    return type == OpcUaType_Variant ? OpcUaType_Null : type; // any
}

void QlumContextReader::waitForTypes()
{
    constexpr OpcUa_UInt32 turn = 50; // ms until the caller is asked again
    while (m_isCancelled && !m_isCancelled() && !m_session->waitForDataTypes(turn))
        if (const Waiting tell = std::exchange(m_waiting, {}))
            tell();
    m_isCancelled = {};
}

// The types of the standard are known without; they hold no others.
void QlumContextReader::collect(const UaNodeId& dataTypeOrEncodingId)
{
    if (dataTypeOrEncodingId.isNull() || dataTypeOrEncodingId.namespaceIndex() == 0 ||
        m_collected.size() >= maximumTypes || !m_collected.insert(dataTypeOrEncodingId).second)
        return;
    waitForTypes();
    UaDataTypeDictionary* dictionary = m_session->dataTypeDictionary();
    const UaStructureDefinition structure = dictionary->structureDefinition(dataTypeOrEncodingId);
    if (structure.isNull()) {
        m_definitions->add(dictionary->enumDefinition(dataTypeOrEncodingId));
        m_definitions->add(dictionary->optionSetDefinition(dataTypeOrEncodingId));
        return;
    }
    m_definitions->add(structure);
    for (int i = 0; i < structure.fieldCount(); ++i) {
        const UaStructureField field = structure.field(i);
        collect(field.dataTypeId());
        if (field.allowSubTypes() && field.builtInType() == OpcUaType_ExtensionObject)
            offerSubtypes(field.dataTypeId());
    }
}

// What can be given in its place, itself among them.
void QlumContextReader::offerSubtypes(const UaNodeId& dataType)
{
    QlumServerTypes* types = m_session->types();
    if (!types || dataType.isNull() || m_subtypes->contains(dataType) || m_subtypes->size() >= maximumTypes)
        return;
    std::vector<UaNodeId>& subtypes = (*m_subtypes)[dataType];
    subtypes = types->concreteTypes(dataType);
    const std::vector<UaNodeId> found = subtypes; // collecting may offer more
    for (const UaNodeId& subtype : found)
        collect(subtype);
}

void QlumContextReader::learn(const UaVariant& value)
{
    learn(value, maximumDepth);
}

void QlumContextReader::learn(const UaVariant& value, int depth)
{
    const OpcUa_BuiltInType type = value.type();
    if (depth <= 0 || (type != OpcUaType_ExtensionObject && type != OpcUaType_Variant))
        return;
    const OpcUa_UInt32 count = value.isScalar() ? 1 : std::min(value.elementCount(), learnedElements);
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        const UaVariant element = value.isScalar() ? value : value.at(i);
        if (element.type() == OpcUaType_ExtensionObject)
            collect(element.toExtensionObject().encodingId());
        else
            learn(element, depth - 1);
    }
}
