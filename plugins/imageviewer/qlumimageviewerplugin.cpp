#include <plugins/imageviewer/qlumimageviewerplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <uawidgets/qlumemptydocument.h>

#include <QString>
#include <QStringList>
#include <QWidget>

namespace {
const auto documentType = QStringLiteral("Image Viewer");
}

QlumImageViewerPlugin::QlumImageViewerPlugin()
{
    setObjectName(QStringLiteral("QlumImageViewerPlugin"));
}

void QlumImageViewerPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
}

void QlumImageViewerPlugin::shutdown()
{
    m_app = nullptr;
}

QString QlumImageViewerPlugin::name()
{
    return QStringLiteral("Image Viewer Plugin");
}

QStringList QlumImageViewerPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumImageViewerPlugin::createDocument(const QString& type)
{
    if (type != documentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The image viewer is not part of this version."));
}

QString QlumImageViewerPlugin::description(const QString& type)
{
    return type == documentType
               ? tr("<b>Image Viewer</b><br>Shows the pictures that a server offers as values of variables.")
               : QString();
}
