#include <plugins/dataaccess/qlumdaplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/dataaccess/parts/qlumnodecopier.h>
#include <plugins/dataaccess/qlumdasettings.h>
#include <plugins/dataaccess/qlumdaview.h>

#include <QLatin1String>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <span>
#include <utility>

namespace {
const QString dataAccessView = QStringLiteral("Data Access View");
}

QlumDaPlugin::QlumDaPlugin() : QlumDaPlugin(qlumApplicationServices(), qlumApplicationMonitoring()) {}

QlumDaPlugin::QlumDaPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring)
    : m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
    setObjectName(QStringLiteral("QlumDaPlugin"));
}

QlumDaPlugin::~QlumDaPlugin() = default;

void QlumDaPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    qlumRegisterDaSettings();
    if (QlumToolServices* tools = QlumToolServices::instance()) {
        QlumNodeTaker taker;
        taker.documentType = dataAccessView;
        taker.add = [](QWidget* document, std::span<const QlumToolNode> nodes) {
            if (auto* view = qobject_cast<QlumDaView*>(document))
                view->addNodes(nodes);
        };
        tools->takeNodes(this, taker);
        offerCopies();
    }
}

void QlumDaPlugin::offerCopies()
{
    m_copies = std::make_unique<QlumJobPool>();
    m_copier = std::make_unique<QlumNodeCopier>(
        *m_app, m_services, *m_copies, [this](const QString& what, const QString& why) {
            if (!what.isEmpty())
                QlumLog(name()).write(QlumLogLevel::Warning, QStringLiteral("%1 %2").arg(what, why));
        });
    for (const QlumCopyCommand& command : qlumCopyCommands())
        QlumToolServices::instance()->takeNodeTool(
            this, {tr("&Copy As"), QLatin1String(command.name), QlumNodeCopier::tr(command.text),
                   QlumNodeCopier::tr(command.toolTip),
                   [this, format = command.format](const QlumToolNodes& nodes) {
                       if (m_copier)
                           m_copier->copyNodes(nodes, format);
                   }});
}

void QlumDaPlugin::shutdown()
{
    m_copies.reset();
    m_copier.reset();
    m_views.clear(); // they belong to the application's window, and have gone with the project
    m_app = nullptr;
}

QString QlumDaPlugin::name()
{
    return QStringLiteral("Data Access Plugin");
}

// ---- documents

QStringList QlumDaPlugin::documentTypes()
{
    return {dataAccessView};
}

QWidget* QlumDaPlugin::createDocument(const QString& type)
{
    if (type != dataAccessView || m_app == nullptr)
        return nullptr;
    auto* view = new QlumDaView(*m_app, m_services, m_monitoring);
    for (auto status = m_status.cbegin(); status != m_status.cend(); ++status)
        view->sessionStatusChanged(status.key(), status.value());
    m_views.append(view);
    return view;
}

QString QlumDaPlugin::description(const QString& type)
{
    return type == dataAccessView
               ? tr("<b>Data Access View</b><br>Watches the values of variables of one or more servers "
                    "and writes them.")
               : QString();
}

QList<QlumDaView*> QlumDaPlugin::views() const
{
    QList<QlumDaView*> result;
    for (const QPointer<QlumDaView>& view : m_views)
        if (view)
            result.append(view);
    return result;
}

// A view that is opened later has to know how the servers stand.
void QlumDaPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                        const NamespaceMap&)
{
    m_status.insert(serverId, status == QlumConnectionStatus::NewSessionCreated
                                  ? QlumConnectionStatus::Connected
                                  : status);
    for (QlumDaView* view : views())
        view->sessionStatusChanged(serverId, status);
}

void QlumDaPlugin::sessionRemoved(unsigned int serverId)
{
    m_status.remove(serverId);
    if (m_copies) {
        m_copies->endServer(serverId);
        m_copies->endServer(qlumNoServer); // of several at once
    }
    for (QlumDaView* view : views())
        view->sessionRemoved(serverId);
}

void QlumDaPlugin::dataTypesLoaded(unsigned int serverId)
{
    for (QlumDaView* view : views())
        view->dataTypesLoaded(serverId);
}
