#include <plugins/performance/qlumperformanceplugin.h>

#include <uawidgets/qlumemptydocument.h>

namespace {
const auto kDocumentType = QStringLiteral("Performance View");
}

QlumPerformancePlugin::QlumPerformancePlugin()
{
    setObjectName(QStringLiteral("QlumPerformancePlugin"));
}

void QlumPerformancePlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumPerformancePlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumPerformancePlugin::name()
{
    return QStringLiteral("UA Performance Plugin");
}

QStringList QlumPerformancePlugin::documentTypes()
{
    return {kDocumentType};
}

QWidget* QlumPerformancePlugin::createDocument(const QString& type)
{
    if (type != kDocumentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The performance view is not part of this version."));
}

QString QlumPerformancePlugin::description(const QString& type)
{
    return type == kDocumentType
               ? tr("<b>Performance View</b><br>Measures how long a server takes to answer service calls.")
               : QString();
}
