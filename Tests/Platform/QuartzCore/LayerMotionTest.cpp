#include <Dispatch/ManualDispatchClock.h>
#include <Foundation/KeyPath.h>
#include <Platform/Foundation/Raised.h>
#include <Platform/QuartzCore/TestFilter.h>

#include <QuartzCore/CAMediaTimingFunction.h>
#include <QuartzCore/LayerMotion.h>
#include <QuartzCore/LayerPresentation.h>

#include <thread>

namespace RVCore::LayerMotionTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr CGColor red{1, 0, 0, 1};
constexpr CGColor blue{0, 0, 1, 1};

// A layer whose motions take one second, at a constant pace.
class LayerMotionTest : public testing::Test {
protected:
    LayerMotionTest()
    {
        layer->setChangeHandler([this] { ++changes; });
    }
    ~LayerMotionTest() override { layer->setChangeHandler(nullptr); }

    template <class Change> void move(const Change& change, double duration = 1)
    {
        LayerMotion motion{duration, CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear), {}};
        const LayerMotion::Scope scope(&motion);
        change();
    }
    LayerPresentation shown() const { return LayerPresentation(*layer); }

    ManualDispatchClock clock;
    std::shared_ptr<CALayer> layer = make<CALayer>();
    int changes = 0;
};

TEST_F(LayerMotionTest, ASetterJumpsWhileNoMotionIsInForce)
{
    layer->setOpacity(0.5);
    EXPECT_EQ(shown().opacity(), 0.5);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

TEST_F(LayerMotionTest, TheModelIsThereAtOnceAndThePresentationGoesThere)
{
    move([&] { layer->setOpacity(0); });
    EXPECT_EQ(layer->opacity(), 0);
    EXPECT_EQ(shown().opacity(), 1);
    clock.advance(0.25);
    EXPECT_EQ(shown().opacity(), 0.75);
    clock.advance(0.5);
    EXPECT_EQ(shown().opacity(), 0.25);
    clock.advance(0.25);
    EXPECT_EQ(shown().opacity(), 0);
}

TEST_F(LayerMotionTest, EveryPropertyThatCanMoveDoes)
{
    layer->setBackgroundColor(red);
    layer->setBorderColor(red);
    move([&] {
        layer->setPosition({10, 20});
        layer->setBounds({0, 0, 30, 40});
        layer->setAffineTransform(CGAffineTransform::scale(3, 3));
        layer->setZPosition(2);
        layer->setOpacity(0);
        layer->setBackgroundColor(blue);
        layer->setCornerRadius(8);
        layer->setBorderWidth(4);
        layer->setBorderColor(blue);
    });
    EXPECT_THAT(layer->animationKeys(), ElementsAre("position", "bounds", "affineTransform", "zPosition", "opacity",
                                                    "backgroundColor", "cornerRadius", "borderWidth", "borderColor"));
    clock.advance(0.5);
    const CGColor purple{0.5, 0, 0.5, 1};
    EXPECT_EQ(shown().position(), (CGPoint{5, 10}));
    EXPECT_EQ(shown().bounds(), CGRect(0, 0, 15, 20));
    EXPECT_EQ(shown().affineTransform(), CGAffineTransform::scale(2, 2));
    EXPECT_EQ(shown().zPosition(), 1);
    EXPECT_EQ(shown().opacity(), 0.5);
    EXPECT_EQ(shown().backgroundColor(), purple);
    EXPECT_EQ(shown().cornerRadius(), 4);
    EXPECT_EQ(shown().borderWidth(), 2);
    EXPECT_EQ(shown().borderColor(), purple);
    clock.advance(0.5);
    EXPECT_THAT(layer->animationKeys(), IsEmpty());
    EXPECT_EQ(shown().position(), (CGPoint{10, 20}));
    EXPECT_EQ(shown().backgroundColor(), blue);
}

TEST_F(LayerMotionTest, AnAbsentColorFadesInAndOut)
{
    move([&] { layer->setBackgroundColor(red); });
    clock.advance(0.25);
    EXPECT_EQ(shown().backgroundColor(), (CGColor{1, 0, 0, 0.25}));
    clock.advance(1);
    move([&] { layer->setBackgroundColor(std::nullopt); });
    clock.advance(0.25);
    EXPECT_EQ(shown().backgroundColor(), (CGColor{1, 0, 0, 0.75}));
    clock.advance(0.75);
    EXPECT_EQ(shown().backgroundColor(), std::nullopt);
}

TEST_F(LayerMotionTest, TheCurveShapesTheWay)
{
    LayerMotion motion{1, CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseIn), {}};
    {
        const LayerMotion::Scope scope(&motion);
        layer->setOpacity(0);
    }
    clock.advance(0.3);
    EXPECT_DOUBLE_EQ(shown().opacity(), 1 - motion.timingFunction->value(0.3));
}

