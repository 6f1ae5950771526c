#include <Foundation/KeyPath.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>
#include <Platform/QuartzCore/TestFilter.h>

#include <QuartzCore/CALayer.h>

#include <limits>

namespace RVCore::CALayerTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

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
    EXPECT_EQ(layer->opacity(), 1);
    EXPECT_FALSE(layer->isHidden());
    EXPECT_EQ(layer->contents(), nullptr);
    EXPECT_THAT(layer->filters(), IsEmpty());
    EXPECT_THAT(layer->backgroundFilters(), IsEmpty());
    EXPECT_THAT(layer->sublayers(), IsEmpty());
    EXPECT_EQ(layer->superlayer(), nullptr);
    EXPECT_TRUE(layer->needsDisplay());
}

TEST(CALayer, TellsOfEveryChangeOnceAndOfNoEqualValue)
{
    const auto layer = make<CALayer>();
    int changes = 0;
    layer->setChangeHandler([&] { ++changes; });
    const auto picture = std::make_shared<const CGImage>(1, 1, std::vector<std::uint8_t>(4));
    const auto blur = TestFilter::named("blur");
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
        layer->setOpacity(0.5);
        layer->setHidden(true);
        layer->setContents(picture);
        layer->setFilters({blur});
        layer->setBackgroundFilters({blur});
        layer->setValue(3, "filters.blur.inputRadius");
    };
    assign();
    EXPECT_EQ(changes, 16);
    assign();
    EXPECT_EQ(changes, 16);
    layer->setBackgroundColor(std::nullopt);
    EXPECT_EQ(changes, 17);
    layer->setChangeHandler(nullptr);
    layer->setZPosition(9);
    EXPECT_EQ(changes, 17);
}

TEST(CALayer, OpacityIsClipped)
{
    const auto layer = make<CALayer>();
    layer->setOpacity(-1);
    EXPECT_EQ(layer->opacity(), 0);
    layer->setOpacity(7);
    EXPECT_EQ(layer->opacity(), 1);
}

TEST(CALayer, HoldsItsSublayersInOrder)
{
    const auto layer = make<CALayer>();
    const auto a = make<CALayer>();
    const auto b = make<CALayer>();
    const auto c = make<CALayer>();
    layer->addSublayer(a);
    layer->addSublayer(b);
    layer->insertSublayer(c, 1);
    EXPECT_THAT(layer->sublayers(), ElementsAre(a, c, b));
    layer->addSublayer(a);
    EXPECT_THAT(layer->sublayers(), ElementsAre(c, b, a));
    layer->insertSublayer(a, 99);
    EXPECT_THAT(layer->sublayers(), ElementsAre(c, b, a));
    EXPECT_EQ(a->superlayer(), layer.get());
    b->removeFromSuperlayer();
    EXPECT_THAT(layer->sublayers(), ElementsAre(c, a));
    EXPECT_EQ(b->superlayer(), nullptr);
    b->removeFromSuperlayer();
}

TEST(CALayer, AddingALayerTakesItOutOfTheOneItWasIn)
{
    const auto first = make<CALayer>();
    const auto second = make<CALayer>();
    first->addSublayer(make<CALayer>());
    second->addSublayer(first->sublayers()[0]); // an element of the list that it leaves
    EXPECT_THAT(first->sublayers(), IsEmpty());
    EXPECT_EQ(second->sublayers()[0]->superlayer(), second.get());
}

TEST(CALayer, WhoHearsThatALayerLeftMayAddItElsewhere)
{
    const auto first = make<CALayer>();
    auto second = make<CALayer>();
    const auto third = make<CALayer>();
    const auto moved = make<CALayer>();
    first->addSublayer(moved);
    first->setChangeHandler([&] {
        EXPECT_THAT(second->sublayers(), ElementsAre(moved)) << "the move is over when it is told";
        third->addSublayer(moved);
        EXPECT_THAT(second->sublayers(), IsEmpty());
        second = nullptr;
    });
    second->addSublayer(moved);
    EXPECT_EQ(moved->superlayer(), third.get());
    EXPECT_THAT(third->sublayers(), ElementsAre(moved));
}

TEST(CALayer, ALayerThatCannotBeASublayerRaisesAndStaysWhereItIs)
{
    const auto layer = make<CALayer>();
    const auto inner = make<CALayer>();
    layer->addSublayer(inner);
    EXPECT_THAT(raised([&] { layer->addSublayer(layer); }), HasSubstr("cannot be put into itself"));
    EXPECT_THAT(raised([&] { inner->addSublayer(layer); }), HasSubstr("cannot be put into its own descendant"));
    EXPECT_THAT(raised([&] { layer->addSublayer(nullptr); }), HasSubstr("there is no layer"));
    EXPECT_THAT(layer->sublayers(), ElementsAre(inner));
}

