#pragma once
#include <plugins/addressspace/qlumaddressspacepage.h>

#include <QString>

#include <functional>
#include <memory>

class QObject;
class QSettings;
class QWidget;
class QlumAddressSpaceModel;
class QlumServerNode;
class QlumToolServices;
class UaNodeId;

/// What the main window has others do for it. An action whose service is missing stays disabled.
struct QlumTavelinServices
{
    /// A server with the connection settings of the open group of a project file.
    std::function<std::unique_ptr<QlumServerNode>(const QString& name, QSettings& settings)> createServer;
    /// Asks the user for a new server; null when the user thought better of it.
    std::function<std::unique_ptr<QlumServerNode>(QWidget* parent)> askForServer;
    /// Shows the settings of a server; true when they were changed.
    std::function<bool(QlumServerNode* server, QWidget* parent)> editServer;
    /// Tries the connection to a server step by step and shows where it stops.
    std::function<void(QlumServerNode* server, QWidget* parent)> diagnoseServer;
    QlumAddressSpaceModelFactory createPageModel;
    /// A model of the nodes below a start node, owned by the caller.
    std::function<QlumAddressSpaceModel*(QlumServerNode* server, const UaNodeId& startNode)>
        createSubTreeModel;
    std::function<void(QWidget* parent)> manageCertificates;
    /// The server of the project with that id; null for none.
    using FindServer = std::function<QlumServerNode*(unsigned int serverId)>;
    /// Registers what those below the window do for tools, under the given owner.
    std::function<void(QlumToolServices& services, QObject* owner, const FindServer& find)> takeToolServices;
};
