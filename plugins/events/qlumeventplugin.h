#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <uabase/values/uanodeid.h>

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class QlumEventPools;
class QlumEventTypes;
class QlumEventWidget;

/// Makes the documents that receive events and alarms.
class QlumEventPlugin : public QObject,
                        public QlumPluginInterface,
                        public QlumDocumentInterface,
                        public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumEventPlugin();
    /// With services other than those of the application's sessions.
    explicit QlumEventPlugin(QlumSessionServicesProvider services);
    ~QlumEventPlugin() override;

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    QStringList documentTypes() override;
    QWidget* createDocument(const QString& type) override;
    QString description(const QString& type) override;

    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    void serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char change) override;

private:
    void registerSettings();
    void takeNotifiers();
    [[nodiscard]] QList<QlumEventWidget*> documents();

    const QlumSessionServicesProvider m_services;
    QlumApplicationInterface* m_app = nullptr;
    std::shared_ptr<QlumEventPools> m_pools;
    std::unique_ptr<QlumEventTypes> m_types;
    QList<QPointer<QlumEventWidget>> m_documents;       ///< owned by the main window
    QHash<unsigned int, QlumConnectionStatus> m_states; ///< those that were told
};
