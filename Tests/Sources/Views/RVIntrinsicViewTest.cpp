#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

namespace RVCore::RVIntrinsicViewTests {

namespace {

class RVIntrinsicViewTest : public testing::Test {
protected:
    void SetUp() override
    {
        inner->setIdentifier("inner");
        wrapper->setIdentifier("wrapper");
    }

    std::shared_ptr<NSView> inner = make<NSView>();
    std::shared_ptr<RVIntrinsicView> wrapper = make<RVIntrinsicView>(inner, CGSize{40, 20});
};

TEST_F(RVIntrinsicViewTest, hasTheSizeThatItIsGiven)
{
    EXPECT_EQ(wrapper->size(), (CGSize{40, 20}));
    EXPECT_EQ(wrapper->intrinsicContentSize(), (CGSize{40, 20}));
    EXPECT_EQ(wrapper->contentHuggingPriority(NSLayoutConstraintOrientation::vertical), 750.0F);
    wrapper->setSize({50, 30});
    EXPECT_EQ(wrapper->intrinsicContentSize(), (CGSize{50, 30}));
}

TEST_F(RVIntrinsicViewTest, holdsTheViewInsideItsBounds)
{
    EXPECT_EQ(wrapper->wrappedView(), inner);
    EXPECT_EQ(wrapper->subviews(), (std::vector<std::shared_ptr<NSView>>{inner}));
    EXPECT_EQ(constraintTexts(wrapper->constraints()), "inner.top >= wrapper.top @1000\n"
                                                       "inner.left >= wrapper.left @1000\n"
                                                       "inner.bottom <= wrapper.bottom @1000\n"
                                                       "inner.right <= wrapper.right @1000\n");
}

TEST_F(RVIntrinsicViewTest, doesNotStretchTheView)
{
    autoSetDimensionsToSize(*inner, {10, 5});
    const auto host = hostOf(wrapper, {40, 20});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(inner->frame().size, (CGSize{10, 5}));
    EXPECT_TRUE(inner->frame().minX() >= 0 && inner->frame().maxX() <= 40);
    EXPECT_TRUE(inner->frame().minY() >= 0 && inner->frame().maxY() <= 20);
}

TEST(RVIntrinsicView, aroundALargerViewKeepsItsIntrinsicContentSize)
{
    const auto large = sized(100, 100);
    const auto wrapper = make<RVIntrinsicView>(large, CGSize{40, 20});
    EXPECT_EQ(wrapper->intrinsicContentSize(), (CGSize{40, 20}));
    const auto host = hostOf(wrapper, {40, 20});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(wrapper->intrinsicContentSize(), (CGSize{40, 20}));
    EXPECT_EQ(wrapper->frame(), CGRect(0, 0, 40, 20));
    EXPECT_EQ(large->frame(), CGRect(0, 0, 40, 20)) << "the required bounds win over its own 750";
}

TEST_F(RVIntrinsicViewTest, replacingTheWrappedViewLeavesTheFirstOneInside)
{
    const auto before = wrapper->constraints();
    const auto other = make<NSView>();
    wrapper->setWrappedView(other);
    EXPECT_EQ(wrapper->wrappedView(), other);
    EXPECT_EQ(wrapper->subviews(), (std::vector<std::shared_ptr<NSView>>{inner}));
    EXPECT_EQ(wrapper->constraints(), before);
    EXPECT_EQ(other->superview(), nullptr);
}

TEST_F(RVIntrinsicViewTest, theWrappedViewIsNeverAbsent)
{
    EXPECT_EQ(raised([] { make<RVIntrinsicView>(std::shared_ptr<NSView>(), CGSize()); }),
              "NSInvalidArgumentException: RVIntrinsicView.init: view must not be absent");
    EXPECT_EQ(raised([this] { wrapper->setWrappedView(nullptr); }),
              "NSInvalidArgumentException: RVIntrinsicView.setWrappedView: view must not be absent");
    EXPECT_EQ(wrapper->wrappedView(), inner);
}

TEST_F(RVIntrinsicViewTest, everySelectorIsAnswered)
{
    const auto view = make<NSView>();
    const ObjectRef made = send(*Class::named("RVCore.RVIntrinsicView"), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(made, "initWithView:size:", view, CGSize{1, 2}).as<ObjectRef>(), made);
    EXPECT_EQ(send(made, "wrappedView").as<ObjectRef>(), view);
    send(made, "setWrappedView:", inner);
    EXPECT_EQ(send(made, "wrappedView").as<ObjectRef>(), inner);
    send(made, "setSize:", CGSize{3, 4});
    EXPECT_EQ(send(made, "size").as<CGSize>(), (CGSize{3, 4}));
}

TEST(RVIntrinsicViewDeathTest, aSizeOrAFrameAloneIsNoWayToMakeOne)
{
    EXPECT_DEATH(make<RVIntrinsicView>(CGSize()), "^Fatal error: Use of unimplemented initializer 'init\\(size:\\)' "
                                                  "for class 'RVCore.RVIntrinsicView'\n$");
    EXPECT_DEATH(make<RVIntrinsicView>(), "'init\\(size:\\)' for class 'RVCore.RVIntrinsicView'");
    EXPECT_DEATH(send(std::make_shared<RVIntrinsicView>(), "initWithSize:", CGSize()),
                 "'init\\(size:\\)' for class 'RVCore.RVIntrinsicView'");
    EXPECT_DEATH(make<RVIntrinsicView>(CGRect()), "'init\\(frame:\\)' for class 'RVCore.RVIntrinsicView'");
}

TEST(RVIntrinsicViewDeathTest, anArchiveIsNoWayToMakeOne)
{
    NSCoder coder;
    EXPECT_DEATH(std::make_shared<RVIntrinsicView>()->init(coder),
                 "^Sources/Common/Misc/GlobalFunctions:12: Fatal error: Not Supported\n$");
}

} // namespace

} // namespace RVCore::RVIntrinsicViewTests
