// What a project keeps of a trend view, and how that follows its servers.
#include <plugins/history/qlumtrendviewdocument.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumconnectionstatus.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumtext.h>
#include <monitoring/namespaces.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendpanel.h>
#include <plugins/history/qlumtrendreading.h>
#include <uabase/values/uanodeid.h>
#include <uawidgets/qlummessagebar.h>

#include <QColor>
#include <QDateTime>
#include <QMap>
#include <QSettings>
#include <QString>
#include <QTime>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr int mostItems = 10'000; // a file that claims more is none of ours
const QString timeFormat = QStringLiteral("HH:mm:ss");

QString keptTime(const QDateTime& time)
{
    return time.toUTC().toString(Qt::ISODateWithMs);
}

// Nothing for what is no time.
QDateTime restoredTime(const QSettings& settings, const QString& key)
{
    return QDateTime::fromString(settings.value(key).toString(), Qt::ISODateWithMs).toLocalTime();
}

} // namespace

void QlumTrendViewDocument::saveSettings(QSettings& settings)
{
    settings.setValue(QStringLiteral("SingleUpdate"), !m_panel->isCyclic());
    settings.setValue(QStringLiteral("StartTime"), keptTime(m_panel->startTime()));
    settings.setValue(QStringLiteral("EndTime"), keptTime(m_panel->endTime()));
    settings.setValue(QStringLiteral("CyclicUpdate"), m_panel->isCyclic());
    settings.setValue(QStringLiteral("Timespan"), m_panel->timespan().toString(timeFormat));
    settings.setValue(QStringLiteral("UpdateInterval"), m_panel->updateInterval().toString(timeFormat));
    settings.setValue(QStringLiteral("CyclicUpdateRunning"), m_cyclicTimer.isActive());
    settings.beginWriteArray(QStringLiteral("Items"), m_model->rowCount());
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QlumTrendItem& item = m_model->rowAt(row);
        settings.setArrayIndex(row);
        settings.setValue(QStringLiteral("ServerId"), item.serverId);
        settings.setValue(QStringLiteral("NodeId"), toQString(item.nodeId.toXmlString()));
        settings.setValue(QStringLiteral("Name"), item.name);
        settings.setValue(QStringLiteral("Color"), item.color.name());
        settings.setValue(QStringLiteral("Stepped"), item.stepped);
        settings.setValue(QStringLiteral("Width"), item.width);
    }
    settings.endArray();
}

// What a project restores does not change it.
void QlumTrendViewDocument::markModified()
{
    if (!m_isLoading)
        m_application.setModified();
}

void QlumTrendViewDocument::loadSettings(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    m_isLoading = true;
    m_panel->setCyclic(settings.value(QStringLiteral("CyclicUpdate"), false).toBool() &&
                       !settings.value(QStringLiteral("SingleUpdate"), false).toBool());
    if (const QDateTime start = restoredTime(settings, QStringLiteral("StartTime")); start.isValid())
        m_panel->setStartTime(start);
    if (const QDateTime end = restoredTime(settings, QStringLiteral("EndTime")); end.isValid())
        m_panel->setEndTime(end);
    const auto restoredSpan = [&settings](const QString& key) {
        return QTime::fromString(settings.value(key).toString(), timeFormat);
    };
    if (const QTime span = restoredSpan(QStringLiteral("Timespan")); span.isValid())
        m_panel->setTimespan(span);
    if (const QTime interval = restoredSpan(QStringLiteral("UpdateInterval")); interval.isValid())
        m_panel->setUpdateInterval(interval);
    restoreItems(settings, serverIdMap);
    setRunning(m_panel->isCyclic() && settings.value(QStringLiteral("CyclicUpdateRunning"), false).toBool());
    m_isLoading = false;
    showState();
}

void QlumTrendViewDocument::restoreItems(QSettings& settings, const QMap<int, int>& serverIdMap)
{
    int missing = 0;
    const int count = std::min(settings.beginReadArray(QStringLiteral("Items")), mostItems);
    for (int row = 0; row < count; ++row) {
        settings.setArrayIndex(row);
        const auto server = serverIdMap.constFind(settings.value(QStringLiteral("ServerId"), -1).toInt());
        QlumTrendItem item;
        item.nodeId = UaNodeId::fromString(settings.value(QStringLiteral("NodeId")).toString().toStdString());
        if (server == serverIdMap.constEnd() || item.nodeId.isNull()) {
            ++missing;
            continue;
        }
        item.serverId = static_cast<unsigned int>(*server);
        item.name = settings.value(QStringLiteral("Name")).toString();
        if (item.name.isEmpty())
            item.name = toQString(item.nodeId.toXmlString());
        item.color = QColor(settings.value(QStringLiteral("Color")).toString());
        item.stepped = settings.value(QStringLiteral("Stepped"), false).toBool();
        item.width = std::clamp(settings.value(QStringLiteral("Width"), 1).toInt(), 1, 9);
        m_model->restore(std::move(item));
    }
    settings.endArray();
    if (missing == 0)
        return;
    const QString text = tr("%n variable(s) of this view were left out.", nullptr, missing);
    QlumLog(qlumHistoryLogSource()).error(text);
    m_messages->tell({QlumMessage::Warning,
                      QStringLiteral("project"),
                      text,
                      tr("Their server is not in the project, or their node id cannot be read."),
                      {},
                      {}});
}

// ---- servers

void QlumTrendViewDocument::sessionStatusChanged(unsigned int serverId, QlumConnectionStatus status,
                                                 const NamespaceMap& map)
{
    const bool wasUp =
        m_status.value(serverId, QlumConnectionStatus::Disconnected) == QlumConnectionStatus::Connected;
    m_status.insert(serverId, status);
    const monitoring::NamespaceMap namespaces = map.toStdMap();
    std::vector<UaNodeId> ids;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QlumTrendItem item = m_model->rowAt(row);
        if (item.serverId != serverId || item.isLost)
            continue;
        UaNodeId nodeId = item.nodeId;
        const bool isThere = monitoring::remapNodeId(nodeId, namespaces);
        if (!map.isEmpty())
            m_model->setNode(item.key, isThere ? nodeId : item.nodeId, !isThere);
        if (isThere && m_trends.at(item.key).node.range == std::nullopt)
            ids.push_back(nodeId);
    }
    m_model->tellServerNames();
    if (status != QlumConnectionStatus::Connected && status != QlumConnectionStatus::ConnectionError)
        m_aggregateServers.remove(serverId); // another session may have others
    else if (!m_aggregateServers.contains(serverId) && !ids.empty()) {
        m_aggregateServers.insert(serverId);
        m_reading->readAggregates(serverId);
    }
    if (status == QlumConnectionStatus::Connected && !wasUp && !ids.empty())
        m_reading->readNodes(serverId, ids, false);
    showState();
}

void QlumTrendViewDocument::sessionRemoved(unsigned int serverId)
{
    m_reading->endServer(serverId);
    m_status.remove(serverId);
    for (int row = m_model->rowCount() - 1; row >= 0; --row)
        if (m_model->rowAt(row).serverId == serverId)
            m_model->removeItems(row, 1);
}
