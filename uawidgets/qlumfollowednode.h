#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_types.h>
#include <uabase/values/uanodeid.h>

#include <QHash>

/// The node that a window shows which follows the selection: the last one selected, each server's own when
/// the user comes back to that server, by the id that it has now. GUI thread.
class QlumFollowedNode
{
public:
    /// A node of a server, and its class.
    struct Choice
    {
        UaNodeId nodeId;                                         ///< null while none was selected
        OpcUa_NodeClass nodeClass = OpcUa_NodeClass_Unspecified; ///< Unspecified while it is not known
    };

    /// qlumNoServer while there is none.
    [[nodiscard]] unsigned int serverId() const { return m_serverId; }
    /// With a null id while none is selected.
    [[nodiscard]] Choice choice() const { return m_choices.value(m_serverId); }
    /// Null while none is selected.
    [[nodiscard]] UaNodeId nodeId() const { return choice().nodeId; }
    /// Of the node's server; one that nothing was told of is connected when a node of it could be selected.
    [[nodiscard]] QlumConnectionStatus status() const { return status(m_serverId); }
    /// The same of any server.
    [[nodiscard]] QlumConnectionStatus status(unsigned int serverId) const;
    /// Whether its server can be asked.
    [[nodiscard]] bool canAsk() const;

    /// Null for no node.
    void select(unsigned int serverId, const UaNodeId* nodeId, OpcUa_NodeClass nodeClass);
    /// False when it is the server already.
    bool selectServer(unsigned int serverId);
    /// True when the node has to be read anew: its server is back, or its ids have changed. What was not
    /// found in the new namespaces is no longer selected.
    bool statusChanged(unsigned int serverId, QlumConnectionStatus status, const NamespaceMap& namespaceMap);
    /// True when the node was on that server: none is selected then.
    bool removeServer(unsigned int serverId);

private:
    unsigned int m_serverId = qlumNoServer;
    QHash<unsigned int, Choice> m_choices;
    QHash<unsigned int, QlumConnectionStatus> m_states; ///< those that were told
};
