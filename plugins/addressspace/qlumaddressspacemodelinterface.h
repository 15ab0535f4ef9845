#pragma once
#include <opcua/opcua_types.h>

#include <functional>

class QAbstractItemModel;
class QModelIndex;
class UaNodeId;

/// What an address space page needs of the model that it shows; implemented by QlumAddressSpaceModel.
class QlumAddressSpaceModelInterface
{
public:
    virtual ~QlumAddressSpaceModelInterface() = default;

    /// What a page wants to hear of; each may be empty.
    struct Observer
    {
        /// Nodes have other ids now, or are gone, since the server numbers its namespaces in another way.
        std::function<void()> idsChanged;
        /// The server lets the user wait (true), in an event loop of its own, or no longer. Meanwhile
        /// neither the model may be deleted nor its view lay out anew.
        std::function<void(bool waiting)> waiting;
        /// The user waited for the children of a node in vain: a view must not go on asking for them.
        std::function<void(const QModelIndex& index)> waitedInVain;
    };

    /// The model itself.
    virtual QAbstractItemModel* itemModel() = 0;
    /// Throws the children of the index away and browses again.
    virtual void rebrowseNodeIndex(const QModelIndex& index) = 0;
    /// The server told of a change; refreshes every loaded occurrence of the node where the verbs ask for it.
    virtual void serverModelChanged(const UaNodeId& affectedNode, unsigned char verb) = 0;
    /// Node id, class and id of the parent (null for the root) behind an index; false for an invalid one.
    virtual bool nodeInfo(const QModelIndex& index, UaNodeId& nodeId, OpcUa_NodeClass& nodeClass,
                          UaNodeId& parentId) const = 0;
    /// The index of a node, which is looked for on the server when the tree does not hold it yet; invalid
    /// when no way leads to it or the time of a browse does not suffice.
    virtual QModelIndex reveal(const UaNodeId& nodeId) = 0;
    /// Orders the nodes by their names as people read them: by the language's alphabet, capitals beside small
    /// letters, digits as numbers; else, as at first, by code units.
    virtual void setReadingOrder(bool) {}
    /// From now on the observer hears of what happens.
    virtual void setObserver(Observer) {}
};
