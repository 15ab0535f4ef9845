#include <plugins/devices/qlumdevicesplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Devices View");
}

QlumDevicesPlugin::QlumDevicesPlugin()
{
    setObjectName(QStringLiteral("QlumDevicesPlugin"));
}

void QlumDevicesPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumDevicesPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumDevicesPlugin::name()
{
    return QStringLiteral("UA Devices Plugin");
}

QStringList QlumDevicesPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumDevicesPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(
        type,
        tr("The devices view is not part of this version. Devices can be browsed in the address space."));
}

QString QlumDevicesPlugin::description(const QString& type)
{
    return type == documentType ? tr("<b>Devices View</b><br>Shows the devices of a server with their "
                                     "parameters, methods and identification, and configures them.")
                                : QString();
}
