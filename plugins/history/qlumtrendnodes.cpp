#include <plugins/history/qlumtrendnodes.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/uaextensionobject.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <vector>

namespace {

class Text
{
    Q_DECLARE_TR_FUNCTIONS(QlumTrendNodesReader)
};

constexpr OpcUa_Byte historyRead = 0x4; // of an access level

QString textOf(const UaNodeId& id)
{
    return toQString(id.toXmlString());
}

bool fillPath(const UaNodeId& start, const QStringList& names, OpcUa_BrowsePath& path)
{
    OpcUa_RelativePathElement* elements = nullptr;
    UaRelativePathElements steps(static_cast<OpcUa_UInt32>(names.size()));
    for (OpcUa_UInt32 i = 0; i < steps.length(); ++i) {
        const UaNodeId hierarchical(OpcUaId_HierarchicalReferences);
        steps[i].IncludeSubtypes = OpcUa_True;
        if (OpcUa_IsBad(hierarchical.copyTo(&steps[i].ReferenceTypeId)) ||
            OpcUa_IsBad(
                UaQualifiedName(toUaString(names[static_cast<int>(i)]), 0).copyTo(&steps[i].TargetName)))
            return false;
    }
    steps.detach(&path.RelativePath.NoOfElements, &elements);
    path.RelativePath.Elements = elements;
    return OpcUa_IsGood(start.copyTo(&path.StartingNode));
}

template <typename Body>
const Body* bodyOf(const UaVariant& value, const OpcUa_EncodeableType& type)
{
    const OpcUa_Variant* raw = value.get();
    if (raw->Datatype != OpcUaType_ExtensionObject || raw->ArrayType != OpcUa_VariantArrayType_Scalar ||
        raw->Value.ExtensionObject == nullptr)
        return nullptr;
    const OpcUa_ExtensionObject& object = *raw->Value.ExtensionObject;
    return object.Encoding == OpcUa_ExtensionObjectEncoding_EncodeableObject &&
                   object.Body.EncodeableObject.Type == &type
               ? static_cast<const Body*>(object.Body.EncodeableObject.Object)
               : nullptr;
}

} // namespace

QlumTrendNodesReader::QlumTrendNodesReader(QlumSessionServices& services, const QlumJob& job)
    : m_services(services), m_job(job)
{
}

std::vector<QlumTrendNode> QlumTrendNodesReader::read(const std::vector<UaNodeId>& ids)
{
    for (const UaNodeId& id : ids) {
        QlumTrendNode node;
        node.nodeId = id;
        m_nodes.push_back(std::move(node));
    }
    readAccess();
    if (!m_job.isCancelled())
        readStepped();
    if (!m_job.isCancelled())
        readDescription();
    return std::move(m_nodes);
}

std::vector<std::size_t> QlumTrendNodesReader::accepted() const
{
    std::vector<std::size_t> result;
    for (std::size_t i = 0; i < m_nodes.size(); ++i)
        if (m_nodes[i].refused.isEmpty())
            result.push_back(i);
    return result;
}

UaStatus QlumTrendNodesReader::readValues(const std::vector<Property>& properties, OpcUa_UInt32 attribute,
                                          UaDataValues& values)
{
    UaReadValueIds ids(static_cast<OpcUa_UInt32>(properties.size()));
    for (OpcUa_UInt32 i = 0; i < ids.length(); ++i) {
        ids[i].AttributeId = attribute;
        if (OpcUa_IsBad(properties[i].id.copyTo(&ids[i].NodeId)))
            return UaStatus(OpcUa_BadOutOfMemory);
    }
    if (ids.isEmpty())
        return {};
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    const UaStatus status = m_services.read(settings, 0, OpcUa_TimestampsToReturn_Neither, ids, values);
    return status.isBad() || values.length() == ids.length() ? status : UaStatus(OpcUa_BadUnexpectedError);
}

UaStatus QlumTrendNodesReader::translate(const std::vector<std::size_t>& nodes, const QStringList& path,
                                         UaBrowsePathResults& results)
{
    UaBrowsePaths paths(static_cast<OpcUa_UInt32>(nodes.size()));
    for (OpcUa_UInt32 i = 0; i < paths.length(); ++i)
        if (!fillPath(m_nodes[nodes[i]].nodeId, path, paths[i]))
            return UaStatus(OpcUa_BadOutOfMemory);
    if (paths.isEmpty())
        return {};
    UaClientSdk::ServiceSettings settings = m_job.serviceSettings();
    const UaStatus status = m_services.translateBrowsePathsToNodeIds(settings, paths, results);
    return status.isBad() || results.length() == paths.length() ? status : UaStatus(OpcUa_BadUnexpectedError);
}

