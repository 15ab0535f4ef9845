#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <opcua/opcua_types.h>

#include <QMap>
#include <QtPlugin>

class QSettings;
class UaNodeId;

/// What the application tells its plugins; all on the GUI thread. Node ids are only valid during the call.
class QlumAppEventInterface
{
public:
    virtual ~QlumAppEventInterface() = default;

    /// Another server was selected in the project tree.
    virtual void serverSelectionChanged(unsigned int serverId) = 0;
    /// Another node was selected in the address space view. Its parent there is null for the root, and for a
    /// node that was not selected in the tree.
    virtual void selectionChanged(unsigned int serverId, UaNodeId* nodeId, OpcUa_NodeClass nodeClass,
                                  UaNodeId* parentId) = 0;
    /// A connection changed its state. The map translates namespace indexes known so far to the current ones;
    /// empty when they did not change.
    virtual void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                      const NamespaceMap& namespaceMap) = 0;
    /// The server leaves the project. When this returns, nothing of the plugin may use its session any more.
    virtual void sessionRemoved(unsigned int serverId) = 0;
    /// Write the plugin's project settings; the plugin's group is open.
    virtual void saveSettings(QSettings& settings) = 0;
    /// Read them back. The map translates server ids stored in the file to those of now; ids that are missing
    /// in it belong to no server.
    virtual void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) = 0;
    /// The address space below a node was changed; change is the mask of model change verbs (OPC
    /// 10000-5, 12.14).
    virtual void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char change) = 0;
};

#define QlumAppEventInterface_iid "com.korvanda.UaClient.AppEventInterface/2.0"
Q_DECLARE_INTERFACE(QlumAppEventInterface, QlumAppEventInterface_iid)
