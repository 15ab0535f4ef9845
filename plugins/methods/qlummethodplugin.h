#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>
#include <plugins/methods/qlummethoddialog.h>
#include <plugins/methods/qlummethodmemory.h>
#include <uabase/values/uanodeid.h>

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QString>

#include <memory>

/// Calls methods of servers: opens a window for each that other tools ask to have called.
class QlumMethodPlugin : public QObject, public QlumPluginInterface, public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface)
public:
    QlumMethodPlugin();
    /// With services other than those of the application's sessions.
    explicit QlumMethodPlugin(QlumSessionServicesProvider services);
    ~QlumMethodPlugin() override;

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

    void sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                              const NamespaceMap& namespaceMap) override;
    void sessionRemoved(unsigned int serverId) override;
    void saveSettings(QSettings& settings) override;
    void loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap) override;

    /// Opens a window of its own for the method, which deletes itself when it is closed.
    QlumMethodDialog* open(unsigned int serverId, const UaNodeId& objectId, const UaNodeId& methodId);

private:
    const QlumSessionServicesProvider m_services;
    QlumApplicationInterface* m_app = nullptr;
    std::unique_ptr<QlumJobPool> m_pool;
    QlumMethodMemory m_memory;
    std::unique_ptr<QlumMethodWorld> m_world;
    QList<QPointer<QlumMethodDialog>> m_dialogs;
    QHash<unsigned int, QlumConnectionStatus> m_states; ///< those that were told
};