TEST_F(LayerMotionTest, WithoutACurveItIsTheDefaultOne)
{
    LayerMotion motion;
    EXPECT_EQ(motion.duration, 0.25);
    {
        const LayerMotion::Scope scope(&motion);
        layer->setZPosition(1);
    }
    clock.advance(0.125);
    EXPECT_DOUBLE_EQ(shown().zPosition(),
                     CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionDefault)->value(0.5));
}

TEST_F(LayerMotionTest, ACurveThatOvershootsKeepsValuesInTheirRange)
{
    const auto backAndBeyond = make<CAMediaTimingFunction>(0.3, -3.0, 0.7, 4.0);
    LayerMotion motion{1, backAndBeyond, {}};
    layer->setBackgroundColor(blue);
    {
        const LayerMotion::Scope scope(&motion);
        layer->setOpacity(0);
        layer->setCornerRadius(4);
        layer->setBounds({0, 0, 10, 10});
        layer->setBackgroundColor(red);
    }
    clock.advance(0.2);
    ASSERT_LT(backAndBeyond->value(0.2), 0);
    EXPECT_EQ(shown().opacity(), 1);
    EXPECT_EQ(shown().cornerRadius(), 0);
    EXPECT_EQ(shown().bounds().size, CGSize());
    EXPECT_EQ(shown().backgroundColor(), blue);
    clock.advance(0.6);
    ASSERT_GT(backAndBeyond->value(0.8), 1);
    EXPECT_EQ(shown().opacity(), 0);
    EXPECT_GT(shown().cornerRadius(), 4);
}

TEST_F(LayerMotionTest, ANewTargetIsReachedFromWhereThePresentationStands)
{
    move([&] { layer->setOpacity(0); });
    clock.advance(0.5);
    move([&] { layer->setOpacity(1); });
    EXPECT_EQ(shown().opacity(), 0.5);
    clock.advance(0.5);
    EXPECT_EQ(shown().opacity(), 0.75);
    EXPECT_THAT(layer->animationKeys(), ElementsAre("opacity"));
    clock.advance(0.5);
    EXPECT_EQ(shown().opacity(), 1);
}

TEST_F(LayerMotionTest, TheSameTargetAgainTakesTheNewMotionsTime)
{
    move([&] { layer->setOpacity(0); });
    clock.advance(0.5);
    move([&] { layer->setOpacity(0); }, 2);
    clock.advance(1);
    EXPECT_EQ(shown().opacity(), 0.25);
}

TEST_F(LayerMotionTest, AValueSetWithoutAMotionEndsTheWay)
{
    move([&] { layer->setOpacity(0); });
    clock.advance(0.5);
    layer->setOpacity(0.9);
    EXPECT_EQ(shown().opacity(), 0.9);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

TEST_F(LayerMotionTest, TheValueThatTheModelHasAlreadyEndsTheWayAndIsTold)
{
    const auto blur = TestFilter::named("blur");
    layer->setFilters({blur});
    const auto moveBoth = [&](double opacity, double radius) {
        layer->setOpacity(opacity);
        layer->setValue(radius, "filters.blur.inputRadius");
    };
    for (const bool inMotionOfNoTime : {false, true}) {
        move([&] { moveBoth(inMotionOfNoTime ? 1 : 0, inMotionOfNoTime ? 0 : 8); });
        clock.advance(0.5);
        changes = 0;
        const auto setAgain = [&] { moveBoth(layer->opacity(), blur->inputRadius()); };
        if (inMotionOfNoTime)
            move(setAgain, 0);
        else
            setAgain();
        EXPECT_EQ(shown().opacity(), layer->opacity());
        EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), std::nullopt);
        EXPECT_EQ(layer->animationEnd(), std::nullopt);
        EXPECT_EQ(changes, 2);
        setAgain();
        EXPECT_EQ(changes, 2) << "nothing was on its way";
    }
}

