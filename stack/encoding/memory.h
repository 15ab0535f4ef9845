// The memory of everything that the stack hands out: structures, texts and arrays.
#pragma once

#include <cstddef>

namespace opcua {

/// Null when out of memory or when size is 0. Any thread.
[[nodiscard]] void* allocateMemory(size_t size);
/// Zeroed memory for count elements; null when the product overflows.
[[nodiscard]] void* allocateZeroedMemory(size_t count, size_t elementSize);
/// Takes null, and pieces of a TextPool's block. Any thread.
void freeMemory(void* memory);

} // namespace opcua
