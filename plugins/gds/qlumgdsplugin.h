#pragma once
#include <app/api/qlumappeventinterface.h>
#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdocumentinterface.h>
#include <app/api/qlumdocumentplugin.h>
#include <app/api/qlumplugininterface.h>
#include <app/api/qlumserverpools.h>
#include <plugins/gds/qlumpushview.h>

#include <QObject>
#include <QString>

#include <memory>

/// Makes the documents that put certificates and trust lists onto servers.
class QlumGDSPlugin : public QlumDocumentPlugin<QlumPushView>
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QlumPluginInterface_iid)
    Q_INTERFACES(QlumPluginInterface QlumDocumentInterface QlumAppEventInterface)
public:
    QlumGDSPlugin();
    ~QlumGDSPlugin() override;

    void sessionRemoved(unsigned int serverId) override;

protected:
    void begin() override;
    void end() override;
    [[nodiscard]] QlumPushView* makeDocument(QlumApplicationInterface& app) override;
    [[nodiscard]] QString documentText() const override;

private:
    std::shared_ptr<QlumServerPools> m_pools;
};
