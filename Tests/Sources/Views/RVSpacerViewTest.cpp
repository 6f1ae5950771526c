#include <Platform/Foundation/Raised.h>
#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <limits>

namespace RVCore::RVSpacerViewTests {

namespace {

constexpr auto horizontal = NSLayoutConstraintOrientation::horizontal;
constexpr auto vertical = NSLayoutConstraintOrientation::vertical;

class CountingSpacer : public RVSpacerView {
public:
    using ClassOwner = RVSpacerView;
    void invalidateIntrinsicContentSize() override
    {
        ++invalidations;
        RVSpacerView::invalidateIntrinsicContentSize();
    }
    int invalidations = 0;
};

TEST(RVSpacerView, ofTheDefaultSizeHasAnIntrinsicContentSizeOfZero)
{
    const auto spacer = make<RVSpacerView>();
    EXPECT_EQ(spacer->size(), CGSize());
    EXPECT_EQ(spacer->intrinsicContentSize(), CGSize());
    EXPECT_EQ(spacer->frame(), CGRect());
}

TEST(RVSpacerView, itsIntrinsicContentSizeIsItsSize)
{
    const auto spacer = make<RVSpacerView>(CGSize{30, -1});
    EXPECT_EQ(spacer->intrinsicContentSize(), (CGSize{30, -1}));
    EXPECT_EQ(spacer->frame(), CGRect()) << "the frame is left to layout";
    spacer->setSize({5, 6});
    EXPECT_EQ(spacer->intrinsicContentSize(), (CGSize{5, 6}));
}

TEST(RVSpacerView, hugsLooselyAcrossAndTightlyDown)
{
    const auto spacer = make<RVSpacerView>(CGSize{1, 2});
    EXPECT_EQ(spacer->contentHuggingPriority(horizontal), 250.0F);
    EXPECT_EQ(spacer->contentHuggingPriority(vertical), 750.0F);
    EXPECT_EQ(spacer->contentCompressionResistancePriority(horizontal), 750.0F);
    EXPECT_EQ(spacer->contentCompressionResistancePriority(vertical), 750.0F);
}

TEST(RVSpacerView, settingItsPresentSizeStillInvalidatesTheIntrinsicContentSize)
{
    const auto spacer = make<CountingSpacer>(CGSize{1, 2});
    EXPECT_EQ(spacer->invalidations, 0) << "initialising is no change";
    spacer->setSize({1, 2});
    EXPECT_EQ(spacer->invalidations, 1);
    spacer->setSize({3, 4});
    EXPECT_EQ(spacer->invalidations, 2);
}

TEST(RVSpacerView, sizesMustBeNumbers)
{
    const auto spacer = make<CountingSpacer>(CGSize{1, 2});
    EXPECT_EQ(raised([&] {
                  spacer->setSize({std::numeric_limits<double>::quiet_NaN(), 2});
              }),
              "NSInvalidArgumentException: RVSpacerView.setSize: size.width must be finite, got nan");
    EXPECT_EQ(raised([&] {
                  spacer->setSize({2, std::numeric_limits<double>::infinity()});
              }),
              "NSInvalidArgumentException: RVSpacerView.setSize: size.height must be finite, got inf");
    EXPECT_EQ(spacer->size(), (CGSize{1, 2}));
    EXPECT_EQ(spacer->invalidations, 0);
    EXPECT_EQ(raised([] {
                  make<RVSpacerView>(CGSize{std::numeric_limits<double>::quiet_NaN(), 2});
              }),
              "NSInvalidArgumentException: RVSpacerView.init: size.width must be finite, got nan");
}

TEST(RVSpacerView, everySelectorIsAnswered)
{
    const ObjectRef spacer = send(*Class::named("RVCore.RVSpacerView"), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(spacer, "initWithSize:", CGSize{3, 4}).as<ObjectRef>(), spacer);
    EXPECT_EQ(send(spacer, "size").as<CGSize>(), (CGSize{3, 4}));
    send(spacer, "setSize:", CGSize{5, 6});
    EXPECT_EQ(send(spacer, "intrinsicContentSize").as<CGSize>(), (CGSize{5, 6}));
    EXPECT_TRUE(send(spacer, "isFlipped").as<bool>());
    const ObjectRef plain = send(RVSpacerView::staticClass(), "alloc").as<ObjectRef>();
    send(plain, "init");
    EXPECT_EQ(send(plain, "size").as<CGSize>(), CGSize());
}

TEST(RVSpacerViewDeathTest, aFrameIsNoWayToMakeOne)
{
    EXPECT_DEATH(make<RVSpacerView>(CGRect()),
                 "^Fatal error: Use of unimplemented initializer 'init\\(frame:\\)' for "
                 "class 'RVCore.RVSpacerView'\n$");
    EXPECT_DEATH(send(std::make_shared<RVSpacerView>(), "initWithFrame:", CGRect()),
                 "'init\\(frame:\\)' for class 'RVCore.RVSpacerView'");
}

TEST(RVSpacerViewDeathTest, anArchiveIsNoWayToMakeOne)
{
    NSCoder coder;
    EXPECT_DEATH(std::make_shared<RVSpacerView>()->init(coder),
                 "^Sources/Common/Misc/GlobalFunctions:12: Fatal error: Not Supported\n$");
    EXPECT_DEATH(send(std::make_shared<RVSpacerView>(), "initWithCoder:", std::make_shared<NSCoder>()),
                 "GlobalFunctions:12: Fatal error: Not Supported");
}

} // namespace

} // namespace RVCore::RVSpacerViewTests
