#include <plugins/events/qlumalarmmodel.h>

#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/events/qlumeventmodel.h>
#include <uabase/values/uavariant.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QLocale>
#include <QPalette>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace {
constexpr std::size_t maximumUnretained = 10000;
constexpr int toolTipLength = 1000;
} // namespace

QlumAlarmModel::QlumAlarmModel(QlumApplicationInterface& application, QObject* parent)
    : QlumEventTable({tr("ConditionName"), tr("Message"), tr("SourceName"), tr("Time"), tr("Severity"),
                      tr("Server/Object"), tr("Active"), tr("Acknowledged State"), tr("Confirmed State")},
                     parent),
      m_application(application)
{
}

// ---- keeping the list

QlumAlarmModel::Key QlumAlarmModel::keyOf(const QlumEvent& event)
{
    return {event.serverId, event.conditionId(), event.branchId()};
}

void QlumAlarmModel::sltNewEvents(const QlumEvents& events)
{
    for (const QlumEvent& event : events)
        take(event);
    removeGone();
    emit stateChanged();
}

void QlumAlarmModel::take(const QlumEvent& event)
{
    const UaNodeId type = event.eventType();
    if (type.isNumeric(OpcUaId_RefreshStartEventType)) {
        refreshStarted(event);
        return;
    }
    if (type.isNumeric(OpcUaId_RefreshEndEventType)) {
        refreshEnded(event);
        return;
    }
    const Key key = keyOf(event);
    if (std::get<1>(key).isNull())
        return; // no condition
    m_unretained.erase(key);
    // what does not say that it may go is kept: an alarm too many is better than one too few
    if (!event.is(QlumField::Retain, false)) {
        put(key, event);
        return;
    }
    if (m_unretained.size() < maximumUnretained)
        m_unretained.emplace(key, event);
    if (m_showsUnretained)
        put(key, event);
    else
        drop(key);
}

void QlumAlarmModel::put(const Key& key, const QlumEvent& event)
{
    m_notifiers[key].insert(event.monitoredNode);
    const auto found = m_places.find(key);
    const bool isNew = found == m_places.end();
    bool wasOpen = false;
    if (isNew) {
        m_places.emplace(key, rowCount() + static_cast<int>(m_added.size()));
        m_added.push_back(event);
        m_added.back().isStale = false;
    } else {
        const auto renew = [&](QlumEvent& row) {
            wasOpen = row.is(QlumField::AckedId, false);
            const bool isHighlighted = row.isHighlighted;
            row = event;
            row.isStale = false;
            row.isHighlighted = isHighlighted;
        };
        if (found->second < rowCount())
            change(found->second, renew);
        else
            renew(m_added[static_cast<std::size_t>(found->second - rowCount())]);
    }
    if (!wasOpen && event.is(QlumField::AckedId, false) && !m_refreshing.contains(event.serverId))
        emit raised(event);
}

void QlumAlarmModel::drop(const Key& key)
{
    const auto found = m_places.find(key);
    if (found == m_places.end())
        return;
    m_gone.push_back(found->second);
    m_places.erase(found);
    m_notifiers.erase(key);
}

// Many at once: after a flood of conditions that end, the places of those behind them are counted once.
void QlumAlarmModel::removeGone()
{
    insertAdded();
    std::vector<int> rows = std::exchange(m_gone, {});
    if (rows.empty())
        return;
    std::sort(rows.begin(), rows.end());
    for (auto last = rows.rbegin(); last != rows.rend();) {
        auto first = last;
        while (std::next(first) != rows.rend() && *std::next(first) == *first - 1)
            ++first;
        remove(*first, *last - *first + 1);
        last = std::next(first);
    }
    for (auto& [key, row] : m_places)
        row -= static_cast<int>(std::lower_bound(rows.begin(), rows.end(), row) - rows.begin());
}

void QlumAlarmModel::insertAdded()
{
    append(std::exchange(m_added, {}));
}

