// What sessions report, on its way from their threads to the views.
#include <plugins/events/qlummonitoreditemmodel.h>

#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <opcua/opcua_identifiers.h>
#include <opcua/opcua_statuscodes.h>
#include <uabase/values/uabytestring.h>
#include <uabase/values/uavariant.h>

#include <QElapsedTimer>
#include <QMetaObject>

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

namespace {
constexpr OpcUa_UInt32 eventsAtOnce = 100; // between two looks at the clock
constexpr qint64 longestTurn = 20;         // ms; then the window has its turn
constexpr OpcUa_UInt32 maximumRepublished = 1000;
constexpr int maximumLosses = 5; // of subscriptions, one after the other
constexpr int maximumRefreshIds = 1000;

OpcUa_UInt32 following(OpcUa_UInt32 number)
{
    return number == std::numeric_limits<OpcUa_UInt32>::max() ? 1 : number + 1;
}

// The newest ones, which a server is most likely to have still. Numbers begin again at 1.
std::vector<OpcUa_UInt32> missingNumbers(OpcUa_UInt32 previous, OpcUa_UInt32 next)
{
    constexpr OpcUa_UInt32 halfway = std::numeric_limits<OpcUa_UInt32>::max() / 2;
    const OpcUa_UInt32 steps = next - previous; // wraps as the numbers do
    if (steps == 0 || steps > halfway)
        return {}; // not ahead: it came twice
    OpcUa_UInt32 first = following(previous);
    if (steps - 1 > maximumRepublished)
        first = next > maximumRepublished ? next - maximumRepublished : 1;
    std::vector<OpcUa_UInt32> numbers;
    for (OpcUa_UInt32 number = first; number != next && numbers.size() < maximumRepublished;
         number = following(number))
        numbers.push_back(number);
    return numbers;
}
} // namespace

// ---- on threads of the sessions

void QlumMonitoredItemModel::newEvents(OpcUa_UInt32 handle, UaEventFieldLists& events)
{
    {
        const std::lock_guard lock(m_mutex);
        Portion& portion = m_inbox.emplace_back();
        portion.serverId = handle;
        portion.events = std::move(events);
    }
    wake();
}

void QlumMonitoredItemModel::notificationsMissing(OpcUa_UInt32 clientSubscriptionHandle,
                                                  OpcUa_UInt32 previousSequenceNumber,
                                                  OpcUa_UInt32 newSequenceNumber)
{
    std::vector<OpcUa_UInt32> numbers = missingNumbers(previousSequenceNumber, newSequenceNumber);
    if (numbers.empty())
        return;
    quint64 gap = 0;
    {
        const std::lock_guard lock(m_mutex);
        gap = ++m_lastGap;
        Portion& portion = m_inbox.emplace_back();
        portion.serverId = clientSubscriptionHandle;
        portion.gap = gap;
    }
    QMetaObject::invokeMethod(
        this,
        [this, clientSubscriptionHandle, gap, numbers = std::move(numbers)] {
            republish(clientSubscriptionHandle, gap, numbers);
        },
        Qt::QueuedConnection);
}

void QlumMonitoredItemModel::subscriptionStatusChanged(OpcUa_UInt32 handle, const UaStatus& status)
{
    if (status.isBad() || status.statusCode() == OpcUa_GoodSubscriptionTransferred)
        QMetaObject::invokeMethod(
            this, [this, handle] { subscriptionLost(handle); }, Qt::QueuedConnection);
}

void QlumMonitoredItemModel::wake()
{
    {
        const std::lock_guard lock(m_mutex);
        if (std::exchange(m_isWoken, true))
            return;
    }
    QMetaObject::invokeMethod(
        this, [this] { m_drainTimer.start(); }, Qt::QueuedConnection);
}

// ---- gaps

void QlumMonitoredItemModel::republish(unsigned int serverId, quint64 gap, std::vector<OpcUa_UInt32> numbers)
{
    const auto subscription = server(serverId).subscription;
    if (!subscription) {
        fillGap(gap, {});
        return;
    }
    const std::weak_ptr<int> alive = m_alive;
    const auto fetched = std::make_shared<std::vector<UaEventFieldLists>>();
    m_pools->of(serverId).add(
        {tr("Fetching lost events"), serverId},
        [=](QlumJob& job) {
            subscription->republish(
                numbers, [&job] { return job.isCancelled(); }, *fetched);
        },
        [this, alive, gap, fetched](QlumWorkEnd) { // cancelled or not: what waits behind the gap goes on
            if (!alive.expired())
                fillGap(gap, std::move(*fetched));
        });
}

void QlumMonitoredItemModel::fillGap(quint64 gap, std::vector<UaEventFieldLists> lists)
{
    {
        const std::lock_guard lock(m_mutex);
        const auto found = std::find_if(m_inbox.begin(), m_inbox.end(),
                                        [gap](const Portion& portion) { return portion.gap == gap; });
        if (found == m_inbox.end())
            return;
        for (UaEventFieldLists& list : lists)
            static_cast<void>(found->events.appendMoved(std::move(list)));
        found->isFilled = true;
    }
    wake();
}

