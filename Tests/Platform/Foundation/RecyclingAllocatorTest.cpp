#include <Foundation/RecyclingAllocator.h>

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace RVCore {
namespace {

struct Record {
    double numbers[3] = {1, 2, 3};
};

TEST(RecyclingAllocator, WhatIsGivenBackServesTheNextObject)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "nothing waits where a sanitizer watches";
#endif
    RecyclingAllocator<Record> allocator;
    Record* first = allocator.allocate(1);
    allocator.deallocate(first, 1);
    Record* second = allocator.allocate(1);
    EXPECT_EQ(second, first);
    allocator.deallocate(second, 1);
}

TEST(RecyclingAllocator, ListsOfObjectsAreNotMixedUpWithSingleOnes)
{
    RecyclingAllocator<Record> allocator;
    Record* several = allocator.allocate(4);
    allocator.deallocate(several, 4);
    Record* one = allocator.allocate(1);
    new (one) Record;
    EXPECT_EQ(one->numbers[2], 3);
    allocator.deallocate(one, 1);
}

TEST(RecyclingAllocator, AnObjectMayEndOnAnotherThreadThanItBegan)
{
    auto object = std::allocate_shared<Record>(RecyclingAllocator<Record>());
    std::thread([ended = std::move(object)]() mutable { ended.reset(); }).join();
    object = std::allocate_shared<Record>(RecyclingAllocator<Record>());
    EXPECT_EQ(object->numbers[0], 1);
}

} // namespace
} // namespace RVCore