TEST_F(LayerMotionTest, AMotionOfNoTimeJumpsAndEndsTheWay)
{
    move([&] { layer->setOpacity(0); });
    move([&] { layer->setOpacity(0.5); }, 0);
    EXPECT_EQ(shown().opacity(), 0.5);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

TEST_F(LayerMotionTest, TheHandlerIsToldOnceWhenAWayBegins)
{
    move([&] { layer->setOpacity(0); });
    EXPECT_EQ(changes, 1);
    move([&] { layer->setOpacity(0); }); // a new way to the same place
    EXPECT_EQ(changes, 2);
    clock.advance(2);
    move([&] { layer->setOpacity(0); }); // it stands there already
    EXPECT_EQ(changes, 2);
}

TEST_F(LayerMotionTest, TheMotionKnowsWhenTheLastOfItIsOver)
{
    LayerMotion motion;
    const LayerMotion::Scope scope(&motion);
    EXPECT_EQ(motion.end, std::nullopt);
    motion.duration = 2;
    layer->setOpacity(1); // as it is
    EXPECT_EQ(motion.end, DispatchTime(2));
    motion.duration = 1;
    layer->setZPosition(5);
    EXPECT_EQ(motion.end, DispatchTime(2));
    clock.advance(1.5);
    layer->setZPosition(6);
    EXPECT_EQ(motion.end, DispatchTime(2.5));
}

TEST_F(LayerMotionTest, ScopesNestAndNullTakesTheMotionOutOfForce)
{
    LayerMotion outer;
    LayerMotion inner;
    const LayerMotion::Scope outerScope(&outer);
    {
        const LayerMotion::Scope innerScope(&inner);
        EXPECT_EQ(LayerMotion::current(), &inner);
    }
    EXPECT_EQ(LayerMotion::current(), &outer);
    {
        const LayerMotion::Scope none(nullptr);
        layer->setOpacity(0);
        EXPECT_EQ(shown().opacity(), 0);
    }
    std::thread([] { EXPECT_EQ(LayerMotion::current(), nullptr); }).join();
}

TEST_F(LayerMotionTest, TheLastEndIsThatOfLayerAndSublayers)
{
    const auto sublayer = make<CALayer>();
    layer->addSublayer(sublayer);
    move([&] { layer->setOpacity(0); }, 1);
    move([&] { sublayer->setPosition({1, 1}); }, 3);
    EXPECT_EQ(layer->animationEnd(), DispatchTime(3));
    EXPECT_EQ(sublayer->animationEnd(), DispatchTime(3));
    clock.advance(3);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

TEST_F(LayerMotionTest, TheFrameAfterAnEndTellsOfIt)
{
    const auto sublayer = make<CALayer>();
    layer->addSublayer(sublayer);
    const auto changesOfFrame = [&] {
        changes = 0;
        return std::pair(layer->prepareFrame(DispatchTime::now()), changes);
    };
    EXPECT_EQ(changesOfFrame(), std::pair(false, 0));
    move([&] { layer->setOpacity(0); }, 1);
    move([&] { sublayer->setOpacity(0); }, 2);
    clock.advance(0.5);
    EXPECT_EQ(changesOfFrame(), std::pair(true, 0)) << "who paints finds by itself what has moved";
    clock.advance(0.5);
    EXPECT_EQ(changesOfFrame(), std::pair(true, 1));
    EXPECT_EQ(changesOfFrame(), std::pair(true, 0));
    clock.advance(1);
    EXPECT_EQ(changesOfFrame(), std::pair(false, 1));
    EXPECT_EQ(changesOfFrame(), std::pair(false, 0));
}

TEST_F(LayerMotionTest, WhoHearsOfAnEndMayLetGoOfTheLayers)
{
    auto owner = make<CALayer>();
    const std::weak_ptr<CALayer> watched = owner;
    for (int i = 0; i < 3; ++i)
        owner->addSublayer(make<CALayer>());
    move([&] {
        owner->setOpacity(0);
        for (const auto& sublayer : owner->sublayers())
            sublayer->setOpacity(0);
    });
    int ends = 0;
    owner->setChangeHandler([&] {
        if (++ends > 1)
            return;
        for (const auto& sublayer : std::vector(owner->sublayers()))
            sublayer->removeFromSuperlayer();
        owner = nullptr;
    });
    clock.advance(1);
    EXPECT_FALSE(owner->prepareFrame(DispatchTime::now()));
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(ends, 5) << "of an end, of the sublayers that left, and of its own";
}

TEST_F(LayerMotionTest, RemovingTheAnimationsJumpsToTheModel)
{
    move([&] { layer->setOpacity(0); });
    changes = 0;
    layer->removeAllAnimations();
    EXPECT_EQ(shown().opacity(), 0);
    EXPECT_EQ(changes, 1);
    layer->removeAllAnimations();
    EXPECT_EQ(changes, 1);
}

TEST_F(LayerMotionTest, ReducedMovementJumpsAndFadesAllTheSame)
{
    LayerMotion motion{.reducesMovement = true};
    {
        const LayerMotion::Scope scope(&motion);
        layer->setPosition({100, 0});
        layer->setBounds({0, 0, 10, 10});
        layer->setAffineTransform(CGAffineTransform::scale(2, 2));
        layer->setOpacity(0);
        layer->setBackgroundColor(red);
    }
    EXPECT_EQ(shown().position(), (CGPoint{100, 0}));
    EXPECT_EQ(shown().bounds(), CGRect(0, 0, 10, 10));
    EXPECT_THAT(layer->animationKeys(), ElementsAre("opacity", "backgroundColor"));
    EXPECT_EQ(motion.end, DispatchTime(0.25));
}

TEST_F(LayerMotionTest, WhatRanByAClockThatWasReplacedIsOver)
{
    clock.advance(100);
    move([&] { layer->setOpacity(0); });
    const ManualDispatchClock another;
    EXPECT_EQ(shown().opacity(), 0);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

TEST_F(LayerMotionTest, AFiltersInputMovesThroughTheLayer)
{
    const auto blur = TestFilter::named("blur");
    layer->setBackgroundFilters({TestFilter::named("saturation"), blur});
    changes = 0;
    move([&] { layer->setValue(8.0, "backgroundFilters.blur.inputRadius"); });
    EXPECT_EQ(blur->inputRadius(), 8);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), 0);
    EXPECT_THAT(layer->animationKeys(), ElementsAre("backgroundFilters.blur.inputRadius"));
    clock.advance(0.25);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), 2);
    EXPECT_EQ(shown().filterInput(*blur, "inputMode"), std::nullopt);
    move([&] { layer->setValue(0, "backgroundFilters.blur.inputRadius"); }); // an integer will do
    clock.advance(0.5);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), 1);
    clock.advance(0.5);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), std::nullopt);
    EXPECT_EQ(blur->inputRadius(), 0);
}

