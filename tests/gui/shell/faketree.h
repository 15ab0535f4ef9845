// An address space of two nodes without any server.
#pragma once
#include <plugins/addressspace/qlumaddressspacemodelinterface.h>
#include <uabase/values/uanodeid.h>

#include <QAbstractItemModel>
#include <QModelIndex>
#include <QObject>
#include <QString>
#include <QStringListModel>

/// Remembers what was asked of it.
class FakeTree : public QStringListModel, public QlumAddressSpaceModelInterface
{
public:
    explicit FakeTree(QObject* parent)
        : QStringListModel({QStringLiteral("Root"), QStringLiteral("Leaf")}, parent)
    {
    }
    QAbstractItemModel* itemModel() override { return this; }
    void rebrowseNodeIndex(const QModelIndex& index) override { rebrowsed = index.row(); }
    void serverModelChanged(const UaNodeId&, unsigned char verb) override { verbs = verb; }
    bool nodeInfo(const QModelIndex& index, UaNodeId& nodeId, OpcUa_NodeClass& nodeClass,
                  UaNodeId&) const override
    {
        nodeId = UaNodeId(static_cast<OpcUa_UInt32>(84 + index.row()));
        nodeClass = OpcUa_NodeClass_Object;
        return index.isValid();
    }
    QModelIndex reveal(const UaNodeId& nodeId) override { return index(nodeId == UaNodeId(85) ? 1 : -1); }
    int rebrowsed = -1;
    unsigned char verbs = 0;
};
