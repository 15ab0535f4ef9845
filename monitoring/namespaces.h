// Namespace indexes of what is watched, after the server has ordered its namespaces anew.
#pragma once

#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>

#include <map>

namespace monitoring {

/// Old index -> new index of every namespace that the server still has. Empty: nothing has changed.
using NamespaceMap = std::map<OpcUa_UInt16, OpcUa_UInt16>;

/// Each puts the new index where the old one was, and is false when a namespace is gone: what carries its
/// index would then mean something else. Namespace 0 stays. Nothing changes for an empty map.
[[nodiscard]] bool remapIndex(OpcUa_UInt16& index, const NamespaceMap& namespaces);
/// As remapIndex, for the id of a node.
[[nodiscard]] bool remapNodeId(UaNodeId& nodeId, const NamespaceMap& namespaces);
/// As remapIndex, for the type of an aggregate, and for the select and where clauses of events, node ids and
/// qualified names among their values included. Filters that the stack does not know stay as they are.
[[nodiscard]] bool remapFilter(OpcUa_ExtensionObject& filter, const NamespaceMap& namespaces);
/// As remapIndex, for the node, the data encoding and the filter of a request.
[[nodiscard]] bool remapRequest(OpcUa_MonitoredItemCreateRequest& request, const NamespaceMap& namespaces);

} // namespace monitoring
