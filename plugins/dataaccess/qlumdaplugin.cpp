#include <plugins/dataaccess/qlumdaplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjobpool.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/dataaccess/parts/qlumnodecopier.h>
#include <plugins/dataaccess/qlumdasettings.h>

#include <QLatin1String>

#include <utility>

QlumDaPlugin::QlumDaPlugin() : QlumDaPlugin(qlumApplicationServices(), qlumApplicationMonitoring()) {}

QlumDaPlugin::QlumDaPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring)
    : QlumDocumentPlugin(QStringLiteral("QlumDaPlugin"), QStringLiteral("Data Access Plugin"),
                         QStringLiteral("Data Access View")),
      m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
}

QlumDaPlugin::~QlumDaPlugin() = default;

void QlumDaPlugin::begin()
{
    qlumRegisterDaSettings();
    takeNodes(&QlumDaView::addNodes);
    if (QlumToolServices::instance())
        offerCopies();
}

void QlumDaPlugin::offerCopies()
{
    m_copies = std::make_unique<QlumJobPool>();
    m_copier = std::make_unique<QlumNodeCopier>(
        *application(), m_services, *m_copies, [this](const QString& what, const QString& why) {
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

void QlumDaPlugin::end()
{
    m_copies.reset();
    m_copier.reset();
}

QlumDaView* QlumDaPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumDaView(app, m_services, m_monitoring);
}

QString QlumDaPlugin::documentText() const
{
    return tr("Watches the values of variables of one or more servers "
              "and writes them.");
}

// ---- servers

void QlumDaPlugin::sessionRemoved(unsigned int serverId)
{
    if (m_copies) {
        m_copies->endServer(serverId);
        m_copies->endServer(qlumNoServer); // of several at once
    }
    QlumDocumentPlugin::sessionRemoved(serverId);
}

void QlumDaPlugin::dataTypesLoaded(unsigned int serverId)
{
    for (QlumDaView* view : documents())
        view->dataTypesLoaded(serverId);
}