TEST_F(LayerMotionTest, AFiltersInputGoesToWhatTheFilterMadeOfIt)
{
    const auto blur = TestFilter::named("blur");
    blur->setInputRadius(4);
    layer->setFilters({blur});
    move([&] { layer->setValue(-4, "filters.blur.inputRadius"); });
    clock.advance(0.5);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), 2);
}

TEST_F(LayerMotionTest, AnInputThatIsNoNumberJumps)
{
    const auto blur = TestFilter::named("blur");
    layer->setFilters({blur});
    changes = 0;
    move([&] { layer->setValue("wide", "filters.blur.inputMode"); });
    EXPECT_EQ(blur->inputMode(), "wide");
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

TEST_F(LayerMotionTest, AFilterThatIsTakenOutStands)
{
    const auto blur = TestFilter::named("blur");
    layer->setFilters({blur});
    move([&] { layer->setValue(8, "filters.blur.inputRadius"); });
    layer->setFilters({});
    layer->setFilters({blur});
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), std::nullopt);
}

TEST_F(LayerMotionTest, AnInputThatIsSetOnTheFilterItselfEndsItsWayAndIsToldOnce)
{
    const auto blur = TestFilter::named("blur");
    layer->setFilters({blur});
    layer->setBackgroundFilters({blur});
    move([&] { layer->setValue(8, "filters.blur.inputRadius"); });
    changes = 0;
    blur->setInputRadius(3);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), std::nullopt);
    layer->setFilters({});
    layer->setBackgroundFilters({});
    changes = 0;
    blur->setInputRadius(4);
    EXPECT_EQ(changes, 0);
}

TEST_F(LayerMotionTest, KeyPathsMoveTheLayersOwnPropertiesToo)
{
    move([&] { setValueForKeyPath(*layer, "opacity", 0); });
    clock.advance(0.5);
    EXPECT_EQ(shown().opacity(), 0.5);
}

TEST_F(LayerMotionTest, UnknownFiltersAndInputsRaiseAndChangeNothing)
{
    const auto blur = TestFilter::named("blur");
    layer->setBackgroundFilters({blur});
    changes = 0;
    const auto failure = [&](const char* path, const Value& value) {
        return raised([&] { move([&] { layer->setValue(value, path); }); });
    };
    EXPECT_EQ(failure("backgroundFilters.glow.inputRadius", 1),
              "NSUnknownKeyException: no element of the array is named \"glow\" (in the path "
              "\"backgroundFilters.glow\")");
    EXPECT_THAT(failure("backgroundFilters.blur.inputAngle", 1), HasSubstr("has no key \"inputAngle\""));
    EXPECT_THAT(failure("backgroundFilters.blur.inputRadius", "wide"), HasSubstr("NSInvalidArgumentException"));
    EXPECT_THAT(failure("backgroundFilters.blur", 1), HasSubstr("NSUnknownKeyException"));
    EXPECT_THAT(failure("backgroundFilters.blur.", 1), HasSubstr("NSUnknownKeyException"));
    EXPECT_THAT(failure("glow", 1), HasSubstr("CALayer has no key \"glow\""));
    EXPECT_EQ(blur->inputRadius(), 0);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(layer->animationEnd(), std::nullopt);
}

} // namespace
} // namespace RVCore::LayerMotionTests
