#include <Foundation/RecyclingAllocator.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <thread>

namespace RVCore {
namespace {

struct Record {
    double numbers[3] = {1, 2, 3};
};

// Where a sanitizer watches, nothing waits (see RecyclingAllocator), and there is nothing of this to test.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

TEST(RecyclingAllocator, WhatIsGivenBackServesTheNextObject)
{
    RecyclingAllocator<Record> allocator;
    Record* first = allocator.allocate(1);
    allocator.deallocate(first, 1);
    Record* second = allocator.allocate(1);
    EXPECT_EQ(second, first);
    allocator.deallocate(second, 1);
}

TEST(RecyclingAllocator, WhatAThreadLeavesServesAnotherOne)
{
    struct Message {
        int number;
    };
    RecyclingAllocator<Message> allocator;
    std::array<Message*, 100> left{};
    std::thread([&] {
        for (Message*& message : left)
            message = allocator.allocate(1);
        for (Message* message : left)
            allocator.deallocate(message, 1);
    }).join();
    std::array<Message*, 128> found{};
    for (Message*& message : found)
        message = allocator.allocate(1);
    for (Message* message : left)
        EXPECT_EQ(std::count(found.begin(), found.end(), message), 1);
    for (Message* message : found)
        allocator.deallocate(message, 1);
}

#endif

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
