#include <plugins/imageviewer/qlumimageviewerplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumimageformat.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/imageviewer/qlumimagesettings.h>
#include <plugins/imageviewer/qlumimageview.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QWidget>

#include <span>
#include <utility>

namespace {
const QString imageViewer = QStringLiteral("Image Viewer");
}

QlumImageViewerPlugin::QlumImageViewerPlugin()
    : QlumImageViewerPlugin(qlumApplicationServices(), qlumApplicationMonitoring())
{
}

QlumImageViewerPlugin::QlumImageViewerPlugin(QlumSessionServicesProvider services,
                                             QlumMonitoringProvider monitoring)
    : m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
    setObjectName(QStringLiteral("QlumImageViewerPlugin"));
}

void QlumImageViewerPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    registerSettings();
    offerServices();
}

void QlumImageViewerPlugin::registerSettings()
{
    namespace S = QlumImageSettings;
    constexpr int least = 50, most = 10'000;
    qlumRegisterSettings(
        {QStringLiteral("images"),
         tr("&Images"),
         {QlumSettingRow::flag(
              S::watchesAtFirst,
              {tr("&Watch images that are opened"),
               tr("Shows every new image that the server reports. Else an image is read once, "
                  "and again when you ask for it.")}),
          QlumSettingRow::number(S::interval,
                                 {tr("Ask for &new images every:"),
                                  tr("The interval of documents that are opened from now on. Each may have "
                                     "another one.")},
                                 least, most, tr(" ms"))
              .felt(QlumSettingRow::InNewViews)}});
}

void QlumImageViewerPlugin::offerServices()
{
    QlumToolServices* tools = QlumToolServices::instance();
    if (!tools)
        return;
    QlumNodeTaker nodes;
    nodes.documentType = imageViewer;
    nodes.accepts = [](const QlumToolNode& node) {
        return node.nodeClass == OpcUa_NodeClass_Variable || node.nodeClass == OpcUa_NodeClass_Unspecified;
    };
    nodes.add = [](QWidget* document, std::span<const QlumToolNode> added) {
        if (auto* view = qobject_cast<QlumImageView*>(document))
            view->addNodes(added);
    };
    tools->takeNodes(this, nodes);
    QlumValueTaker values;
    values.documentType = imageViewer;
    values.accepts = &qlumIsImage;
    values.show = [](QWidget* document, unsigned int serverId, const UaVariant& value,
                     const UaNodeId& dataType, const QlumToolNode& origin) {
        if (auto* view = qobject_cast<QlumImageView*>(document))
            view->showValue(serverId, value, dataType, origin);
    };
    tools->takeValues(this, values);
}

void QlumImageViewerPlugin::shutdown()
{
    m_documents.clear(); // they belong to the application's window, and have gone with the project
    m_app = nullptr;
}

QString QlumImageViewerPlugin::name()
{
    return QStringLiteral("Image Viewer Plugin");
}

// ---- documents

QStringList QlumImageViewerPlugin::documentTypes()
{
    return {imageViewer};
}

QWidget* QlumImageViewerPlugin::createDocument(const QString& type)
{
    if (type != imageViewer || m_app == nullptr)
        return nullptr;
    auto* document = new QlumImageView(*m_app, m_services, m_monitoring);
    m_documents.append(document);
    return document;
}

QString QlumImageViewerPlugin::description(const QString& type)
{
    return type == imageViewer
               ? tr("<b>Image Viewer</b><br>Shows the pictures that a server offers as values of variables, "
                    "once or as they change.")
               : QString();
}

void QlumImageViewerPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                                 const NamespaceMap& namespaceMap)
{
    for (const QPointer<QlumImageView>& document : std::as_const(m_documents))
        if (document)
            document->sessionStatusChanged(serverId, status, namespaceMap);
}

void QlumImageViewerPlugin::sessionRemoved(unsigned int serverId)
{
    for (const QPointer<QlumImageView>& document : std::as_const(m_documents))
        if (document)
            document->sessionRemoved(serverId);
}
