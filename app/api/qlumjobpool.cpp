#include <app/api/qlumjobpool.h>

#include <app/api/qlumlog.h>
#include <app/api/qlumrunningwork.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace {
struct Entry
{
    QlumJobPool::Ticket ticket = 0;
    std::unique_ptr<QlumJob> job;
    std::shared_ptr<QlumJobProgress> progress;
    QlumJobPool::Ended ended;
};
using EntryPtr = std::shared_ptr<Entry>;

class FunctionJob final : public QlumJob
{
public:
    explicit FunctionJob(QlumJobPool::Function function) : m_function(std::move(function)) {}
    void run() override { m_function(*this); }

private:
    const QlumJobPool::Function m_function;
};

void logFailure(const QlumJobProgress& progress, const char* why)
{
    const QString text = progress.text();
    QlumLog(QCoreApplication::translate("QlumJobPool", "JobPool"), progress.serverId)
        .error(QCoreApplication::translate("QlumJobPool", "%1 failed: %2")
                   .arg(text.isEmpty() ? QCoreApplication::translate("QlumJobPool", "Background work") : text,
                        QString::fromLocal8Bit(why)));
}

QlumWorkEnd runGuarded(QlumJob& job, QlumJobProgress& progress)
{
    if (progress.cancelled)
        return QlumWorkEnd::Cancelled;
    progress.begun = true;
    try {
        job.run();
        return progress.cancelled ? QlumWorkEnd::Cancelled : QlumWorkEnd::Done;
    } catch (const std::exception& exception) {
        logFailure(progress, exception.what());
    } catch (...) {
        logFailure(progress, "unknown exception");
    }
    return QlumWorkEnd::Failed;
}
} // namespace

class QlumJobPoolPrivate
{
public:
    void runNext();
    void finish(const EntryPtr& entry, QlumWorkEnd end);
    // Drops what waits and matches, and tells what runs and matches to end.
    template <typename Matches>
    void giveUp(Matches matches);
    template <typename Function>
    void onOwnThread(Function function)
    {
        QMetaObject::invokeMethod(&receiver, std::move(function), Qt::QueuedConnection);
    }

    QObject receiver; // of posts; what is on its way ends with it
    std::map<QlumJobPool::Ticket, unsigned int>
        current; // and its server; not given up, its end not told yet; own thread only
    QlumJobPool::Ticket lastTicket = 0;
    mutable std::mutex mutex;
    std::condition_variable ended;
    std::deque<EntryPtr> waiting;
    std::vector<EntryPtr> running;
    QThreadPool threads; // last: joined first
};

void QlumJobPoolPrivate::runNext()
{
    EntryPtr entry;
    {
        const std::lock_guard lock(mutex);
        if (waiting.empty())
            return;
        entry = std::move(waiting.front());
        waiting.pop_front();
        running.push_back(entry);
    }
    const QlumWorkEnd end = runGuarded(*entry->job, *entry->progress);
    entry->progress->setInterrupt(nullptr);
    entry->job.reset(); // with all that it holds, before anybody hears that it has ended
    finish(entry, end);
}

void QlumJobPoolPrivate::finish(const EntryPtr& entry, QlumWorkEnd end)
{
    entry->progress->ended = true;
    onOwnThread([this, entry, end] {
        if (current.erase(entry->ticket) > 0 && entry->ended)
            entry->ended(end);
    });
    const std::lock_guard lock(mutex);
    running.erase(std::remove(running.begin(), running.end(), entry), running.end());
    ended.notify_all();
}

template <typename Matches>
void QlumJobPoolPrivate::giveUp(Matches matches)
{
    std::vector<EntryPtr> dropped; // destroyed without the lock: they may hold anything
    std::vector<EntryPtr> told;
    std::unique_lock lock(mutex);
    const auto first = std::stable_partition(waiting.begin(), waiting.end(),
                                             [&](const EntryPtr& entry) { return !matches(*entry); });
    dropped.assign(first, waiting.end());
    waiting.erase(first, waiting.end());
    for (const EntryPtr& entry : dropped) {
        current.erase(entry->ticket);
        entry->progress->ended = true;
    }
    for (const EntryPtr& entry : running)
        if (matches(*entry)) {
            current.erase(entry->ticket);
            told.push_back(entry);
        }
    lock.unlock();
    for (const EntryPtr& entry : told)
        entry->progress->cancel();
}

namespace {
class Turn : public QRunnable
{
public:
    explicit Turn(QlumJobPoolPrivate* pool) : m_pool(pool) {}
    void run() override { m_pool->runNext(); }

private:
    QlumJobPoolPrivate* m_pool;
};
} // namespace

QlumJobPool::QlumJobPool(int threads) : d(std::make_unique<QlumJobPoolPrivate>())
{
    d->threads.setMaxThreadCount(std::max(1, threads));
}

QlumJobPool::~QlumJobPool()
{
    cancelAll();
    d->threads.waitForDone();
}

QlumJobPool::Ticket QlumJobPool::add(const QlumWork& work, Function function, Ended ended)
{
    return add(work, std::make_unique<FunctionJob>(std::move(function)), std::move(ended));
}

QlumJobPool::Ticket QlumJobPool::add(const QlumWork& work, std::unique_ptr<QlumJob> job, Ended ended)
{
    const Ticket ticket = ++d->lastTicket;
    const std::shared_ptr<QlumJobProgress> progress = job->m_progress;
    progress->serverId = work.serverId;
    progress->setText(work.text);
    job->m_poster = [pool = d.get(), ticket](std::function<void()> function) {
        pool->onOwnThread([pool, ticket, function = std::move(function)] {
            if (pool->current.count(ticket) > 0)
                function();
        });
    };
    d->current.emplace(ticket, work.serverId);
    if (!work.text.isEmpty())
        QlumRunningWork::instance().insert(progress);
    {
        const std::lock_guard lock(d->mutex);
        d->waiting.push_back(
            std::make_shared<Entry>(Entry{ticket, std::move(job), progress, std::move(ended)}));
    }
    d->threads.start(new Turn(d.get()));
    return ticket;
}

void QlumJobPool::giveUp(Ticket ticket)
{
    d->current.erase(ticket); // also when it has ended and its posts are on their way
    d->giveUp([ticket](const Entry& entry) { return entry.ticket == ticket; });
}

void QlumJobPool::cancelAll()
{
    d->current.clear();
    d->giveUp([](const Entry&) { return true; });
}

void QlumJobPool::endServer(unsigned int serverId)
{
    std::erase_if(
        d->current, [serverId](const auto& job) { return job.second == serverId; }); // as in giveUp
    const auto isOfServer = [serverId](const Entry& entry) { return entry.progress->serverId == serverId; };
    d->giveUp(isOfServer);
    std::unique_lock lock(d->mutex);
    d->ended.wait(lock, [&] {
        return std::none_of(d->running.begin(), d->running.end(),
                            [&](const EntryPtr& entry) { return isOfServer(*entry); });
    });
}

bool QlumJobPool::waitForDone(int milliseconds)
{
    return d->threads.waitForDone(milliseconds);
}

int QlumJobPool::pending() const
{
    const std::lock_guard lock(d->mutex);
    return static_cast<int>(d->waiting.size() + d->running.size());
}
