// What a data access view says of its values and servers while they come.
#include <plugins/dataaccess/qlumdaview.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumdisplaytext.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumtext.h>
#include <monitoring/watch.h>
#include <opcua/opcua_attributes.h>
#include <opcua/opcua_identifiers.h>
#include <plugins/dataaccess/qlumdafilter.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdaverdict.h>
#include <plugins/dataaccess/qlumdawatch.h>
#include <uabase/values/uadatavalue.h>
#include <uabase/values/uastatus.h>
#include <uawidgets/qlumelidedlabel.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QElapsedTimer>
#include <QHideEvent>
#include <QLabel>
#include <QLocale>
#include <QPalette>
#include <QPushButton>
#include <QShowEvent>
#include <QString>
#include <QStringList>
#include <QTableView>

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

// ---- values

// Values are painted where they can be seen, all of them at once, and nothing beside them.
void QlumDaView::paintValues(const std::vector<quint32>& keys)
{
    m_heading->touch();
    if (!isVisible())
        return;
    if (keys.empty()) {
        m_table->viewport()->update();
        return;
    }
    const int first = std::max(0, m_table->rowAt(0));
    const int below = m_table->rowAt(m_table->viewport()->height() - 1);
    const int last = below < 0 ? m_filter->rowCount() - 1 : below;
    std::vector<std::pair<quint32, int>> seen;
    for (int row = first; row <= last; ++row)
        seen.emplace_back(m_filter->index(row, 0).data(QlumDaModel::KeyRole).toUInt(), row);
    if (seen.empty())
        return;
    std::sort(seen.begin(), seen.end());
    const quint32 least = seen.front().first, most = seen.back().first;
    int top = last + 1, bottom = -1;
    for (const quint32 key : keys) {
        if (key < least || key > most)
            continue; // of most rows, and there may be very many
        const auto place = std::lower_bound(seen.begin(), seen.end(), std::pair(key, 0));
        if (place == seen.end() || place->first != key)
            continue;
        top = std::min(top, place->second);
        bottom = std::max(bottom, place->second);
    }
    if (bottom >= 0)
        paintRows(top, bottom);
}

// What comes with values; the other columns stay as they are.
void QlumDaView::paintRows(int top, int bottom)
{
    using Model = QlumDaModel;
    const int y = m_table->rowViewportPosition(top);
    const int end = m_table->rowViewportPosition(bottom) + m_table->rowHeight(bottom);
    for (const int column :
         {Model::Value, Model::SourceTime, Model::ServerTime, Model::Received, Model::Status, Model::Verdict,
          Model::Changes, Model::Minimum, Model::Maximum, Model::SamplingRevised, Model::Queue, Model::Age})
        if (!m_table->isColumnHidden(column))
            m_table->viewport()->update(m_table->columnViewportPosition(column), y,
                                        m_table->columnWidth(column), end - y);
}

void QlumDaView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    m_second.start();
}

void QlumDaView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    m_second.stop();
}

// Ages, verdicts and rates change while nothing comes.
void QlumDaView::showEachSecond()
{
    constexpr int roundTripSeconds = 5, orderSeconds = 3, mostSortedRows = 5000;
    if (m_model->rowCount() == 0)
        return;
    ++m_seconds;
    m_verdicts.clear();
    m_table->viewport()->update();
    showTraffic();
    showVerdict();
    if (m_seconds % roundTripSeconds == 1)
        measureRoundTrip();
    const bool isLive =
        m_filter->sortColumn() == QlumDaModel::Value || m_filter->sortColumn() >= QlumDaModel::SourceTime;
    if (m_seconds % orderSeconds == 0 && m_model->rowCount() <= mostSortedRows &&
        (isLive || m_filter->shown() == QlumDaFilter::Troubled))
        m_filter->lookAgain();
}

void QlumDaView::showTraffic()
{
    const QlumDaWatch::Traffic traffic = m_watch->takeTraffic();
    const QlumDaModel::Summary summary = m_model->summary();
    quint64 notifications = 0;
    for (const unsigned int id : summary.servers)
        for (const monitoring::SubscriptionInfo& one : m_watch->subscriptions(id))
            notifications += one.notifications;
    const quint64 came =
        notifications - std::min(notifications, std::exchange(m_notifications, notifications));
    constexpr double second = 1000; // ms
    const double seconds = m_sinceTraffic.isValid()
                               ? std::max(1.0, static_cast<double>(m_sinceTraffic.elapsed()) / second)
                               : 1.0;
    m_sinceTraffic.start();
    const QLocale locale;
    const auto rate = [&](quint64 count) {
        return locale.toString(std::llround(static_cast<double>(count) / seconds));
    };
    QStringList parts{tr("%n row(s)", nullptr, m_model->rowCount()),
                      tr("%1 values/s in %2 notifications/s").arg(rate(traffic.values), rate(came))};
    if (traffic.merged > 0)
        parts.append(tr("%1 of them replaced before they were shown").arg(rate(traffic.merged)));
    parts.append(tr("queue: %1 rows, %2 calls")
                     .arg(locale.toString(summary.waiting), locale.toString(m_pool->pending())));
    for (const unsigned int id : summary.servers)
        if (m_roundTrips.contains(id))
            parts.append(tr("round trip to %1: %2 ms")
                             .arg(serverName(id), locale.toString(m_roundTrips.value(id), 'f', 1)));
    if (summary.oldest != 0)
        parts.append(tr("oldest value: %1").arg(qlumDaSpan(m_model->now() - summary.oldest)));
    m_traffic->setText(parts.join(QStringLiteral("  |  ")));
    m_traffic->setToolTip(qlumPlainToolTip(parts.join(QLatin1Char('\n')))); // it may be longer than the line
}

