// Browsing of many nodes to the end.
#pragma once

#include <uabase/values/uaarrays.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uastatus.h>
#include <uaclientsdk/servicesettings.h>

#include <vector>

namespace UaClientSdk {

class UaSession;

/// What to follow from each node.
struct BatchBrowse
{
    OpcUa_UInt32 referenceTypeId = 0; ///< of namespace 0, with its subtypes; 0: all
    bool inverse = false;
    OpcUa_UInt32 nodeClassMask = 0;
    OpcUa_UInt32 nodesAtOnce = 0; ///< browsed to their end before the next ones; 0: what goes into a call
};

/// All references of each node, in the order of the nodes, continuation points included. One service call as
/// long as the server sets no limits. Nodes that a server has no continuation point left for are browsed
/// again, fewer at a time and at last alone. The status is that of the calls; a node whose own result is bad,
/// or which comes to no end, has the references that came until then, and a warning in the trace names it.
/// Continuation points that are not followed to their end are released while the session is connected.
UaStatus browseBatch(UaSession& session, ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
                     const BatchBrowse& what, std::vector<UaReferenceDescriptions>& references);

} // namespace UaClientSdk
