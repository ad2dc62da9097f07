// The accounting of memory, and counted memory that has no routine of its own. Buffers of streams and
// strings of the library are not counted.
//
// Sizes are counted as the message of a failed allocation shows them: in the units of the format's
// reference machine (4-byte pointers), whatever the blocks really take here.
#pragma once

#include "utilkit/wrap.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace vexbind {

extern std::int32_t allocTotal; // bytes held; grows with every allocation, shrinks in myFree only
extern std::int32_t allocCount; // allocations made so far
extern std::int32_t freeCount;  // releases made so far

inline constexpr std::uint32_t countedPointer = 4; // a pointer's size in the accounting

/// Counts one allocation of `bytes` bytes.
inline void countAllocation(std::uint32_t bytes) {
    allocTotal = wrapAdd(allocTotal, bytes);
    allocCount = wrapAdd(allocCount, 1);
}

/// Raises ALC_ERR with `name`, the two factors of the size and the counters as they stand.
void raiseAllocError(std::int32_t status, const char* name, std::uint32_t factor, std::uint32_t otherFactor);

/// Zeroed memory for `count` entries of `entrySize` bytes, counted as `count` times `countedSize`.
/// A failure is raised as ALC_ERR with `name` at allocFailed. Released with trackedFree.
void* trackedCalloc(std::uint32_t count, std::size_t entrySize, std::uint32_t countedSize, const char* name);

/// Typed form of trackedCalloc for plain records and for pointers.
template <class Record>
Record* trackedTable(std::uint32_t count, std::uint32_t countedSize, const char* name) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): for a table of pointers this is the size wanted
    return static_cast<Record*>(trackedCalloc(count, sizeof(Record), countedSize, name));
}

/// Releases a tracked block and counts the release; null is accepted and not counted.
void trackedFree(void* block);

struct TrackedFree {
    void operator()(void* block) const { trackedFree(block); }
};

/// An owned, tracked text.
using Text = std::unique_ptr<char[], TrackedFree>;

} // namespace vexbind
