#include <app/api/qlumjobpool.h>

#include <QRunnable>
#include <QThreadPool>

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

class QlumJobPoolPrivate
{
public:
    void runNext();

    std::mutex mutex;
    std::deque<std::unique_ptr<QlumJob>> waiting;
    std::vector<QlumJob*> running;
    QThreadPool threads;
};

void QlumJobPoolPrivate::runNext()
{
    std::unique_ptr<QlumJob> job;
    {
        const std::lock_guard lock(mutex);
        if (waiting.empty())
            return;
        job = std::move(waiting.front());
        waiting.pop_front();
        running.push_back(job.get());
    }
    job->run();
    const std::lock_guard lock(mutex);
    running.erase(std::remove(running.begin(), running.end(), job.get()), running.end());
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

void QlumJobPool::addJob(std::unique_ptr<QlumJob> job)
{
    {
        const std::lock_guard lock(d->mutex);
        d->waiting.push_back(std::move(job));
    }
    d->threads.start(new Turn(d.get()));
}

void QlumJobPool::cancelAll()
{
    std::deque<std::unique_ptr<QlumJob>> dropped;
    const std::lock_guard lock(d->mutex);
    dropped.swap(d->waiting);
    for (QlumJob* job : d->running)
        job->cancel();
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
