// A relay between a client and a server on this machine that can spoil the traffic in many ways.
#pragma once

#include <stack/transport/uniquefd.h>
#include <tests/support/framereader.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <mutex>
#include <poll.h>
#include <random>
#include <thread>
#include <vector>

namespace faultproxy {

/// How the bytes of one direction move.
struct Flow
{
    bool stopped = false;               ///< no byte moves, and nobody is told of an end
    std::size_t burst = 0;              ///< bytes at once; 0: no limit
    std::chrono::milliseconds pause{0}; ///< from burst to burst
    std::chrono::milliseconds delay{0}; ///< of every byte
};

enum class Toward { Client, Server };

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
    /// The next ones who connect are hung up on.
    void refuseNext(std::size_t count);
    /// Until it is set back: nobody listens at the port, which stays ours. Those connected stay.
    void shutDoor(bool shut);
    /// Until it is set back: whoever connects finds nobody behind the door. Those connected stay.
    void ignore(bool on);
    void setFlow(Toward direction, const Flow& flow);
    /// A server that stops in the middle of its work: from that frame on it says nothing more on its
    /// connection.
    void silentFrom(FramePredicate which);
    void hangUp();      ///< all connections end in good order
    void reset();       ///< all connections are broken off
    void damageNext();  ///< one bit of what the server says next is turned over
    void garbageNext(); ///< what the server says next becomes noise
    /// All connections end in the middle: after so many more bytes of the server.
    void cutAfter(std::size_t bytes);
    /// No fault any more: what was held back flows, who was ignored is hung up on.
    void heal();

    [[nodiscard]] std::size_t accepted() const; ///< connections since the start
    /// How often a fault has found somebody: refused, ignored, silent from a frame on, damaged or cut.
    [[nodiscard]] std::size_t struck() const;

private:
    using Clock = std::chrono::steady_clock;

    struct Packet
    {
        Clock::time_point arrived;
        std::vector<char> bytes;
        std::size_t given = 0;
    };
    struct Direction
    {
        std::deque<Packet> packets;
        std::size_t waiting = 0;
        Clock::time_point mayGiveAt;
        bool sourceEnded = false;
    };
    struct Pair
    {
        opcua::UniqueFd client;
        opcua::UniqueFd server; ///< none: the client is ignored
        Direction toServer;
        Direction toClient;
        FrameReader frames;
        bool dead = false;
    };
    struct Faults
    {
        bool frozen = false;
        bool refusing = false;
        std::size_t refuseNext = 0;
        bool doorShut = false;
        bool ignoring = false;
        Flow toClient;
        Flow toServer;
        FramePredicate silentFrom;
        bool damage = false;
        bool garbage = false;
        bool cutting = false;
        std::size_t cutAfter = 0;
    };
    enum class End { Good, Broken };

    void listen();
    void run();
    int collect(std::vector<pollfd>& polled, std::vector<Pair*>& pairs);
    void acceptOne();
    void serve(Pair& pair, short clientEvents, short serverEvents);
    void spoil(std::vector<char>& bytes, Pair& pair);
    void end(Pair& pair, End how);
    void endAll(End how);
    void openDoor();
    void wake() const;

    [[nodiscard]] bool isStopped(const Flow& flow) const { return m_faults.frozen || flow.stopped; }
    [[nodiscard]] bool takes(const Direction& direction, const Flow& flow) const;
    /// When its first packet may leave; max() when there is none that may.
    [[nodiscard]] Clock::time_point leaves(const Direction& direction, const Flow& flow) const;
    void put(Direction& direction, std::vector<char> bytes) const;
    bool give(int to, Direction& direction, const Flow& flow) const;

    const std::uint16_t m_serverPort;
    std::uint16_t m_port = 0;
    opcua::UniqueFd m_place; ///< keeps the port ours while nobody listens at it
    opcua::UniqueFd m_listener;
    std::vector<opcua::UniqueFd> m_retired; ///< the relay's thread may still wait for them
    opcua::UniqueFd m_wake;
    mutable std::mutex m_mutex;
    std::list<Pair> m_pairs;
    std::size_t m_accepted = 0;
    std::size_t m_struck = 0;
    bool m_stop = false;
    Faults m_faults;
    std::minstd_rand m_noise;
    std::thread m_thread;
};

} // namespace faultproxy
