#include <plugins/attributes/qlumreadjob.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumservertypes.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <plugins/attributes/qlumattributeresults.h>
#include <plugins/attributes/qlumattributesettings.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>

#include <algorithm>
#include <memory>
#include <utility>

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
    readAttributes(*session);
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

void QlumReadJob::readAttributes(QlumSessionServices& session)
{
    UaClientSdk::ServiceSettings settings = serviceSettings();
    const double maxAge = QlumAttributeSettings::maxAge.value();
    const QList<int> attributeIds = qlumAttributesOf(*m_nodeClass);
    UaDataValues values;
    const UaStatus status = session.read(settings, maxAge, OpcUa_TimestampsToReturn_Both,
                                         nodesToRead(m_nodeId, attributeIds), values);
    const QString node = toQString(m_nodeId.toFullString());
    const QString result = toQString(status.toString());
    if (!status.isGood()) {
        m_log.error(tr("Read attributes of node '%1' failed [ret = %2].").arg(node, result));
        tellFailure(result);
        return;
    }
    m_log.info(tr("Read attributes of node '%1' succeeded [ret = %2].").arg(node, result));
    prepareType(session, qlumResultOf(OpcUa_Attributes_Value, attributeIds, values),
                qlumResultOf(OpcUa_Attributes_DataType, attributeIds, values));
    if (isCancelled())
        return;
    const int count = static_cast<int>(values.length());
    emit newData(m_serverId, m_nodeId, *m_nodeClass, count, attributeIds, values.detach());
}

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
