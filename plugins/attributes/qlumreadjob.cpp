#include <plugins/attributes/qlumreadjob.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <plugins/attributes/qlumattributeresults.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/editors/qlumcontextreader.h>

#include <QString>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {
constexpr OpcUa_UInt32 preparedElements = 16; // of an array of structures; mostly they are of one type

// Values of enumerations and option sets.
bool mayBeNamed(OpcUa_BuiltInType type)
{
    return type == OpcUaType_Int32 || type == OpcUaType_Byte || type == OpcUaType_UInt16 ||
           type == OpcUaType_UInt32 || type == OpcUaType_UInt64;
}

UaReadValueIds nodesToRead(const UaNodeId& nodeId, const QList<int>& attributeIds)
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(attributeIds.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(nodeId.copyTo(&nodes[i].NodeId)); // else null, which the server refuses
        nodes[i].AttributeId = static_cast<OpcUa_UInt32>(attributeIds.at(static_cast<int>(i)));
    }
    return nodes;
}

UaBrowsePaths pathsToProperties(const UaNodeId& nodeId)
{
    const std::vector<std::string>& names = qlumDescribingProperties();
    UaBrowsePaths paths(static_cast<OpcUa_UInt32>(names.size()));
    for (OpcUa_UInt32 i = 0; i < paths.length(); ++i) {
        UaRelativePathElements elements(1);
        static_cast<void>(nodeId.copyTo(&paths[i].StartingNode));
        static_cast<void>(UaNodeId(OpcUaId_HasProperty).copyTo(&elements[0].ReferenceTypeId));
        static_cast<void>(UaQualifiedName(UaString(names[i].c_str()), 0).copyTo(&elements[0].TargetName));
        elements.detach(&paths[i].RelativePath.NoOfElements, &paths[i].RelativePath.Elements);
    }
    return paths;
}
} // namespace

QlumReadJob::QlumReadJob(unsigned int serverId, const UaNodeId& nodeId,
                         std::optional<OpcUa_NodeClass> nodeClass, QlumSessionServicesProvider services)
    : m_serverId(serverId), m_log(tr("Attribute Plugin"), serverId), m_nodeId(nodeId), m_nodeClass(nodeClass),
      m_services(std::move(services))
{
}

QlumReadJob::~QlumReadJob() = default;

void QlumReadJob::run()
{
    const std::shared_ptr<QlumSessionServices> session = m_services(m_serverId);
    if (!session || !QlumApplicationInterface::instance()) {
        m_log.error(tr("Session not valid."));
        tellFailure(tr("There is no session with the server."));
        return;
    }
    if (!m_nodeClass) {
        if (!readNodeClass(*session) || isCancelled())
            return;
        emit nodeClassRead(m_serverId, m_nodeId, *m_nodeClass);
    }
    readAttributes(session);
}

void QlumReadJob::tellFailure(const QString& why)
{
    if (!isCancelled())
        emit failed(m_serverId, m_nodeId, why);
}

bool QlumReadJob::readNodeClass(QlumSessionServices& session)
{
    UaClientSdk::ServiceSettings settings = serviceSettings();
    UaDataValues values;
    UaStatus status = session.read(settings, 0, OpcUa_TimestampsToReturn_Neither,
                                   nodesToRead(m_nodeId, {OpcUa_Attributes_NodeClass}), values);
    if (status.isGood() && values.length() == 1)
        status = UaStatus(values[0].StatusCode);
    if (!status.isGood() || values.length() != 1) {
        m_log.error(tr("Read NodeClass of node '%1' failed [ret = %2].")
                        .arg(toQString(m_nodeId.toFullString()), toQString(status.toString())));
        tellFailure(toQString(status.toString()));
        return false;
    }
    m_nodeClass = static_cast<OpcUa_NodeClass>(UaVariant(values[0].Value).toInt32());
    return true;
}

void QlumReadJob::readAttributes(const std::shared_ptr<QlumSessionServices>& session)
{
    UaClientSdk::ServiceSettings settings = serviceSettings();
    const double maxAge = QlumAttributeSettings::maxAge.value();
    const QList<int> attributeIds = qlumAttributesOf(*m_nodeClass);
    UaDataValues values;
    const UaStatus status = session->read(settings, maxAge, OpcUa_TimestampsToReturn_Both,
                                          nodesToRead(m_nodeId, attributeIds), values);
    const QString node = toQString(m_nodeId.toFullString());
    const QString result = toQString(status.toString());
    if (!status.isGood()) {
        m_log.error(tr("Read attributes of node '%1' failed [ret = %2].").arg(node, result));
        tellFailure(result);
        return;
    }
    m_log.info(tr("Read attributes of node '%1' succeeded [ret = %2].").arg(node, result));
    takeFacts(attributeIds, values);
    prepareType(*session, qlumResultOf(OpcUa_Attributes_Value, attributeIds, values),
                qlumResultOf(OpcUa_Attributes_DataType, attributeIds, values));
    if (isCancelled())
        return;
    const int count = static_cast<int>(values.length());
    emit newData(m_serverId, m_nodeId, *m_nodeClass, count, attributeIds, values.detach());
    if (!isCancelled())
        readDetails(session);
}

