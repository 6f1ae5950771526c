#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

namespace RVCore::RVBaseViewTests {

namespace {

TEST(RVBaseView, isAlwaysFlipped)
{
    EXPECT_TRUE(make<RVBaseView>()->isFlipped());
    EXPECT_TRUE(send(make<RVBaseView>(), "isFlipped").as<bool>());
}

TEST(RVBaseView, takesAFrame)
{
    EXPECT_EQ(make<RVBaseView>(CGRect(1, 2, 3, 4))->frame(), CGRect(1, 2, 3, 4));
    const ObjectRef view = send(RVBaseView::staticClass(), "alloc").as<ObjectRef>();
    send(view, "initWithFrame:", CGRect(1, 2, 3, 4));
    EXPECT_EQ(send(view, "frame").as<CGRect>(), CGRect(1, 2, 3, 4));
}

TEST(RVBaseView, comesBackFromAnArchive)
{
    const auto view = make<RVBaseView>(CGRect(1, 2, 3, 4));
    const auto copy = std::dynamic_pointer_cast<RVBaseView>(unarchivedObject(archivedObject(*view)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->frame(), CGRect(1, 2, 3, 4));
}

TEST(RVBaseView, theRunTimeKnowsItByItsName)
{
    EXPECT_EQ(Class::named("RVCore.RVBaseView"), &RVBaseView::staticClass());
    EXPECT_EQ(RVBaseView::staticClass().superclass(), &NSView::staticClass());
}

TEST(RVBaseView, itsOriginIsAtTheTopLeft)
{
    const auto view = make<RVBaseView>(CGRect(0, 0, 100, 100));
    const auto child = makeView(*view);
    autoPinEdgeToSuperviewEdge(*child, LayoutEdge::top, 10);
    autoPinEdgeToSuperviewEdge(*child, LayoutEdge::left, 5);
    autoSetDimensionsToSize(*child, {20, 30});
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(child->frame(), CGRect(5, 10, 20, 30));
}

} // namespace

} // namespace RVCore::RVBaseViewTests
