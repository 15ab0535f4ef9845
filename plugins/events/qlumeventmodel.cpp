#include <plugins/events/qlumeventmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumeventsettings.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uanodeid.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {
constexpr int toolTipLength = 1000;
constexpr int highSeverity = 667;
} // namespace

QString qlumSeverityWord(int severity)
{
    if (severity <= 0)
        return QCoreApplication::translate("QlumEventModel", "Unknown");
    if (severity < qlumMediumSeverity)
        return QCoreApplication::translate("QlumEventModel", "Low");
    return severity < highSeverity ? QCoreApplication::translate("QlumEventModel", "Medium")
                                   : QCoreApplication::translate("QlumEventModel", "High");
}

bool qlumIsHighSeverity(int severity)
{
    return severity >= highSeverity;
}

QVariant qlumSeverityCell(int severity, int role)
{
    if (role == Qt::AccessibleDescriptionRole)
        return qlumSeverityWord(severity);
    if (severity <= 0)
        return qlumStatusCell(QlumStatusLevel::Inactive, role);
    if (severity < qlumMediumSeverity)
        return qlumStatusCell(QlumStatusLevel::Good, role);
    return qlumStatusCell(severity < highSeverity ? QlumStatusLevel::Uncertain : QlumStatusLevel::Bad, role);
}

QlumEventModel::QlumEventModel(QlumApplicationInterface& application, QlumEventTypes& types, QObject* parent)
    : QlumEventTable(
          {tr("EventType"), tr("Message"), tr("SourceName"), tr("Time"), tr("Severity"), tr("Server/Object")},
          parent),
      m_application(application), m_types(types),
      m_maximum(std::max(1, QlumEventSettings::maxLogEntries.value()))
{
    setMaximumRows(m_maximum);
    connect(&m_types, &QlumEventTypes::namesRead, this,
            [this] { tellColumnChanged(EventType, {Qt::DisplayRole}); });
}

// ---- rows

// What a server sends between the begin and the end of a refresh is nothing new; an end that never comes must
// not make everything old.
void QlumEventModel::sltNewEvents(const QlumEvents& events)
{
    constexpr std::chrono::minutes longestRefresh(2);
    for (const QlumEvent& event : events) {
        const UaNodeId type = event.eventType();
        if (type.isNumeric(OpcUaId_RefreshStartEventType))
            m_refreshing.insert(event.serverId, QDeadlineTimer(longestRefresh));
        const bool isOld = !event.conditionId().isNull() && isRepeated(event);
        const auto refresh = m_refreshing.constFind(event.serverId);
        const bool isRefreshed = isOld || (refresh != m_refreshing.constEnd() && !refresh->hasExpired() &&
                                           !event.conditionId().isNull() && !event.isRefreshEvent());
        if (type.isNumeric(OpcUaId_RefreshEndEventType))
            m_refreshing.remove(event.serverId);
        QlumEvent row = event;
        row.isRefreshed = isRefreshed;
        ++m_count;
        if (!m_isPaused) {
            gather(std::move(row));
        } else {
            m_waiting.push_back(std::move(row));
            ++m_waitingCount;
        }
    }
    while (m_waiting.size() > static_cast<std::size_t>(m_maximum))
        m_waiting.pop_front();
    emit countChanged();
}

// Some servers send what they refresh behind the end of the refresh; but the event is the one that it was.
bool QlumEventModel::isRepeated(const QlumEvent& event)
{
    constexpr int remembered = 20000;
    const UaVariant& id = event.fields.value(QlumField::EventId);
    if (id.type() != OpcUaType_ByteString || id.isEmpty())
        return false;
    const UaByteString bytes = id.toByteString();
    QByteArray key = QByteArray::number(event.monitoredNode) + ':';
    key.append(reinterpret_cast<const char*>(bytes.data()), bytes.length());
    if (m_seen.contains(key))
        return true;
    if (m_seen.size() >= remembered)
        m_seen.clear();
    m_seen.insert(key);
    return false;
}

void QlumEventModel::setPaused(bool isPaused)
{
    m_isPaused = isPaused;
    if (!isPaused)
        for (QlumEvent& event : std::exchange(m_waiting, {}))
            gather(std::move(event));
    m_waitingCount = static_cast<qint64>(m_waiting.size());
    flush();
    emit countChanged();
}

void QlumEventModel::clear()
{
    m_waiting.clear();
    m_waitingCount = 0;
    m_seen.clear();
    m_count = 0;
    reset();
    emit countChanged();
}

// ---- columns

QVariant QlumEventModel::display(const QlumEvent& event, int column) const
{
    switch (column) {
    case EventType: {
        const QString name = m_types.typeName(event.serverId, event.eventType());
        return event.isRefreshed ? tr("%1 (refresh)").arg(name) : name;
    }
    case Message:
        return event.text(QlumField::Message);
    case SourceName:
        return event.text(QlumField::SourceName);
    case Time:
        return qlumEventTime(event.time());
    case Severity:
        return event.severity() > 0 ? QVariant(event.severity()) : QVariant(event.text(QlumField::Severity));
    case ServerObject:
        return tr("%1/%2").arg(m_application.serverName(event.serverId), event.notifier);
    default:
        return extraText(event, column);
    }
}

QVariant QlumEventModel::cell(const QlumEvent& event, int column, int role) const
{
    const bool isOverflow =
        column == EventType && event.eventType().isNumeric(OpcUaId_EventQueueOverflowEventType);
    if (role == Qt::DisplayRole)
        return isOverflow ? tr("EventQueueOverflowEventType: events were lost") : display(event, column);
    if (role == severityRole)
        return event.severity();
    if (role == typeRole)
        return m_types.typeName(event.serverId, event.eventType());
    if (role == refreshedRole)
        return event.isRefreshed;
    if (role == sortRole)
        return column == Time ? QVariant(event.time()) : display(event, column);
    if (role == Qt::ToolTipRole && column == Time)
        return qlumPlainToolTip(event.timeInFull());
    if (role == Qt::ToolTipRole)
        return qlumPlainToolTip(qlumCutText(cell(event, column, Qt::DisplayRole).toString(), toolTipLength));
    if (isOverflow)
        return qlumStatusCell(QlumStatusLevel::Bad, role);
    if (column == Severity)
        return qlumSeverityCell(event.severity(), role);
    return {};
}
