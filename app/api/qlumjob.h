#pragma once
#include <app/api/qlumapplicationinterface.h>
#include <uaclientsdk/servicesettings.h>

#include <QString>
#include <QtGlobal>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <type_traits>
#include <utility>

/// What is known of a job while it waits and runs: the job writes it, the list of running work shows it. Any
/// thread.
class QlumJobProgress
{
public:
    QlumJobProgress();

    /// What is being done, as the user sees it.
    [[nodiscard]] QString text() const;
    /// Says what is being done just now.
    void setText(const QString& text);
    /// Asks the work to end.
    void cancel();
    /// What the first cancel() calls besides, at once when it came already; null for nothing more.
    void setInterrupt(std::function<void()> interrupt);

    const quint64 number;                 ///< unique in the running program
    unsigned int serverId = qlumNoServer; ///< set before others know of it
    std::atomic<bool> cancelled{false};   ///< asked to end; set by cancel()
    std::atomic<bool> begun{false};       ///< no longer waiting for its turn
    std::atomic<bool> ended{false};       ///< run, or dropped
    std::atomic<qint64> done{0};          ///< in units of the job
    std::atomic<qint64> total{0};         ///< 0: unknown

private:
    mutable std::mutex m_mutex;
    QString m_text;
    std::function<void()> m_interrupt;
};

/// A piece of work for a QlumJobPool. run() is on a pool thread, touches no widget and hands results over by
/// post(). A long job asks isCancelled() between its steps. What it throws becomes an entry of the log.
class QlumJob
{
public:
    QlumJob();
    virtual ~QlumJob();
    QlumJob(const QlumJob&) = delete;
    QlumJob& operator=(const QlumJob&) = delete;

    /// Does the work.
    virtual void run() = 0;

    /// Asks the job to end early. Any thread.
    void cancel() { m_progress->cancel(); }
    /// Whether the job was asked to end. Any thread.
    [[nodiscard]] bool isCancelled() const noexcept { return m_progress->cancelled.load(); }

    /// For work that waits in one long call: what ends that call when the job is asked to end. Called once at
    /// most, on any thread, until run() returns; it does not block, and holds what it needs.
    void whenCancelled(std::function<void()> interrupt) { m_progress->setInterrupt(std::move(interrupt)); }
    /// How much is done, for the list of running work; a total of 0 is an unknown one.
    void setProgress(qint64 done, qint64 total);
    /// What is being done just now, as the user sees it.
    void setText(const QString& text) { m_progress->setText(text); }
    /// For the job's service calls: the user's call time-out, and the job's text as the purpose.
    [[nodiscard]] UaClientSdk::ServiceSettings serviceSettings() const;
    /// Calls the function on the pool's own thread, in the order of the posts. It is dropped, with what it
    /// holds, when the job was given up meanwhile: then a newer one is what the owner waits for, or nobody.
    template <typename Function>
    void post(Function&& function)
    {
        // what the function holds need not be copyable
        auto held = std::make_shared<std::decay_t<Function>>(std::forward<Function>(function));
        postFunction([held] { (*held)(); });
    }
    /// The same, and waits until the function has run: what is handed over in portions comes no faster than
    /// it is taken. False when the job is to end, with which the function may still run, or never: it holds
    /// what it needs.
    template <typename Function>
    [[nodiscard]] bool postAndWait(Function&& function)
    {
        const auto ran = std::make_shared<std::promise<void>>();
        std::future<void> answer = ran->get_future();
        post([held = std::forward<Function>(function), ran]() mutable {
            held();
            ran->set_value();
        });
        return waitFor(answer);
    }

private:
    friend class QlumJobPool;

    void postFunction(std::function<void()> function);
    [[nodiscard]] bool waitFor(std::future<void>& answer) const;

    const std::shared_ptr<QlumJobProgress> m_progress;
    std::function<void(std::function<void()>)> m_poster; ///< set by the pool
};
