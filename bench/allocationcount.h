// Counts what a program takes from the heap; link allocationcount.cpp for it.
#pragma once

#include <cstddef>

namespace opcua::bench {

/// Of all threads since the start.
[[nodiscard]] std::size_t allocationCount();

} // namespace opcua::bench
