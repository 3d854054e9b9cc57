#include "support/AllocationGuard.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

namespace {
thread_local bool t_isGuarded = false;
thread_local int t_allocations = 0;
} // namespace

AllocationGuard::AllocationGuard()
{
    t_allocations = 0;
    t_isGuarded = true;
}

AllocationGuard::~AllocationGuard()
{
    t_isGuarded = false;
    EXPECT_EQ(t_allocations, 0) << "allocations where none may be";
}

void* operator new(std::size_t size)
{
    if (t_isGuarded)
        ++t_allocations;
    if (void* const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
