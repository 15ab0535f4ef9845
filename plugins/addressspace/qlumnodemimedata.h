// Address space nodes on their way from the tree to a view that takes them.
#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <uabase/values/uanodeid.h>

#include <QByteArray>
#include <QString>

#include <vector>

struct QlumDraggedNode
{
    UaNodeId nodeId;
    QString name;
};

struct QlumDraggedNodes
{
    unsigned int serverId = qlumNoServer;
    std::vector<QlumDraggedNode> nodes;
};

/// "application/UaNodeInformation"
[[nodiscard]] QString qlumNodeMimeType();
/// count is written as it is; it may be larger than the number of nodes.
[[nodiscard]] QByteArray qlumEncodeNodes(const QlumDraggedNodes& dragged, int count);
/// False when the bytes are cut or hold anything that cannot be; dragged is then empty.
[[nodiscard]] bool qlumDecodeNodes(const QByteArray& bytes, QlumDraggedNodes& dragged);
