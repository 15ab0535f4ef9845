#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlumplugininterface.h>
#include <plugins/devices/qlumdevicesview.h>

#include <QObject>
#include <QString>

#include <memory>

/// Makes the documents that show the devices of servers.
class QlumDevicesPlugin : public QlumDocumentPlugin<QlumDevicesView>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumDevicesPlugin();
    ~QlumDevicesPlugin() override;

    void sessionRemoved(unsigned int serverId) override;

protected:
    void begin() override;
    void end() override;
    [[nodiscard]] QlumDevicesView* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    std::shared_ptr<QlumDevicePools> m_pools;
};
