#include <plugins/events/qlumeventplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Event View");
}

QlumEventPlugin::QlumEventPlugin()
{
    setObjectName(QStringLiteral("QlumEventPlugin"));
}

void QlumEventPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumEventPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumEventPlugin::name()
{
    return QStringLiteral("UA Events Plugin");
}

QStringList QlumEventPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumEventPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The event view is not part of this version."));
}

QString QlumEventPlugin::description(const QString& type)
{
    return type == documentType ? tr("<b>Event View</b><br>Receives the events and alarms of one or more "
                                     "servers and acknowledges them.")
                                : QString();
}
