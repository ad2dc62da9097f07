// Makes an allocation of the sources fail. The linker sends their calls of malloc, calloc and realloc
// here (--wrap); what the C and C++ libraries allocate for themselves is left alone.
#pragma once

#include <span>

// The `number`-th allocation from now (1: the next) fails; all others succeed.
void failAllocation(int number);

// The same until the end of a scope.
struct FailingAllocation {
    explicit FailingAllocation(int number) { failAllocation(number); }
    ~FailingAllocation() { failAllocation(0); }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
};

// Whether the failure that was asked for has happened.
bool hasFailedAllocation();

// The blocks handed out between the asking and the failure, in order.
std::span<void* const> blocksBeforeFailure();