TEST(CALayer, SublayersOutliveTheirSuperlayer)
{
    auto layer = make<CALayer>();
    const auto inner = make<CALayer>();
    layer->addSublayer(inner);
    layer = nullptr;
    EXPECT_EQ(inner->superlayer(), nullptr);
}

TEST(CALayer, ASublayersChangeIsToldToTheNearestHandler)
{
    const auto layer = make<CALayer>();
    const auto middle = make<CALayer>();
    const auto inner = make<CALayer>();
    int changes = 0;
    int innerChanges = 0;
    layer->setChangeHandler([&] { ++changes; });
    layer->addSublayer(middle);
    middle->addSublayer(inner);
    EXPECT_EQ(changes, 2);
    inner->setOpacity(0);
    EXPECT_EQ(changes, 3);
    inner->setChangeHandler([&] { ++innerChanges; });
    inner->setOpacity(1);
    EXPECT_EQ(changes, 3);
    EXPECT_EQ(innerChanges, 1);
    middle->removeFromSuperlayer();
    EXPECT_EQ(changes, 4);
    middle->setOpacity(0);
    EXPECT_EQ(changes, 4);
}

TEST(CALayer, AskingForADisplayTellsOfItUntilItIsDone)
{
    const auto layer = make<CALayer>();
    int changes = 0;
    layer->setChangeHandler([&] { ++changes; });
    layer->didDisplay();
    EXPECT_FALSE(layer->needsDisplay());
    EXPECT_EQ(changes, 0);
    layer->setNeedsDisplay();
    EXPECT_TRUE(layer->needsDisplay());
    EXPECT_EQ(changes, 1);
}

TEST(CALayer, AnAbsentFilterRaises)
{
    const auto layer = make<CALayer>();
    EXPECT_EQ(raised([&] { layer->setFilters({nullptr}); }),
              "NSInvalidArgumentException: CALayer.setFilters:: a filter is absent");
    EXPECT_THAT(raised([&] {
                    layer->setBackgroundFilters({TestFilter::named("a"), nullptr});
                }),
                HasSubstr("CALayer.setBackgroundFilters:: a filter is absent"));
    EXPECT_THAT(layer->backgroundFilters(), IsEmpty());
}

TEST(CALayer, FiltersAreFoundByTheirNamesInKeyPaths)
{
    const auto layer = make<CALayer>();
    layer->setBackgroundFilters({TestFilter::named("saturation"), TestFilter::named("blur")});
    int changes = 0;
    layer->setChangeHandler([&] { ++changes; });
    setValueForKeyPath(*layer, "backgroundFilters.blur.inputRadius", 8);
    EXPECT_EQ(valueForKeyPath(*layer, "backgroundFilters.blur.inputRadius"), Value(8.0));
    EXPECT_EQ(valueForKeyPath(*layer, "backgroundFilters.saturation.inputRadius"), Value(0.0));
    EXPECT_EQ(changes, 1);
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
    EXPECT_THAT(raised([&] { layer->setOpacity(nan); }), HasSubstr("CALayer.setOpacity:: opacity must be finite"));
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
        {"opacity", 0.25},
        {"hidden", true},
        {"filters", Value::Array{TestFilter::named("glow")}},
        {"backgroundFilters", Value::Array{TestFilter::named("blur")}},
    };
    for (const auto& [name, value] : values) {
        setValueForKeyPath(*layer, name, value);
        EXPECT_EQ(valueForKeyPath(*layer, name), value) << name;
    }
    EXPECT_EQ(layer->cornerRadius(), 4.5);
    const auto inner = make<CALayer>();
    send(layer, "addSublayer:", inner);
    send(layer, "insertSublayer:atIndex:", make<CALayer>(), 0);
    EXPECT_EQ(send(layer, "sublayers").array()->size(), 2U);
    EXPECT_EQ(send(inner, "superlayer"), Value(layer));
    send(inner, "removeFromSuperlayer");
    EXPECT_TRUE(send(inner, "superlayer").isNothing());
    send(layer, "setValue:forKeyPath:", 6, "backgroundFilters.blur.inputRadius");
    EXPECT_EQ(valueForKeyPath(*layer, "backgroundFilters.blur.inputRadius"), Value(6.0));
    layer->didDisplay();
    send(layer, "setNeedsDisplay");
    EXPECT_EQ(send(layer, "needsDisplay"), Value(true));
    EXPECT_EQ(send(layer, "animationKeys"), Value(Value::Array()));
    send(layer, "removeAllAnimations");
    send(layer, "setBackgroundColor:", nullptr);
    EXPECT_TRUE(send(layer, "backgroundColor").isNothing());
}

} // namespace
} // namespace RVCore::CALayerTests
