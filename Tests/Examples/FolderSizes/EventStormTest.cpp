#include "FolderSizesDesktop.h"

#include <Platform/AppKit/EventStorm.h>

namespace FolderSizes::EventStormTests {
namespace {

using namespace RVCore;

// Every folder holds the same, and is read as fast as a thread can.
class FolderSizesStorm : public FolderSizesDesktop, public testing::WithParamInterface<unsigned> {
protected:
    FolderSizesStorm()
    {
        controller = make<FolderWindowController>(
            FolderWindowController::Settings{.folder = "/home/sample",
                                             .rows = 8,
                                             .reader = [](const std::filesystem::path& folder, const FolderReading&) {
                                                 return listingOf(folder, 10);
                                             }});
        controller->showWindow(nullptr);
    }
};

TEST_P(FolderSizesStorm, leavesTheProgramInOrder)
{
    EventStorm storm(*desktop, GetParam());
    std::size_t readings = 0;
    for (int i = 0; i < 250; ++i) {
        storm.run(100);
        if (controller->scan()) {
            ++readings;
            controller->scan()->wait();
        }
        wait(0.1);
    }
    EXPECT_GT(readings, 1U) << "the storm has opened nothing";
    if (controller->scan())
        awaitEnd();
    wait(2);
    const std::weak_ptr<NSWindow> last = controller->window();
    window().close();
    controller.reset();
    clock.advance(3);
    EXPECT_TRUE(last.expired()) << "nothing holds the window when it is closed";
}

INSTANTIATE_TEST_SUITE_P(Seeds, FolderSizesStorm, testing::Values(1U, 2U, 3U, 4U));

} // namespace
} // namespace FolderSizes::EventStormTests
