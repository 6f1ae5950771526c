#include "ViewTesting.h"

#include <AppKit/ViewQueue.h>

namespace RVCore::ViewQueueTests {
namespace {

TEST(ViewQueue, ServesViewsInTheOrderInWhichTheyCameAndEachOnce)
{
    ViewQueue queue(&ViewLayoutState::placeAmongStale);
    const auto a = make<NSView>(), b = make<NSView>(), c = make<NSView>();
    EXPECT_EQ(queue.front(), nullptr);
    for (const auto& view : {a, b, a, c})
        queue.add(*view);
    EXPECT_EQ(queue.count(), 3u);
    queue.remove(*a);
    queue.remove(*a);
    EXPECT_EQ(queue.front(), b.get());
    queue.add(*a);
    queue.remove(*b);
    EXPECT_EQ(queue.front(), c.get());
    queue.remove(*c);
    EXPECT_EQ(queue.front(), a.get());
    queue.remove(*a);
    EXPECT_EQ(queue.front(), nullptr);
    queue.add(*c);
    EXPECT_EQ(queue.front(), c.get());
    EXPECT_EQ(queue.count(), 1u);
}

TEST(ViewQueue, KeepsNoPlacesOfViewsThatCameAndWent)
{
    ViewQueue queue(&ViewLayoutState::placeAmongStale);
    const auto first = make<NSView>(), second = make<NSView>(), passing = make<NSView>();
    queue.add(*first);
    queue.add(*second);
    for (int i = 0; i < 10'000; ++i) {
        queue.add(*passing);
        queue.remove(*passing);
    }
    EXPECT_LT(queue.places().size(), 100u);
    EXPECT_EQ(queue.front(), first.get());
    queue.add(*passing);
    queue.remove(*first);
    EXPECT_EQ(queue.front(), second.get());
    queue.remove(*second);
    EXPECT_EQ(queue.front(), passing.get());
    queue.remove(*passing);
    EXPECT_EQ(queue.count(), 0u);
}

} // namespace
} // namespace RVCore::ViewQueueTests
