// Locks of this part, which know who holds them.
#pragma once

#include <uabase/system/uamutex.h>

#include <cassert>
#include <mutex>

namespace monitoring {

/// Holds a mutex; waits with std::condition_variable_any.
using HeldLock = std::unique_lock<UaMutex>;

/// What a function begins with that needs the mutex held.
inline void assertLocked([[maybe_unused]] const UaMutex& mutex)
{
    assert(mutex.isLockedByCurrentThread());
}

} // namespace monitoring
