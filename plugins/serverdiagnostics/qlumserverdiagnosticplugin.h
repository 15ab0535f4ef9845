#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumserverdocuments.h>
#include <app/api/qlumserverpools.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/serverdiagnostics/qlumserverdiagnosticwidget.h>

#include <QObject>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class QlumApplicationInterface;

/// Makes the documents that show what a server tells of itself.
class QlumServerDiagnosticPlugin : public QObject,
                                   public QlumPluginInterface,
                                   public QlumDocumentInterface,
                                   public QlumAppEventAdapter
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

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    QStringList documentTypes() override;
    QWidget* createDocument(const QString& type) override;
    QString description(const QString& type) override;

    void serverSelectionChanged(unsigned int serverId) override;
    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;

private:
    void registerSettings();
    const QlumSessionServicesProvider m_services;
    const QlumAskEndpoints m_endpoints;
    QlumApplicationInterface* m_app = nullptr;
    std::shared_ptr<QlumServerPools> m_pools;
    QlumServerDocuments<QlumServerDiagnosticWidget> m_documents; ///< owned by the main window
};
