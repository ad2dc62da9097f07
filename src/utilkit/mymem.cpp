#include "utilkit/mymem.hpp"

#include "settings/settings.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"
#include "utilkit/wrap.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace vexbind {

/// Allocates block `number`, which holds `elements` elements. It is counted before it is tried.
static bool addBlock(ChunkedArray* array, std::uint32_t number, std::uint32_t elements, const char* name,
                     std::int32_t status) {
    countAllocation(array->elementSize * elements);
    array->blocks[number] = static_cast<std::byte*>(std::calloc(elements, array->elementSize));
    if (array->blocks[number] == nullptr) {
        raiseAllocError(status, name, array->elementSize, elements);
        return false;
    }
    return true;
}

/// Allocates all blocks. Those made before a failure stay, allocated and counted.
static bool addBlocks(ChunkedArray* array, const char* name) {
    const std::uint32_t fullBlocks = array->elementCount / array->elementsPerBlock;
    for (std::uint32_t i = 0; i < fullBlocks; ++i) {
        if (!addBlock(array, i, array->elementsPerBlock, name, fullBlockAllocFailed)) {
            return false;
        }
    }
    return array->lastBlockElements == 0 ||
           addBlock(array, fullBlocks, array->lastBlockElements, name, lastBlockAllocFailed);
}

/// Allocates the block table, all null.
static bool addBlockTable(ChunkedArray* array) {
    array->blocks = static_cast<std::byte**>(std::calloc(array->blockCount, sizeof(std::byte*)));
    if (array->blocks == nullptr) {
        raiseAllocError(allocFailed, "void*", array->blockCount, countedPointer);
        return false;
    }
    countAllocation(array->blockCount * countedPointer);
    return true;
}

/// Turns `array` into one without elements.
static void makeEmpty(ChunkedArray* array) {
    array->blockCount = 0;
    array->elementCount = 0;
    array->lastBlockElements = 0;
}

ChunkedArray* myCalloc(std::uint32_t count, std::uint32_t size, const char* name) {
    countAllocation(countedArrayHeader);
    const std::uint32_t perBlock = maxBlockBytes / size;
    const std::uint32_t remainder = count % perBlock;
    const std::uint32_t blockCount = count / perBlock + (remainder != 0 ? 1 : 0);

    auto* array = static_cast<ChunkedArray*>(std::malloc(sizeof(ChunkedArray)));
    if (array == nullptr) {
        raiseAllocError(arrayHeaderAllocFailed, name, 1, countedArrayHeader);
        return nullptr;
    }
    *array = {.blockCount = blockCount,
              .elementSize = size,
              .elementsPerBlock = perBlock,
              .lastBlockElements = remainder,
              .elementCount = count,
              .blocks = nullptr};
    if (blockCount == 0) {
        return array;
    }
    if (!addBlockTable(array)) {
        // Kept: this failure, when ignored, does not give up the array; it goes on without elements.
        makeEmpty(array);
        return array;
    }
    return addBlocks(array, name) ? array : nullptr; // NOLINT(clang-analyzer-unix.Malloc): as said there
}

void* outsideElement(std::uint32_t index, const ChunkedArray* array) {
    const std::uint32_t count = array == nullptr ? 0 : array->elementCount;
    // Kept: an index equal to the element count passes the check.
    if (Verbose != 0 && index > count) {
        raiseError(badIndex, INDEX_ERR, index, count);
    }
    // A null table has elements of some record of the model, none of which is larger than this.
    static constexpr std::size_t largestRecord = 64;
    alignas(std::max_align_t) static std::array<std::byte, maxBlockBytes> spare;
    std::memset(spare.data(), 0, array == nullptr ? largestRecord : array->elementSize);
    return spare.data();
}

std::uint32_t stretchFrom(std::uint32_t index, const ChunkedArray* array) {
    if (array == nullptr || index >= array->elementCount) {
        return 1;
    }
    return std::min(array->elementsPerBlock - index % array->elementsPerBlock, array->elementCount - index);
}

void myFree(ChunkedArray* array) {
    if (array == nullptr) {
        return;
    }
    for (std::uint32_t i = 0; i < array->blockCount; ++i) {
        trackedFree(array->blocks[i]);
    }
    std::free(array->blocks);
    freeCount = wrapAdd(freeCount, 1); // Kept: the block table counts even when there was none.
    const std::uint32_t held =
        array->elementCount * array->elementSize + array->blockCount * countedPointer + countedArrayHeader;
    allocTotal = wrapAdd(allocTotal, 0U - held);
    trackedFree(array);
}

std::int32_t putMyMem(const ChunkedArray* array, FileRecord* file) {
    std::uint32_t byteCount = array->elementSize * array->elementsPerBlock;
    for (std::uint32_t i = 0; i < array->blockCount; ++i) {
        if (i + 1 == array->blockCount) {
            // Kept: a last block that is full is not written, its remainder being 0.
            byteCount = array->elementSize * array->lastBlockElements;
        }
        // Blocks come from the allocator, aligned for words.
        const void* words = array->blocks[i];
        put4ByteArray(static_cast<const std::uint32_t*>(words), static_cast<std::int32_t>(byteCount) / 4,
                      file);
    }
    return static_cast<std::int32_t>(byteCount);
}

} // namespace vexbind
