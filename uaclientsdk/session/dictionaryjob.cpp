#include <uaclientsdk/session/dictionaryjob.h>

#include <uabase/system/uatrace.h>
#include <uaclientsdk/connection/sessiongate.h>

#include <exception>
#include <system_error>
#include <utility>

namespace UaClientSdk {

DictionaryJob::DictionaryJob(const SessionContext& context, std::function<void()> load)
    : m_context(context), m_load(std::move(load))
{
}

DictionaryJob::~DictionaryJob()
{
    wait();
}

void DictionaryJob::wait()
{
    constexpr auto aWhile = std::chrono::seconds(1);
    while (!end(aWhile)) {
    }
}

void DictionaryJob::start()
{
    const ConnectionEpoch epoch = m_context.epoch();
    const std::lock_guard lock(m_mutex);
    m_wanted = epoch;
    if (m_running)
        return;
    if (m_thread.joinable())
        m_thread.join(); // it has nothing left to do
    try {
        m_running = true;
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error& error) {
        m_running = false;
        m_wanted.reset();
        UaTrace::tError("Error: UaSession::loadDataTypeDictionaries - no thread: %s [Session=%u]",
                        error.what(), m_context.traceId);
    }
}

bool DictionaryJob::isRunning() const
{
    const std::lock_guard lock(m_mutex);
    return m_running;
}

bool DictionaryJob::waitFor(std::chrono::milliseconds limit) const
{
    std::unique_lock lock(m_mutex);
    return m_ended.wait_for(lock, limit, [this] { return !m_running; });
}

bool DictionaryJob::end(std::chrono::milliseconds limit)
{
    std::unique_lock lock(m_mutex);
    m_wanted.reset();
    if (!m_ended.wait_for(lock, limit, [this] { return !m_running; }))
        return false;
    if (m_thread.joinable())
        m_thread.join();
    return true;
}

std::optional<ConnectionEpoch> DictionaryJob::next()
{
    const std::lock_guard lock(m_mutex);
    m_running = m_wanted.has_value();
    if (!m_running)
        m_ended.notify_all();
    return std::exchange(m_wanted, std::nullopt);
}

void DictionaryJob::run()
{
    while (const std::optional<ConnectionEpoch> epoch = next()) {
        const EpochScope scope(m_context, *epoch);
        try {
            m_load();
        } catch (const std::exception& error) {
            UaTrace::tError("Error: UaSession::loadDataTypeDictionaries ended with '%s' [Session=%u]",
                            error.what(), m_context.traceId);
        }
    }
}

} // namespace UaClientSdk
