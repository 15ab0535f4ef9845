// What a trend view reads, and what it says about that.
#include <plugins/history/qlumtrendviewdocument.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumlog.h>
#include <app/api/qlumsessionservices.h>
#include <app/api/qlumstatuswords.h>
#include <app/api/qlumtext.h>
#include <plugins/history/qlumhistoryplan.h>
#include <plugins/history/qlumhistoryreader.h>
#include <plugins/history/qlumhistorysettings.h>
#include <plugins/history/qlummodifiedmodel.h>
#include <plugins/history/qlumnonnumericmodel.h>
#include <plugins/history/qlumtrenditem.h>
#include <plugins/history/qlumtrenditemmodel.h>
#include <plugins/history/qlumtrendpanel.h>
#include <plugins/history/qlumtrendreading.h>
#include <uabase/values/uadatetime.h>
#include <uawidgets/plot/qlumplot.h>
#include <uawidgets/plot/qlumplotarea.h>
#include <uawidgets/plot/qlumplotcurve.h>
#include <uawidgets/qlummessagebar.h>
#include <uawidgets/qlumviewheading.h>
#include <uawidgets/table/qlumstatuslook.h>

#include <QComboBox>
#include <QDateTime>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTime>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr quint64 mostValues = 5'000'000; // of one item in memory

const QString restTopic = QStringLiteral("rest");
const QString readTopic = QStringLiteral("read");

QString numberText(quint64 number)
{
    return QLocale().toString(number);
}

QString timeText(const UaDateTime& time)
{
    return qlumHistoryTime(time, false);
}

} // namespace

// ---- what is read

bool QlumTrendViewDocument::isConnected(unsigned int serverId) const
{
    const std::shared_ptr<QlumSessionServices> session = m_services(serverId);
    return session && session->isConnected();
}

QlumHistoryPlan QlumTrendViewDocument::planFor(unsigned int serverId) const
{
    namespace S = QlumHistorySettings;
    QlumHistoryPlan plan;
    plan.serverId = serverId;
    plan.start = UaDateTime(qlumUaDateTime(m_rangeStart));
    plan.end = UaDateTime(qlumUaDateTime(m_rangeEnd));
    plan.valuesPerNode = static_cast<OpcUa_UInt32>(std::max(0, S::valuesPerNode.value(&m_application)));
    plan.returnBounds = S::returnBounds.value(&m_application);
    plan.readModified = S::readModified.value(&m_application);
    plan.maximumNextCalls = S::maximumNextCalls.value(&m_application);
    plan.maximumValues = mostValues;
    return plan;
}

// One for each server that has a session, with all its items.
std::map<unsigned int, QlumHistoryPlan> QlumTrendViewDocument::plans()
{
    std::map<unsigned int, QlumHistoryPlan> result;
    for (const QlumTrendItem& item : m_model->rows()) {
        if (item.isLost)
            continue;
        auto found = result.find(item.serverId);
        if (found == result.end() && isConnected(item.serverId))
            found = result.emplace(item.serverId, planFor(item.serverId)).first;
        if (found != result.end())
            found->second.targets.push_back({item.key, item.nodeId, {}, {}, 0});
    }
    return result;
}

void QlumTrendViewDocument::clearValues()
{
    for (auto& [key, trend] : m_trends) {
        trend.curve->samples().clear();
        trend.texts->clear();
        trend.count = trend.atLast = 0;
        trend.last = UaDateTime();
        trend.hasMore = trend.isReading = false;
    }
    for (auto& [key, trend] : m_trends)
        if (trend.processed != nullptr)
            m_plot->removeCurve(std::exchange(trend.processed, nullptr));
    m_modified->clear();
    m_extraFaults.clear();
    m_textItem->clear();
    showTexts();
    m_sample->clear();
    m_messages->dismiss(restTopic);
    m_messages->dismiss(readTopic);
    m_plot->area()->refresh();
}

