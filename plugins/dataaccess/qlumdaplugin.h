#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdatatypeeventinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <memory>

class QlumApplicationInterface;
class QlumDaView;
class QlumJobPool;
class QlumNodeCopier;
class QWidget;

/// Watches and writes values in documents.
class QlumDaPlugin : public QObject,
                     public QlumPluginInterface,
                     public QlumDocumentInterface,
                     public QlumAppEventAdapter,
                     public QlumDataTypeEventInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface QlumDataTypeEventInterface)
public:
    QlumDaPlugin();
    /// With services other than those of the application's sessions.
    QlumDaPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring);
    ~QlumDaPlugin() override;

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    QStringList documentTypes() override;
    QWidget* createDocument(const QString& type) override;
    QString description(const QString& type) override;

    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    void dataTypesLoaded(unsigned int serverId) override;

private:
    [[nodiscard]] QList<QlumDaView*> views() const;
    void offerCopies();

    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    QlumApplicationInterface* m_app = nullptr;
    QList<QPointer<QlumDaView>> m_views; ///< those that were made; they belong to others
    QMap<unsigned int, QlumConnectionStatus> m_status;
    std::unique_ptr<QlumNodeCopier> m_copier; ///< for the other views of nodes
    std::unique_ptr<QlumJobPool> m_copies;    ///< what it reads; goes before it
};
