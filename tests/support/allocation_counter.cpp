#include "allocation_counter.h"

#ifdef _WIN32
#    include "replaced_import.h"
#endif

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

#ifdef _WIN32

// Replacing the operators of this program leaves those of the engine as they are.
namespace {

template <class Function>
bool replaceOperator(const char* name, Function* function)
{
    return replaceImport(name, reinterpret_cast<void*>(function));
}

using Size = std::size_t;
using NoThrow = const std::nothrow_t&;

[[maybe_unused]] const bool areReplaced = [] {
    return replaceOperator<void*(Size)>("_Znwy", operator new) | replaceOperator<void*(Size)>("_Znay", operator new[]) |
           replaceOperator<void*(Size, NoThrow)>("_ZnwyRKSt9nothrow_t", operator new) |
           replaceOperator<void*(Size, NoThrow)>("_ZnayRKSt9nothrow_t", operator new[]) |
           replaceOperator<void(void*)>("_ZdlPv", operator delete) |
           replaceOperator<void(void*)>("_ZdaPv", operator delete[]) |
           replaceOperator<void(void*, Size)>("_ZdlPvy", operator delete) |
           replaceOperator<void(void*, Size)>("_ZdaPvy", operator delete[]) |
           replaceOperator<void(void*, NoThrow)>("_ZdlPvRKSt9nothrow_t", operator delete) |
           replaceOperator<void(void*, NoThrow)>("_ZdaPvRKSt9nothrow_t", operator delete[]);
}();

} // namespace

#endif

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
