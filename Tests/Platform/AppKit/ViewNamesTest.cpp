#include "ViewTesting.h"

#include <AppKit/ViewNames.h>

namespace RVCore::ViewNamesTests {
namespace {

TEST(ViewNames, NumberViewsInTreeOrderAndNameThemByTheirIdentifiers)
{
    const auto host = makeHost(10, 10);
    const auto a = addTo(*host), inner = addTo(*a, "inner"), b = addTo(*host);
    const ViewNames names(*host);
    EXPECT_EQ(names.nameOf(*host), "NSView #1");
    EXPECT_EQ(names.nameOf(*a), "NSView #2");
    EXPECT_EQ(names.nameOf(*inner), "NSView \"inner\"");
    EXPECT_EQ(names.numberOf(*inner), 3U);
    EXPECT_EQ(names.nameOf(*b), "NSView #4");
}

} // namespace
} // namespace RVCore::ViewNamesTests
