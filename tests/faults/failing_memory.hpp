// Makes the allocations of a process fail: those of the sources, of the C++ library and of the C
// library, which all come by here in a program that links this.
#pragma once

// For whom an allocation was made; the values are bits.
enum Allocator : unsigned {
    allocatedBySources = 1,
    allocatedByCppLibrary = 2, // through operator new, whoever wanted it
    allocatedByCLibrary = 4,
};

struct FailingMemory {
    int first = 0;        // the number of the allocation that fails, from 1; 0: none
    bool onwards = false; // and so do all after it
    int made = 0;         // allocations so far, those that failed included
    unsigned failed = 0;  // bits of those whose allocations have failed
};

// What is asked for and what has happened; null: nothing fails and nothing is counted. It may lie in
// memory that another process reads.
extern FailingMemory* failingMemory;