// ---- what decides

void QlumTrendNodesReader::readAccess()
{
    std::vector<Property> nodes;
    for (std::size_t i = 0; i < m_nodes.size(); ++i)
        nodes.push_back({i, m_nodes[i].nodeId});
    UaDataValues values;
    const UaStatus status = readValues(nodes, OpcUa_Attributes_UserAccessLevel, values);
    for (OpcUa_UInt32 i = 0; i < m_nodes.size(); ++i) {
        QlumTrendNode& node = m_nodes[i];
        const OpcUa_StatusCode code = status.isBad() ? status.statusCode() : values[i].StatusCode;
        if (OpcUa_IsBad(code))
            node.refused = Text::tr("Read UserAccessLevel attribute on node %1 failed with status code %2.")
                               .arg(textOf(node.nodeId), qlumStatusText(code));
        else if ((UaVariant(values[i].Value).toByte() & historyRead) == 0)
            node.refused = Text::tr("Added item does not support historizing.");
    }
}

void QlumTrendNodesReader::readStepped()
{
    const std::vector<std::size_t> nodes = accepted();
    UaBrowsePathResults found;
    const UaStatus translated =
        translate(nodes, {QStringLiteral("HA Configuration"), QStringLiteral("Stepped")}, found);
    if (translated.isBad()) {
        for (const std::size_t node : nodes)
            m_nodes[node].faults.append(Text::tr("TranslateBrowsePathsToNodeIds failed with status code %1.")
                                            .arg(qlumStatusText(translated.statusCode())));
        return;
    }
    std::vector<Property> properties;
    for (OpcUa_UInt32 i = 0; i < found.length(); ++i) {
        QlumTrendNode& node = m_nodes[nodes[i]];
        const OpcUa_StatusCode code = found[i].StatusCode;
        if (OpcUa_IsGood(code) && found[i].NoOfTargets > 0)
            properties.push_back({nodes[i], UaNodeId(found[i].Targets[0].TargetId.NodeId)});
        else if (OpcUa_IsBad(code) && code != OpcUa_BadNoMatch) // most have no such property
            node.faults.append(Text::tr("Get stepped property of node %1 failed with status code %2.")
                                   .arg(textOf(node.nodeId), qlumStatusText(code)));
    }
    UaDataValues values;
    const UaStatus status = readValues(properties, OpcUa_Attributes_Value, values);
    for (OpcUa_UInt32 i = 0; i < properties.size(); ++i) {
        QlumTrendNode& node = m_nodes[properties[i].node];
        bool isBoolean = false;
        if (status.isBad()) {
            node.faults.append(
                Text::tr("Read failed with status code %1.").arg(qlumStatusText(status.statusCode())));
        } else if (OpcUa_IsBad(values[i].StatusCode)) {
            node.faults.append(Text::tr("Read property Stepped of node %1 failed with status code %2.")
                                   .arg(textOf(node.nodeId), qlumStatusText(values[i].StatusCode)));
        } else {
            node.isStepped = UaVariant(values[i].Value).toBool(&isBoolean);
            if (!isBoolean)
                node.faults.append(Text::tr("Read property Stepped failed with status code %1.")
                                       .arg(qlumStatusText(OpcUa_BadTypeMismatch)));
        }
    }
}

// ---- what is good to have; a node is shown without it

