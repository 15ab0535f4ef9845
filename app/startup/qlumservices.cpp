#include <app/startup/qlumservices.h>

#include <app/api/qlumdiscoverysecurity.h>
#include <app/api/qlumservernode.h>
#include <app/api/qlumtoolservices.h>
#include <certificates/qlumcertificatemanagerdialog.h>
#include <certificates/qlumcertificateviewer.h>
#include <plugins/addressspace/qlumaddressspacemodel.h>
#include <servers/doctor/qlumdoctordialog.h>
#include <servers/qlumdiscoverysetting.h>
#include <servers/qlumpkifolders.h>
#include <servers/qlumprojectnodeserver.h>
#include <servers/qlumserversettingsdialog.h>
#include <servers/qlumsideconnect.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/editors/qlumvalueviewer.h>

#include <QComboBox>
#include <QDialog>
#include <QObject>
#include <QPointer>
#include <QSettings>
#include <QString>
#include <QWidget>

#include <memory>

namespace {
std::unique_ptr<QlumServerNode> createServer(const QString& name, QSettings& settings)
{
    auto server = std::make_unique<QlumProjectNodeServer>(QlumDiscoverySetting::fromSetting(settings));
    if (!name.isEmpty())
        server->setDisplayName(name);
    return server;
}

std::unique_ptr<QlumServerNode> askForServer(QWidget* parent)
{
    QlumServerSettingsDialog dialog(QlumDiscoverySetting(), parent);
    if (dialog.exec() != QDialog::Accepted)
        return nullptr;
    return std::make_unique<QlumProjectNodeServer>(dialog.discoverySetting());
}

bool editServer(QlumServerNode* server, QWidget* parent)
{
    QPointer<QlumProjectNodeServer> node(qobject_cast<QlumProjectNodeServer*>(server));
    if (!node)
        return false;
    QlumServerSettingsDialog dialog(node->discoverySetting(), parent);
    if (dialog.exec() != QDialog::Accepted || !node || dialog.discoverySetting() == node->discoverySetting())
        return false;
    node->setDiscoverySetting(dialog.discoverySetting());
    return true;
}

void takeToolServices(QlumToolServices& services, QObject* owner, const QlumTavelinServices::FindServer& find)
{
    qlumTakeCertificates(services, owner);
    qlumTakeServers(services, owner, find);
    qlumTakeValues(services, owner);
    qlumSetDiscoverySecurity(qlumSecurityForDiscovery);
}
} // namespace

QlumTavelinServices qlumServices()
{
    QlumTavelinServices services;
    services.createServer = createServer;
    services.askForServer = askForServer;
    services.editServer = editServer;
    services.diagnoseServer = [](QlumServerNode* server, QWidget* parent) {
        if (auto* node = qobject_cast<QlumProjectNodeServer*>(server))
            qlumDiagnose(*node, parent);
    };
    services.createPageModel = [](QlumServerNode* server, QComboBox* highlight, QObject* parent) {
        return new QlumAddressSpaceModel(server, highlight, parent);
    };
    services.createSubTreeModel = [](QlumServerNode* server, const UaNodeId& startNode) {
        auto* model = new QlumAddressSpaceModel(server, &startNode);
        QObject::connect(server, &QlumServerNode::serverModelChanged, model,
                         [model](unsigned int, const UaNodeId& changed, OpcUa_Byte verbs) {
                             model->serverModelChanged(changed, verbs);
                         });
        return model;
    };
    services.manageCertificates = qlumManageCertificates;
    services.takeToolServices = takeToolServices;
    return services;
}
