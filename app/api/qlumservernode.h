#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumprojectnode.h>
#include <app/api/qlumserverrole.h>
#include <opcua/opcua_platform.h>
#include <uabase/values/uaarrays.h>

#include <QIcon>
#include <QString>
#include <QStringList>

class QSettings;
class QWidget;
class UaEnumDefinition;
class UaLocalizedText;
class UaNodeId;
template <typename T>
class UaArray;
using UaUInt32Array = UaArray<OpcUa_UInt32>;
namespace UaClientSdk {
class UaSession;
}

/// What the project tree, the project file and the main window need of a server. The node that really
/// connects is QlumProjectNodeServer; tests have their own. A subclass announces each change of its state by
/// serverNodeChanged, on the GUI thread.
class QlumServerNode : public QlumProjectNode
{
    Q_OBJECT
public:
    using QlumProjectNode::QlumProjectNode;

    /// Server.
    [[nodiscard]] int type() const override { return Server; }

    /// Tells a new name by nameChanged.
    void setDisplayName(const QString& name) override;
    /// Number of the server; unique in the running program, never 0xFFFFFFFF.
    [[nodiscard]] virtual unsigned int serverId() const = 0;
    /// The state that was announced last.
    [[nodiscard]] virtual QlumConnectionStatus connectionStatus() const = 0;
    /// The session, owned by the node; the pointer stays the same for the node's life.
    [[nodiscard]] virtual UaClientSdk::UaSession* session() const = 0;

    /// What may be done on the server; enforced by whoever owns the session.
    [[nodiscard]] virtual QlumServerRole role() const { return QlumServerRole::Operate; }
    /// Holds for every call that begins afterwards; announced by roleChanged().
    virtual void setRole(QlumServerRole) {}
    /// The same for a time only: then the role of before is there again, and that is what the project keeps.
    virtual void setRoleFor(QlumServerRole role, int) { setRole(role); }

    /// Connects, asking the user for what is missing; true when connected. May run a nested event loop. While
    /// a lost connection is being restored it only hastens that, and answers false.
    virtual bool connectServer() = 0;
    /// Begins the same without waiting for it; connectEnded() tells what it came to. False when there is
    /// nothing to begin. One that cannot but wait has ended when this returns.
    virtual bool startConnect();
    /// The same at the user's own command: he is told when it fails, and may try again.
    virtual bool startConnectByUser() { return startConnect(); }
    /// Closes the session; cancels a connect under way.
    virtual void disconnectServer() = 0;
    /// Asks for another user and continues the session as that one.
    virtual void changeUser() = 0;

    /// Writes the connection settings into the open group. Never a password.
    virtual void storeSettings(QSettings& settings) const = 0;

    /// The user removes the server: what outlives the program for it alone goes, passwords above all.
    virtual void forgetSecrets() {}

    /// Namespace URIs by index, as the server last had them or the project stored them.
    [[nodiscard]] virtual QStringList namespaceTable() const = 0;
    /// Restores the table that the project stored.
    virtual void setNamespaceTable(const QStringList& uris) = 0;
    /// Index of a namespace; -1 when absent.
    [[nodiscard]] int namespaceIndexFromUri(const QString& uri) const;
    /// URI of a namespace; empty when there is no such index.
    [[nodiscard]] QString namespaceUriFromIndex(int index) const;

    /// Answers QlumApplicationInterface::typeName() for this server.
    virtual QString typeName(const UaNodeId* dataType, bool withNamespace) = 0;
    /// Answers QlumApplicationInterface::readDataTypeId() for this server.
    virtual unsigned int readDataTypeId(const UaNodeId* nodeId, UaNodeId* dataType, int* valueRank,
                                        UaUInt32Array* arrayDimensions, QString* typeName,
                                        UaLocalizedText* displayName) = 0;
    /// Answers QlumApplicationInterface::isEnum() for this server.
    virtual bool isEnum(const UaNodeId* dataType) = 0;
    /// Answers QlumApplicationInterface::getEnumDefinition() for this server.
    virtual UaEnumDefinition getEnumDefinition(const UaNodeId* dataType) = 0;
    /// Answers QlumApplicationInterface::hasIcon() for this server. Icons come in the background: one that is
    /// not there yet is asked for, and iconsLoaded() tells when it is.
    virtual bool hasIcon(const UaNodeId* nodeId) = 0;
    /// Answers QlumApplicationInterface::getIcon() for this server.
    virtual QIcon getIcon(const UaNodeId* nodeId) = 0;

    /// The user has changed settings of the application.
    virtual void applySettings() {}

signals:
    /// The name that the user sees has changed, by whatever way.
    void nameChanged();
    /// The role is another one now, by whatever way.
    void roleChanged();
    /// The state changed. The widget is null; the map is that of
    /// QlumAppEventInterface::sessionStatusChanged().
    void serverNodeChanged(QlumProjectNode* node, QWidget* widget, QlumConnectionStatus status,
                           unsigned int serverId, const NamespaceMap& namespaceMap);
    /// A connect has ended, whoever began it.
    void connectEnded(bool connected);
    /// The server told that its address space changed at a node; change is the mask of model change verbs.
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, OpcUa_Byte change);
    /// Icons of nodes can be shown, or are no longer to be shown.
    void iconsLoaded();
    /// The definitions of the server's data types have been loaded, or loaded anew.
    void dataTypesLoaded(unsigned int serverId);
    /// The server asks to be connected again, after the user trusted its certificate.
    void retryConnectServer();
};
