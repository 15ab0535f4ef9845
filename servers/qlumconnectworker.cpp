#include <servers/qlumconnectworker.h>

#include <uaclientsdk/servicesettings.h>

#include <QMetaObject>

#include <utility>

class QlumConnectWorker::Question
{
public:
    std::optional<bool> answer; // guarded by the worker's mutex
};

QlumConnectWorker::QlumConnectWorker(UaClientSdk::UaSession& session, QObject* parent)
    : QObject(parent), m_session(session)
{
}

QlumConnectWorker::~QlumConnectWorker()
{
    stop();
}

void QlumConnectWorker::stop()
{
    cancel();
    if (!m_thread.joinable())
        return;
    m_thread.join();
    ++m_call;
}

void QlumConnectWorker::run(Call call)
{
    ++m_call;
    m_isCancelled = m_hasExpired = false;
    m_hasReturned = false;
    m_thread = std::thread([this, call = std::move(call)] { work(call); });
}

void QlumConnectWorker::work(const Call& call)
{
    m_threadId = std::this_thread::get_id();
    const UaStatus status = call();
    m_threadId = std::thread::id();
    {
        const std::lock_guard lock(m_mutex);
        m_hasReturned = true; // from here on nobody begins to cancel
        m_changed.notify_all();
    }
    if (m_canceller.joinable())
        m_canceller.join();
    QMetaObject::invokeMethod(
        this, [this, status, call = m_call.load()] { finish(call, status); }, Qt::QueuedConnection);
}

void QlumConnectWorker::finish(unsigned int call, const UaStatus& status)
{
    if (call != m_call) // stopped meanwhile
        return;
    m_thread.join(); // it has nothing left to do
    emit ended(status);
}

void QlumConnectWorker::cancel()
{
    const std::lock_guard lock(m_mutex);
    if (m_hasReturned || m_isCancelled.exchange(true))
        return;
    m_changed.notify_all();
    m_canceller = std::thread([this] { disconnectUntilReturned(); });
}

// The first disconnect may come before the session knows of the call, so there may have to be another.
void QlumConnectWorker::disconnectUntilReturned()
{
    constexpr std::chrono::milliseconds untilNext(50);
    const UaClientSdk::ServiceSettings settings;
    std::unique_lock lock(m_mutex);
    while (!m_hasReturned) {
        lock.unlock();
        static_cast<void>(m_session.disconnect(settings, true));
        lock.lock();
        m_changed.wait_for(lock, untilNext, [this] { return m_hasReturned; });
    }
}

bool QlumConnectWorker::ask(const std::function<void(std::shared_ptr<Question>)>& open,
                            std::chrono::milliseconds limit)
{
    const auto question = std::make_shared<Question>();
    QMetaObject::invokeMethod(
        this, [open, question] { open(question); }, Qt::QueuedConnection);
    std::unique_lock lock(m_mutex);
    if (!m_changed.wait_for(lock, limit, [&] { return m_isCancelled || question->answer.has_value(); }))
        m_hasExpired = true;
    return !m_isCancelled && question->answer.value_or(false);
}

void QlumConnectWorker::answer(Question& question, bool answer)
{
    const std::lock_guard lock(m_mutex);
    question.answer = answer;
    m_changed.notify_all();
}