// Rows in one go, however many there are.
template <typename Condition>
void QlumAlarmModel::removeWhere(Condition&& condition)
{
    removeGone();
    for (int last = rowCount() - 1; last >= 0; --last) {
        if (!condition(rowAt(last)))
            continue;
        int first = last;
        while (first > 0 && condition(rowAt(first - 1)))
            --first;
        for (int row = first; row <= last; ++row)
            m_notifiers.erase(keyOf(rowAt(row)));
        remove(first, last - first + 1);
        last = first;
    }
    countRows();
}

void QlumAlarmModel::countRows()
{
    m_places.clear();
    for (int row = 0; row < rowCount(); ++row)
        m_places[keyOf(rowAt(row))] = row;
}

// ---- refreshes

// Some servers begin and end a refresh once for each notifier, others through one of them for all. Rows of
// notifiers that have beginnings of their own are left to these.
bool QlumAlarmModel::belongsTo(const Key& key, unsigned int serverId, quint32 notifier) const
{
    if (std::get<0>(key) != serverId)
        return false;
    const auto from = m_notifiers.find(key);
    if (from == m_notifiers.end() || from->second.count(notifier) != 0)
        return true;
    const Notifiers refreshers = m_refreshers.value(serverId);
    return std::none_of(from->second.begin(), from->second.end(),
                        [&](quint32 one) { return refreshers.count(one) != 0; });
}

void QlumAlarmModel::refreshStarted(const QlumEvent& event)
{
    removeGone();
    m_refreshing.insert(event.serverId);
    m_refreshers[event.serverId].insert(event.monitoredNode);
    changeRows([&](QlumEvent& row) {
        if (row.isStale || !belongsTo(keyOf(row), event.serverId, event.monitoredNode))
            return false;
        row.isStale = true;
        return true;
    });
}

void QlumAlarmModel::refreshEnded(const QlumEvent& event)
{
    m_refreshing.remove(event.serverId);
    removeWhere([&](const QlumEvent& row) {
        return row.isStale && belongsTo(keyOf(row), event.serverId, event.monitoredNode);
    });
}

// ---- what the view says

void QlumAlarmModel::sltShowRetainIfFalse(bool show)
{
    if (m_showsUnretained == show)
        return;
    m_showsUnretained = show;
    if (show) {
        for (const auto& [key, event] : m_unretained)
            put(key, event);
        insertAdded();
    } else {
        removeWhere([](const QlumEvent& row) { return row.is(QlumField::Retain, false); });
    }
    emit stateChanged();
}

void QlumAlarmModel::sltRemoveItem(quint32 monitoredNode)
{
    for (auto& [key, notifiers] : m_notifiers)
        notifiers.erase(monitoredNode);
    for (Notifiers& notifiers : m_refreshers)
        notifiers.erase(monitoredNode);
    removeWhere([this](const QlumEvent& row) { return m_notifiers[keyOf(row)].empty(); });
    std::erase_if(m_unretained, [&](const auto& one) { return one.second.monitoredNode == monitoredNode; });
    emit stateChanged();
}

void QlumAlarmModel::sessionRemoved(unsigned int serverId)
{
    removeWhere([serverId](const QlumEvent& row) { return row.serverId == serverId; });
    std::erase_if(m_unretained, [&](const auto& one) { return one.second.serverId == serverId; });
    m_refreshing.remove(serverId);
    m_refreshers.remove(serverId);
    m_offline.remove(serverId);
    emit stateChanged();
}

void QlumAlarmModel::setOffline(unsigned int serverId, const QDateTime& since)
{
    if (m_offline.value(serverId) == since)
        return;
    if (since.isValid())
        m_offline.insert(serverId, since);
    else
        m_offline.remove(serverId);
    m_refreshing.remove(serverId); // nobody will end it
    changeRows([&](QlumEvent& row) {
        if (row.serverId != serverId)
            return false;
        row.isStale = row.isStale || since.isValid();
        return true;
    });
}

