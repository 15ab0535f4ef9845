#include <app/api/qlumuatrace.h>

#include <mutex>
#include <shared_mutex>
#include <utility>

namespace {
// Held shared during a call, so that the application cannot vanish under it.
std::shared_mutex g_mutex;
QlumApplicationInterface* g_application = nullptr;
std::function<void(const QString&)> g_earlySink;
} // namespace

void QlumUaTrace::log(int level, const QString& text, const QString& source, unsigned int serverId)
{
    const std::shared_lock lock(g_mutex);
    if (g_application)
        g_application->log(level, text, serverId, source);
    else if (g_earlySink)
        g_earlySink(source + QStringLiteral(": ") + text);
}

void QlumUaTrace::logUaStatusCode(int level, const QString& text, unsigned int statusCode,
                                  const QString& source, unsigned int serverId)
{
    const std::shared_lock lock(g_mutex);
    if (g_application)
        g_application->log(level, text.arg(g_application->errorMessage(statusCode)), serverId, source);
}

void QlumUaTrace::shutdown()
{
    setApplication(nullptr);
}

void QlumUaTrace::setApplication(QlumApplicationInterface* application)
{
    const std::unique_lock lock(g_mutex);
    g_application = application;
}

void QlumUaTrace::setEarlySink(std::function<void(const QString&)> sink)
{
    const std::unique_lock lock(g_mutex);
    g_earlySink = std::move(sink);
}
