#include <plugins/events/qlumeventplugin.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlummetatypes.h>
#include <app/api/qlumsettingsregistry.h>
#include <app/api/qlumtoolservices.h>
#include <plugins/events/qlumeventpools.h>
#include <plugins/events/qlumeventsettings.h>
#include <plugins/events/qlumeventtypes.h>
#include <uabase/values/uanodeid.h>

#include <limits>
#include <utility>

QlumEventPlugin::QlumEventPlugin() : QlumEventPlugin(qlumApplicationServices()) {}

QlumEventPlugin::QlumEventPlugin(QlumSessionServicesProvider services)
    : QlumDocumentPlugin(QStringLiteral("QlumEventPlugin"), QStringLiteral("UA Events Plugin"),
                         QStringLiteral("Event View")),
      m_services(std::move(services))
{
}

QlumEventPlugin::~QlumEventPlugin() = default;

void QlumEventPlugin::begin()
{
    qlumRegisterMetaTypes();
    registerSettings();
    m_pools = std::make_shared<QlumEventPools>();
    m_types = std::make_unique<QlumEventTypes>(m_services);
    takeNodes(&QlumEventWidget::addNotifiers, [](const QlumToolNode& node) {
        return node.nodeClass == OpcUa_NodeClass_Object || node.nodeClass == OpcUa_NodeClass_View ||
               node.nodeClass == OpcUa_NodeClass_Unspecified;
    });
}

void QlumEventPlugin::end()
{
    m_types.reset();
    m_pools.reset();
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

QlumEventWidget* QlumEventPlugin::makeDocument(QlumApplicationInterface& app)
{
    return new QlumEventWidget(app, *m_types, m_pools, m_services);
}

QString QlumEventPlugin::documentText() const
{
    return tr(
        "This document type can be used to subscribe to events and alarms of the UA server. It supports "
        "the selection of event fields and can acknowledge and confirm alarms. It also supports reading "
        "of historical event data for a given time period.");
}

// ---- servers

void QlumEventPlugin::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                           const NamespaceMap& namespaceMap)
{
    if (status == QlumConnectionStatus::NewSessionCreated || !namespaceMap.isEmpty())
        m_types->forget(serverId);
    QlumDocumentPlugin::sessionStatusChanged(serverId, status, namespaceMap);
}

void QlumEventPlugin::sessionRemoved(unsigned int serverId)
{
    QlumDocumentPlugin::sessionRemoved(serverId);
    m_types->sessionRemoved(serverId);
    m_pools->endServer(serverId);
}

void QlumEventPlugin::serverModelChanged(unsigned int serverId, const UaNodeId& nodeId, unsigned char)
{
    m_types->nodeChanged(serverId, nodeId);
}
