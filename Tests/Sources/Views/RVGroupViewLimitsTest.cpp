#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace RVCore::RVGroupViewLimitsTests {

namespace {

using Orientation = RVGroupView::Orientation;

TEST(RVGroupViewLimits, aGroupInAGroupAThousandDeepIsLaidOut)
{
    const auto innermost = sized(30, 20);
    std::shared_ptr<NSView> view = innermost;
    for (int depth = 0; depth < 1000; ++depth)
        view = makeGroupView({view}, {.orientation = depth % 2 ? Orientation::horizontal : Orientation::vertical});
    EXPECT_EQ(view->intrinsicContentSize(), (CGSize{30, 20}));
    const auto host = hostOf(view, {30, 20});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(innermost->frame(), CGRect(0, 0, 30, 20));
    EXPECT_FALSE(host->needsLayout());
}

TEST(RVGroupViewLimits, tenThousandMembersAreLaidOut)
{
    RVGroupView::Views views;
    for (int i = 0; i < 10000; ++i)
        views.push_back(sized(10, 10));
    const auto group = makeGroupView(views, {.spacing = 2});
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{119998, 10}));
    const auto host = hostOf(group, {119998, 10});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views[5000]->frame(), CGRect(60000, 0, 10, 10));
    EXPECT_EQ(views.back()->frame(), CGRect(119988, 0, 10, 10));

    group->setVisibility(views[5000], false);
    EXPECT_EQ(group->intrinsicContentSize(), (CGSize{119986, 10}));
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views[5001]->frame(), CGRect(60000, 0, 10, 10));
    EXPECT_EQ(views.back()->frame(), CGRect(119976, 0, 22, 10)) << "it takes what the hidden one left";

    std::ranges::reverse(views);
    group->setViews(views);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views[5000]->frame(), CGRect(60000, 0, 10, 10));
}

} // namespace

} // namespace RVCore::RVGroupViewLimitsTests
