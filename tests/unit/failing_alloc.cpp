#include "unit/failing_alloc.hpp"

#include <array>
#include <cstddef>

// The linker's names for the library's routines and for what stands in for them.
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

// None of this may allocate. 0 allocations to go: none fails.
static int allocationsToGo = 0;
static bool failed = false;
static std::array<void*, 64> blocks{};
static std::size_t blockCount = 0;

void failAllocation(int number) {
    allocationsToGo = number;
    failed = false;
    blockCount = 0;
}

bool hasFailedAllocation() {
    return failed;
}

std::span<void* const> blocksBeforeFailure() {
    return std::span<void* const>(blocks).first(blockCount);
}

static bool failsNow() {
    if (allocationsToGo == 0 || --allocationsToGo > 0) {
        return false;
    }
    failed = true;
    return true;
}

static void* remembered(void* block) {
    if (allocationsToGo > 0 && blockCount < blocks.size()) {
        blocks[blockCount++] = block;
    }
    return block;
}

void* __wrap_malloc(std::size_t size) {
    return failsNow() ? nullptr : remembered(__real_malloc(size));
}

void* __wrap_calloc(std::size_t count, std::size_t size) {
    return failsNow() ? nullptr : remembered(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, std::size_t size) {
    return failsNow() ? nullptr : remembered(__real_realloc(block, size));
}
