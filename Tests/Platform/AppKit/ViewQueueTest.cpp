#include "ViewTesting.h"

#include <AppKit/ViewQueue.h>

namespace RVCore {
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

} // namespace
} // namespace RVCore
