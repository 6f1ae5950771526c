#include <Foundation/RecyclingAllocator.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>
#include <random>
#include <thread>

namespace RVCore::RecyclingAllocatorTests {
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

TEST(RecyclingAllocator, WhatIsGivenBackInAnyOrderIsUsedInThatOfItsAddresses)
{
    struct Entry {
        int numbers[4];
    };
    RecyclingAllocator<Entry> allocator;
    std::array<Entry*, 200> entries{};
    for (Entry*& entry : entries)
        entry = allocator.allocate(1);
    std::sort(entries.begin(), entries.end(), std::less<>());
    auto shuffled = entries;
    std::mt19937 random(1);
    for (int round = 0; round < 20; ++round) {
        if (round % 3 == 1)
            std::reverse(shuffled.begin(), shuffled.end());
        else if (round % 3 == 2)
            std::shuffle(shuffled.begin(), shuffled.end(), random);
        for (Entry* entry : shuffled)
            allocator.deallocate(entry, 1);
        for (Entry*& entry : shuffled)
            entry = allocator.allocate(1);
        EXPECT_EQ(shuffled, entries);
    }
    for (Entry* entry : entries)
        allocator.deallocate(entry, 1);
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
} // namespace RVCore::RecyclingAllocatorTests
