#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/datalogger/qlumloggerview.h>

#include <QObject>
#include <QString>

/// Records values in documents.
class QlumDataLoggerPlugin : public QlumDocumentPlugin<QlumLoggerView>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumDataLoggerPlugin();
    /// With services other than those of the application's sessions.
    QlumDataLoggerPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring);

protected:
    void begin() override;
    [[nodiscard]] QlumLoggerView* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
};
