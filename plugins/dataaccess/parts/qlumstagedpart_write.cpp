// How staged values are sent, and how what came of them reaches the list.
#include <plugins/dataaccess/parts/qlumstagedpart.h>

#include <app/api/qlumapplicationinterface.h>
#include <app/api/qlumjob.h>
#include <app/api/qlumjobpool.h>
#include <plugins/dataaccess/parts/qlumstagedmodel.h>
#include <plugins/dataaccess/parts/qlumstagedpage.h>
#include <plugins/dataaccess/parts/qlumstagedwrite.h>
#include <plugins/dataaccess/qlumdamodel.h>
#include <plugins/dataaccess/qlumdapart.h>
#include <uawidgets/qlummessagebar.h>

#include <QString>

#include <atomic>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

namespace {
constexpr std::size_t outcomesPerTurn = 1000; // of the GUI thread
constexpr int outcomeMilliseconds = 50;
} // namespace

// Outcomes that the job has told of, for the GUI thread to take.
struct QlumStagedPart::Outcomes
{
    std::mutex mutex;
    std::deque<QlumStagedWrite> told;
};

// A namespace may have moved since the value was staged.
std::vector<QlumStagedWrite> QlumStagedPart::placed(std::vector<QlumStagedWrite> writes) const
{
    for (QlumStagedWrite& write : writes) {
        const QlumStagedRow* row = m_page->model().findKey(write.key);
        const QlumDataItem* item = row ? m_host.model().find(row->item) : nullptr;
        if (item != nullptr)
            write.nodeId = item->nodeId;
    }
    return writes;
}

void QlumStagedPart::apply(bool withDoubts)
{
    if (!m_describing.empty()) {
        m_wanted = withDoubts; // values that are still texts are none yet
        return;
    }
    m_withDoubts = withDoubts;
    run(placed(m_page->model().sendable(withDoubts)), false);
}

void QlumStagedPart::revert()
{
    run(placed(m_page->model().revertible()), true);
}

void QlumStagedPart::run(std::vector<QlumStagedWrite> writes, bool isRevert)
{
    if (!m_underWay.empty())
        return;
    m_isRevert = isRevert;
    if (writes.empty())
        return finished();
    std::set<unsigned int> servers;
    for (const QlumStagedWrite& write : writes) {
        m_underWay.push_back(write.key);
        servers.insert(write.serverId);
    }
    if (!isRevert)
        m_page->model().forgetOutcomes(m_underWay);
    m_hasJobEnded = false;
    m_outcomes = std::make_shared<Outcomes>();
    m_stopped = std::make_shared<std::atomic<bool>>(false);
    m_page->setRunning(true);
    QlumApplyOptions options = m_page->options();
    options.stopped = m_stopped;
    const QlumWork work{isRevert ? tr("Putting old values back") : tr("Writing staged values"),
                        servers.size() == 1 ? *servers.begin() : qlumNoServer};
    const auto function = [this, writes = std::move(writes), services = m_host.services(), options, isRevert,
                           outcomes = m_outcomes](QlumJob& job) {
        const QlumStagedDone done = [this, &job, outcomes](const QlumStagedWrite& write) {
            bool isFirst = false;
            {
                const std::lock_guard lock(outcomes->mutex);
                isFirst = outcomes->told.empty();
                outcomes->told.push_back(write);
            }
            if (isFirst)
                job.post([this] { m_outcomeTimer.start(outcomeMilliseconds); });
        };
        if (isRevert)
            qlumRevertStaged(job, services, writes, options, done);
        else
            qlumApplyStaged(job, services, writes, options, done);
    };
    m_host.pool().add(work, function, [this, outcomes = m_outcomes](QlumWorkEnd) {
        if (outcomes != m_outcomes || m_underWay.empty())
            return; // its server went, and all was said
        m_hasJobEnded = true;
        takeOutcomes();
    });
}

// Whether there are more.
bool QlumStagedPart::takeSomeOutcomes()
{
    std::vector<QlumStagedWrite> some;
    bool areMore = false;
    if (m_outcomes) {
        const std::lock_guard lock(m_outcomes->mutex);
        std::deque<QlumStagedWrite>& told = m_outcomes->told;
        for (; !told.empty() && some.size() < outcomesPerTurn; told.pop_front())
            some.push_back(std::move(told.front()));
        areMore = !told.empty();
    }
    m_page->model().setOutcomes(some);
    return areMore;
}

// What is left out after a failure comes all at once.
void QlumStagedPart::takeOutcomes()
{
    if (takeSomeOutcomes())
        m_outcomeTimer.start(0);
    else if (m_hasJobEnded && !m_underWay.empty())
        finished();
}

void QlumStagedPart::finished()
{
    const bool isRevert = m_isRevert;
    int good = 0;
    QString why;
    for (const quint64 key : m_underWay) {
        const QlumStagedRow* row = m_page->model().findKey(key);
        const QlumStagedState state = row ? row->write.state : QlumStagedState::LeftOut;
        if (state == (isRevert ? QlumStagedState::Reverted : QlumStagedState::Written))
            ++good;
        else if (row && why.isEmpty())
            why = QStringLiteral("%1: %2").arg(row->write.name.isEmpty() ? row->place : row->write.name,
                                               qlumStagedText(row->write));
    }
    const int all = static_cast<int>(m_underWay.size());
    m_underWay.clear();
    m_page->setRunning(false);
    const int doubtful = isRevert || m_withDoubts ? 0 : m_page->model().doubtful();
    const int faulty = isRevert ? 0 : m_page->model().faulty();
    QlumMessage message;
    message.topic = stagedTopic;
    message.severity = good < all ? QlumMessage::Error : QlumMessage::Note;
    message.what = isRevert ? tr("%1 of %2 old values are there again.").arg(good).arg(all)
                            : tr("%1 of %2 values were written.").arg(good).arg(all);
    message.why = why;
    if (faulty > 0 || doubtful > 0) {
        message.severity = good < all ? QlumMessage::Error : QlumMessage::Warning;
        message.why += (why.isEmpty() ? QString() : QStringLiteral(". ")) +
                       tr("%n staged value(s) were held back by the checks.", nullptr, faulty + doubtful);
    }
    if (doubtful > 0) {
        message.button = tr("Send Them Too");
        message.help = [this] { apply(true); };
    } else {
        message.button = tr("Show");
        message.help = [this] { m_host.showPage(m_page); };
    }
    m_host.tell(message);
}
