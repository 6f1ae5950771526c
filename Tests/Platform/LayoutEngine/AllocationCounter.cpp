// Apart from its callers: inlined there, free() in place of operator delete would look like a mistake to the
// compiler.
#include "AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t allocations = 0;

void* allocate(std::size_t size)
{
    ++allocations;
    if (void* memory = std::malloc(size > 0 ? size : 1))
        return memory;
    throw std::bad_alloc();
}

} // namespace

void* operator new(std::size_t size)
{
    return allocate(size);
}

void* operator new[](std::size_t size)
{
    return allocate(size);
}

// What the standard library's sorting asks for.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    ++allocations;
    return std::malloc(size > 0 ? size : 1);
}

// For memory that begins at multiples of more than 16 bytes.
void* operator new(std::size_t size, std::align_val_t alignment)
{
    ++allocations;
    const auto step = static_cast<std::size_t>(alignment);
    if (void* memory = std::aligned_alloc(step, (size + step - 1) / step * step))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory, std::align_val_t) noexcept
{
    std::free(memory);
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

namespace RVCore {

std::size_t allocationCount()
{
    return allocations;
}

} // namespace RVCore