void QlumTrendViewDocument::sltUpdateTrendData(bool cyclic, const QDateTime& start, const QDateTime& end)
{
    if (cyclic && m_reading->isReading()) {
        ++m_skipped;
        return showProgress();
    }
    m_reading->cancel();
    clearValues();
    m_rangeStart = start;
    m_rangeEnd = end;
    m_wasRead = true;
    const std::map<unsigned int, QlumHistoryPlan> all = plans();
    for (const QlumTrendItem& item : m_model->rows())
        m_model->setHistory(item.key,
                            item.isLost ? tr("its namespace is not on the server any more")
                            : all.find(item.serverId) == all.end() ? tr("no connection to its server")
                                                                   : tr("reading..."),
                            QlumStatusLevel::Inactive);
    for (const auto& [serverId, plan] : all) {
        QlumLog(qlumHistoryLogSource(), serverId).info(tr("Found session for ServerId %1").arg(serverId));
        for (const QlumHistoryTarget& target : plan.targets)
            m_trends.at(target.key).isReading = true;
        m_reading->read(plan);
    }
    readExtras(all);
    if (!cyclic || !m_hasOwnView)
        sltResetView();
    if (!cyclic && all.empty() && m_model->rowCount() > 0)
        m_messages->tell(
            {QlumMessage::Warning,
             readTopic,
             tr("Nothing was read."),
             tr("None of the servers of these variables is connected. Connect one, and press Update."),
             {},
             {}});
    begin();
}

void QlumTrendViewDocument::begin()
{
    m_elapsed.start();
    if (m_reading->isReading())
        m_progressTimer.start();
    showProgress();
    showState();
}

void QlumTrendViewDocument::sltResetView()
{
    m_hasOwnView = false;
    if (!m_wasRead)
        return;
    const auto [from, to] = std::minmax(m_rangeStart, m_rangeEnd);
    m_plot->area()->setView(
        {static_cast<double>(from.toMSecsSinceEpoch()), static_cast<double>(to.toMSecsSinceEpoch()), {}});
}

// ---- what comes

void QlumTrendViewDocument::takeBatch(QlumHistoryBatch& batch)
{
    if (takeExtraBatch(batch))
        return;
    const auto found = m_trends.find(batch.key);
    if (found == m_trends.end())
        return; // removed meanwhile
    Trend& trend = found->second;
    trend.count += batch.count;
    m_plot->append(trend.curve, batch.samples);
    if (!batch.modified.empty())
        m_modified->add(batch.key, m_model->find(batch.key)->name, std::move(batch.modified));
    if (!batch.texts.empty()) {
        trend.texts->add(std::move(batch.texts));
        if (m_textItem->findData(batch.key) < 0)
            m_textItem->addItem(m_model->find(batch.key)->name, batch.key);
        showTexts();
    }
    m_heading->touch();
}

void QlumTrendViewDocument::planEnded(const QlumHistoryPlan& plan,
                                      const std::vector<QlumHistoryOutcome>& outcomes)
{
    for (const QlumHistoryOutcome& outcome : outcomes)
        takeOutcome(outcome);
    if (!outcomes.empty())
        return;
    for (const QlumHistoryTarget& target : plan.targets) {
        const auto found = m_trends.find(target.key);
        if (found == m_trends.end())
            continue;
        found->second.isReading = false;
        m_model->setHistory(target.key, tr("the reading failed; the log says more"), QlumStatusLevel::Bad);
    }
}

