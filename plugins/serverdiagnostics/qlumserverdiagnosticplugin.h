#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>

#include <QObject>
#include <QString>

#include <memory>

/// Makes the documents that show what a server tells of itself.
class QlumServerDiagnosticPlugin : public QlumDocumentPlugin<QlumServerDiagnosticWidget>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumServerDiagnosticPlugin();
    /// With services other than those of the application's sessions.
    explicit QlumServerDiagnosticPlugin(QlumSessionServicesProvider services,
                                        QlumAskEndpoints endpoints = {});
    ~QlumServerDiagnosticPlugin() override;

    void sessionRemoved(unsigned int serverId) override;

protected:
    void begin() override;
    void end() override;
    [[nodiscard]] QlumServerDiagnosticWidget* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    void registerSettings();

    const QlumSessionServicesProvider m_services;
    const QlumAskEndpoints m_endpoints;
    std::shared_ptr<QlumServerPools> m_pools;
};
