#include "ViewTesting.h"

#include <AppKit/ViewDump.h>

namespace RVCore::LayoutContextTests {
namespace {

using testing::HasSubstr;
TEST(LayoutContext, TheOrderOfActivationDecidesWhenADetachedTreeIsFirstLaidOut)
{
    for (const bool innerFirst : {false, true}) {
        const auto host = makeHost(100, 100);
        const auto outer = addTo(*host), inner = addTo(*outer);
        const auto byHost =
            make<NSLayoutConstraint>(*inner, Attribute::width, Relation::equal, host.get(), Attribute::width, 1, 0);
        const auto own = make<NSLayoutConstraint>(*inner, Attribute::width, Relation::equal, nullptr,
                                                  Attribute::notAnAttribute, 1, 7);
        (innerFirst ? own : byHost)->setActive(true);
        (innerFirst ? byHost : own)->setActive(true);
        EXPECT_THAT(reportOf(*host), HasSubstr("Left out"));
        EXPECT_EQ(inner->frame().size.width, innerFirst ? 7 : 100);
    }
}

TEST(LayoutContext, ASubtreeThatIsAddedAndRemovedBeforeThePassLeavesNothingBehind)
{
    const auto host = makeHost(100, 100);
    host->layoutSubtreeIfNeeded();
    std::vector<std::shared_ptr<NSView>> views;
    for (int i = 0; i < 4; ++i)
        views.push_back(addTo(*host));
    const auto nested = addTo(*views[2]);
    views[1]->removeFromSuperview();
    views[3]->removeFromSuperview();
    place(*views[2], {1, 2, 3, 4});
    place(*nested, {5, 6, 7, 8});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views[2]->frame(), CGRect(1, 2, 3, 4));
    EXPECT_EQ(nested->frame(), CGRect(5, -10, 7, 8)); // 6 below the top of a view that is 4 high
    const auto late = addTo(*nested);
    views[2]->removeFromSuperview(); // while something in it waits
    host->addSubview(views[2]);
    place(*late, {9, 9, 9, 9});
    views[2]->addSubview(views[1]);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(late->frame(), CGRect(9, -10, 9, 9)); // 9 below the top of a view that is 8 high
}

TEST(LayoutContext, AConstraintToAViewThatWaitsTakesItIn)
{
    const auto host = makeHost(100, 100);
    host->layoutSubtreeIfNeeded();
    const auto view = addTo(*host), inner = addTo(*view);
    const auto early = hold(*inner, Attribute::width, *view, Attribute::width, {.constant = -4});
    hold(*view, Attribute::width, *host, Attribute::width, {.constant = -10});
    early->setConstant(-5);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 90);
    EXPECT_EQ(inner->frame().size.width, 85);
}

TEST(LayoutContext, AddedAndRemovedIsTheSameAsNeverThere)
{
    const auto host = makeHost(100, 100);
    const auto view = addTo(*host);
    place(*view, {1, 2, 3, 4});
    host->layoutSubtreeIfNeeded();
    const std::string before = describeViewTree(*host);
    const auto guest = addTo(*host);
    hold(*guest, Attribute::right, *view, Attribute::left);
    hold(*view, Attribute::width, *guest, Attribute::width, {.priority = 400});
    host->layoutSubtreeIfNeeded();
    guest->removeFromSuperview();
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(describeViewTree(*host), before);
}

} // namespace
} // namespace RVCore::LayoutContextTests
