#include <plugins/datalogger/qlumdataloggerplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <plugins/datalogger/qlumloggersettings.h>

#include <utility>

QlumDataLoggerPlugin::QlumDataLoggerPlugin()
    : QlumDataLoggerPlugin(qlumApplicationServices(), qlumApplicationMonitoring())
{
}

QlumDataLoggerPlugin::QlumDataLoggerPlugin(QlumSessionServicesProvider services,
                                           QlumMonitoringProvider monitoring)
    : QlumDocumentPlugin(QStringLiteral("QlumDataLoggerPlugin"), QStringLiteral("Data Logger Plugin"),
                         QStringLiteral("Data Logger View")),
      m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
}

void QlumDataLoggerPlugin::begin()
{
    qlumRegisterLoggerSettings();
    takeNodes(&QlumLoggerView::addNodes);
}

QlumLoggerView* QlumDataLoggerPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumLoggerView(app, m_services, m_monitoring);
}

QString QlumDataLoggerPlugin::documentText() const
{
    return tr("Records the values of variables of one or more servers "
              "in files, and says where something is missing.");
}
