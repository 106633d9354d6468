#pragma once

#include <cstddef>

/// Counts the C++ allocations of the whole process, the library's included: a program that lists this file's source
/// replaces the global operator new. What C libraries take from malloc is not counted.
std::size_t allocationCount();

/// The most bytes that were asked for at once, refused or not, since this was called last.
std::size_t takeLargestAllocation();

/// While it lives, operator new fails once it has succeeded a number of times. One at a time.
class FailingAllocations {
public:
    explicit FailingAllocations(int successes = 0);
    ~FailingAllocations();

    FailingAllocations(const FailingAllocations&) = delete;
    FailingAllocations& operator=(const FailingAllocations&) = delete;
};
