#include <plugins/serverdiagnostics/qlumserverdiagnosticplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsettingsregistry.h>
#include <plugins/serverdiagnostics/qlumdiagnosticsettings.h>

#include <utility>

namespace {
const QString diagnosticsView = QStringLiteral("Server Diagnostics View");
}

QlumServerDiagnosticPlugin::QlumServerDiagnosticPlugin()
    : QlumServerDiagnosticPlugin(qlumApplicationServices())
{
}

QlumServerDiagnosticPlugin::QlumServerDiagnosticPlugin(QlumSessionServicesProvider services,
                                                       QlumAskEndpoints endpoints)
    : m_services(std::move(services)), m_endpoints(std::move(endpoints))
{
    setObjectName(QStringLiteral("QlumServerDiagnosticPlugin"));
}

QlumServerDiagnosticPlugin::~QlumServerDiagnosticPlugin() = default;

void QlumServerDiagnosticPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    m_pools = std::make_shared<QlumServerPools>();
    registerSettings();
}

void QlumServerDiagnosticPlugin::shutdown()
{
    m_documents.destroy();
    m_pools.reset();
    m_app = nullptr;
}

QString QlumServerDiagnosticPlugin::name()
{
    return QStringLiteral("Server Diagnostic Plugin");
}

void QlumServerDiagnosticPlugin::registerSettings()
{
    constexpr double day = 86400; // s
    qlumRegisterSettings({QStringLiteral("serverdiagnostics"),
                          tr("Server &Diagnostics"),
                          {QlumSettingRow::number(QlumDiagnosticSettings::forgottenAfter,
                                                  {tr("&Forgotten sessions after:"),
                                                   tr("A session of this application that has had no contact "
                                                      "with its server for so long is pointed "
                                                      "out as forgotten.")},
                                                  1, day, tr(" s"))}});
}

// ---- documents

QStringList QlumServerDiagnosticPlugin::documentTypes()
{
    return {diagnosticsView};
}

QWidget* QlumServerDiagnosticPlugin::createDocument(const QString& type)
{
    if (type != diagnosticsView || !m_app)
        return nullptr;
    auto* document = new QlumServerDiagnosticWidget(*m_app, m_pools, m_services, m_endpoints);
    m_documents.add(document);
    return document;
}

QString QlumServerDiagnosticPlugin::description(const QString& type)
{
    return type == diagnosticsView
               ? tr("<b>Server Diagnostics View</b><br>Shows what a server tells of itself: its status and "
                    "limits, who is connected, what each session and subscription does, and its endpoints.")
               : QString();
}

// ---- servers

void QlumServerDiagnosticPlugin::serverSelectionChanged(unsigned int serverId)
{
    m_documents.serverSelectionChanged(serverId);
}

void QlumServerDiagnosticPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                                      const NamespaceMap&)
{
    m_documents.sessionStatusChanged(serverId, status);
}

void QlumServerDiagnosticPlugin::sessionRemoved(unsigned int serverId)
{
    m_documents.sessionRemoved(serverId);
    m_pools->endServer(serverId);
}
