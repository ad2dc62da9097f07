#include "fuzz/held_blocks.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include <sanitizer/asan_interface.h>

// The linker's names for the library's routines and for what stands in for them.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void __real_free(void* block);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
void __wrap_free(void* block);
}

// None of this may allocate.
namespace {

struct Slot {
    void* block; // null: never used in this run; `gone`: released
    std::size_t size;
};

constexpr std::size_t slotCount = std::size_t{1} << 14U;
constexpr std::size_t mostBlocks = slotCount / 2;

// Large blocks are used again and again, as to have each from the system anew would take longer than most
// runs. A spare one may not be touched, which the address sanitizer watches, and is handed out for its very
// size only, so that it notices every access beyond, too.
struct Spare {
    void* block;
    std::size_t size;
};

constexpr std::size_t largeBlock = std::size_t{64} << 10U;

std::array<Spare, 8> spares{};

bool holding = false;
std::size_t heldBytes = 0;
std::array<Slot, slotCount> slots{}; // a hash table with linear probing
std::array<std::uint32_t, mostBlocks> used{};
std::size_t usedCount = 0;
char goneMark = 0;
void* const gone = &goneMark;

std::size_t firstSlot(const void* block) {
    return (reinterpret_cast<std::uintptr_t>(block) >> 4U) % slotCount;
}

std::size_t nextSlot(std::size_t slot) {
    return (slot + 1) % slotCount;
}

bool mayHold(std::size_t size) {
    return usedCount < mostBlocks && size <= mostHeldBytes - heldBytes;
}

// A spare block of that size, or null.
void* takeSpare(std::size_t size) {
    if (size < largeBlock)
        return nullptr;
    auto* const spare = std::find_if(spares.begin(), spares.end(), [size](const Spare& each) {
        return each.block != nullptr && each.size == size;
    });
    if (spare == spares.end())
        return nullptr;
    void* block = spare->block;
    spare->block = nullptr;
    ASAN_UNPOISON_MEMORY_REGION(block, size);
    // What stands in it from another run must not pass for anything.
    constexpr int noise = 0xBE;
    std::memset(block, noise, std::size_t{4} << 10U);
    return block;
}

bool isSpare(const void* block) {
    return block != nullptr && std::any_of(spares.begin(), spares.end(),
                                           [block](const Spare& each) { return each.block == block; });
}

// Keeps a block of the run as a spare one, or releases it.
void giveBack(void* block, std::size_t size) {
    auto* const place =
        std::find_if(spares.begin(), spares.end(), [](const Spare& each) { return each.block == nullptr; });
    if (size < largeBlock || place == spares.end()) {
        __real_free(block);
        return;
    }
    *place = {.block = block, .size = size};
    ASAN_POISON_MEMORY_REGION(block, size);
}

void* remember(void* block, std::size_t size) {
    if (block == nullptr)
        return nullptr;
    std::size_t slot = firstSlot(block);
    while (slots[slot].block != nullptr && slots[slot].block != gone)
        slot = nextSlot(slot);
    slots[slot] = {.block = block, .size = size};
    used[usedCount] = static_cast<std::uint32_t>(slot);
    ++usedCount;
    heldBytes += size;
    return block;
}

// The slot of a block of the run, or null.
Slot* find(const void* block) {
    if (usedCount == 0 || block == nullptr)
        return nullptr;
    for (std::size_t slot = firstSlot(block); slots[slot].block != nullptr; slot = nextSlot(slot)) {
        if (slots[slot].block == block)
            return &slots[slot];
    }
    return nullptr;
}

} // namespace

void holdBlocks() {
    holding = true;
}

void stopHolding() {
    holding = false;
}

std::size_t releaseHeldBlocks() {
    std::size_t count = 0;
    for (std::size_t i = 0; i < usedCount; ++i) {
        Slot& slot = slots[used[i]];
        if (slot.block != nullptr && slot.block != gone) {
            giveBack(slot.block, slot.size);
            ++count;
        }
        slot.block = nullptr;
    }
    usedCount = 0;
    heldBytes = 0;
    return count;
}

void* __wrap_malloc(std::size_t size) {
    if (!holding)
        return __real_malloc(size);
    if (!mayHold(size))
        return nullptr;
    void* spare = takeSpare(size);
    return remember(spare == nullptr ? __real_malloc(size) : spare, size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    std::size_t bytes = 0;
    if (!holding || __builtin_mul_overflow(count, size, &bytes))
        return __real_calloc(count, size);
    if (!mayHold(bytes))
        return nullptr;
    void* spare = takeSpare(bytes);
    return remember(spare == nullptr ? __real_calloc(count, size) : std::memset(spare, 0, bytes), bytes);
}

// A block that grows always moves, so that nobody can rely on its staying.
void* __wrap_realloc(void* block, std::size_t size) {
    const Slot* old = find(block);
    if (!holding || (block != nullptr && old == nullptr))
        return __real_realloc(block, size);
    void* moved = __wrap_malloc(size);
    if (moved == nullptr || old == nullptr)
        return moved;
    std::memcpy(moved, block, std::min(size, old->size));
    __wrap_free(block);
    return moved;
}

void __wrap_free(void* block) {
    Slot* slot = find(block);
    if (slot == nullptr) {
        if (isSpare(block))
            std::abort(); // released twice
        __real_free(block);
        return;
    }
    heldBytes -= slot->size;
    slot->block = gone;
    giveBack(block, slot->size);
}
