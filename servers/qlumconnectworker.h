#pragma once
#include <uabase/values/uastatus.h>
#include <uaclientsdk/uasession.h>

#include <QObject>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

/// Runs the blocking calls of a session on a thread of its own, one at a time. What such a call asks in the
/// middle waits there for its answer. Used on the thread that it lives on, where not said otherwise.
class QlumConnectWorker : public QObject
{
    Q_OBJECT
public:
    using Call = std::function<UaStatus()>;
    /// A question that may still be answered.
    class Question;

    /// The session outlives the worker.
    explicit QlumConnectWorker(UaClientSdk::UaSession& session, QObject* parent = nullptr);
    ~QlumConnectWorker() override;

    /// Begins a call; none may run.
    void run(Call call);
    /// Cancels what runs and waits for it, about a second; it is not told any more.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_thread.joinable(); }
    /// Declines the question that waits and ends the call by a disconnect of its session, without waiting for
    /// that.
    void cancel();

    /// Whether the caller is on the thread of the worker. Any thread.
    [[nodiscard]] bool isOwnThread() const { return m_threadId == std::this_thread::get_id(); }
    /// Whether the call that runs was cancelled. Any thread.
    [[nodiscard]] bool isCancelled() const { return m_isCancelled; }
    /// On the worker's thread: has open() called where the worker lives, and waits for the answer, a cancel
    /// or the end of the time, which both decline.
    [[nodiscard]] bool ask(const std::function<void(std::shared_ptr<Question>)>& open,
                           std::chrono::milliseconds limit);
    /// Whether a question of the latest call was not answered in time. Any thread.
    [[nodiscard]] bool hasExpired() const { return m_hasExpired; }
    void answer(Question& question, bool answer);

signals:
    /// The call has returned; another may begin.
    void ended(const UaStatus& status);

private:
    void work(const Call& call);
    void disconnectUntilReturned();
    void finish(unsigned int call, const UaStatus& status);

    UaClientSdk::UaSession& m_session;
    std::atomic<std::thread::id> m_threadId;
    std::atomic<unsigned int> m_call{0}; ///< number of the latest
    std::atomic<bool> m_isCancelled{false};
    std::atomic<bool> m_hasExpired{false};
    std::mutex m_mutex; ///< guards what follows, but for m_thread
    std::condition_variable m_changed;
    bool m_hasReturned = true;
    std::thread m_canceller;
    std::thread m_thread;
};
