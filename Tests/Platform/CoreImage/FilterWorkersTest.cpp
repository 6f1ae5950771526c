#include <CoreImage/FilterWorkers.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace RVCore::FilterWorkersTests {
namespace {

TEST(FilterWorkers, DoEveryShareOnceEachOnAThreadOfItsOwn)
{
    for (int count = 1; count <= FilterWorkers::most; ++count) {
        FilterWorkers workers(count);
        EXPECT_EQ(workers.shareCount(), count);
        for (int round = 0; round < 50; ++round) {
            std::array<int, FilterWorkers::most> calls{};
            std::array<std::thread::id, FilterWorkers::most> threads{};
            workers.run([&](int share) {
                ++calls.at(static_cast<std::size_t>(share));
                threads.at(static_cast<std::size_t>(share)) = std::this_thread::get_id();
            });
            for (std::size_t share = 0; share < calls.size(); ++share) {
                EXPECT_EQ(calls.at(share), static_cast<int>(share) < count ? 1 : 0);
                EXPECT_EQ(threads.at(share) == std::this_thread::get_id(), share == 0);
            }
        }
    }
}

TEST(FilterWorkers, ThatAreBusyLeaveTheWorkToTheCaller)
{
    FilterWorkers workers(3);
    workers.run([&](int share) {
        if (share != 0)
            return;
        std::thread([&] {
            int calls = 0;
            workers.run([&](int) { ++calls; }); // all on this thread, or the number would not be safe
            EXPECT_EQ(calls, 3);
        }).join();
    });
}

TEST(FilterWorkers, DoEveryRowOfAPictureInOneBandOfEach)
{
    for (int count = 1; count <= FilterWorkers::most; ++count) {
        FilterWorkers workers(count);
        for (const int height : {32 * count, 32 * count + 1, 32767}) {
            std::vector<int> calls(static_cast<std::size_t>(height));
            std::atomic<int> bands = 0;
            workers.runBands(4096, height, [&](int first, int end) {
                ++bands;
                EXPECT_GE(end - first, 32);
                for (int y = first; y < end; ++y)
                    ++calls.at(static_cast<std::size_t>(y));
            });
            EXPECT_EQ(bands, count);
            EXPECT_THAT(calls, testing::Each(1));
        }
    }
}

TEST(FilterWorkers, DoSmallAndLowPicturesInOneBand)
{
    FilterWorkers workers(2);
    EXPECT_EQ(workers.bandCount(256, 255), 1);
    EXPECT_EQ(workers.bandCount(256, 256), 2);
    EXPECT_EQ(workers.bandCount(32767, 63), 1);
    EXPECT_EQ(workers.bandCount(0, 0), 1);
    int calls = 0;
    workers.runBands(10, 7, [&](int first, int end) {
        ++calls;
        EXPECT_EQ(first, 0);
        EXPECT_EQ(end, 7);
    });
    EXPECT_EQ(calls, 1);
}

TEST(FilterWorkers, OfTheProgramAreNoMoreThanItsCores)
{
    EXPECT_GE(FilterWorkers::shared().shareCount(), 1);
    EXPECT_LE(FilterWorkers::shared().shareCount(), FilterWorkers::most);
    EXPECT_LE(FilterWorkers::shared().shareCount(),
              std::max(1, static_cast<int>(std::thread::hardware_concurrency())));
}

TEST(FilterWorkers, OfNoShareOrTooManyStopTheProgram)
{
    EXPECT_DEATH(FilterWorkers(0), "Fatal error: FilterWorkers have from 1 to 4 shares, got 0");
    EXPECT_DEATH(FilterWorkers(5), "got 5");
}

} // namespace
} // namespace RVCore::FilterWorkersTests
