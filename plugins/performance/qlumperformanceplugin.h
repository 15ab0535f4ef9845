#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumsessionservices.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class QlumApplicationInterface;
class QlumPerformanceView;
class QWidget;

/// Measures in documents how long services of a server take.
class QlumPerformancePlugin : public QObject,
                              public QlumPluginInterface,
                              public QlumDocumentInterface,
                              public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumPerformancePlugin();
    /// With services other than those of the application's sessions.
    explicit QlumPerformancePlugin(QlumSessionServicesProvider services);

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
    const QlumSessionServicesProvider m_services;
    QlumApplicationInterface* m_app = nullptr;
    QList<QPointer<QlumPerformanceView>> m_documents; ///< of those that were made; they belong to others
};
