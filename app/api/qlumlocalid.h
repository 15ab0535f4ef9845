#pragma once
#include <uabase/values/uaarrays.h>
#include <uabase/values/uaexpandednodeid.h>
#include <uabase/values/uanodeid.h>

/// The node id as the server itself knows it, whose namespaces these are by index; null for a node of another
/// server and for a namespace that is not among them. Any thread.
[[nodiscard]] UaNodeId qlumLocalId(const UaExpandedNodeId& id, const UaStringArray& namespaces);
/// The other way round: with the URI of its namespace, unless that is 0 or not among them.
[[nodiscard]] UaExpandedNodeId qlumPortableId(const UaNodeId& id, const UaStringArray& namespaces);
