// The memory of a run: all blocks that the sources allocate are known, so that those which a failure leaves
// behind can be released, and so that a run can be given little.
//
// The linker sends the calls of malloc, calloc, realloc and free here (--wrap); what the C and C++ libraries
// allocate for themselves is left alone.
#pragma once

#include <cstddef>

// What a run may hold at a time. A request that goes beyond fails.
inline constexpr std::size_t mostHeldBytes = std::size_t{2} << 20U;

// Blocks allocated from now on belong to the run.
void holdBlocks();

// From now on blocks belong to no run again.
void stopHolding();

// Releases what the run still holds; how many blocks those were.
std::size_t releaseHeldBlocks();
