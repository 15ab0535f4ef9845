#include <servers/qlumtypecache.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumcalltimeout.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <uabase/structures/uadatatypedictionary.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatus.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uavariant.h>

#include <QStringList>

#include <array>
#include <optional>

namespace {
using UaClientSdk::ServiceSettings;

// In the order of the results.
enum InfoResult {
    NodeClass,
    BrowseName,
    DisplayName,
    Description,
    DataType,
    ValueRank,
    ArrayDimensions,
    InverseName,
    InfoResultCount
};
constexpr std::array<OpcUa_UInt32, InfoResultCount> infoAttributes{
    OpcUa_Attributes_NodeClass,       OpcUa_Attributes_BrowseName, OpcUa_Attributes_DisplayName,
    OpcUa_Attributes_Description,     OpcUa_Attributes_DataType,   OpcUa_Attributes_ValueRank,
    OpcUa_Attributes_ArrayDimensions, OpcUa_Attributes_InverseName};

bool isGood(const UaDataValues& values, OpcUa_UInt32 index)
{
    return OpcUa_IsGood(values[index].StatusCode);
}

UaVariant valueOf(const UaDataValues& values, OpcUa_UInt32 index)
{
    return UaVariant(values[index].Value);
}

QString localizedText(const UaDataValues& values, OpcUa_UInt32 index)
{
    return toQString(valueOf(values, index).toLocalizedText().text());
}
} // namespace

QlumTypeCache::QlumTypeCache(unsigned int serverId, QlumSessionServicesProvider provider)
    : m_serverId(serverId), m_log(QCoreApplication::translate("QlumTypeCache", "TypeCache"), serverId),
      m_provider(std::move(provider))
{
}

QlumTypeCache::~QlumTypeCache() = default;

QString QlumTypeCache::typeName(const UaNodeId& id, bool useInverseName)
{
    const InfoPtr info = typeInfo(id);
    if (!info)
        return {};
    return useInverseName ? info->inverseName : info->name;
}

std::optional<QString> QlumTypeCache::knownTypeName(const UaNodeId& id) const
{
    const std::lock_guard lock(m_mutex);
    const auto found = m_typeInfos.find(id);
    return found == m_typeInfos.end() ? std::nullopt : std::optional(found->second->name);
}

bool QlumTypeCache::readTypeInfo(const UaNodeId& id)
{
    return fetchTypeInfo(id) != nullptr;
}

QlumTypeCache::InfoPtr QlumTypeCache::typeInfo(const UaNodeId& id)
{
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_typeInfos.find(id); found != m_typeInfos.end())
            return found->second;
    }
    return fetchTypeInfo(id);
}

QlumTypeCache::InfoPtr QlumTypeCache::fetchTypeInfo(const UaNodeId& id)
{
    const auto session = connectedServices();
    if (!session)
        return nullptr;
    const unsigned int generation = currentGeneration();
    UaDataValues values;
    const UaStatus status = read(*session, id, infoAttributes, values);
    const QString idText = toQString(id.toFullString());
    if (!status.isGood()) {
        m_log.error(tr("Reading type info of NodeId %1 failed with error %2")
                        .arg(idText, toQString(status.toString())));
        return nullptr;
    }
    m_log.info(tr("Reading type info of NodeId %1 succeeded").arg(idText));
    auto info = std::make_shared<QlumTypeInfo>();
    takeNames(values, *info);
    takeClassSpecific(values, *info);
    const std::lock_guard lock(m_mutex);
    if (generation == m_generation)
        m_typeInfos[id] = info;
    return info;
}

UaStatus QlumTypeCache::read(QlumSessionServices& session, const UaNodeId& id,
                             std::span<const OpcUa_UInt32> attributes, UaDataValues& values) const
{
    UaReadValueIds nodes(static_cast<OpcUa_UInt32>(attributes.size()));
    for (OpcUa_UInt32 i = 0; i < nodes.length(); ++i) {
        static_cast<void>(id.copyTo(&nodes[i].NodeId)); // else null, which the server refuses
        nodes[i].AttributeId = attributes[i];
    }
    ServiceSettings settings = serviceSettings();
    return session.read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
}

void QlumTypeCache::takeNames(const UaDataValues& values, QlumTypeInfo& info) const
{
    if (isGood(values, BrowseName))
        info.browseName = toQString(valueOf(values, BrowseName).toQualifiedName().name());
    else
        logBadStatus(values, BrowseName, tr("BrowseName has bad statuscode: %1"));
    if (isGood(values, DisplayName))
        info.name = localizedText(values, DisplayName);
    else
        logBadStatus(values, DisplayName, tr("DisplayName has bad statuscode: %1"));
    if (isGood(values, Description))
        info.description = valueOf(values, Description).toLocalizedText();
    info.inverseName = info.name;
}

