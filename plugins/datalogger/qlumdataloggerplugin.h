#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
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

class QlumApplicationInterface;
class QlumLoggerView;
class QWidget;

/// Records values in documents.
class QlumDataLoggerPlugin : public QObject,
                             public QlumPluginInterface,
                             public QlumDocumentInterface,
                             public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumDataLoggerPlugin();
    /// With services other than those of the application's sessions.
    QlumDataLoggerPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring);

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
    [[nodiscard]] QList<QlumLoggerView*> views() const;

    const QlumSessionServicesProvider m_services;
    const QlumMonitoringProvider m_monitoring;
    QlumApplicationInterface* m_app = nullptr;
    QList<QPointer<QlumLoggerView>> m_views; ///< those that were made; they belong to others
    QMap<unsigned int, QlumConnectionStatus> m_status;
};
