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
};

/// All references of each node, in the order of the nodes, continuation points included; those of a node that
/// the server does not know are empty. One service call as long as the server sets no limits.
UaStatus browseBatch(UaSession& session, ServiceSettings& settings, const std::vector<UaNodeId>& nodes,
                     const BatchBrowse& what, std::vector<UaReferenceDescriptions>& references);

} // namespace UaClientSdk