void QlumReadJob::takeFacts(const QList<int>& attributeIds, const UaDataValues& values)
{
    const auto result = [&](int attributeId) { return qlumResultOf(attributeId, attributeIds, values); };
    const auto level = [&](int attributeId) {
        const UaVariant value = result(attributeId);
        return value.type() == OpcUaType_Byte && value.isScalar() ? std::optional(value.toByte())
                                                                  : std::nullopt;
    };
    m_value = result(OpcUa_Attributes_Value);
    m_facts.dataType = result(OpcUa_Attributes_DataType).toNodeId();
    if (const UaVariant rank = result(OpcUa_Attributes_ValueRank); rank.type() == OpcUaType_Int32)
        m_facts.valueRank = rank.toInt32();
    static_cast<void>(result(OpcUa_Attributes_ArrayDimensions).toUInt32Array(m_facts.arrayDimensions));
    m_facts.accessLevel = level(OpcUa_Attributes_AccessLevel);
    m_facts.userAccessLevel = level(OpcUa_Attributes_UserAccessLevel);
}

// ---- what only some nodes have

void QlumReadJob::readDetails(const std::shared_ptr<QlumSessionServices>& session)
{
    UaClientSdk::ServiceSettings settings = serviceSettings();
    const QList<int> attributeIds = qlumFurtherAttributesOf(*m_nodeClass);
    UaDataValues values;
    QlumAttributeDetails details;
    const UaStatus status = session->read(settings, 0, OpcUa_TimestampsToReturn_Neither,
                                          nodesToRead(m_nodeId, attributeIds), values);
    for (OpcUa_UInt32 i = 0; status.isGood() && i < values.length(); ++i)
        if (values[i].StatusCode != OpcUa_BadAttributeIdInvalid)
            details.attributes.emplace_back(attributeIds.at(static_cast<int>(i)), UaDataValue(values[i]));
    if (*m_nodeClass == OpcUa_NodeClass_Variable && !isCancelled())
        readProperties(*session, details);
    if (!m_facts.dataType.isNull() && !isCancelled()) {
        m_facts.properties = details.properties;
        QlumContextReader reader(session, settings);
        details.context = reader.of(m_facts);
        reader.learn(m_value);
    }
    if (!isCancelled())
        emit detailsRead(m_serverId, m_nodeId, details);
}

void QlumReadJob::readProperties(QlumSessionServices& session, QlumAttributeDetails& details) const
{
    UaClientSdk::ServiceSettings settings = serviceSettings();
    UaBrowsePathResults targets;
    const UaBrowsePaths paths = pathsToProperties(m_nodeId);
    if (!session.translateBrowsePathsToNodeIds(settings, paths, targets).isGood() ||
        targets.length() != paths.length())
        return;
    std::vector<std::string> names;
    std::vector<UaNodeId> ids;
    for (OpcUa_UInt32 i = 0; i < targets.length(); ++i) {
        if (!OpcUa_IsGood(targets[i].StatusCode) || targets[i].NoOfTargets < 1)
            continue;
        names.push_back(qlumDescribingProperties()[i]);
        ids.emplace_back(targets[i].Targets[0].TargetId.NodeId);
    }
    if (ids.empty() || isCancelled())
        return;
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(ids.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(ids[i].copyTo(&nodes[i].NodeId));
        nodes[i].AttributeId = OpcUa_Attributes_Value;
    }
    UaDataValues values;
    if (!session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values).isGood())
        return;
    for (OpcUa_UInt32 i = 0; i < values.length() && i < nodes.length(); ++i)
        if (!OpcUa_IsBad(values[i].StatusCode))
            details.properties.emplace(names[i], UaVariant(values[i].Value));
}

// ---- types

// What has to be read from the server for the types is read here, where nobody waits for the window.
void QlumReadJob::prepareType(QlumSessionServices& session, const UaVariant& value,
                              const UaVariant& dataType) const
{
    if (value.type() == OpcUaType_ExtensionObject)
        prepareEncodings(session, value);
    if (dataType.type() != OpcUaType_NodeId || !dataType.isScalar())
        return;
    const UaNodeId id = dataType.toNodeId();
    if (mayBeNamed(value.type()))
        static_cast<void>(session.dataTypeDictionary()->enumDefinition(id));
    if (QlumServerTypes* types = session.types(); types && !id.isNull() && !isCancelled())
        static_cast<void>(types->typeName(id));
}

void QlumReadJob::prepareEncodings(QlumSessionServices& session, const UaVariant& value) const
{
    const OpcUa_UInt32 count = value.isScalar() ? 1 : std::min(value.elementCount(), preparedElements);
    for (OpcUa_UInt32 i = 0; i < count && !isCancelled(); ++i) {
        const UaVariant element = value.isScalar() ? value : value.at(i);
        const UaNodeId id = element.toExtensionObject().encodingId();
        if (id.namespaceIndex() != 0)
            static_cast<void>(session.dataTypeDictionary()->structureDefinition(id));
    }
}