// ---- handing out

// The first portion that may go out, whole or in part: those of a server wait behind its open gap.
bool QlumMonitoredItemModel::takePortion(Portion& portion, OpcUa_UInt32 maximum)
{
    const std::lock_guard lock(m_mutex);
    std::vector<unsigned int> waiting;
    for (auto it = m_inbox.begin(); it != m_inbox.end(); ++it) {
        if (std::find(waiting.begin(), waiting.end(), it->serverId) != waiting.end())
            continue;
        if (it->gap != 0 && !it->isFilled) {
            waiting.push_back(it->serverId);
            continue;
        }
        const OpcUa_UInt32 left = it->events.length() - it->position;
        portion.serverId = it->serverId;
        if (left <= maximum && it->position == 0) {
            portion.events = std::move(it->events);
            m_inbox.erase(it);
            return true;
        }
        const OpcUa_UInt32 count = std::min(left, maximum);
        portion.events = UaEventFieldLists(count);
        for (OpcUa_UInt32 i = 0; i < count; ++i)
            std::swap(portion.events[i], it->events[it->position + i]);
        it->position += count;
        if (it->position == it->events.length())
            m_inbox.erase(it);
        return true;
    }
    m_isWoken = false; // nothing that could go out
    return false;
}

void QlumMonitoredItemModel::sltDrain()
{
    QElapsedTimer turn;
    turn.start();
    QlumEvents events;
    bool isEmpty = false;
    while (!isEmpty && turn.elapsed() < longestTurn) {
        Portion portion;
        isEmpty = !takePortion(portion, eventsAtOnce);
        if (!isEmpty)
            makeEvents(portion, portion.events.length(), events);
    }
    if (!isEmpty)
        m_drainTimer.start();
    if (events.empty())
        return;
    for (const QlumEvent& event : events)
        checkRefreshRequired(event);
    emit eventsReceived(events);
}

void QlumMonitoredItemModel::makeEvents(Portion& portion, OpcUa_UInt32 count, QlumEvents& events)
{
    for (OpcUa_UInt32 i = 0; i < count; ++i) {
        OpcUa_EventFieldList& list = portion.events[i];
        const auto item = m_items.constFind(list.ClientHandle);
        const QlumEventNodeMonitored* const from = item != m_items.constEnd() ? node(item->key) : nullptr;
        if (!from || from->serverId != portion.serverId)
            continue; // removed meanwhile, or a number of nobody
        QlumEvent& event = events.emplace_back();
        event.serverId = portion.serverId;
        event.monitoredNode = from->key;
        event.notifier = from->name;
        event.fields = QlumEventFields(item->names, list.EventFields, list.NoOfEventFields);
        const auto derives = [this, &portion](const UaNodeId& type, const UaNodeId& base) {
            return m_derives(portion.serverId, type, base);
        };
        if (from->isFilteredHere && !qlumMeets(event, from->where, derives))
            events.pop_back();
    }
}

// Every notifier of a subscription reports the same event; it is one request all the same.
void QlumMonitoredItemModel::checkRefreshRequired(const QlumEvent& event)
{
    if (!event.eventType().isNumeric(OpcUaId_RefreshRequiredEventType))
        return;
    const UaVariant& id = event.fields.value(QlumField::EventId);
    if (id.type() == OpcUaType_ByteString && !id.isEmpty()) {
        const UaByteString bytes = id.toByteString();
        const QByteArray key = QByteArray::number(event.serverId) + ':' +
                               QByteArray(reinterpret_cast<const char*>(bytes.data()), bytes.length());
        if (m_refreshIds.contains(key))
            return;
        if (m_refreshIds.size() >= maximumRefreshIds)
            m_refreshIds.clear();
        m_refreshIds.insert(key);
    }
    QlumLog(tr("Event Plugin"), event.serverId)
        .info(tr("Received RefreshRequiredEvent, calling ConditionRefresh"));
    callRefresh(event.serverId);
}

// The session stands, but its server has dropped the subscription. Whether that is the one of now, and not
// the one before it, is known behind what is waiting to be done.
void QlumMonitoredItemModel::subscriptionLost(unsigned int serverId)
{
    const std::shared_ptr<QlumEventSubscription> subscription = server(serverId).subscription;
    if (!subscription || !isUp(serverId))
        return; // made again when the connection is back
    const std::weak_ptr<int> alive = m_alive;
    runLater(serverId, tr("Subscribing to events"), [=, this](QlumJob& job) {
        if (!subscription->isValid())
            job.post([=, this] {
                if (!alive.expired())
                    replaceSubscription(serverId);
            });
    });
}

// One that is dropped again and again is left alone until the next connect.
void QlumMonitoredItemModel::replaceSubscription(unsigned int serverId)
{
    ServerState& state = server(serverId);
    if (!state.subscription || !isUp(serverId))
        return;
    if (++state.losses <= maximumLosses) {
        createMonitoredItems(serverId, false);
        return;
    }
    QlumLog(tr("Event Plugin"), serverId)
        .error(
            tr("The server has ended the subscription %1 times; it is made again with the next connection.")
                .arg(state.losses));
}
