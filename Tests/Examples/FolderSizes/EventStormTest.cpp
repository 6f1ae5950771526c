#include <FolderSizes/FolderView.h>
#include <Platform/AppKit/EventStorm.h>

namespace FolderSizes {
namespace {

using namespace RVCore;

class FolderSizesStorm : public testing::TestWithParam<unsigned> {};

TEST_P(FolderSizesStorm, leavesTheProgramInOrder)
{
    auto owned = std::make_unique<HeadlessBackend>();
    HeadlessBackend& desktop = *owned;
    Backend::install(std::move(owned));
    FolderListing listing;
    listing.path = "/home/sample";
    for (int i = 0; i < 10; ++i)
        listing.entries.push_back({.name = "entry " + std::to_string(i), .kind = EntryKind::file, .size = 10});
    listing.totalSize = 100;
    std::weak_ptr<NSWindow> last;
    {
        const auto window = make<NSWindow>(CGSize{760, 500});
        last = window;
        window->setContentView(make<FolderView>(listing, 100));
        window->makeKeyAndOrderFront();
        EventStorm(desktop, GetParam()).run(25'000);
        window->close();
    }
    EXPECT_TRUE(last.expired()) << "nothing holds the window when it is closed";
    Backend::install(nullptr);
}

INSTANTIATE_TEST_SUITE_P(Seeds, FolderSizesStorm, testing::Values(1U, 2U, 3U, 4U));

} // namespace
} // namespace FolderSizes
