// Icons that a server publishes for its nodes and types.
#include <servers/qlumtypecache.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumimageformat.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaqualifiedname.h>
#include <uabase/values/uastatuscode.h>
#include <uabase/values/uastring.h>
#include <uabase/values/uavariant.h>

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageReader>
#include <QPixmap>
#include <QSize>

#include <array>

namespace {
using UaClientSdk::BrowseContext;
using UaClientSdk::ServiceSettings;

constexpr OpcUa_UInt32 hasTypeDefinition = 40;
constexpr OpcUa_UInt32 hasProperty = 46;
constexpr int maximumTypeSteps = 4; // a type definition has none of its own; a server may say otherwise
constexpr int maximumIconBytes = 4 * 1024 * 1024;
constexpr int maximumIconSide = 1024; // pixels; a small file may claim any size

QImage loadImage(const UaByteString& bytes, const char* format)
{
    if (bytes.isEmpty() || bytes.length() > maximumIconBytes)
        return {};
    QByteArray data = QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), bytes.length());
    QBuffer buffer(&data);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (size.width() > maximumIconSide || size.height() > maximumIconSide)
        return {};
    return reader.read();
}
} // namespace

bool QlumTypeCache::hasIcon(const UaNodeId* id)
{
    return !getIcon(id).isNull();
}

QPixmap QlumTypeCache::getIcon(const UaNodeId* id)
{
    return id ? QPixmap::fromImage(readIcon(*id)) : QPixmap();
}

QImage QlumTypeCache::readIcon(const UaNodeId& id)
{
    return connectedServices() ? icon(id, 0) : QImage();
}

QImage QlumTypeCache::icon(const UaNodeId& id, int depth)
{
    {
        const std::lock_guard lock(m_mutex);
        if (const auto found = m_icons.find(id); found != m_icons.end())
            return found->second;
    }
    const auto session = connectedServices();
    if (!session || depth > maximumTypeSteps)
        return {};
    const unsigned int generation = currentGeneration();
    const QImage pixmap = fetchIcon(*session, id, depth);
    const std::lock_guard lock(m_mutex);
    if (generation == m_generation)
        m_icons[id] = pixmap;
    return pixmap;
}

QImage QlumTypeCache::fetchIcon(QlumSessionServices& session, const UaNodeId& id, int depth)
{
    const QImage own = readIconHelper(session, id);
    if (!own.isNull())
        return own;
    const UaNodeId type = typeDefinition(session, id);
    return type.isNull() ? QImage() : icon(type, depth + 1);
}

UaNodeId QlumTypeCache::typeDefinition(QlumSessionServices& session, const UaNodeId& id)
{
    BrowseContext context;
    context.referenceTypeId = UaNodeId(hasTypeDefinition);
    context.includeSubtypes = false;
    context.maxReferencesToReturn = 1;
    ServiceSettings settings = serviceSettings();
    UaByteString continuationPoint;
    UaReferenceDescriptions references;
    const UaStatus status = session.browse(settings, id, context, continuationPoint, references);
    if (!status.isGood()) {
        m_log.write(QlumLogLevel::Error,
                    tr("Browse for reference HasTypeDefinition on NodeId %1 failed with error %2")
                        .arg(toQString(id.toFullString()), toQString(status.toString())));
        return {};
    }
    if (!continuationPoint.isEmpty()) {
        // the server holds it until it is told, at the longest until the session ends
        UaReferenceDescriptions rest;
        static_cast<void>(session.browseNext(settings, true, continuationPoint, rest));
    }
    return references.length() == 1 ? UaNodeId(references[0].NodeId.NodeId) : UaNodeId();
}

QImage QlumTypeCache::readIconHelper(QlumSessionServices& session, const UaNodeId& id)
{
    const UaNodeId property = iconProperty(session, id);
    return property.isNull() ? QImage() : readImage(session, property);
}

UaNodeId QlumTypeCache::iconProperty(QlumSessionServices& session, const UaNodeId& id)
{
    UaBrowsePaths paths(1);
    // what there is no memory for stays null, and the server refuses the path
    static_cast<void>(id.copyTo(&paths[0].StartingNode));
    UaRelativePathElements elements(1);
    static_cast<void>(UaNodeId(hasProperty).copyTo(&elements[0].ReferenceTypeId));
    static_cast<void>(UaQualifiedName(UaString("Icon"), 0).copyTo(&elements[0].TargetName));
    elements.detach(&paths[0].RelativePath.NoOfElements, &paths[0].RelativePath.Elements);
    ServiceSettings settings = serviceSettings();
    UaBrowsePathResults results;
    const UaStatus status = session.translateBrowsePathsToNodeIds(settings, paths, results);
    const QString idText = toQString(id.toFullString());
    if (!status.isGood() || results.length() != 1) {
        m_log.error(tr("Translate failed with error %1").arg(toQString(status.toString())));
    } else if (!OpcUa_IsGood(results[0].StatusCode)) {
        const bool isNone = results[0].StatusCode == OpcUa_BadNoMatch; // as most nodes have
        m_log.write(isNone ? QlumLogLevel::Data : QlumLogLevel::Error,
                    tr("Translate returned error %1 for BrowsePath 'Icon' on NodeId %2")
                        .arg(toQString(UaStatusCode(results[0].StatusCode).toString()), idText));
    } else if (results[0].NoOfTargets < 1) {
        m_log.write(QlumLogLevel::Error,
                    tr("Translate returned no target for BrowsePath 'Icon' on NodeId %1").arg(idText));
    } else {
        return UaNodeId(results[0].Targets[0].TargetId.NodeId);
    }
    return {};
}

QImage QlumTypeCache::readImage(QlumSessionServices& session, const UaNodeId& property)
{
    static constexpr std::array<OpcUa_UInt32, 2> attributes{OpcUa_Attributes_DataType,
                                                            OpcUa_Attributes_Value};
    UaDataValues values;
    const UaStatus status = read(session, property, attributes, values);
    const QString idText = toQString(property.toFullString());
    if (!status.isGood()) {
        m_log.error(tr("Read failed with error %1").arg(toQString(status.toString())));
        return {};
    }
    const std::array<QString, 2> texts{tr("Read returned error %1 for DataType of NodeId %2"),
                                       tr("Read returned error %1 for Value of NodeId %2")};
    for (OpcUa_UInt32 i = 0; i < attributes.size(); ++i)
        if (!OpcUa_IsGood(values[i].StatusCode)) {
            m_log.write(QlumLogLevel::Error,
                        texts[i].arg(toQString(UaStatusCode(values[i].StatusCode).toString()), idText));
            return {};
        }
    const UaVariant dataType(values[0].Value);
    const UaVariant image(values[1].Value);
    const UaNodeId typeId =
        dataType.type() == OpcUaType_NodeId && dataType.isScalar() ? dataType.toNodeId() : UaNodeId();
    const bool fits = !typeId.isNull() && typeId.isNumeric() && typeId.namespaceIndex() == 0 &&
                      image.type() == OpcUaType_ByteString && image.isScalar();
    if (!fits) {
        m_log.error(tr("Read on NodeId %1 returned unexpected value").arg(idText));
        return {};
    }
    const char* format = qlumImageFormatName(qlumDeclaredImageFormat(typeId));
    return format ? loadImage(image.toByteString(), format) : QImage();
}