void QlumTrendViewDocument::takeOutcome(const QlumHistoryOutcome& outcome)
{
    if (outcome.key >= firstExtraKey && outcome.status.isBad()) {
        const QString words = qlumStatusWords(qlumStatusText(outcome.status.statusCode()));
        if (!m_extraFaults.contains(words))
            m_extraFaults.append(words);
    }
    const auto found = m_trends.find(outcome.key);
    if (found == m_trends.end())
        return;
    Trend& trend = found->second;
    trend.isReading = false;
    trend.hasMore = outcome.hasMore && !outcome.last.isNull();
    if (!outcome.last.isNull()) {
        trend.last = outcome.last;
        trend.atLast = outcome.atLast;
    }
    const QString words = qlumStatusWords(qlumStatusText(outcome.status.statusCode()));
    const QString count = numberText(trend.count);
    if (outcome.status.isBad() && trend.count > 0)
        m_model->setHistory(outcome.key,
                            tr("%1 values up to %2, then: %3").arg(count, timeText(trend.last), words),
                            QlumStatusLevel::Bad);
    else if (outcome.status.isBad())
        m_model->setHistory(outcome.key, words, QlumStatusLevel::Bad);
    else if (trend.hasMore)
        m_model->setHistory(outcome.key,
                            tr("%1 values up to %2; there are more").arg(count, timeText(trend.last)),
                            QlumStatusLevel::Uncertain);
    else if (trend.count == 0)
        m_model->setHistory(outcome.key, tr("no values in this time range"), QlumStatusLevel::Inactive);
    else
        m_model->setHistory(outcome.key, tr("%n values", nullptr, static_cast<int>(trend.count)),
                            QlumStatusLevel::Good);
}

void QlumTrendViewDocument::allEnded()
{
    m_progressTimer.stop();
    for (auto& [key, trend] : m_trends)
        if (std::exchange(trend.isReading, false)) // given up before it came to an end
            m_model->setHistory(key, tr("%1 values, then the reading was ended").arg(numberText(trend.count)),
                                QlumStatusLevel::Uncertain);
    for (auto& [key, trend] : m_trends)
        appendLive(trend);
    tellRest();
    tellExtraFaults();
    listCurves();
    showProgress();
    showState();
}

// Which curves stop before the end, and how to go on.
void QlumTrendViewDocument::tellRest()
{
    QStringList short_;
    for (const QlumTrendItem& item : m_model->rows())
        if (const Trend& trend = m_trends.at(item.key); trend.hasMore)
            short_.append(tr("%1 up to %2").arg(item.name, timeText(trend.last)));
    if (short_.isEmpty() || m_cyclicTimer.isActive())
        return m_messages->dismiss(restTopic);
    constexpr int mostNamed = 3;
    const QString names = QStringList(short_.mid(0, mostNamed)).join(QStringLiteral(", ")) +
                          (short_.size() > mostNamed ? QStringLiteral(", ...") : QString());
    m_messages->tell({QlumMessage::Warning, restTopic,
                      tr("%n curve(s) could not be read to the end.", nullptr, short_.size()), names,
                      tr("Read &On"), [this] { sltReadOn(); }});
}

void QlumTrendViewDocument::sltReadOn()
{
    for (const QlumTrendItem& item : m_model->rows()) {
        Trend& trend = m_trends.at(item.key);
        if (!trend.hasMore || item.isLost || !isConnected(item.serverId))
            continue;
        QlumHistoryPlan plan = planFor(item.serverId);
        plan.start = trend.last;
        plan.targets.push_back({item.key, item.nodeId, {}, trend.last, trend.atLast});
        trend.hasMore = false;
        trend.isReading = true;
        m_model->setHistory(item.key, tr("reading on..."), QlumStatusLevel::Inactive);
        m_reading->read(plan);
    }
    begin();
}

void QlumTrendViewDocument::sltCancel()
{
    m_reading->cancel();
}

// ---- the first value

void QlumTrendViewDocument::sltReadStartTime()
{
    std::vector<QlumHistoryPlan> all;
    for (auto& [serverId, plan] : plans()) {
        plan.start = UaDateTime::fromString("2000-01-01T00:00:00Z");
        plan.end = UaDateTime::now();
        plan.valuesPerNode = 1;
        all.push_back(std::move(plan));
    }
    m_messages->dismiss(readTopic);
    m_reading->findStartTime(std::move(all));
}

