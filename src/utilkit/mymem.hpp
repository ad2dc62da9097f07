// Chunked arrays: tables of many fixed-size elements, held in blocks of at most 1,000,000 bytes.
#pragma once

#include "utilkit/fopen.hpp"
#include "utilkit/wrap.hpp"

#include <cstddef>
#include <cstdint>

namespace vexbind {

inline constexpr std::uint32_t maxBlockBytes = 1'000'000;
inline constexpr std::uint32_t countedArrayHeader = 28; // seven 4-byte words

/// The handle of a chunked array; owned by the caller, released with myFree.
struct ChunkedArray {
    std::uint32_t blockCount;        // full blocks, plus one if there is a partial last block
    std::uint32_t elementSize;       // bytes
    std::uint32_t elementsPerBlock;  // in a full block
    std::uint32_t lastBlockElements; // in the partial last block; 0 when the last block is full
    std::uint32_t elementCount;
    std::byte** blocks; // blockCount of them; null when there are none
};

/// A new array of `count` zeroed elements of `size` bytes (1 to maxBlockBytes). `name` serves error
/// messages. Failures are raised as ALC_ERR at arrayHeaderAllocFailed, allocFailed (block table),
/// fullBlockAllocFailed and lastBlockAllocFailed. When one is ignored the result is null, or, for the block
/// table, an array without elements.
ChunkedArray* myCalloc(std::uint32_t count, std::uint32_t size, const char* name);

/// The slow road of myIndex, for an index outside the table.
void* outsideElement(std::uint32_t index, const ChunkedArray* array);

/// The address of element `index`. An index outside the table (or any index of a null table) gives
/// a spare, zeroed element, so that a read finds zeros and a write is lost; while Verbose is set, an
/// index above the element count is raised as INDEX_ERR at badIndex instead.
inline void* myIndex(std::uint32_t index, const ChunkedArray* array) {
    if (array == nullptr || index >= array->elementCount) {
        return outsideElement(index, array);
    }
    std::byte* block = array->blocks[index / array->elementsPerBlock];
    return block + static_cast<std::size_t>(index % array->elementsPerBlock) * array->elementSize;
}

/// myIndex for a table of records of that very size, whose elements in a block are known beforehand; the
/// index is a signed number as the files give it.
template <class Record> Record& elementAt(std::int32_t index, const ChunkedArray* array) {
    static constexpr std::uint32_t perBlock = maxBlockBytes / sizeof(Record);
    const auto number = static_cast<std::uint32_t>(index);
    if (array == nullptr || number >= array->elementCount) {
        return *static_cast<Record*>(outsideElement(number, array));
    }
    void* block = array->blocks[number / perBlock];
    return static_cast<Record*>(block)[number % perBlock];
}

/// How many elements lie side by side from `index` on, all of them in the table; 1 outside it.
std::uint32_t stretchFrom(std::uint32_t index, const ChunkedArray* array);

/// A way through a table, from the element `index` on. The table stays as it is meanwhile.
template <class Record> struct TableWalk {
    const ChunkedArray* array;
    std::int32_t index = 0; // where the next stretch begins
    Record* next = nullptr;
    Record* end = nullptr; // of the stretch that is being walked
};

/// Gives what elementAt gives for the next index, also outside the table, and steps on.
template <class Record> Record& nextElement(TableWalk<Record>& walk) {
    if (walk.next == walk.end) {
        const std::uint32_t size = stretchFrom(static_cast<std::uint32_t>(walk.index), walk.array);
        walk.next = &elementAt<Record>(walk.index, walk.array);
        walk.end = walk.next + size;
        walk.index = wrapAdd(walk.index, size);
    }
    return *walk.next++;
}

/// Releases blocks, block table and header; null is accepted.
void myFree(ChunkedArray* array);

/// Writes the blocks of `array` to `file` as 32-bit words; the byte count of the last block.
std::int32_t putMyMem(const ChunkedArray* array, FileRecord* file);

} // namespace vexbind
