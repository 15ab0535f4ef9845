#include <app/api/qlumjob.h>

#include <app/api/qlumcalltimeout.h>

#include <chrono>

namespace {
quint64 nextNumber()
{
    static std::atomic<quint64> last{0};
    return ++last;
}
} // namespace

QlumJobProgress::QlumJobProgress() : number(nextNumber()) {}

QString QlumJobProgress::text() const
{
    const std::lock_guard lock(m_mutex);
    return m_text;
}

void QlumJobProgress::setText(const QString& text)
{
    const std::lock_guard lock(m_mutex);
    m_text = text;
}

void QlumJobProgress::cancel()
{
    std::function<void()> interrupt;
    {
        const std::lock_guard lock(m_mutex);
        cancelled = true;
        interrupt.swap(m_interrupt);
    }
    if (interrupt)
        interrupt();
}

void QlumJobProgress::setInterrupt(std::function<void()> interrupt)
{
    {
        const std::lock_guard lock(m_mutex);
        if (!cancelled) {
            interrupt.swap(m_interrupt); // what was there ends without the lock
            return;
        }
    }
    if (interrupt)
        interrupt();
}

QlumJob::QlumJob() : m_progress(std::make_shared<QlumJobProgress>()) {}

QlumJob::~QlumJob() = default;

void QlumJob::setProgress(qint64 done, qint64 total)
{
    m_progress->done.store(done);
    m_progress->total.store(total);
}

UaClientSdk::ServiceSettings QlumJob::serviceSettings() const
{
    return qlumServiceSettings(m_progress->text());
}

void QlumJob::postFunction(std::function<void()> function)
{
    if (m_poster)
        m_poster(std::move(function));
}

// Who gives the job up may wait on the own thread until it has ended, so the answer alone is not waited for.
bool QlumJob::waitFor(std::future<void>& answer) const
{
    constexpr auto pause = std::chrono::milliseconds(20);
    while (answer.wait_for(pause) != std::future_status::ready)
        if (isCancelled())
            return false;
    return !isCancelled();
}
