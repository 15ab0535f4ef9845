#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlummonitoring.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QlumApplicationInterface;
class QlumImageView;
class QWidget;

/// Shows in documents the images that servers offer as values.
class QlumImageViewerPlugin : public QObject,
                              public QlumPluginInterface,
                              public QlumDocumentInterface,
                              public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumImageViewerPlugin();
    /// With services and watches other than those of the application's sessions.
    QlumImageViewerPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring);

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    QStringList documentTypes() override;
    QWidget* createDocument(const QString& type) override;
    QString description(const QString& type) override;

    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;

private:
    void registerSettings();
    void offerServices();

    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    QlumApplicationInterface* m_app = nullptr;
    QList<QPointer<QlumImageView>> m_documents; ///< of those that were made; they belong to others
};