void QlumTrendNodesReader::readDescription()
{
    std::vector<Property> nodes;
    for (const std::size_t node : accepted())
        nodes.push_back({node, m_nodes[node].nodeId});
    UaDataValues names, types;
    const bool hasNames = !readValues(nodes, OpcUa_Attributes_DisplayName, names).isBad();
    for (OpcUa_UInt32 i = 0; i < nodes.size(); ++i) {
        QlumTrendNode& node = m_nodes[nodes[i].node];
        if (hasNames && OpcUa_IsGood(names[i].StatusCode))
            node.name = toQString(UaVariant(names[i].Value).toLocalizedText().text());
        if (node.name.isEmpty())
            node.name = textOf(node.nodeId);
    }
    readProperties("EngineeringUnits", &QlumTrendNodesReader::takeUnit);
    readProperties("EURange", &QlumTrendNodesReader::takeRange);
    readProperties("FalseState", &QlumTrendNodesReader::takeFalseState);
    readProperties("TrueState", &QlumTrendNodesReader::takeTrueState);
    readProperties("EnumStrings", &QlumTrendNodesReader::takeStates);
    if (readValues(nodes, OpcUa_Attributes_DataType, types).isBad())
        return;
    for (OpcUa_UInt32 i = 0; i < nodes.size(); ++i)
        if (OpcUa_IsGood(types[i].StatusCode))
            takeEnumeration(m_nodes[nodes[i].node], UaVariant(types[i].Value));
}

void QlumTrendNodesReader::readProperties(const char* name,
                                          void (QlumTrendNodesReader::*take)(QlumTrendNode&,
                                                                             const UaVariant&))
{
    const std::vector<std::size_t> nodes = accepted();
    UaBrowsePathResults found;
    if (m_job.isCancelled() || translate(nodes, {QLatin1String(name)}, found).isBad())
        return;
    std::vector<Property> properties;
    for (OpcUa_UInt32 i = 0; i < found.length(); ++i)
        if (OpcUa_IsGood(found[i].StatusCode) && found[i].NoOfTargets > 0)
            properties.push_back({nodes[i], UaNodeId(found[i].Targets[0].TargetId.NodeId)});
    UaDataValues values;
    if (readValues(properties, OpcUa_Attributes_Value, values).isBad())
        return;
    for (OpcUa_UInt32 i = 0; i < properties.size(); ++i)
        if (OpcUa_IsGood(values[i].StatusCode))
            (this->*take)(m_nodes[properties[i].node], UaVariant(values[i].Value));
}

void QlumTrendNodesReader::takeUnit(QlumTrendNode& node, const UaVariant& value)
{
    if (const auto* unit = bodyOf<OpcUa_EUInformation>(value, OpcUa_EUInformation_EncodeableType))
        node.unit = toQString(UaLocalizedText(unit->DisplayName).text());
}

void QlumTrendNodesReader::takeRange(QlumTrendNode& node, const UaVariant& value)
{
    const auto* range = bodyOf<OpcUa_Range>(value, OpcUa_Range_EncodeableType);
    if (range != nullptr && std::isfinite(range->Low) && std::isfinite(range->High) &&
        range->Low < range->High)
        node.range = {range->Low, range->High};
}

void QlumTrendNodesReader::takeFalseState(QlumTrendNode& node, const UaVariant& value)
{
    node.valueNames.insert(0, toQString(value.toLocalizedText().text()));
}

void QlumTrendNodesReader::takeTrueState(QlumTrendNode& node, const UaVariant& value)
{
    node.valueNames.insert(1, toQString(value.toLocalizedText().text()));
}

void QlumTrendNodesReader::takeStates(QlumTrendNode& node, const UaVariant& value)
{
    for (OpcUa_UInt32 i = 0; i < value.elementCount(); ++i)
        node.valueNames.insert(i, toQString(value.at(i).toLocalizedText().text()));
}

void QlumTrendNodesReader::takeEnumeration(QlumTrendNode& node, const UaVariant& dataType)
{
    const UaNodeId type = dataType.toNodeId();
    if (!node.valueNames.isEmpty())
        return;
    if (type == UaNodeId(OpcUaId_Boolean)) {
        node.valueNames = {{0, Text::tr("False")}, {1, Text::tr("True")}};
        return;
    }
    QlumServerTypes* types = m_services.types();
    constexpr OpcUa_UInt32 lastBuiltIn = 29; // those above are derived
    const bool isBuiltIn = type.namespaceIndex() == 0 &&
                           type.identifierType() == OpcUa_IdentifierType_Numeric &&
                           type.identifierNumeric() <= lastBuiltIn;
    if (types == nullptr || isBuiltIn || m_job.isCancelled())
        return;
    const UaEnumDefinition definition = types->getEnumDefinition(&type);
    for (int i = 0; i < definition.valueCount(); ++i) {
        const UaEnumValue one = definition.valueAt(i);
        node.valueNames.insert(one.value, toQString(definition.valueName(one.value)));
    }
}
