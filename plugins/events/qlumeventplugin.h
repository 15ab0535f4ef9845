#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/events/qlumeventwidget.h>
#include <uabase/values/uanodeid.h>

#include <QObject>
#include <QString>

#include <memory>

class QlumEventPools;
class QlumEventTypes;

/// Makes the documents that receive events and alarms.
class QlumEventPlugin : public QlumDocumentPlugin<QlumEventWidget>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumEventPlugin();
    /// With services other than those of the application's sessions.
    explicit QlumEventPlugin(QlumSessionServicesProvider services);
    ~QlumEventPlugin() override;

    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char change) override;

protected:
    void begin() override;
    void end() override;
    [[nodiscard]] QlumEventWidget* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    void registerSettings();

    const QlumSessionServicesProvider m_services;
    std::shared_ptr<QlumEventPools> m_pools;
    std::unique_ptr<QlumEventTypes> m_types;
};
