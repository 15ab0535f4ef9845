#pragma once
#include <app/api/qlumappeventadapter.h>
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumplugininterface.h>

#include <QObject>
#include <QString>

/// Calls methods from the address space view; it has neither documents nor a dock.
class QlumMethodPlugin : public QObject, public QlumPluginInterface, public QlumAppEventAdapter
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumAppEventInterface)
public:
    QlumMethodPlugin();

    void init(QlumApplicationInterface* app) override;
    void shutdown() override;
    QString name() override;

private:
    QlumApplicationInterface* m_app = nullptr;
};
