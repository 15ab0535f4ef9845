#include <plugins/history/qlumhistoryplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/history/qlumhistorysettings.h>

#include <QWidget>

#include <limits>
#include <span>
#include <utility>

QlumHistoryPlugin::QlumHistoryPlugin()
    : QlumHistoryPlugin(qlumApplicationServices(), qlumApplicationMonitoring())
{
}

QlumHistoryPlugin::QlumHistoryPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring)
    : QlumDocumentPlugin(QStringLiteral("QlumHistoryPlugin"), QStringLiteral("UA History Plugin"),
                         QStringLiteral("History Trend View")),
      m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
}

void QlumHistoryPlugin::begin()
{
    registerSettings();
    takeNodes(&QlumTrendViewDocument::addNodes, [](const QlumToolNode& node) {
        return node.nodeClass == OpcUa_NodeClass_Variable || node.nodeClass == OpcUa_NodeClass_Unspecified;
    });
    takeSamples();
}

void QlumHistoryPlugin::takeSamples()
{
    QlumToolServices* const tools = QlumToolServices::instance();
    if (!tools)
        return;
    QlumSampleTaker samples;
    samples.documentType = documentType();
    samples.show = [](QWidget* document, std::span<const QlumToolCurve> curves) {
        if (auto* view = qobject_cast<QlumTrendViewDocument*>(document))
            view->showSamples(curves);
    };
    tools->takeSamples(this, samples);
}

void QlumHistoryPlugin::registerSettings()
{
    namespace S = QlumHistorySettings;
    constexpr double most = std::numeric_limits<int>::max();
    qlumRegisterSettings(
        {QStringLiteral("history"),
         tr("&History"),
         {QlumSettingRow::flag(
              S::readModified,
              {tr("&Read modified values"),
               tr("Reads the values that somebody has replaced or deleted instead of those that "
                  "stand now. Most servers then refuse to be asked for bounds as well.")}),
          QlumSettingRow::flag(
              S::returnBounds,
              {tr("Return &bounds"),
               tr("Reads the values at the ends of the time range, too, so that curves reach "
                  "them.")}),
          QlumSettingRow::number(
              S::valuesPerNode,
              {tr("&Values of a node in an answer:"),
               tr("A server that has more hands them out in several answers. With 0 it decides "
                  "itself.")},
              0, most),
          QlumSettingRow::number(
              S::maximumNextCalls,
              {tr("&Answers to read at most:"),
               tr("What a server has beyond that many further answers is left, and the view "
                  "says so.")},
              0, most)}});
}

QlumTrendViewDocument* QlumHistoryPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumTrendViewDocument(app, m_services, m_monitoring);
}

QString QlumHistoryPlugin::documentText() const
{
    return tr("Reads the history of variables and plots it over "
              "time.");
}
