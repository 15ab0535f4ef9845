// What sources hold, as records and marks.
#include <monitoring/sink.h>
#include <monitoring/watch.h>
#include <opcua/opcua_statuscodes.h>
#include <recording/recorderwork_p.h>
#include <uaclientsdk/uaclient.h>

#include <QString>

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace recording {

namespace {

[[nodiscard]] MarkKind kindOfLink(UaClientSdk::UaClient::ServerStatus status)
{
    using UaClientSdk::UaClient;
    switch (status) {
    case UaClient::Connected:
        return MarkKind::ConnectionBack;
    case UaClient::NewSessionCreated:
        return MarkKind::SessionNew;
    default:
        return MarkKind::ConnectionLost;
    }
}

[[nodiscard]] QString wordsOfLink(UaClientSdk::UaClient::ServerStatus status)
{
    using UaClientSdk::UaClient;
    switch (status) {
    case UaClient::Disconnected:
        return QStringLiteral("disconnected");
    case UaClient::ConnectionWarningWatchdogTimeout:
        return QStringLiteral("the server does not answer");
    case UaClient::ConnectionErrorApiReconnect:
        return QStringLiteral("the connection is broken");
    case UaClient::ServerShutdown:
        return QStringLiteral("the server shuts down");
    default:
        return QString();
    }
}

[[nodiscard]] MarkKind kindOfState(monitoring::ItemState state)
{
    switch (state) {
    case monitoring::ItemState::Watched:
        return MarkKind::ItemWatched;
    case monitoring::ItemState::Refused:
        return MarkKind::ItemRefused;
    case monitoring::ItemState::Waiting:
    case monitoring::ItemState::Ended:
        break;
    }
    return MarkKind::ItemWaiting;
}

} // namespace

PortionBuilder::Counts& PortionBuilder::countsOf(ItemNumber item)
{
    if (item >= m_counts.size())
        m_counts.resize(item + 1u);
    Counts& counts = m_counts[item];
    if (!counts.isNew) {
        counts.isNew = true;
        counts.figures.item = item;
        m_touched.push_back(item);
    }
    return counts;
}

std::vector<ItemFigures> PortionBuilder::takeFigures()
{
    std::vector<ItemFigures> figures;
    figures.reserve(m_touched.size());
    for (const ItemNumber item : m_touched) {
        m_counts[item].isNew = false;
        figures.push_back(m_counts[item].figures);
    }
    m_touched.clear();
    return figures;
}

void PortionBuilder::add(Portion& portion, const QString& server, monitoring::AllSink::Batch& batch)
{
    const monitoring::AllSink::Loss& loss = batch.loss;
    if (loss.values > 0 || loss.incidents > 0) {
        Mark mark;
        mark.kind = MarkKind::Lost;
        mark.time = loss.to;
        mark.server = server;
        mark.count = loss.values;
        mark.from = loss.from;
        mark.to = loss.to;
        if (loss.incidents > 0)
            mark.text = QStringLiteral("and %1 events").arg(loss.incidents);
        m_lost += loss.values;
        portion.add(mark);
    }
    portion.records.reserve(portion.records.size() + batch.values.size());
    auto incident = batch.incidents.begin();
    std::size_t place = 0;
    for (monitoring::AllSink::Value& value : batch.values) {
        for (; incident != batch.incidents.end() && incident->place <= place; ++incident)
            addIncident(portion, server, *incident);
        addRecord(portion, server, value);
        ++place;
    }
    for (; incident != batch.incidents.end(); ++incident)
        addIncident(portion, server, *incident);
}

void PortionBuilder::addRecord(Portion& portion, const QString& server, monitoring::AllSink::Value& value)
{
    const auto item = static_cast<ItemNumber>(value.key);
    Counts& counts = countsOf(item);
    ++counts.figures.records;
    counts.figures.received = value.received;
    counts.figures.value = value.value;
    if (monitoring::tellsOverflow(value.value.statusCode().code())) {
        ++counts.figures.overflows;
        Mark mark;
        mark.kind = MarkKind::Overflow;
        mark.time = value.received;
        mark.server = server;
        mark.item = item;
        portion.add(mark);
    }
    Record& record = portion.records.emplace_back();
    record.item = item;
    record.sequenceNumber = value.sequenceNumber;
    record.received = value.received;
    record.value = std::move(value.value);
}

void PortionBuilder::addIncident(Portion& portion, const QString& server,
                                 const monitoring::Incident& incident)
{
    using Kind = monitoring::Incident::Kind;
    Mark mark;
    mark.time = incident.time;
    mark.server = server;
    mark.status = incident.status.code();
    mark.first = incident.first;
    mark.last = incident.last;
    switch (incident.kind) {
    case Kind::Link:
        mark.kind = kindOfLink(incident.link);
        mark.text = wordsOfLink(incident.link);
        break;
    case Kind::SubscriptionLost:
        mark.kind = MarkKind::SubscriptionLost;
        break;
    case Kind::Missing:
        mark.kind = MarkKind::Missing;
        mark.count = incident.last - incident.first + 1u;
        break;
    case Kind::Republished:
        mark.kind = MarkKind::Republished;
        break;
    case Kind::Item:
        mark.kind = kindOfState(incident.state);
        mark.item = static_cast<ItemNumber>(incident.key);
        countsOf(mark.item).figures.state = incident.state;
        countsOf(mark.item).figures.why = incident.status;
        addState(portion, mark);
        return;
    }
    portion.add(mark);
}

// What an item that is watched again has missed stands in its mark.
void PortionBuilder::addState(Portion& portion, Mark& mark)
{
    Counts& counts = countsOf(mark.item);
    if (mark.kind == MarkKind::ItemWatched) {
        if (mark.status == 0 && counts.waitsSince == 0)
            return; // other settings
        mark.from = std::exchange(counts.waitsSince, 0);
        mark.to = mark.from == 0 ? 0 : mark.time;
    } else {
        ++counts.figures.gaps;
        if (counts.waitsSince == 0)
            counts.waitsSince = mark.time;
    }
    portion.add(mark);
}

} // namespace recording
