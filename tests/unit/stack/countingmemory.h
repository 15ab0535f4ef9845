// An allocator that counts, and that fails when it is told to.
#pragma once

#include <cstddef>

namespace countingmemory {

/// Blocks that are not freed yet.
[[nodiscard]] size_t liveBlocks();
/// The most bytes held at one time since the last reset.
[[nodiscard]] size_t peakBytes();
void resetPeak();
/// The allocation after this many good ones fails, once; a negative number lets all succeed.
void failAfter(long goodOnes);

} // namespace countingmemory