void QlumAlarmModel::setHighlighted(int row, bool isHighlighted)
{
    if (rowAt(row).isHighlighted != isHighlighted)
        change(
            row, [isHighlighted](QlumEvent& one) { one.isHighlighted = isHighlighted; });
}

void QlumAlarmModel::clear()
{
    m_places.clear();
    m_notifiers.clear();
    m_added.clear();
    m_gone.clear();
    m_unretained.clear();
    m_refreshing.clear();
    reset();
    emit stateChanged();
}

UaByteString QlumAlarmModel::eventId(int row) const
{
    const UaVariant& id = rowAt(row).fields.value(QlumField::EventId);
    return id.type() == OpcUaType_ByteString && id.isScalar() ? id.toByteString() : UaByteString();
}

bool QlumAlarmModel::isOpen(int row) const
{
    return rowAt(row).is(QlumField::AckedId, false) || rowAt(row).is(QlumField::ConfirmedId, false);
}

// ---- cells

QVariant QlumAlarmModel::display(const QlumEvent& event, int column) const
{
    const auto state = [&event](QlumField field) {
        return event.is(field, true) ? tr("True") : event.is(field, false) ? tr("False") : QString();
    };
    switch (column) {
    case ConditionName:
        return event.text(QlumField::ConditionName);
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
    case Active: {
        const QString text = event.text(QlumField::ActiveText);
        return text.isEmpty() ? event.text(QlumField::ActiveState) : text;
    }
    case AcknowledgedState:
        return state(QlumField::AckedId);
    case ConfirmedState:
        return state(QlumField::ConfirmedId);
    default:
        return extraText(event, column);
    }
}

// What is not certain any more is grey; what is active and open is red. Words beside it say the same.
QVariant QlumAlarmModel::look(const QlumEvent& event, int column, int role) const
{
    const bool isOffline = m_offline.contains(event.serverId);
    const bool isOld = event.isStale || isOffline || event.is(QlumField::Retain, false);
    if (role == Qt::FontRole) {
        QFont font;
        font.setBold(event.isHighlighted || (!isOld && event.is(QlumField::AckedId, false)));
        font.setItalic(isOld);
        return font;
    }
    if (role == Qt::AccessibleDescriptionRole && isOld)
        return isOffline ? tr("no connection") : event.isStale ? tr("not refreshed") : tr("not retained");
    if (role == Qt::DecorationRole && column == AcknowledgedState) {
        if (event.is(QlumField::AckedId, true))
            return QIcon(QStringLiteral(":/images/acked.png"));
        return event.is(QlumField::AckedId, false) ? QVariant(QIcon(QStringLiteral(":/images/nonacked.png")))
                                                   : QVariant();
    }
    if (isOld)
        return role == Qt::ForegroundRole ? qlumStatusCell(QlumStatusLevel::Inactive, role) : QVariant();
    if (column == Severity)
        return qlumSeverityCell(event.severity(), role);
    if (column == Active && event.is(QlumField::ActiveId, true))
        return qlumStatusCell(QlumStatusLevel::Bad, role);
    return {};
}

QVariant QlumAlarmModel::cell(const QlumEvent& event, int column, int role) const
{
    if (role == Qt::DisplayRole)
        return display(event, column);
    if (role == severityRole)
        return event.severity();
    if (role == typeRole)
        return m_typeName(event.serverId, event.eventType());
    if (role == sortRole)
        return column == Time ? QVariant(event.time()) : display(event, column);
    if (role == Qt::ToolTipRole) {
        const QString shown = column == Time ? event.timeInFull() : display(event, column).toString();
        const QString text = qlumCutText(shown, toolTipLength);
        const QString note = look(event, column, Qt::AccessibleDescriptionRole).toString();
        return qlumPlainToolTip(note.isEmpty() ? text : tr("%1 (%2)").arg(text, note));
    }
    return look(event, column, role);
}