void QlumTypeCache::takeClassSpecific(const UaDataValues& values, QlumTypeInfo& info) const
{
    if (!isGood(values, NodeClass)) {
        logBadStatus(values, NodeClass, tr("NodeClass has bad statuscode: %1"));
        return;
    }
    const OpcUa_Int32 nodeClass = valueOf(values, NodeClass).toInt32();
    if (nodeClass == OpcUa_NodeClass_ReferenceType && isGood(values, InverseName)) {
        const QString inverseName = localizedText(values, InverseName);
        if (!inverseName.isEmpty())
            info.inverseName = inverseName;
    }
    if (nodeClass != OpcUa_NodeClass_Variable && nodeClass != OpcUa_NodeClass_VariableType)
        return;
    if (isGood(values, DataType))
        info.dataTypeId = valueOf(values, DataType).toNodeId();
    else
        logBadStatus(values, DataType, tr("DataTypeId has bad statuscode: %1"));
    if (isGood(values, ValueRank))
        info.valueRank = valueOf(values, ValueRank).toInt32();
    else
        logBadStatus(values, ValueRank, tr("ValueRank has bad statuscode: %1"));
    if (isGood(values, ArrayDimensions) &&
        valueOf(values, ArrayDimensions).toUInt32Array(info.arrayDimensions))
        for (const OpcUa_UInt32 dimension : info.arrayDimensions)
            info.arrayDimensionsText =
                info.arrayDimensionsText.isEmpty()
                    ? QString::number(dimension)
                    : QStringLiteral("%1|%2").arg(info.arrayDimensionsText).arg(dimension);
}

// ---- enumerations

UaEnumDefinition QlumTypeCache::getEnumDefinition(const UaNodeId* dataTypeId)
{
    if (!dataTypeId || dataTypeId->isNull())
        return {};
    const auto session = connectedServices();
    if (!session)
        return {};
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_enumDefinitions.find(*dataTypeId); found != m_enumDefinitions.end())
            return found->second;
    }
    const UaNodeId id = *dataTypeId;
    const unsigned int generation = currentGeneration();
    const UaEnumDefinition definition = fetchEnumDefinition(*session, id);
    const std::lock_guard lock(m_mutex);
    if (generation == m_generation)
        m_enumDefinitions[id] = definition;
    return definition;
}

bool QlumTypeCache::isEnum(const UaNodeId* dataTypeId)
{
    return !getEnumDefinition(dataTypeId).isNull();
}

UaEnumDefinition QlumTypeCache::fetchEnumDefinition(QlumSessionServices& session, const UaNodeId& dataTypeId)
{
    UaDataTypeDictionary* dictionary = session.dataTypeDictionary();
    const UaEnumDefinition definition = dictionary->enumDefinition(dataTypeId);
    if (!definition.isNull())
        return definition;
    // The id may be that of a variable whose data type is an enumeration.
    const InfoPtr info = fetchTypeInfo(dataTypeId);
    return info && !info->dataTypeId.isNull() ? dictionary->enumDefinition(info->dataTypeId)
                                              : UaEnumDefinition();
}

// ---- variables

UaStatus QlumTypeCache::readDataTypeId(const UaNodeId& id, UaNodeId* dataType, int* valueRank,
                                       UaUInt32Array* arrayDimensions, QString* typeName,
                                       UaLocalizedText* displayName)
{
    static constexpr std::array<OpcUa_UInt32, 4> attributes{
        OpcUa_Attributes_DataType, OpcUa_Attributes_ValueRank, OpcUa_Attributes_ArrayDimensions,
        OpcUa_Attributes_DisplayName};
    const auto session = connectedServices();
    if (!session)
        return UaStatus(OpcUa_BadConnectionClosed);
    UaDataValues values;
    const UaStatus status = read(*session, id, attributes, values);
    if (!status.isGood())
        return status;
    if (!isGood(values, 0))
        return UaStatus(values[0].StatusCode);
    const UaNodeId typeId = valueOf(values, 0).toNodeId();
    if (dataType)
        *dataType = typeId;
    if (valueRank)
        *valueRank = isGood(values, 1) ? valueOf(values, 1).toInt32() : -1;
    if (arrayDimensions && !(isGood(values, 2) && valueOf(values, 2).toUInt32Array(*arrayDimensions)))
        arrayDimensions->clear();
    if (typeName)
        *typeName = this->typeName(typeId);
    if (displayName)
        *displayName = isGood(values, 3) ? valueOf(values, 3).toLocalizedText() : UaLocalizedText();
    return status;
}

// ---- surroundings

void QlumTypeCache::clear()
{
    const std::lock_guard lock(m_mutex);
    ++m_generation;
    m_typeInfos.clear();
    m_enumDefinitions.clear();
    m_builtInTypes.clear();
    m_concreteTypes.clear();
    m_icons.clear();
}

void QlumTypeCache::clearDefinitions()
{
    const std::lock_guard lock(m_mutex);
    ++m_generation;
    m_enumDefinitions.clear();
    m_builtInTypes.clear();
    m_concreteTypes.clear();
}

std::shared_ptr<QlumSessionServices> QlumTypeCache::services()
{
    {
        const std::lock_guard lock(m_mutex);
        if (m_services)
            return m_services;
    }
    auto found = m_provider(m_serverId); // asks the application, so not under the lock
    const std::lock_guard lock(m_mutex);
    if (!m_services)
        m_services = std::move(found);
    return m_services;
}

std::shared_ptr<QlumSessionServices> QlumTypeCache::connectedServices()
{
    auto session = services();
    return session && session->isConnected() ? session : nullptr;
}

unsigned int QlumTypeCache::currentGeneration() const
{
    const std::lock_guard lock(m_mutex);
    return m_generation;
}

ServiceSettings QlumTypeCache::serviceSettings() const
{
    return qlumServiceSettings(tr("Names and icons of types"));
}

void QlumTypeCache::logBadStatus(const UaDataValues& values, OpcUa_UInt32 index, const QString& text) const
{
    m_log.error(text.arg(toQString(UaStatusCode(values[index].StatusCode).toString())));
}
