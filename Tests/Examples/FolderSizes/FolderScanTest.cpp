#include "ReadingGate.h"

#include <Dispatch/DispatchQueue.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Examples/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace FolderSizes::FolderScanTests {
namespace {

using namespace RVCore;
using testing::ElementsAre;
using testing::IsEmpty;

// What a scan tells, as it comes.
class FolderScanTest : public testing::Test {
protected:
    FolderScan::Handlers handlers()
    {
        return {.progress =
                    [this](const FolderProgress& progress) {
                        calls.push_back("progress " + std::to_string(progress.fileCount));
                    },
                .finished =
                    [this](const FolderListing& listing) {
                        calls.push_back("finished with " + std::to_string(listing.entries.size()) +
                                        (listing.isStopped ? ", stopped" : ""));
                        if (onEnd)
                            onEnd();
                    },
                .failed = [this](const std::string& problem) { calls.push_back(problem); }};
    }
    std::vector<std::string> take() { return std::exchange(calls, {}); }

    ManualDispatchClock clock;
    ReadingGate gate;
    std::vector<std::string> calls;
    std::function<void()> onEnd;
};

TEST_F(FolderScanTest, ReadsAFolderAndTellsItsListingOnTheMainQueue)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("one", 1);
    folder.addFile("two/three", 1);
    FolderScan scan(folder.path(), handlers());
    scan.wait();
    EXPECT_THAT(take(), IsEmpty());
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("finished with 2"));
}

TEST_F(FolderScanTest, OfManyReportsTheLatestComesTwentyTimesASecond)
{
    FolderScan scan("/folder", handlers(), gate.reader());
    for (std::size_t i = 1; i <= 100; ++i)
        gate.report({.fileCount = i});
    EXPECT_EQ(DispatchQueue::main().dueCount(), 1);
    clock.advance(0);
    EXPECT_THAT(take(), ElementsAre("progress 100"));
    for (std::size_t i = 101; i <= 200; ++i)
        gate.report({.fileCount = i});
    clock.advance(0.04);
    EXPECT_THAT(take(), IsEmpty());
    clock.advance(0.01);
    EXPECT_THAT(take(), ElementsAre("progress 200"));
    clock.advance(1);
    EXPECT_THAT(take(), IsEmpty()) << "there was nothing new";
    gate.report({.fileCount = 201});
    clock.advance(0);
    EXPECT_THAT(take(), ElementsAre("progress 201"));
    scan.stop();
}

TEST_F(FolderScanTest, StoppedItTellsWhatWasFound)
{
    FolderScan scan("/folder", handlers(), gate.reader());
    gate.report({.fileCount = 1});
    clock.advance(0);
    scan.stop();
    scan.wait();
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("progress 1", "finished with 0, stopped"));
}

TEST_F(FolderScanTest, NoProgressComesAfterTheEnd)
{
    FolderScan scan("/folder", handlers(), gate.reader());
    gate.report({.fileCount = 1});
    clock.advance(0);
    gate.report({.fileCount = 2}); // waits for its time
    gate.finish({});
    scan.wait();
    clock.advance(1);
    EXPECT_THAT(take(), ElementsAre("progress 1", "finished with 0"));
}

TEST_F(FolderScanTest, SaysWhatWasWrongWithWhichPath)
{
    const Examples::TemporaryFolder folder;
    const auto missing = std::filesystem::canonical(folder.path()) / "missing";
    FolderScan scan(missing, handlers());
    scan.wait();
    clock.advance(0);
    EXPECT_THAT(take(), ElementsAre("“" + missing.string() + "” cannot be read: No such file or directory"));
    FolderScan other("/folder", handlers(),
                     [](const auto&, const auto&) -> FolderListing { throw std::runtime_error("too large"); });
    other.wait();
    clock.advance(0);
    EXPECT_THAT(take(), ElementsAre("“/folder” cannot be read: too large"));
}

TEST_F(FolderScanTest, ItsEndStopsTheThreadAndNothingComesAfterwards)
{
    auto scan = std::make_unique<FolderScan>("/folder", handlers(), gate.reader());
    gate.report({.fileCount = 1});
    scan.reset();
    clock.advance(1);
    EXPECT_THAT(take(), IsEmpty());

    scan = std::make_unique<FolderScan>("/folder", handlers(), gate.reader());
    gate.finish({});
    scan->wait();
    scan.reset();
    clock.advance(1);
    EXPECT_THAT(take(), IsEmpty());
}

TEST_F(FolderScanTest, MayEndInWhatItCalls)
{
    auto scan = std::make_unique<FolderScan>("/folder", handlers(), gate.reader());
    onEnd = [&] { scan.reset(); };
    gate.finish({});
    scan->wait();
    clock.advance(0);
    EXPECT_THAT(take(), ElementsAre("finished with 0"));
    EXPECT_FALSE(scan);
}

} // namespace
} // namespace FolderSizes::FolderScanTests
