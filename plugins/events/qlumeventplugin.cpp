#include <plugins/events/qlumeventplugin.h>

#include <app/api/qlummetatypes.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/events/qlumeventpools.h>
#include <plugins/events/qlumeventsettings.h>
#include <plugins/events/qlumeventtypes.h>
#include <plugins/events/qlumeventwidget.h>

#include <limits>
#include <span>
#include <utility>

namespace {
const QString documentType = QStringLiteral("Event View");
} // namespace

QlumEventPlugin::QlumEventPlugin() : QlumEventPlugin(qlumApplicationServices()) {}

QlumEventPlugin::QlumEventPlugin(QlumSessionServicesProvider services) : m_services(std::move(services))
{
    setObjectName(QStringLiteral("QlumEventPlugin"));
}

QlumEventPlugin::~QlumEventPlugin() = default;

void QlumEventPlugin::init(QlumApplicationInterface* app)
{
    m_app = app;
    qlumRegisterMetaTypes();
    registerSettings();
    m_pools = std::make_shared<QlumEventPools>();
    m_types = std::make_unique<QlumEventTypes>(m_services);
    takeNotifiers();
}

void QlumEventPlugin::shutdown()
{
    for (QlumEventWidget* const document : documents())
        delete document; // whoever has kept one: what it calls ends here
    m_types.reset();
    m_pools.reset();
    m_app = nullptr;
}

QString QlumEventPlugin::name()
{
    return QStringLiteral("UA Events Plugin");
}

void QlumEventPlugin::takeNotifiers()
{
    QlumToolServices* const services = QlumToolServices::instance();
    if (!services)
        return;
    QlumNodeTaker taker;
    taker.documentType = documentType;
    taker.accepts = [](const QlumToolNode& node) {
        return node.nodeClass == OpcUa_NodeClass_Object || node.nodeClass == OpcUa_NodeClass_View ||
               node.nodeClass == OpcUa_NodeClass_Unspecified;
    };
    taker.add = [](QWidget* document, std::span<const QlumToolNode> nodes) {
        if (auto* const view = qobject_cast<QlumEventWidget*>(document))
            view->addNotifiers(nodes);
    };
    services->takeNodes(this, taker);
}

void QlumEventPlugin::registerSettings()
{
    using namespace QlumEventSettings;
    constexpr double hour = 3600000; // ms
    constexpr double most = std::numeric_limits<int>::max();
    const QString unit = tr(" ms");
    qlumRegisterSettings(
        {QStringLiteral("events"),
         tr("&Events"),
         {QlumSettingRow::number(publishingInterval,
                                 {tr("&Publishing interval:"), tr("How often a server may report events.")},
                                 0, hour, unit)
              .felt(QlumSettingRow::InNewViews),
          QlumSettingRow::number(
              samplingInterval,
              {tr("&Sampling interval:"), tr("Sent with every notifier; most servers take no notice of it.")},
              -1, hour, unit),
          QlumSettingRow::number(
              queueSize,
              {tr("&Queue size:"), tr("Events that a server keeps until it can send them. The largest number "
                                      "asks for as many as it can.")},
              0, std::numeric_limits<unsigned int>::max()),
          QlumSettingRow::flag(discardOldest, {tr("&Discard the oldest"),
                                               tr("Which events a server gives up when its queue is full.")}),
          QlumSettingRow::flag(showDate, {tr("Show the da&te"), tr("Times of events have the date, too.")}),
          QlumSettingRow::flag(showNullFields,
                               {tr("Show &empty fields"),
                                tr("The details list the fields that an event does not have, too.")}),
          QlumSettingRow::number(maxLogEntries,
                                 {tr("&Most events in the log:"), tr("When there are more the oldest go.")},
                                 1, most)
              .felt(QlumSettingRow::InNewViews),
          QlumSettingRow::number(historyValues,
                                 {tr("Historical events in an &answer:"),
                                  tr("How many a server sends at a time; 0 leaves it to the server.")},
                                 0, most),
          QlumSettingRow::number(
              historyNextCalls,
              {tr("A&nswers to a question:"), tr("How often a server is asked for more historical events.")},
              0, most),
          QlumSettingRow::flag(showDialogs, {tr("Show &windows of conditions that ask"),
                                             tr("A condition that waits for an answer opens a window.")})}});
}

// ---- documents

QStringList QlumEventPlugin::documentTypes()
{
    return {documentType};
}

QWidget* QlumEventPlugin::createDocument(const QString& type)
{
    if (type != documentType || !m_app)
        return nullptr;
    auto* document = new QlumEventWidget(*m_app, *m_types, m_pools, m_services);
    for (auto state = m_states.cbegin(); state != m_states.cend(); ++state)
        document->sessionStatusChanged(state.key(), state.value(), {});
    m_documents.append(document);
    return document;
}

QString QlumEventPlugin::description(const QString& type)
{
    if (type != documentType)
        return {};
    return tr(
        "This document type can be used to subscribe to events and alarms of the UA server. It supports "
        "the selection of event fields and can acknowledge and confirm alarms. It also supports reading "
        "of historical event data for a given time period.");
}

QList<QlumEventWidget*> QlumEventPlugin::documents()
{
    m_documents.removeAll(QPointer<QlumEventWidget>());
    QList<QlumEventWidget*> open;
    for (const QPointer<QlumEventWidget>& document : qAsConst(m_documents))
        open.append(document);
    return open;
}

// ---- servers

void QlumEventPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                           const NamespaceMap& namespaceMap)
{
    m_states.insert(serverId, status);
    if (status == QlumConnectionStatus::NewSessionCreated || !namespaceMap.isEmpty())
        m_types->forget(serverId);
    for (QlumEventWidget* const document : documents())
        document->sessionStatusChanged(serverId, status, namespaceMap);
}

void QlumEventPlugin::sessionRemoved(unsigned int serverId)
{
    m_states.remove(serverId);
    for (QlumEventWidget* const document : documents())
        document->sessionRemoved(serverId);
    m_types->sessionRemoved(serverId);
    m_pools->endServer(serverId);
}

void QlumEventPlugin::serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char)
{
    m_types->nodeChanged(serverId, nodeId);
}
