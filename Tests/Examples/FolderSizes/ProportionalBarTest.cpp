#include <FolderSizes/ProportionalBar.h>

namespace FolderSizes::ProportionalBarTests {
namespace {

using namespace RVCore;

TEST(ProportionalBar, fillsItsFractionFromTheLeft)
{
    auto bar = make<ProportionalBar>();
    bar->setFrame({0, 0, 200, 8});
    bar->setFraction(0.25);
    bar->layoutSubtreeIfNeeded();
    ASSERT_EQ(bar->subviews().size(), 1U);
    EXPECT_EQ(bar->subviews()[0]->frame(), CGRect(0, 0, 50, 8));
    bar->setFraction(1);
    bar->setFrameSize({100, 8});
    bar->layoutSubtreeIfNeeded();
    EXPECT_EQ(bar->subviews()[0]->frame(), CGRect(0, 0, 100, 8));
}

} // namespace
} // namespace FolderSizes::ProportionalBarTests
