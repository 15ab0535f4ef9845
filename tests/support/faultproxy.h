// A relay between a client and a server on this machine that can spoil the traffic in many ways.
#pragma once

#include <stack/transport/uniquefd.h>

#include <chrono>
#include <cstdint>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

namespace faultproxy {

/// The relay runs on a thread of its own; every function may be called from any other.
class FaultProxy
{
public:
    explicit FaultProxy(std::uint16_t serverPort); ///< on 127.0.0.1; throws std::runtime_error
    ~FaultProxy();
    FaultProxy(const FaultProxy&) = delete;
    FaultProxy& operator=(const FaultProxy&) = delete;

    [[nodiscard]] std::uint16_t port() const { return m_port; }

    /// Until it is set back: no byte moves in either direction, new connections wait.
    void freeze(bool on);
    /// Until it is set back: whoever connects is hung up on. Those connected stay.
    void refuse(bool on);
    void hangUp();     ///< all connections end in good order
    void reset();      ///< all connections are broken off
    void damageNext(); ///< one bit of what the server says next is turned over
    /// All connections end in the middle: after so many more bytes of the server.
    void cutAfter(std::size_t bytes);

    [[nodiscard]] std::size_t accepted() const; ///< connections since the start

private:
    struct Direction
    {
        std::vector<char> waiting;
        bool sourceEnded = false;
    };
    struct Pair
    {
        opcua::UniqueFd client;
        opcua::UniqueFd server;
        Direction toServer;
        Direction toClient;
        bool dead = false;
    };
    enum class End { Good, Broken };

    void run();
    void acceptOne();
    void serve(Pair& pair, short clientEvents, short serverEvents);
    void spoil(std::vector<char>& bytes, Pair& pair);
    void end(Pair& pair, End how);
    void endAll(End how);
    void wake() const;

    const std::uint16_t m_serverPort;
    std::uint16_t m_port = 0;
    opcua::UniqueFd m_listener;
    opcua::UniqueFd m_wake;
    mutable std::mutex m_mutex;
    std::list<Pair> m_pairs;
    std::size_t m_accepted = 0;
    bool m_stop = false;
    bool m_frozen = false;
    bool m_refusing = false;
    bool m_damage = false;
    bool m_cutting = false;
    std::size_t m_cutAfter = 0;
    std::thread m_thread;
};

} // namespace faultproxy
