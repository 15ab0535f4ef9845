// A server node without a server.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QIcon>
#include <QPixmap>
#include <QSettings>
#include <QString>
#include <QStringList>

class StubServerNode : public QlumServerNode
{
public:
    explicit StubServerNode(const QString& name = QStringLiteral("stub")) : QlumServerNode(name) {}

    unsigned int serverId() const override { return 5; }
    QlumConnectionStatus connectionStatus() const override { return status; }
    UaClientSdk::UaSession* session() const override { return nullptr; }
    bool connectServer() override { return false; }
    void disconnectServer() override {}
    void changeUser() override {}
    void storeSettings(QSettings&) const override {}
    QStringList namespaceTable() const override { return namespaces; }
    void setNamespaceTable(const QStringList& uris) override { namespaces = uris; }
    QString typeName(const UaNodeId*, bool) override { return QStringLiteral("TypeName"); }
    unsigned int readDataTypeId(const UaNodeId*, UaNodeId*, int*, UaUInt32Array*, QString*,
                                UaLocalizedText*) override
    {
        return 0x80000000u;
    }
    bool isEnum(const UaNodeId*) override { return false; }
    UaEnumDefinition getEnumDefinition(const UaNodeId*) override { return {}; }
    bool hasIcon(const UaNodeId* nodeId) override { return nodeId && *nodeId == nodeWithIcon; }
    QIcon getIcon(const UaNodeId*) override
    {
        QPixmap pixmap(3, 3);
        pixmap.fill(Qt::magenta);
        return QIcon(pixmap);
    }

    void announce(QlumConnectionStatus newStatus, const NamespaceMap& namespaceMap = NamespaceMap())
    {
        status = newStatus;
        emit serverNodeChanged(this, nullptr, newStatus, serverId(), namespaceMap);
    }

    QlumConnectionStatus status = QlumConnectionStatus::Connected;
    QStringList namespaces{QStringLiteral("http://opcfoundation.org/UA/"), QStringLiteral("urn:a"),
                           QStringLiteral("urn:b")};
    UaNodeId nodeWithIcon;
};
