#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/history/qlumtrendviewdocument.h>

#include <QObject>
#include <QString>

/// Shows the history of variables in documents.
class QlumHistoryPlugin : public QlumDocumentPlugin<QlumTrendViewDocument>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumHistoryPlugin();
    /// With services other than those of the application's sessions.
    explicit QlumHistoryPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring = {});

protected:
    void begin() override;
    [[nodiscard]] QlumTrendViewDocument* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    void registerSettings();
    void takeSamples();

    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
};
