// A node id that may name its namespace by URI and its server by index, OPC 10000-4, 7.16.
#pragma once

#include <uabase/values/uanodeid.h>
#include <uabase/values/uastring.h>

#include <compare>
#include <functional>
#include <string_view>

class UaExpandedNodeId
{
public:
    UaExpandedNodeId() noexcept = default;
    explicit UaExpandedNodeId(const UaNodeId& nodeId, const UaString& namespaceUri = UaString(),
                              OpcUa_UInt32 serverIndex = 0) noexcept
        : m_nodeId(nodeId), m_namespaceUri(namespaceUri), m_serverIndex(serverIndex)
    {
    }
    explicit UaExpandedNodeId(const OpcUa_ExpandedNodeId& value) noexcept
        : m_nodeId(value.NodeId), m_namespaceUri(value.NamespaceUri), m_serverIndex(value.ServerIndex)
    {
    }

    /// "svr=1;nsu=http://x.org/;s=abc"; in a URI ';' is written "%3B" and '%' "%25" (OPC 10000-6, 5.3.1.11).
    /// Null on a fault; ok tells that apart.
    [[nodiscard]] static UaExpandedNodeId fromString(std::string_view text, bool* ok = nullptr);
    [[nodiscard]] UaString toString() const;
    /// As toString, but always with the namespace.
    [[nodiscard]] UaString toFullString() const;

    bool isNull() const noexcept
    {
        return m_nodeId.isNull() && m_namespaceUri.isEmpty() && m_serverIndex == 0;
    }
    /// Neither another server nor a namespace URI: the node id is complete.
    bool isLocal() const noexcept { return m_namespaceUri.isEmpty() && m_serverIndex == 0; }
    const UaNodeId& nodeId() const noexcept { return m_nodeId; }
    const UaString& namespaceUri() const noexcept { return m_namespaceUri; }
    OpcUa_UInt32 serverIndex() const noexcept { return m_serverIndex; }
    void setNodeId(const UaNodeId& nodeId) noexcept { m_nodeId = nodeId; }

    /// Deep copy into raw memory.
    [[nodiscard]] OpcUa_StatusCode copyTo(OpcUa_ExpandedNodeId* destination) const noexcept;

    friend bool operator==(const UaExpandedNodeId&, const UaExpandedNodeId&) noexcept = default;
    friend std::strong_ordering operator<=>(const UaExpandedNodeId&,
                                            const UaExpandedNodeId&) noexcept = default;

private:
    UaNodeId m_nodeId;
    UaString m_namespaceUri;
    OpcUa_UInt32 m_serverIndex = 0;
};

template <>
struct std::hash<UaExpandedNodeId>
{
    std::size_t operator()(const UaExpandedNodeId& value) const noexcept
    {
        return value.nodeId().hash() ^ (std::hash<UaString>()(value.namespaceUri()) + value.serverIndex());
    }
};
