#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>
#include <plugins/devices/qlumdevicesview.h>

#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <memory>

class QlumApplicationInterface;

/// Makes the documents that show the devices of servers.
class QlumDevicesPlugin : public QObject,
                          public QlumPluginInterface,
                          public QlumDocumentInterface,
                          public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumDevicesPlugin();
    ~QlumDevicesPlugin() override;

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
    [[nodiscard]] QList<QlumDevicesView*> documents();

    QlumApplicationInterface* m_app = nullptr;
    std::shared_ptr<QlumDevicePools> m_pools;
    QList<QPointer<QlumDevicesView>> m_documents;       ///< owned by the main window
    QHash<unsigned int, QlumConnectionStatus> m_states; ///< those that were told
    unsigned int m_selected;                            ///< in the project
};
