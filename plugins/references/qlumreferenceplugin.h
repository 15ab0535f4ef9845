#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumplugininterface.h>

#include <QObject>
#include <QPointer>
#include <QString>

class QDockWidget;

class QlumReferencePlugin : public QObject, public QlumPluginInterface, public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface)
public:
    QlumReferencePlugin();

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

private:
    QlumApplicationInterface* m_app = nullptr;
    QPointer<QDockWidget> m_dock; ///< owned by the main window once it is docked
};
