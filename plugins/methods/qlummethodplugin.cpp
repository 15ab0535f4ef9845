#include <plugins/methods/qlummethodplugin.h>

#include <app/api/qlumtoolservices.h>

#include <QIcon>
#include <QMainWindow>

#include <functional>
#include <utility>

namespace {
// A call holds its thread until the server answers or its time is up, and Cancel needs one besides.
constexpr int callsAtATime = 32;
} // namespace

QlumMethodPlugin::QlumMethodPlugin() : QlumMethodPlugin(qlumApplicationServices()) {}

QlumMethodPlugin::QlumMethodPlugin(QlumSessionServicesProvider services) : m_services(std::move(services))
{
    setObjectName(QStringLiteral("QlumMethodPlugin"));
}

QlumMethodPlugin::~QlumMethodPlugin() = default;

void QlumMethodPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    m_pool = std::make_unique<QlumJobPool>(callsAtATime);
    m_world.reset(new QlumMethodWorld{*app, m_services, *m_pool, m_memory});
    if (QlumToolServices* services = QlumToolServices::instance())
        services->takeCallMethod(this, std::bind_front(&QlumMethodPlugin::open, this));
}

void QlumMethodPlugin::shutdown()
{
    for (const QPointer<QlumMethodDialog>& dialog : qAsConst(m_dialogs))
        delete dialog;
    m_dialogs.clear();
    m_world.reset();
    m_pool.reset();
    m_app = nullptr;
}

QString QlumMethodPlugin::name()
{
    return QStringLiteral("UA Method Plugin");
}

QlumMethodDialog* QlumMethodPlugin::open(unsigned int serverId, const UaNodeId& objectId,
                                         const UaNodeId& methodId)
{
    m_dialogs.removeAll(nullptr);
    auto* dialog = new QlumMethodDialog(*m_world, serverId, objectId, methodId, m_app->mainWindow());
    dialog->setWindowIcon(QIcon(QStringLiteral(":/images/tool_methods.png")));
    if (m_states.contains(serverId))
        dialog->statusChanged(serverId, m_states.value(serverId), {});
    m_dialogs.append(dialog);
    dialog->show();
    return dialog;
}

void QlumMethodPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                            const NamespaceMap& namespaceMap)
{
    m_states.insert(serverId, status);
    for (const QPointer<QlumMethodDialog>& dialog : qAsConst(m_dialogs))
        if (dialog)
            dialog->statusChanged(serverId, status, namespaceMap);
}

void QlumMethodPlugin::sessionRemoved(unsigned int serverId)
{
    for (const QPointer<QlumMethodDialog>& dialog : qAsConst(m_dialogs))
        if (dialog)
            dialog->serverRemoved(serverId);
    m_pool->endServer(serverId);
    m_memory.removeServer(serverId);
    m_states.remove(serverId);
}

void QlumMethodPlugin::saveSettings(QSettings& settings)
{
    m_memory.save(settings);
}

void QlumMethodPlugin::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_memory.load(settings, serverIdMap);
}
