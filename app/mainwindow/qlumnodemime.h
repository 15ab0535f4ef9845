#pragma once
#include <uabase/uanodeid.h>

#include <vector>

class QMimeData;

/// Nodes dragged from an address space view.
struct QlumDraggedNodes
{
    unsigned int serverId = 0;
    std::vector<UaNodeId> nodeIds;
};

/// The nodes that a drag carries; false when it carries none or its data is damaged. At most 100,000 nodes.
[[nodiscard]] bool qlumDecodeNodes(const QMimeData* data, QlumDraggedNodes& nodes);
