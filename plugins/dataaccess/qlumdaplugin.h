#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdatatypeeventinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/dataaccess/qlumdaview.h>

#include <QObject>
#include <QString>

#include <memory>

class QlumJobPool;
class QlumNodeCopier;

/// Watches and writes values in documents.
class QlumDaPlugin : public QlumDocumentPlugin<QlumDaView>, public QlumDataTypeEventInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface QlumDataTypeEventInterface)
public:
    QlumDaPlugin();
    /// With services other than those of the application's sessions.
    QlumDaPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring);
    ~QlumDaPlugin() override;

    void sessionRemoved(unsigned int serverId) override;
    void dataTypesLoaded(unsigned int serverId) override;

protected:
    void begin() override;
    void end() override;
    [[nodiscard]] QlumDaView* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    void offerCopies();

    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    std::unique_ptr<QlumNodeCopier> m_copier; ///< for the other views of nodes
    std::unique_ptr<QlumJobPool> m_copies;    ///< what it reads; goes before it
};
