#include "allocation_counter.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr int unlimited = std::numeric_limits<int>::max();

// Other libraries may allocate on threads of their own.
std::atomic<std::size_t> count = 0;
std::atomic<std::size_t> largest = 0;
std::atomic<int> successesLeft = unlimited;

bool mayAllocate()
{
    if (successesLeft == unlimited) return true;
    return successesLeft > 0 && successesLeft-- > 0;
}

void* allocate(std::size_t size) noexcept
{
    ++count;
    for (std::size_t before = largest; before < size && !largest.compare_exchange_weak(before, size);) {
    }
    return mayAllocate() ? std::malloc(size != 0 ? size : 1) : nullptr;
}

void* allocateOrThrow(std::size_t size)
{
    void* memory = allocate(size);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

} // namespace

std::size_t allocationCount()
{
    return count;
}

std::size_t takeLargestAllocation()
{
    return largest.exchange(0);
}

FailingAllocations::FailingAllocations(int successes)
{
    successesLeft = successes;
}

FailingAllocations::~FailingAllocations()
{
    successesLeft = unlimited;
}

// All forms but those for large alignments, which keep their own: a mixture of ours and a sanitizer's would not match.

void* operator new(std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new[](std::size_t size)
{
    return allocateOrThrow(size);
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}
