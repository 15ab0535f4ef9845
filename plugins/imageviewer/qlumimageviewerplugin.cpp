#include <plugins/imageviewer/qlumimageviewerplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumimageformat.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/imageviewer/qlumimagesettings.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>

#include <QWidget>

#include <utility>

QlumImageViewerPlugin::QlumImageViewerPlugin()
    : QlumImageViewerPlugin(qlumApplicationServices(), qlumApplicationMonitoring())
{
}

QlumImageViewerPlugin::QlumImageViewerPlugin(QlumSessionServicesProvider services,
                                             QlumMonitoringProvider monitoring)
    : QlumDocumentPlugin(QStringLiteral("QlumImageViewerPlugin"), QStringLiteral("Image Viewer Plugin"),
                         QStringLiteral("Image Viewer")),
      m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
}

void QlumImageViewerPlugin::begin()
{
    registerSettings();
    takeNodes(&QlumImageView::addNodes, [](const QlumToolNode& node) {
        return node.nodeClass == OpcUa_NodeClass_Variable || node.nodeClass == OpcUa_NodeClass_Unspecified;
    });
    takeImages();
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

void QlumImageViewerPlugin::takeImages()
{
    QlumToolServices* tools = QlumToolServices::instance();
    if (!tools)
        return;
    QlumValueTaker values;
    values.documentType = documentType();
    values.accepts = &qlumIsImage;
    values.show = [](QWidget* document, unsigned int serverId, const UaVariant& value,
                     const UaNodeId& dataType, const QlumToolNode& origin) {
        if (auto* view = qobject_cast<QlumImageView*>(document))
            view->showValue(serverId, value, dataType, origin);
    };
    tools->takeValues(this, values);
}

QlumImageView* QlumImageViewerPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumImageView(app, m_services, m_monitoring);
}

QString QlumImageViewerPlugin::documentText() const
{
    return tr("Shows the pictures that a server offers as values of variables, "
              "once or as they change.");
}
