#include <plugins/addressspace/qlumnodemimedata.h>

#include <app/api/qlumtext.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uaguid.h>

#include <QDataStream>
#include <QIODevice>

#include <array>
#include <cstring>
#include <limits>
#include <utility>

namespace {
constexpr int guidSize = 16;
static_assert(sizeof(OpcUa_Guid) == guidSize);

void writeIdentifier(QDataStream& stream, const UaNodeId& id)
{
    switch (id.identifierType()) {
    case OpcUa_IdentifierType_Numeric:
        stream << static_cast<qint32>(id.identifierNumeric());
        break;
    case OpcUa_IdentifierType_String:
        stream << toQString(id.identifierString());
        break;
    case OpcUa_IdentifierType_Guid: {
        // as it lies in memory, without a length
        std::array<char, guidSize> bytes;
        std::memcpy(bytes.data(), id.identifierGuid().get(), bytes.size());
        stream.writeRawData(bytes.data(), guidSize);
        break;
    }
    case OpcUa_IdentifierType_Opaque: {
        const UaByteString bytes = id.identifierOpaque();
        stream << static_cast<qint32>(bytes.length());
        stream.writeRawData(reinterpret_cast<const char*>(bytes.data()), bytes.length());
        break;
    }
    }
}

UaNodeId readOpaque(QDataStream& stream, OpcUa_UInt16 namespaceIndex)
{
    qint32 length = 0;
    stream >> length;
    if (length < 0 || length > stream.device()->bytesAvailable()) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    QByteArray bytes(length, Qt::Uninitialized);
    if (stream.readRawData(bytes.data(), length) != length)
        stream.setStatus(QDataStream::ReadPastEnd);
    return UaNodeId(UaByteString(length, reinterpret_cast<const OpcUa_Byte*>(bytes.constData())),
                    namespaceIndex);
}

UaNodeId readNodeId(QDataStream& stream)
{
    qint32 namespaceIndex = 0;
    qint32 identifierType = 0;
    stream >> namespaceIndex >> identifierType;
    if (namespaceIndex < 0 || namespaceIndex > std::numeric_limits<OpcUa_UInt16>::max()) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    const auto index = static_cast<OpcUa_UInt16>(namespaceIndex);
    switch (identifierType) {
    case OpcUa_IdentifierType_Numeric: {
        qint32 number = 0;
        stream >> number;
        return UaNodeId(static_cast<OpcUa_UInt32>(number), index);
    }
    case OpcUa_IdentifierType_String: {
        QString text;
        stream >> text;
        return UaNodeId(toUaString(text), index);
    }
    case OpcUa_IdentifierType_Guid: {
        OpcUa_Guid guid{};
        if (stream.readRawData(reinterpret_cast<char*>(&guid), guidSize) != guidSize)
            stream.setStatus(QDataStream::ReadPastEnd);
        return UaNodeId(UaGuid(guid), index);
    }
    case OpcUa_IdentifierType_Opaque:
        return readOpaque(stream, index);
    default:
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
}
} // namespace

QString qlumNodeMimeType()
{
    return QStringLiteral("application/UaNodeInformation");
}

QByteArray qlumEncodeNodes(const QlumDraggedNodes& dragged, int count)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << static_cast<qint32>(dragged.serverId) << static_cast<qint32>(count);
    for (const QlumDraggedNode& node : dragged.nodes) {
        stream << static_cast<qint32>(node.nodeId.namespaceIndex())
               << static_cast<qint32>(node.nodeId.identifierType());
        writeIdentifier(stream, node.nodeId);
        stream << node.name;
    }
    return bytes;
}

bool qlumDecodeNodes(const QByteArray& bytes, QlumDraggedNodes& dragged)
{
    dragged = {};
    QDataStream stream(bytes);
    qint32 serverId = 0;
    qint32 count = 0;
    stream >> serverId >> count; // skipped indexes count, too; the records tell how many there are
    while (stream.status() == QDataStream::Ok && !stream.atEnd()) {
        QlumDraggedNode node;
        node.nodeId = readNodeId(stream);
        stream >> node.name;
        dragged.nodes.push_back(std::move(node));
    }
    if (stream.status() != QDataStream::Ok || count < 0) {
        dragged = {};
        return false;
    }
    dragged.serverId = static_cast<unsigned int>(serverId);
    return true;
}
