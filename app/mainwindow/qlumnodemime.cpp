#include <app/mainwindow/qlumnodemime.h>

#include <app/api/qlumtext.h>
#include <uabase/uabytestring.h>

#include <QDataStream>
#include <QMimeData>

#include <cstring>

namespace {
constexpr std::size_t kMaxNodes = 100000;

UaNodeId readGuid(QDataStream& stream, OpcUa_UInt16 namespaceIndex)
{
    OpcUa_Guid guid = {};
    static_assert(sizeof guid == 16);
    char bytes[sizeof guid] = {};
    if (stream.readRawData(bytes, sizeof bytes) != sizeof bytes)
        stream.setStatus(QDataStream::ReadPastEnd);
    std::memcpy(&guid, bytes, sizeof guid);
    return UaNodeId(UaGuid(guid), namespaceIndex);
}

UaNodeId readOpaque(QDataStream& stream, OpcUa_UInt16 namespaceIndex)
{
    qint32 length = 0;
    stream >> length;
    // the length is checked against what is there before any memory is taken
    if (length < 0 || length > stream.device()->bytesAvailable()) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    QByteArray bytes(length, '\0');
    stream.readRawData(bytes.data(), length);
    return UaNodeId(UaByteString(length, reinterpret_cast<OpcUa_Byte*>(bytes.data())), namespaceIndex);
}

UaNodeId readNode(QDataStream& stream)
{
    qint32 namespaceIndex = 0;
    qint32 identifierType = 0;
    stream >> namespaceIndex >> identifierType;
    const auto index = static_cast<OpcUa_UInt16>(namespaceIndex);
    switch (identifierType) {
    case OpcUa_IdentifierType_Numeric: {
        quint32 number = 0;
        stream >> number;
        return UaNodeId(number, index);
    }
    case OpcUa_IdentifierType_String: {
        QString text;
        stream >> text;
        return UaNodeId(toUaString(text), index);
    }
    case OpcUa_IdentifierType_Guid:
        return readGuid(stream, index);
    case OpcUa_IdentifierType_Opaque:
        return readOpaque(stream, index);
    default:
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
}
} // namespace

bool qlumDecodeNodes(const QMimeData* data, QlumDraggedNodes& nodes)
{
    const QByteArray bytes =
        data ? data->data(QStringLiteral("application/UaNodeInformation")) : QByteArray();
    if (bytes.isEmpty())
        return false;
    QDataStream stream(bytes);
    qint32 serverId = 0;
    qint32 count = 0; // counts indexes without a record too, so the records alone tell where the data ends
    stream >> serverId >> count;
    nodes.serverId = static_cast<unsigned int>(serverId);
    nodes.nodeIds.clear();
    while (!stream.atEnd() && stream.status() == QDataStream::Ok && nodes.nodeIds.size() < kMaxNodes) {
        UaNodeId node = readNode(stream);
        QString name;
        stream >> name;
        if (stream.status() == QDataStream::Ok)
            nodes.nodeIds.push_back(std::move(node));
    }
    return stream.status() == QDataStream::Ok && !nodes.nodeIds.empty();
}
