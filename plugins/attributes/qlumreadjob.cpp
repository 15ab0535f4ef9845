#include <plugins/attributes/qlumreadjob.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtext.h>
#include <app/api/qlumuatrace.h>
#include <plugins/attributes/qlumattributemodel.h>
#include <plugins/attributes/qlumattributetexts.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uavariant.h>

#include <QString>

#include <algorithm>
#include <memory>
#include <utility>

namespace {
constexpr OpcUa_UInt32 defaultCallTimeout = 10000; // ms
constexpr OpcUa_UInt32 preparedElements = 16;      // of an array of structures; mostly they are of one type
} // namespace

QlumReadJob::QlumReadJob(unsigned int serverId, const UaNodeId& nodeId, OpcUa_NodeClass nodeClass,
                         QlumAttributeModel* model, QlumSessionServicesProvider services)
    : m_serverId(serverId), m_nodeId(nodeId), m_nodeClass(nodeClass), m_services(std::move(services))
{
    connect(
        this, &QlumReadJob::newData, model,
        qOverload<unsigned int, const UaNodeId&, OpcUa_NodeClass, int, const QList<int>&, OpcUa_DataValue*>(
            &QlumAttributeModel::setData),
        Qt::QueuedConnection);
}

QlumReadJob::~QlumReadJob() = default;

void QlumReadJob::run()
{
    const std::shared_ptr<QlumSessionServices> session = m_services(m_serverId);
    const QlumApplicationInterface* application = QlumApplicationInterface::instance();
    if (!session || !application) {
        log(QlumLogLevel::Error, tr("Session not valid."));
        return;
    }
    UaClientSdk::ServiceSettings settings;
    settings.callTimeout =
        application->settingsValue(QStringLiteral("General.CallTimeout"), defaultCallTimeout).toUInt();
    const double maxAge =
        application->settingsValue(QStringLiteral("AttributePlugin.MaxAge"), 0.0).toDouble();
    const QList<int> attributeIds = qlumAttributesOf(m_nodeClass);
    UaDataValues values;
    const UaStatus status =
        session->read(settings, maxAge, OpcUa_TimestampsToReturn_Both, nodesToRead(attributeIds), values);
    const QString node = toQString(m_nodeId.toFullString());
    const QString result = toQString(status.toString());
    if (!status.isGood()) {
        log(QlumLogLevel::Error, tr("Read attributes of node '%1' failed [ret = %2].").arg(node, result));
        return;
    }
    log(QlumLogLevel::Info, tr("Read attributes of node '%1' succeeded [ret = %2].").arg(node, result));
    prepareDefinitions(*session, values);
    if (isCancelled())
        return;
    const int count = static_cast<int>(values.length());
    emit newData(m_serverId, m_nodeId, m_nodeClass, count, attributeIds, values.detach());
}

UaReadValueIds QlumReadJob::nodesToRead(const QList<int>& attributeIds) const
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(attributeIds.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(m_nodeId.copyTo(&nodes[i].NodeId)); // else null, which the server refuses
        nodes[i].AttributeId = static_cast<OpcUa_UInt32>(attributeIds.at(static_cast<int>(i)));
    }
    return nodes;
}

// Definitions that have to be read from the server are read here, where nobody waits for the window.
void QlumReadJob::prepareDefinitions(QlumSessionServices& session, const UaDataValues& values) const
{
    for (const OpcUa_DataValue& dataValue : values) {
        if (dataValue.Value.Datatype != OpcUaType_ExtensionObject)
            continue;
        const UaVariant value(dataValue.Value);
        const OpcUa_UInt32 count = value.isScalar() ? 1 : std::min(value.elementCount(), preparedElements);
        for (OpcUa_UInt32 i = 0; i < count && !isCancelled(); ++i) {
            const UaVariant element = value.isScalar() ? value : value.at(i);
            const UaNodeId id = element.toExtensionObject().encodingId();
            if (id.namespaceIndex() != 0)
                static_cast<void>(session.dataTypeDictionary()->structureDefinition(id));
        }
    }
}

void QlumReadJob::log(int level, const QString& text) const
{
    QlumUaTrace::log(level, text, tr("Attribute Plugin"), m_serverId);
}
