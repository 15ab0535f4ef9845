// One session that is disconnected in the middle of a fault.
#pragma once

#include <tests/soak/disconnectfaults.h>
#include <tests/soak/witness.h>
#include <tests/support/owndemoserver.h>
#include <uaclientsdk/sessionsecurityinfo.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace soak {

struct Outcome
{
    std::chrono::milliseconds took{0}; ///< of the disconnect
    bool struck = false;               ///< the fault found somebody
    std::string plan;                  ///< in words
    std::size_t completions = 0;
    std::size_t notifications = 0;
    /// Of the first and the second connect; to be kept for some time, see there.
    std::array<std::shared_ptr<Witness>, 2> witnesses;
};

struct RoundSettings
{
    const Kind* kind = nullptr;
    std::uint64_t seed = 0;
    OwnDemoServer* server = nullptr;
    UaClientSdk::SessionSecurityInfo security;
    std::chrono::milliseconds limit{0}; ///< of a disconnect, and of what is still under way after it
};

/// Connects, strikes, disconnects, heals and connects again. What went wrong is in the witnesses.
[[nodiscard]] Outcome runRound(const RoundSettings& settings);

} // namespace soak