// Of a call that costs the server next to nothing.
void QlumDaView::measureRoundTrip()
{
    for (const unsigned int id : m_model->serverIds()) {
        const std::shared_ptr<QlumSessionServices> services = m_services(id);
        if (!services || !services->isConnected() || m_measuring.contains(id))
            continue;
        m_measuring.insert(id);
        const auto work = [this, id, services](QlumJob& job) {
            UaReadValueIds nodes(1);
            static_cast<void>(UaNodeId(OpcUaId_Server_ServerStatus_State).copyTo(&nodes[0].NodeId));
            nodes[0].AttributeId = OpcUa_Attributes_Value;
            UaClientSdk::ServiceSettings settings = job.serviceSettings();
            UaDataValues values;
            QElapsedTimer timer;
            timer.start();
            const UaStatus status =
                services->read(settings, 0, OpcUa_TimestampsToReturn_Neither, nodes, values);
            constexpr double million = 1e6;
            if (status.isGood())
                job.post([this, id, taken = static_cast<double>(timer.nsecsElapsed()) / million] {
                    m_roundTrips.insert(id, taken);
                });
        };
        m_pool->add({QString(), id}, work, [this, id](QlumWorkEnd) { m_measuring.remove(id); });
    }
}

// ---- verdicts

// A row is painted up to twenty times a second; what is known of it changes more slowly.
QlumDaVerdict QlumDaView::judge(const QlumDataItem& item) const
{
    auto known = m_verdicts.find(item.key);
    if (known == m_verdicts.end())
        known = m_verdicts.insert(item.key, judgedNow(item));
    return *known;
}

QlumDaVerdict QlumDaView::judgedNow(const QlumDataItem& item) const
{
    QlumDaEvidence evidence;
    evidence.state = item.state;
    evidence.isConnected = isConnected(item.serverId);
    evidence.asked = m_model->settingsOf(item);
    evidence.revisedSampling = item.revisedSampling;
    evidence.revisedQueue = item.revisedQueue;
    evidence.now = m_model->now();
    evidence.lastValue = item.received;
    evidence.delay = m_model->delay(item);
    if (item.state == QlumDataState::Watched) {
        if (const std::optional<monitoring::ItemInfo> info = m_watch->info(item)) {
            evidence.count = info->count;
            evidence.overflows = info->overflows;
            evidence.gaps = info->gaps;
        }
        if (const std::optional<monitoring::SubscriptionInfo> subscription = m_watch->subscription(item)) {
            evidence.revisedPublishing = subscription->revised.publishingInterval;
            evidence.keepAliveCount = subscription->keepAliveCount;
            evidence.subscriptionHeard = subscription->lastHeard.value();
        }
    }
    return qlumDaJudge(evidence);
}

void QlumDaView::showVerdict()
{
    const QlumDataItem* item = m_model->find(currentKey());
    if (item == nullptr) {
        m_verdictWord->setText(tr("No row is selected"));
        m_verdictReason->setText(tr("Select a row to see whether all of its values have come, and why not."));
        m_remedy->hide();
        return;
    }
    const QlumDaVerdict verdict = m_model->verdict(*item);
    m_verdictWord->setText(item->displayName.isEmpty() ? verdict.word
                                                       : tr("%1: %2").arg(item->displayName, verdict.word));
    QPalette palette;
    palette.setColor(QPalette::WindowText, qlumStatusColor(verdict.level, palette));
    m_verdictWord->setPalette(palette);
    m_verdictReason->setText(verdict.reason);
    m_remedy->setVisible(verdict.remedy != nullptr);
    if (!verdict.remedy)
        return;
    const QlumDataSettings& now = m_model->settingsOf(*item);
    m_remedy->setText(verdict.remedy->queueSize != now.queueSize
                          ? tr("Set a &Queue of %1").arg(verdict.remedy->queueSize)
                          : tr("&Publish Every %1").arg(qlumDaInterval(verdict.remedy->publishingInterval)));
}

void QlumDaView::takeRemedy()
{
    std::vector<quint32> keys = selectedKeys();
    if (keys.empty())
        keys.push_back(currentKey());
    for (const quint32 key : keys) {
        const QlumDataItem* item = m_model->find(key);
        if (item == nullptr)
            continue;
        if (const QlumDaVerdict verdict = m_model->verdict(*item); verdict.remedy)
            setSettings({key}, *verdict.remedy);
    }
    showVerdict();
}

// ---- servers

QString QlumDaView::serverName(unsigned int serverId) const
{
    return m_application.serverName(serverId);
}

bool QlumDaView::isConnected(unsigned int serverId) const
{
    return m_model->server(serverId).status == QlumConnectionStatus::Connected;
}

// Of several servers the worst state counts.
void QlumDaView::showHeading()
{
    const std::vector<unsigned int> ids = m_model->serverIds();
    if (ids.empty()) {
        m_heading->clear();
        return;
    }
    QStringList names;
    QlumConnectionStatus worst = QlumConnectionStatus::Connected;
    for (const unsigned int id : ids) {
        names.append(serverName(id));
        if (const QlumConnectionStatus status = m_model->server(id).status;
            status != QlumConnectionStatus::Connected)
            worst = status;
    }
    m_heading->setServer(names.join(QStringLiteral(", ")));
    m_heading->setNode(tr("%n row(s)", nullptr, m_model->rowCount()));
    m_heading->setStatus(worst);
}
