// The kinds of faults under which sessions are disconnected.
#pragma once

#include <tests/support/faultproxy.h>
#include <tests/support/owndemoserver.h>

#include <array>
#include <cstdint>
#include <future>
#include <random>

namespace soak {

/// What a fault of a round can act on. The faults are made by one thread.
class Scene
{
public:
    Scene(std::uint16_t serverPort, OwnDemoServer& demoServer, std::mt19937_64& randomNumbers);

    /// Kills the server and brings the next one up meanwhile.
    void restartServer();
    /// Everything as it was; false when the server does not come up again.
    [[nodiscard]] bool heal();

    faultproxy::FaultProxy relay;
    OwnDemoServer& server;
    std::mt19937_64& random;
    bool secured = false;
    bool firstConnect = false; ///< the session has never been connected when the fault strikes
    bool serverEnds = false;
    bool serverFrozen = false;

private:
    [[nodiscard]] bool startServer();

    std::future<bool> m_restart;
};

struct Kind
{
    enum class Strikes {
        Links,    ///< those that are there, at once
        Traffic,  ///< the next that comes along
        Connects, ///< the next to connect; the session is hung up on, so that it does
        Door      ///< the same, but the relay does not hear of them
    };
    [[nodiscard]] bool hitsConnects() const
    {
        return strikes == Strikes::Connects || strikes == Strikes::Door;
    }
    /// Whether the relay can tell if it found anybody.
    [[nodiscard]] bool isCounted() const
    {
        return strikes == Strikes::Traffic || strikes == Strikes::Connects;
    }

    const char* name;
    Strikes strikes;
    bool onlyFirstConnect; ///< a session that was connected before does not come to what is struck
    void (*apply)(Scene& scene);
    void (*applyLate)(Scene& scene); ///< right before the disconnect; may be null
};

extern const std::array<Kind, 20> kinds;

} // namespace soak
