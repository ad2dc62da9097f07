// The program's own malloc and operator new go before those of the libraries, in their calls too. They
// hand everything on to the library's, or to the sanitizer's, so that free needs no counterpart.
#include "faults/failing_memory.hpp"

#include "faults/sanitized.hpp"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#ifdef FAULTS_SANITIZED
#define LIBRARY_NAME(routine) __interceptor_##routine
#else
#define LIBRARY_NAME(routine) __libc_##routine
#endif

extern "C" {
void* LIBRARY_NAME(malloc)(std::size_t size) noexcept;
void* LIBRARY_NAME(calloc)(std::size_t count, std::size_t size) noexcept;
void* LIBRARY_NAME(realloc)(void* block, std::size_t size) noexcept;

// Where the code of the executable begins and ends.
extern const char __executable_start;
extern const char etext;
}

FailingMemory* failingMemory = nullptr;

static bool failsNow(unsigned allocator) noexcept {
    FailingMemory& memory = *failingMemory;
    ++memory.made;
    const bool isFirst = memory.made == memory.first;
    const bool isLater = memory.onwards && memory.first != 0 && memory.made > memory.first;
    if (!isFirst && !isLater)
        return false;
    memory.failed |= allocator;
    errno = ENOMEM;
    return true;
}

// For a routine of the C library that was called from `caller`.
static bool failsFor(const void* caller) noexcept {
    if (failingMemory == nullptr)
        return false;
    const bool isOurs = caller >= &__executable_start && caller < &etext;
    return failsNow(isOurs ? allocatedBySources : allocatedByCLibrary);
}

extern "C" void* malloc(std::size_t size) noexcept {
    return failsFor(__builtin_return_address(0)) ? nullptr : LIBRARY_NAME(malloc)(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) noexcept {
    return failsFor(__builtin_return_address(0)) ? nullptr : LIBRARY_NAME(calloc)(count, size);
}

extern "C" void* realloc(void* block, std::size_t size) noexcept {
    return failsFor(__builtin_return_address(0)) ? nullptr : LIBRARY_NAME(realloc)(block, size);
}

// By way of operator new; arrays have routines of their own, which the sources do not use.
static void* allocateObject(std::size_t size) noexcept {
    const bool fails = failingMemory != nullptr && failsNow(allocatedByCppLibrary);
    return fails ? nullptr : LIBRARY_NAME(malloc)(size);
}

void* operator new(std::size_t size) {
    void* block = allocateObject(size);
    if (block == nullptr)
        throw std::bad_alloc();
    return block;
}

void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
    return allocateObject(size);
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
