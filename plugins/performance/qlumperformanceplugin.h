#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/performance/qlumperformanceview.h>

#include <QObject>
#include <QString>

/// Measures in documents how long services of a server take.
class QlumPerformancePlugin : public QlumDocumentPlugin<QlumPerformanceView>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumPerformancePlugin();
    /// With services other than those of the application's sessions.
    explicit QlumPerformancePlugin(QlumSessionServicesProvider services);

protected:
    void begin() override;
    [[nodiscard]] QlumPerformanceView* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    const QlumSessionServicesProvider m_services;
};
