#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/imageviewer/qlumimageview.h>

#include <QObject>
#include <QString>

/// Shows in documents the images that servers offer as values.
class QlumImageViewerPlugin : public QlumDocumentPlugin<QlumImageView>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumImageViewerPlugin();
    /// With services and watches other than those of the application's sessions.
    QlumImageViewerPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring);

protected:
    void begin() override;
    [[nodiscard]] QlumImageView* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    void registerSettings();
    void takeImages();

    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
};
