#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumprojectnode.h>
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
/// connects is QlumProjectNodeServer; tests have their own. A subclass announces each change of its name or
/// state by serverNodeChanged, on the GUI thread.
class QlumServerNode : public QlumProjectNode
{
    Q_OBJECT
public:
    using QlumProjectNode::QlumProjectNode;

    [[nodiscard]] int type() const override { return Server; }

    /// Unique in the running program, never 0xFFFFFFFF.
    [[nodiscard]] virtual unsigned int serverId() const = 0;
    [[nodiscard]] virtual QlumConnectionStatus connectionStatus() const = 0;
    /// Owned by the node; the pointer stays the same for the node's life.
    [[nodiscard]] virtual UaClientSdk::UaSession* session() const = 0;

    /// Connects, asking the user for what is missing; true when connected. May run a nested event loop.
    virtual bool connectServer() = 0;
    virtual void disconnectServer() = 0;
    virtual void changeUser() = 0;

    /// Writes the connection settings into the open group. Never a password.
    virtual void storeSettings(QSettings& settings) const = 0;

    /// Namespace URIs by index, as the server last had them or the project stored them.
    [[nodiscard]] virtual QStringList namespaceTable() const = 0;
    virtual void setNamespaceTable(const QStringList& uris) = 0;
    /// -1 when absent.
    [[nodiscard]] int namespaceIndexFromUri(const QString& uri) const;
    /// Empty when there is no such index.
    [[nodiscard]] QString namespaceUriFromIndex(int index) const;

    virtual QString typeName(const UaNodeId* dataType, bool withNamespace) = 0;
    virtual unsigned int readDataTypeId(const UaNodeId* nodeId, UaNodeId* dataType, int* valueRank,
                                        UaUInt32Array* arrayDimensions, QString* typeName,
                                        UaLocalizedText* displayName) = 0;
    virtual bool isEnum(const UaNodeId* dataType) = 0;
    virtual UaEnumDefinition getEnumDefinition(const UaNodeId* dataType) = 0;
    virtual bool hasIcon(const UaNodeId* nodeId) = 0;
    virtual QIcon getIcon(const UaNodeId* nodeId) = 0;

signals:
    void serverNodeChanged(QlumProjectNode* node, QWidget* widget, QlumConnectionStatus status,
                           unsigned int serverId, const NamespaceMap& namespaceMap);
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, OpcUa_Byte change);
    /// The server asks to be connected again, after the user trusted its certificate.
    void retryConnectServer();
};
