#include <plugins/serverdiagnostics/qlumserverdiagnosticplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsettingsregistry.h>
#include <plugins/serverdiagnostics/qlumdiagnosticsettings.h>

#include <utility>

QlumServerDiagnosticPlugin::QlumServerDiagnosticPlugin()
    : QlumServerDiagnosticPlugin(qlumApplicationServices())
{
}

QlumServerDiagnosticPlugin::QlumServerDiagnosticPlugin(QlumSessionServicesProvider services,
                                                       QlumAskEndpoints endpoints)
    : QlumDocumentPlugin(QStringLiteral("QlumServerDiagnosticPlugin"),
                         QStringLiteral("Server Diagnostic Plugin"),
                         QStringLiteral("Server Diagnostics View")),
      m_services(std::move(services)), m_endpoints(std::move(endpoints))
{
}

QlumServerDiagnosticPlugin::~QlumServerDiagnosticPlugin() = default;

void QlumServerDiagnosticPlugin::begin()
{
    m_pools = std::make_shared<QlumServerPools>();
    registerSettings();
}

void QlumServerDiagnosticPlugin::end()
{
    m_pools.reset();
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

QlumServerDiagnosticWidget* QlumServerDiagnosticPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumServerDiagnosticWidget(app, m_pools, m_services, m_endpoints);
}

QString QlumServerDiagnosticPlugin::documentText() const
{
    return tr("Shows what a server tells of itself: its status and "
              "limits, who is connected, what each session and subscription does, and its endpoints.");
}

void QlumServerDiagnosticPlugin::sessionRemoved(unsigned int serverId)
{
    QlumDocumentPlugin::sessionRemoved(serverId);
    m_pools->endServer(serverId);
}
