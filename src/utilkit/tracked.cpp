#include "utilkit/tracked.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/status.hpp"
#include "utilkit/wrap.hpp"

#include <cstdlib>

namespace vexbind {

std::int32_t allocTotal = 0;
std::int32_t allocCount = 0;
std::int32_t freeCount = 0;

void raiseAllocError(std::int32_t status, const char* name, std::uint32_t factor, std::uint32_t otherFactor) {
    raiseError(status, ALC_ERR, name, static_cast<std::int32_t>(factor), static_cast<long>(otherFactor),
               static_cast<long>(allocCount), static_cast<long>(freeCount), static_cast<long>(allocTotal));
}

void* trackedCalloc(std::uint32_t count, std::size_t entrySize, std::uint32_t countedSize, const char* name) {
    void* block = std::calloc(count, entrySize);
    if (block == nullptr) {
        raiseAllocError(allocFailed, name, count, countedSize);
        return nullptr;
    }
    countAllocation(count * countedSize);
    return block;
}

void trackedFree(void* block) {
    if (block != nullptr) {
        std::free(block);
        freeCount = wrapAdd(freeCount, 1);
    }
}

} // namespace vexbind
