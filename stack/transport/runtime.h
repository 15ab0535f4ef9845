// What all channels share between start and end of the stack: event loop, resolver, limits.
#pragma once

#include <opcua/opcua_channel.h>
#include <stack/encoding/messagecodec.h>
#include <stack/transport/eventloop.h>
#include <stack/transport/keylog.h>
#include <stack/transport/resolver.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace opcua {

class Channel;

class Runtime : public std::enable_shared_from_this<Runtime>
{
public:
    /// Throws std::system_error or std::bad_alloc when the system has nothing left.
    explicit Runtime(const OpcUa_ProxyStubConfiguration& configuration);
    ~Runtime() { shutdown(); }

    /// The running one; null before the first start and after the last end.
    [[nodiscard]] static std::shared_ptr<Runtime> current();
    /// Counted. The configuration of the first call holds; later ones share what runs.
    static void acquire(const OpcUa_ProxyStubConfiguration& configuration);
    /// The last one ends all channels and joins all threads. False on a callback, which would wait for
    /// itself.
    [[nodiscard]] static bool release();

    [[nodiscard]] const OpcUa_ProxyStubConfiguration& configuration() const { return m_configuration; }
    [[nodiscard]] EncodingLimits encodingLimits() const;
    [[nodiscard]] ChannelLimits channelLimits() const;
    [[nodiscard]] const std::shared_ptr<EventLoop>& loop() const { return m_loop; }
    [[nodiscard]] Resolver& resolver() { return m_resolver; }
    /// Null unless somebody asked for it.
    [[nodiscard]] const std::shared_ptr<KeyLog>& keyLog() const { return m_keyLog; }

    /// The channel keeps this object.
    [[nodiscard]] std::shared_ptr<Channel> createChannel();
    [[nodiscard]] bool isRunning() const { return m_running; }

private:
    void shutdown();

    OpcUa_ProxyStubConfiguration m_configuration;
    std::atomic<bool> m_running = true;
    std::shared_ptr<EventLoop> m_loop;
    Resolver m_resolver;
    const std::shared_ptr<KeyLog> m_keyLog;
    std::mutex m_mutex;
    std::vector<std::weak_ptr<Channel>> m_channels;
};

/// The configuration with its defaults filled in and lower bounds kept.
[[nodiscard]] OpcUa_ProxyStubConfiguration completed(OpcUa_ProxyStubConfiguration configuration);

} // namespace opcua
