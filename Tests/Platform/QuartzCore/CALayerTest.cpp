#include <Foundation/KeyPath.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CALayer.h>

#include <limits>

namespace RVCore {
namespace {

using testing::HasSubstr;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr CGColor red{1, 0, 0, 1};

TEST(CALayer, StartsAnchoredAtItsCentreAndInvisible)
{
    const auto layer = make<CALayer>();
    EXPECT_EQ(layer->anchorPoint(), (CGPoint{0.5, 0.5}));
    EXPECT_EQ(layer->position(), CGPoint());
    EXPECT_EQ(layer->bounds(), CGRect());
    EXPECT_TRUE(layer->affineTransform().isIdentity());
    EXPECT_EQ(layer->zPosition(), 0);
    EXPECT_EQ(layer->backgroundColor(), std::nullopt);
    EXPECT_EQ(layer->cornerRadius(), 0);
    EXPECT_EQ(layer->borderWidth(), 0);
    EXPECT_EQ(layer->borderColor(), std::nullopt);
    EXPECT_FALSE(layer->masksToBounds());
}

TEST(CALayer, TellsOfEveryChangeOnceAndOfNoEqualValue)
{
    const auto layer = make<CALayer>();
    int changes = 0;
    layer->setChangeHandler([&] { ++changes; });
    const auto assign = [&] {
        layer->setPosition({1, 2});
        layer->setBounds({0, 0, 3, 4});
        layer->setAnchorPoint({0, 1});
        layer->setAffineTransform(CGAffineTransform::scale(2, 3));
        layer->setZPosition(-1);
        layer->setBackgroundColor(red);
        layer->setCornerRadius(5);
        layer->setBorderWidth(6);
        layer->setBorderColor(red);
        layer->setMasksToBounds(true);
    };
    assign();
    EXPECT_EQ(changes, 10);
    assign();
    EXPECT_EQ(changes, 10);
    layer->setBackgroundColor(std::nullopt);
    EXPECT_EQ(changes, 11);
    layer->setChangeHandler(nullptr);
    layer->setZPosition(9);
    EXPECT_EQ(changes, 11);
}

TEST(CALayer, ValuesThatAreNotFiniteOrNegativeLengthsRaiseAndChangeNothing)
{
    const auto layer = make<CALayer>();
    layer->setChangeHandler([] { FAIL(); });
    EXPECT_THAT(raised([&] { layer->setPosition({nan, 0}); }), HasSubstr("CALayer.setPosition:: position.x"));
    EXPECT_THAT(raised([&] { layer->setBounds({0, 0, 1, nan}); }), HasSubstr("CALayer.setBounds:: bounds.height"));
    EXPECT_THAT(raised([&] { layer->setAnchorPoint({0, nan}); }), HasSubstr("anchorPoint.y"));
    EXPECT_THAT(raised([&] { layer->setAffineTransform({1, 0, 0, nan, 0, 0}); }), HasSubstr("transform"));
    EXPECT_THAT(raised([&] { layer->setZPosition(nan); }), HasSubstr("zPosition"));
    EXPECT_THAT(raised([&] { layer->setCornerRadius(nan); }), HasSubstr("CALayer.setCornerRadius:: radius"));
    EXPECT_THAT(raised([&] { layer->setCornerRadius(-1); }), HasSubstr("radius must not be negative, got -1"));
    EXPECT_THAT(raised([&] { layer->setBorderWidth(-2); }), HasSubstr("width must not be negative, got -2"));
    EXPECT_THAT(raised([&] { layer->setBackgroundColor(CGColor{0, nan, 0, 1}); }), HasSubstr("color"));
    EXPECT_THAT(raised([&] { layer->setBorderColor(CGColor{0, 0, 0, nan}); }), HasSubstr("color"));
    EXPECT_EQ(layer->backgroundColor(), std::nullopt);
    EXPECT_EQ(layer->cornerRadius(), 0);
}

TEST(CALayer, EveryPropertyIsReadAndWrittenByName)
{
    const auto layer = make<CALayer>();
    const std::pair<const char*, Value> values[] = {
        {"position", CGPoint{1, 2}},
        {"bounds", CGRect(0, 0, 3, 4)},
        {"anchorPoint", CGPoint{0, 1}},
        {"affineTransform", CGAffineTransform::scale(2, 2)},
        {"zPosition", 3.5},
        {"backgroundColor", red},
        {"cornerRadius", 4.5},
        {"borderWidth", 5.5},
        {"borderColor", red},
        {"masksToBounds", true},
    };
    for (const auto& [name, value] : values) {
        setValueForKeyPath(*layer, name, value);
        EXPECT_EQ(valueForKeyPath(*layer, name), value) << name;
    }
    EXPECT_EQ(layer->cornerRadius(), 4.5);
    send(layer, "setBackgroundColor:", nullptr);
    EXPECT_TRUE(send(layer, "backgroundColor").isNothing());
}

} // namespace
} // namespace RVCore
