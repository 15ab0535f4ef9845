#include <plugins/performance/qlumperformanceplugin.h>

#include <app/api/qlumapplicationinterface.h>

#include <utility>

QlumPerformancePlugin::QlumPerformancePlugin() : QlumPerformancePlugin(qlumApplicationServices()) {}

QlumPerformancePlugin::QlumPerformancePlugin(QlumSessionServicesProvider services)
    : QlumDocumentPlugin(QStringLiteral("QlumPerformancePlugin"), QStringLiteral("UA Performance Plugin"),
                         QStringLiteral("Performance View")),
      m_services(std::move(services))
{
}

void QlumPerformancePlugin::begin()
{
    takeNodes(&QlumPerformanceView::addNodes);
}

QlumPerformanceView* QlumPerformancePlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumPerformanceView(app, m_services);
}

QString QlumPerformancePlugin::documentText() const
{
    return tr("Measures how long a server takes to answer service calls.");
}
