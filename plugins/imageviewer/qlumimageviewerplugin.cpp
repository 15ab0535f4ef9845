#include <plugins/imageviewer/qlumimageviewerplugin.h>

#include <uawidgets/qlumemptydocument.h>

namespace {
const auto kDocumentType = QStringLiteral("Image Viewer");
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
    return {kDocumentType};
}

QWidget* QlumImageViewerPlugin::createDocument(const QString& type)
{
    if (type != kDocumentType)
        return nullptr;
    return new QlumEmptyDocument(type, tr("The image viewer is not part of this version."));
}

QString QlumImageViewerPlugin::description(const QString& type)
{
    return type == kDocumentType
               ? tr("<b>Image Viewer</b><br>Shows the pictures that a server offers as values of variables.")
               : QString();
}
