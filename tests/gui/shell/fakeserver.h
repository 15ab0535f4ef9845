// A server that connects and disconnects without any network.
#pragma once
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumserverrole.h>
#include <uabase/structures/uaenumdefinition.h>
#include <uabase/values/ualocalizedtext.h>
#include <uabase/values/uanodeid.h>
#include <uaclientsdk/uasession.h>

#include <QIcon>
#include <QSettings>
#include <QString>
#include <QStringList>

class FakeServer : public QlumServerNode
{
public:
    explicit FakeServer(const QString& name, const QString& url = QStringLiteral("opc.tcp://fake:4840"))
        : QlumServerNode(name), m_url(url)
    {
    }

    unsigned int serverId() const override { return m_id; }
    QlumConnectionStatus connectionStatus() const override { return m_status; }
    UaClientSdk::UaSession* session() const override { return nullptr; }
    QlumServerRole role() const override { return m_role; }
    void setRole(QlumServerRole role) override
    {
        m_role = role;
        emit roleChanged();
    }
    bool connectServer() override
    {
        ++connects;
        if (hastens)
            return false;
        announce(refuses ? QlumConnectionStatus::ConnectFailed : QlumConnectionStatus::Connected);
        return !refuses;
    }
    bool startConnectByUser() override
    {
        ++userConnects;
        return startConnect();
    }
    void disconnectServer() override { announce(QlumConnectionStatus::Disconnected); }
    void changeUser() override { ++userChanges; }
    void storeSettings(QSettings& settings) const override
    {
        settings.setValue(QStringLiteral("ServerUrl"), m_url);
    }
    QStringList namespaceTable() const override { return m_namespaces; }
    void setNamespaceTable(const QStringList& uris) override { m_namespaces = uris; }
    QString typeName(const UaNodeId*, bool) override { return {}; }
    unsigned int readDataTypeId(const UaNodeId*, UaNodeId*, int*, UaUInt32Array*, QString*,
                                UaLocalizedText*) override
    {
        return 0x80000000u;
    }
    bool isEnum(const UaNodeId*) override { return false; }
    UaEnumDefinition getEnumDefinition(const UaNodeId*) override { return {}; }
    bool hasIcon(const UaNodeId*) override { return false; }
    QIcon getIcon(const UaNodeId*) override { return {}; }

    void announce(QlumConnectionStatus status)
    {
        m_status = status;
        emit serverNodeChanged(this, nullptr, status, m_id, NamespaceMap());
    }
    [[nodiscard]] QString url() const { return m_url; }

    int connects = 0;
    int userConnects = 0;
    int userChanges = 0;
    bool refuses = false;
    bool hastens = false; ///< a reconnect of its own instead of connecting

private:
    static inline unsigned int s_next = 100;
    unsigned int m_id = s_next++;
    QlumServerRole m_role = QlumServerRole::Operate;
    QString m_url;
    QStringList m_namespaces;
    QlumConnectionStatus m_status = QlumConnectionStatus::Disconnected;
};
