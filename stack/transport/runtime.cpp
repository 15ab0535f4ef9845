#include <stack/transport/runtime.h>

#include <stack/transport/channel.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace opcua {

namespace {

// Counts the starts of the stack; a program has one stack.
struct Running
{
    std::mutex mutex;
    std::shared_ptr<Runtime> runtime;
    int count = 0;
};

Running g_running;

void fill(OpcUa_UInt32& value, OpcUa_UInt32 standard)
{
    if (value == 0)
        value = standard;
}

} // namespace

OpcUa_ProxyStubConfiguration completed(OpcUa_ProxyStubConfiguration configuration)
{
    const EncodingLimits standard;
    fill(configuration.MaxMessageSize, defaultMaxMessageSize);
    fill(configuration.BufferSize, defaultBufferSize);
    configuration.BufferSize = std::max(configuration.BufferSize, minimumBufferSize);
    fill(configuration.MaxChunkCount, defaultChunkCount(configuration.MaxMessageSize));
    fill(configuration.MaxStringLength, standard.maxStringLength);
    fill(configuration.MaxByteStringLength, standard.maxByteStringLength);
    fill(configuration.MaxArrayLength, standard.maxArrayLength);
    fill(configuration.MaxNestingLevel, standard.maxNestingLevel);
    return configuration;
}

Runtime::Runtime(const OpcUa_ProxyStubConfiguration& configuration)
    : m_configuration(completed(configuration)), m_loop(std::make_shared<EventLoop>()),
      m_keyLog(KeyLog::fromEnvironment())
{
}

std::shared_ptr<Runtime> Runtime::current()
{
    const std::lock_guard lock(g_running.mutex);
    return g_running.runtime;
}

void Runtime::acquire(const OpcUa_ProxyStubConfiguration& configuration)
{
    const std::lock_guard lock(g_running.mutex);
    if (!g_running.runtime)
        g_running.runtime = std::make_shared<Runtime>(configuration);
    ++g_running.count;
}

bool Runtime::release()
{
    if (CallbackQueue::onCallbackThread())
        return false;
    std::shared_ptr<Runtime> last;
    {
        const std::lock_guard lock(g_running.mutex);
        if (g_running.count > 0 && --g_running.count == 0)
            last = std::move(g_running.runtime);
    }
    if (last)
        last->shutdown();
    return true;
}

EncodingLimits Runtime::encodingLimits() const
{
    return {m_configuration.MaxStringLength, m_configuration.MaxByteStringLength,
            m_configuration.MaxArrayLength, m_configuration.MaxNestingLevel};
}

ChannelLimits Runtime::channelLimits() const
{
    return {m_configuration.BufferSize, m_configuration.BufferSize, m_configuration.MaxMessageSize,
            m_configuration.MaxChunkCount};
}

std::shared_ptr<Channel> Runtime::createChannel()
{
    auto channel = std::make_shared<Channel>(shared_from_this());
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_channels, [](const auto& known) { return known.expired(); });
    m_channels.push_back(channel);
    return channel;
}

void Runtime::shutdown()
{
    m_running = false;
    std::vector<std::weak_ptr<Channel>> channels;
    {
        const std::lock_guard lock(m_mutex);
        channels.swap(m_channels);
    }
    for (const auto& known : channels)
        if (const auto channel = known.lock())
            static_cast<void>(channel->shutdown());
    m_loop->stop();
}

} // namespace opcua
