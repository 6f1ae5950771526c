#include <Examples/TemporaryFolder.h>
#include <FolderSizes/FolderListing.h>

#include <unistd.h>

namespace FolderSizes::FolderListingTests {
namespace {

std::vector<std::string> names(const FolderListing& listing)
{
    std::vector<std::string> result;
    for (const Entry& entry : listing.entries)
        result.push_back(entry.name);
    return result;
}

TEST(FolderListing, putsTheLargestFirstAndEqualOnesByName)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("b", 10);
    folder.addFile("a", 10);
    folder.addFile("large", 500);
    folder.addFile("deep/er/file", 300);
    const FolderListing listing = listFolder(folder.path());
    EXPECT_EQ(names(listing), (std::vector<std::string>{"large", "deep", "a", "b"}));
    EXPECT_EQ(listing.entries[1].kind, EntryKind::folder);
    EXPECT_EQ(listing.entries[1].size, 300U);
    EXPECT_EQ(listing.totalSize, 820U);
    EXPECT_EQ(listing.unreadableCount, 0U);
}

TEST(FolderListing, ofAnEmptyFolderIsEmpty)
{
    const Examples::TemporaryFolder folder;
    const FolderListing listing = listFolder(folder.path());
    EXPECT_TRUE(listing.entries.empty());
    EXPECT_EQ(listing.totalSize, 0U);
}

TEST(FolderListing, doesNotFollowLinks)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("file", 100);
    std::filesystem::create_symlink(folder.path(), folder.path() / "loop");
    std::filesystem::create_symlink("nowhere", folder.path() / "dangling");
    const FolderListing listing = listFolder(folder.path());
    EXPECT_EQ(names(listing), (std::vector<std::string>{"file", "dangling", "loop"}));
    EXPECT_EQ(listing.entries[2].kind, EntryKind::link);
    EXPECT_EQ(listing.totalSize, 100U);
}

TEST(FolderListing, marksWhatCannotBeRead)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("open", 10);
    folder.addFile("closed/inside", 20);
    const auto closed = folder.path() / "closed";
    // Nothing is closed to the superuser but a folder that went away, so the test asks as somebody else.
    std::filesystem::permissions(folder.path(), std::filesystem::perms::all);
    std::filesystem::permissions(closed, std::filesystem::perms::none);
    const bool isSuperuser = geteuid() == 0;
    if (isSuperuser) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    const FolderListing listing = listFolder(folder.path());
    if (isSuperuser) {
        ASSERT_EQ(seteuid(0), 0);
    }
    std::filesystem::permissions(closed, std::filesystem::perms::all);
    EXPECT_EQ(names(listing), (std::vector<std::string>{"open", "closed"}));
    EXPECT_FALSE(listing.entries[1].isComplete);
    EXPECT_EQ(listing.unreadableCount, 1U);
    EXPECT_EQ(listing.totalSize, 10U);
}

TEST(FolderListing, ofAFileThrowsWithItsPath)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("file", 1);
    try {
        listFolder(folder.path() / "file");
        FAIL() << "a file was listed";
    } catch (const std::filesystem::filesystem_error& error) {
        EXPECT_EQ(error.path1(), std::filesystem::canonical(folder.path()) / "file");
    }
}

TEST(FolderListing, copesWithThousandsOfEntriesAndTellsItsProgress)
{
    const Examples::TemporaryFolder folder;
    for (int i = 0; i < 2500; ++i)
        folder.addFile("file" + std::to_string(i), 1);
    std::vector<std::size_t> counts;
    const auto progress = [&](const FolderProgress& present) { counts.push_back(present.fileCount); };
    const FolderListing listing = listFolder(folder.path(), {.progress = progress});
    EXPECT_EQ(listing.entries.size(), 2500U);
    EXPECT_EQ(counts, (std::vector<std::size_t>{0, 1000, 2000}));
}

TEST(FolderListing, tellsEveryDirectoryAndHowManyOfItsOwnEntriesAreFinished)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("file", 1);
    folder.addFile("deep/er/file", 1);
    std::vector<std::filesystem::path> directories;
    FolderProgress last;
    const auto progress = [&](const FolderProgress& present) {
        directories.push_back(present.directory);
        last = present;
    };
    listFolder(folder.path(), {.progress = progress});
    const auto top = std::filesystem::canonical(folder.path());
    EXPECT_EQ(directories, (std::vector<std::filesystem::path>{top, top / "deep", top / "deep/er"}));
    EXPECT_EQ(last.entryCount, 2U);
    EXPECT_LE(last.finishedCount, 1U) << "the folder is still being read";
}

TEST(FolderListing, stoppedHoldsWhatWasFound)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("file", 5);
    folder.addFile("a/file", 10);
    folder.addFile("b/file", 10);
    std::stop_source source;
    std::vector<std::string> begun;
    const auto progress = [&](const FolderProgress& present) {
        if (present.entryCount > 0)
            begun.push_back(present.directory.filename().string());
        if (begun.size() == 2)
            source.request_stop();
    };
    const FolderListing listing = listFolder(folder.path(), {.progress = progress, .stop = source.get_token()});
    EXPECT_TRUE(listing.isStopped);
    ASSERT_EQ(begun.size(), 2U);
    EXPECT_EQ(names(listing), (std::vector<std::string>{begun[0], "file", begun[1]}));
    EXPECT_TRUE(listing.entries[0].isComplete);
    EXPECT_TRUE(listing.entries[1].isComplete);
    EXPECT_FALSE(listing.entries[2].isComplete);
    EXPECT_EQ(listing.totalSize, 15U);
    EXPECT_EQ(listing.unreadableCount, 0U);
}

TEST(FolderListing, stoppedBeforeItBeginsFindsNothing)
{
    const Examples::TemporaryFolder folder;
    folder.addFile("file", 5);
    std::stop_source source;
    source.request_stop();
    const FolderListing listing = listFolder(folder.path(), {.stop = source.get_token()});
    EXPECT_TRUE(listing.isStopped);
    EXPECT_TRUE(listing.entries.empty());
}

} // namespace
} // namespace FolderSizes::FolderListingTests
