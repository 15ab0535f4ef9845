// Where nodes are in the address space of their server.
#pragma once
#include <app/api/qlumnodeaddress.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>

#include <map>
#include <span>
#include <vector>

class QlumJob;

/// One of the ways to a node.
struct QlumNodePath
{
    UaNodeId start;                 ///< null for the root; else the node above which nothing was found
    std::vector<QlumPathStep> path; ///< from there; by index
};

/// The paths of many nodes, for a job: climbs with all of them at once, so that it takes two calls for each
/// level and not for each node. What two nodes have above them is asked once.
/// Bad when the server cannot be asked or the job was cancelled; paths are then empty.
[[nodiscard]] UaStatus qlumReadPaths(QlumJob& job, QlumSessionServices& session,
                                     std::span<const UaNodeId> nodes, std::vector<QlumNodePath>& paths);
