#include <plugins/performance/qlumperformanceplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/performance/qlumperformanceview.h>

#include <QWidget>

#include <span>
#include <utility>

namespace {
const QString performanceView = QStringLiteral("Performance View");
}

QlumPerformancePlugin::QlumPerformancePlugin() : QlumPerformancePlugin(qlumApplicationServices()) {}

QlumPerformancePlugin::QlumPerformancePlugin(QlumSessionServicesProvider services)
    : m_services(std::move(services))
{
    setObjectName(QStringLiteral("QlumPerformancePlugin"));
}

void QlumPerformancePlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    if (QlumToolServices* tools = QlumToolServices::instance()) {
        QlumNodeTaker taker;
        taker.documentType = performanceView;
        taker.add = [](QWidget* document, std::span<const QlumToolNode> nodes) {
            if (auto* view = qobject_cast<QlumPerformanceView*>(document))
                view->addNodes(nodes);
        };
        tools->takeNodes(this, taker);
    }
}

void QlumPerformancePlugin::shutdown()
{
    m_documents.clear(); // they belong to the application's window, and have gone with the project
    m_app = nullptr;
}

QString QlumPerformancePlugin::name()
{
    return QStringLiteral("UA Performance Plugin");
}

QStringList QlumPerformancePlugin::documentTypes()
{
    return {performanceView};
}

QWidget* QlumPerformancePlugin::createDocument(const QString& type)
{
    if (type != performanceView || m_app == nullptr)
        return nullptr;
    auto* document = new QlumPerformanceView(*m_app, m_services);
    m_documents.append(document);
    return document;
}

QString QlumPerformancePlugin::description(const QString& type)
{
    return type == performanceView
               ? tr("<b>Performance View</b><br>Measures how long a server takes to answer service calls.")
               : QString();
}

void QlumPerformancePlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                                 const NamespaceMap& namespaceMap)
{
    for (const QPointer<QlumPerformanceView>& document : std::as_const(m_documents))
        if (document)
            document->sessionStatusChanged(serverId, status, namespaceMap);
}

void QlumPerformancePlugin::sessionRemoved(unsigned int serverId)
{
    for (const QPointer<QlumPerformanceView>& document : std::as_const(m_documents))
        if (document)
            document->sessionRemoved(serverId);
}
