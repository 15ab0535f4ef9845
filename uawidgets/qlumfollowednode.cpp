#include <uawidgets/qlumfollowednode.h>

QlumConnectionStatus QlumFollowedNode::status(unsigned int serverId) const
{
    const bool hasShownNodes = !m_choices.value(serverId).nodeId.isNull();
    return m_states.value(serverId, hasShownNodes ? QlumConnectionStatus::Connected
                                                  : QlumConnectionStatus::Disconnected);
}

// A server whose link is only interrupted may answer.
bool QlumFollowedNode::canAsk() const
{
    return m_serverId != qlumNoServer && qlumIsConnected(status());
}

void QlumFollowedNode::select(unsigned int serverId, const UaNodeId* nodeId, OpcUa_NodeClass nodeClass)
{
    m_serverId = serverId;
    m_choices.insert(serverId, nodeId ? Choice{*nodeId, nodeClass} : Choice());
}

bool QlumFollowedNode::selectServer(unsigned int serverId)
{
    if (serverId == m_serverId)
        return false;
    m_serverId = serverId;
    return true;
}

bool QlumFollowedNode::statusChanged(unsigned int serverId, QlumConnectionStatus status,
                                     const NamespaceMap& namespaceMap)
{
    const bool wasUp = this->status(serverId) == QlumConnectionStatus::Connected;
    m_states.insert(serverId, status);
    const auto choice = m_choices.find(serverId);
    // that of the standard is the same everywhere
    if (!namespaceMap.isEmpty() && choice != m_choices.end() && choice->nodeId.namespaceIndex() != 0) {
        const auto index = namespaceMap.constFind(choice->nodeId.namespaceIndex());
        if (index == namespaceMap.constEnd())
            *choice = Choice();
        else
            choice->nodeId.setNamespaceIndex(*index);
    }
    return serverId == m_serverId && status == QlumConnectionStatus::Connected &&
           (!wasUp || !namespaceMap.isEmpty());
}

bool QlumFollowedNode::removeServer(unsigned int serverId)
{
    m_choices.remove(serverId);
    m_states.remove(serverId);
    if (serverId != m_serverId)
        return false;
    m_serverId = qlumNoServer;
    return true;
}
