// Owns the pool: blocks of poolBlock bytes, found through a table that grows by one entry at a time. A
// handle is the position of a list's first byte, counted from 1; no list crosses two blocks.
#include "model/params.hpp"

#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"
#include "utilkit/wrap.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vexbind {

static constexpr std::uint32_t poolBlock = 1U << 20;
static constexpr std::uint32_t maxPoolBlocks = 1U << 12; // handles are 32 bits

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

static void copy_list(std::uint8_t* to, const std::uint8_t* from, std::size_t count) {
    // Most lists are one colour: a copy of fixed size takes no call.
    static constexpr std::size_t oneColour = 3;
    if (count == oneColour) {
        std::memcpy(to, from, oneColour);
    } else {
        std::memcpy(to, from, count);
    }
}

void set_params(MaterialRecord& record, std::span<const std::uint8_t> bytes) {
    const auto count = static_cast<std::uint32_t>(bytes.size());
    record.param = 0;
    record.paramCount = 0;
    if (count == 0) {
        return;
    }
    std::uint32_t start = poolEnd;
    if (start % poolBlock + count > poolBlock) {
        start += poolBlock - start % poolBlock;
    }
    if (start / poolBlock == poolBlockCount && !addPoolBlock()) {
        raiseAllocError(allocFailed, "UCHAR", count, 1);
        return;
    }
    countAllocation(count);
    copy_list(poolAddress(start), bytes.data(), count);
    record.param = start + 1;
    record.paramCount = static_cast<std::uint8_t>(count);
    poolEnd = start + count;
}

ParamList get_params(const MaterialRecord& record) {
    ParamList list{};
    if (record.param != 0) {
        copy_list(list.data(), poolAddress(record.param - 1), record.paramCount);
    }
    return list;
}

void free_params(MaterialRecord& record) {
    if (record.param != 0) {
        freeCount = wrapAdd(freeCount, 1);
        record.param = 0;
        record.paramCount = 0;
    }
}

void reuse_params_behind(const MaterialRecord& record) {
    poolEnd = record.param == 0 ? 0 : record.param - 1 + record.paramCount;
}

} // namespace vexbind
