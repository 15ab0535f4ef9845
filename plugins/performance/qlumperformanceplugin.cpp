#include <plugins/performance/qlumperformanceplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Performance View");
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
    return {documentType};
}

QWidget* QlumPerformancePlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The performance view is not part of this version."));
}

QString QlumPerformancePlugin::description(const QString& type)
{
    return type == documentType
               ? tr("<b>Performance View</b><br>Measures how long a server takes to answer service calls.")
               : QString();
}