void QlumTrendViewDocument::takeStartTime(const UaDateTime& time)
{
    const QlumLog log(qlumHistoryLogSource());
    if (time.isNull()) {
        log.info(tr("no start time was found"));
        m_messages->tell({QlumMessage::Note,
                          readTopic,
                          tr("No start time was found."),
                          m_model->rowCount() == 0
                              ? tr("There are no variables in this view.")
                              : tr("No value was read of any of the variables; the log says why."),
                          {},
                          {}});
        return;
    }
    log.info(tr("Found start time: %1").arg(toQString(time.toString())));
    m_panel->setStartTime(qlumDateTime(time.value()));
}

// ---- again and again

void QlumTrendViewDocument::setRunning(bool isRunning)
{
    if (isRunning)
        m_cyclicTimer.start(std::max(1000, QTime(0, 0).msecsTo(m_panel->updateInterval())));
    else
        m_cyclicTimer.stop();
    m_panel->setRunning(isRunning);
}

void QlumTrendViewDocument::sltStartStop()
{
    setRunning(!m_cyclicTimer.isActive());
    markModified();
    m_skipped = 0;
    m_hasOwnView = false;
    if (m_cyclicTimer.isActive())
        sltCyclicUpdate();
    else
        tellRest();
}

void QlumTrendViewDocument::sltCyclicUpdate()
{
    const QDateTime now = QDateTime::currentDateTime();
    sltUpdateTrendData(true, now.addMSecs(-QTime(0, 0).msecsTo(m_panel->timespan())), now);
}

// ---- what is said

void QlumTrendViewDocument::showProgress()
{
    quint64 count = 0;
    for (const auto& [key, trend] : m_trends)
        count += trend.count;
    const QString seconds = QLocale().toString(static_cast<double>(m_elapsed.elapsed()) / 1000, 'f', 1);
    const QString skipped = m_skipped > 0 ? tr("; %n update(s) skipped", nullptr, m_skipped) : QString();
    m_progress->setText((m_reading->isReading() ? tr("Reading: %1 values, %2 s") : tr("%1 values in %2 s"))
                            .arg(numberText(count), seconds) +
                        skipped);
    m_progress->setToolTip(m_progress->text());
    m_cancel->setVisible(m_reading->isReading());
    m_progressLine->setVisible(m_wasRead);
}

// Once for many items, and not while rows come and go.
void QlumTrendViewDocument::showStateSoon()
{
    m_stateTimer.start(0);
}

void QlumTrendViewDocument::showState()
{
    QSet<unsigned int> servers;
    for (const QlumTrendItem& item : m_model->rows())
        servers.insert(item.serverId);
    if (servers.isEmpty()) {
        m_heading->clear();
    } else {
        QStringList names;
        auto worst = QlumConnectionStatus::Connected;
        for (const unsigned int server : servers) {
            names.append(m_application.serverName(server));
            const auto status =
                m_status.value(server, isConnected(server) ? QlumConnectionStatus::Connected
                                                           : QlumConnectionStatus::Disconnected);
            if (status != QlumConnectionStatus::Connected)
                worst = status;
        }
        names.sort();
        m_heading->setServer(names.join(QStringLiteral(", ")));
        m_heading->setStatus(worst);
        m_heading->setNode({});
        m_heading->setActivity(m_reading->isReading() ? tr("reading...") : QString());
    }
    if (m_model->rowCount() == 0)
        m_plot->setEmptyText(
            tr("No variables yet"),
            tr("Drop nodes here from the Address Space window. Only nodes of type Variable that "
               "are History Readable are accepted."));
    else if (m_reading->isReading())
        m_plot->setEmptyText(tr("Reading..."), tr("Curves appear here as soon as values arrive."));
    else if (!m_wasRead)
        m_plot->setEmptyText(tr("Nothing was read yet"), tr("Choose a time range, and press Update."));
    else
        m_plot->setEmptyText(tr("No values to draw"),
                             tr("No number was read between %1 and %2. The list of variables says more.")
                                 .arg(qlumShowDateTime(m_rangeStart), qlumShowDateTime(m_rangeEnd)));
}
