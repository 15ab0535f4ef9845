#include <plugins/history/qlumhistoryplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/history/qlumhistorysettings.h>
#include <plugins/history/qlumtrendviewdocument.h>

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <limits>
#include <span>
#include <utility>

namespace {
const QString trendView = QStringLiteral("History Trend View");
}

QlumHistoryPlugin::QlumHistoryPlugin()
    : QlumHistoryPlugin(qlumApplicationServices(), qlumApplicationMonitoring())
{
}

QlumHistoryPlugin::QlumHistoryPlugin(QlumSessionServicesProvider services, QlumMonitoringProvider monitoring)
    : m_services(std::move(services)), m_monitoring(std::move(monitoring))
{
    setObjectName(QStringLiteral("QlumHistoryPlugin"));
}

void QlumHistoryPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    registerSettings();
    if (QlumToolServices* tools = QlumToolServices::instance()) {
        QlumNodeTaker taker;
        taker.documentType = trendView;
        taker.accepts = [](const QlumToolNode& node) {
            return node.nodeClass == OpcUa_NodeClass_Variable ||
                   node.nodeClass == OpcUa_NodeClass_Unspecified;
        };
        taker.add = [](QWidget* document, std::span<const QlumToolNode> nodes) {
            if (auto* view = qobject_cast<QlumTrendViewDocument*>(document))
                view->addNodes(nodes);
        };
        tools->takeNodes(this, taker);
        QlumSampleTaker samples;
        samples.documentType = trendView;
        samples.show = [](QWidget* document, std::span<const QlumToolCurve> curves) {
            if (auto* view = qobject_cast<QlumTrendViewDocument*>(document))
                view->showSamples(curves);
        };
        tools->takeSamples(this, samples);
    }
}

void QlumHistoryPlugin::shutdown()
{
    m_documents.clear(); // they belong to the application's window, and have gone with the project
    m_app = nullptr;
}

QString QlumHistoryPlugin::name()
{
    return QStringLiteral("UA History Plugin");
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

// ---- documents

QStringList QlumHistoryPlugin::documentTypes()
{
    return {trendView};
}

QWidget* QlumHistoryPlugin::createDocument(const QString& type)
{
    if (type != trendView || m_app == nullptr)
        return nullptr;
    auto* document = new QlumTrendViewDocument(*m_app, m_services, m_monitoring);
    m_documents.append(document);
    return document;
}

QString QlumHistoryPlugin::description(const QString& type)
{
    return type == trendView
               ? tr("<b>History Trend View</b><br>Reads the history of variables and plots it over "
                    "time.")
               : QString();
}

QList<QlumTrendViewDocument*> QlumHistoryPlugin::documents() const
{
    QList<QlumTrendViewDocument*> result;
    for (const QPointer<QlumTrendViewDocument>& document : m_documents)
        if (document)
            result.append(document);
    return result;
}

void QlumHistoryPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                             const NamespaceMap& namespaceMap)
{
    for (QlumTrendViewDocument* document : documents())
        document->sessionStatusChanged(serverId, status, namespaceMap);
}

void QlumHistoryPlugin::sessionRemoved(unsigned int serverId)
{
    for (QlumTrendViewDocument* document : documents())
        document->sessionRemoved(serverId);
}
