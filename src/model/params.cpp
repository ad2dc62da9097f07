// Owns the pool: blocks of poolBlock bytes, found through a table that grows by one entry at a time. A
// place in it is the position of a list's first byte; no list crosses two blocks. Lists that fit there, such
// as one colour, which most are, lie in their records instead.
#include "model/params.hpp"

#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"
#include "utilkit/wrap.hpp"

#include <cstdlib>
#include <cstring>

namespace vexbind {

static constexpr std::uint32_t poolBlock = 1U << 20;
static constexpr std::uint32_t maxPoolBlocks = 1U << 12; // places are 32 bits

static std::uint8_t** poolBlocks = nullptr;
static std::uint32_t poolBlockCount = 0;
static std::uint32_t poolEnd = 0; // position of the first free byte

static bool addPoolBlock() {
    if (poolBlockCount == maxPoolBlocks - 1) {
        return false; // GCOVR_EXCL_LINE: takes 4 GiB of materials
    }
    const std::size_t tableBytes = (poolBlockCount + std::size_t{1}) * sizeof(std::uint8_t*);
    auto** table = static_cast<std::uint8_t**>(std::realloc(poolBlocks, tableBytes));
    if (table == nullptr) {
        return false;
    }
    poolBlocks = table;
    poolBlocks[poolBlockCount] = static_cast<std::uint8_t*>(std::malloc(poolBlock));
    if (poolBlocks[poolBlockCount] == nullptr) {
        return false;
    }
    ++poolBlockCount;
    return true;
}

static std::uint8_t* poolAddress(std::uint32_t position) {
    return poolBlocks[position / poolBlock] + position % poolBlock;
}

static bool fits_in_record(std::size_t count) {
    return count <= sizeof(MaterialRecord::param);
}

/// Puts a place for `count` bytes into `place`; false, and nothing done, without memory for it.
static bool find_place(std::uint32_t count, std::uint32_t& place) {
    std::uint32_t start = poolEnd;
    if (start % poolBlock + count > poolBlock) {
        start += poolBlock - start % poolBlock;
    }
    if (start / poolBlock == poolBlockCount && !addPoolBlock()) {
        return false;
    }
    place = start;
    poolEnd = start + count;
    return true;
}

void set_params(MaterialRecord& record, std::span<const std::uint8_t> bytes) {
    const auto count = static_cast<std::uint32_t>(bytes.size());
    record.param = 0;
    record.paramCount = 0;
    if (count == 0) {
        return;
    }
    if (fits_in_record(count)) {
        std::memcpy(&record.param, bytes.data(), count);
    } else if (find_place(count, record.param)) {
        std::memcpy(poolAddress(record.param), bytes.data(), count);
    } else {
        raiseAllocError(allocFailed, "UCHAR", count, 1);
        return;
    }
    countAllocation(count);
    record.paramCount = static_cast<std::uint8_t>(count);
}

ParamList get_params(const MaterialRecord& record) {
    ParamList list{};
    if (fits_in_record(record.paramCount)) {
        std::memcpy(list.data(), &record.param, sizeof record.param);
    } else {
        std::memcpy(list.data(), poolAddress(record.param), record.paramCount);
    }
    return list;
}

void free_params(MaterialRecord& record) {
    if (record.paramCount != 0) {
        freeCount = wrapAdd(freeCount, 1);
        record.param = 0;
        record.paramCount = 0;
    }
}

void reuse_pool() {
    poolEnd = 0;
}

} // namespace vexbind
