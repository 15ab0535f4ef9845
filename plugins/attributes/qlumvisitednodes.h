#pragma once
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>

#include <optional>
#include <vector>

/// A node that was looked at.
struct QlumVisitedNode
{
    unsigned int serverId = 0; ///< of the project
    UaNodeId nodeId;
    OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified;

    friend bool operator==(const QlumVisitedNode&, const QlumVisitedNode&) = default;
};

/// The nodes that were looked at, in order, and where among them the user is.
class QlumVisitedNodes
{
public:
    /// The user looks at a node: what was ahead of him is forgotten, unless it is that one.
    void visit(const QlumVisitedNode& node);
    /// Whether there is one before.
    [[nodiscard]] bool canGoBack() const { return m_current > 0; }
    /// Whether there is one behind.
    [[nodiscard]] bool canGoForward() const { return m_current + 1 < m_nodes.size(); }
    /// Goes one back; only when that can be done.
    const QlumVisitedNode& goBack() { return m_nodes[--m_current]; }
    /// Goes one forward; only when that can be done.
    const QlumVisitedNode& goForward() { return m_nodes[++m_current]; }
    /// Forgets the nodes of a server: it was removed, or its ids mean something else now.
    void forgetServer(unsigned int serverId);

private:
    std::vector<QlumVisitedNode> m_nodes;
    std::size_t m_current = 0;
};
