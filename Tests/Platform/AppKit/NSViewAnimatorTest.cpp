#include "WindowTesting.h"

#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSViewAnimator.h>
#include <CoreImage/CIColorControls.h>
#include <CoreImage/CIGaussianBlur.h>
#include <Foundation/KeyPath.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/LayerPresentation.h>

#include <cmath>

namespace RVCore::NSViewAnimatorTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A view in a group of one second at a constant pace.
class NSViewAnimatorTest : public WindowTest {
protected:
    NSViewAnimatorTest()
    {
        NSAnimationContext::beginGrouping();
        const auto context = NSAnimationContext::currentContext();
        context->setDuration(1);
        context->setTimingFunction(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear));
    }
    ~NSViewAnimatorTest() override { NSAnimationContext::endGrouping(); }

    LayerPresentation shown() const { return LayerPresentation(*view->layer()); }

    std::shared_ptr<NSView> view = make<NSView>(CGRect(0, 0, 100, 100));
};

TEST_F(NSViewAnimatorTest, AViewBecomesLayerBackedAndMovesFromWhatItWas)
{
    view->setAlphaValue(0.5);
    view->animator()->setAlphaValue(0);
    EXPECT_TRUE(view->wantsLayer());
    EXPECT_EQ(view->alphaValue(), 0);
    EXPECT_EQ(shown().opacity(), 0.5);
    clock.advance(0.5);
    EXPECT_EQ(shown().opacity(), 0.25);
}

TEST_F(NSViewAnimatorTest, TheViewsAlphaAndItsLayersOpacityAreOneAndTheSame)
{
    view->setAlphaValue(0.5);
    view->setWantsLayer(true);
    EXPECT_EQ(view->layer()->opacity(), 0.5);
    view->layer()->setOpacity(0.25);
    EXPECT_EQ(view->alphaValue(), 0.25);
    view->setAlphaValue(7);
    EXPECT_EQ(view->layer()->opacity(), 1);
    view->setAlphaValue(0);
    EXPECT_TRUE(view->isInvisible());
    view->setWantsLayer(false);
    EXPECT_EQ(view->alphaValue(), 0);
}

TEST_F(NSViewAnimatorTest, TheFrameMovesWithPositionAndBoundsOfTheLayer)
{
    view->animator()->setFrame({100, 0, 200, 100});
    EXPECT_EQ(view->frame(), CGRect(100, 0, 200, 100));
    clock.advance(0.5);
    EXPECT_EQ(shown().position(), (CGPoint{125, 50}));
    EXPECT_EQ(shown().bounds(), CGRect(0, 0, 150, 100));
    view->animator()->setFrameOrigin({0, 0});
    view->animator()->setFrameSize({100, 100});
    EXPECT_EQ(view->frame(), CGRect(0, 0, 100, 100));
    clock.advance(1);
    EXPECT_EQ(shown().position(), (CGPoint{50, 50}));
    EXPECT_EQ(shown().bounds(), CGRect(0, 0, 100, 100));
}

TEST_F(NSViewAnimatorTest, AnswersWithWhatTheViewHas)
{
    const auto animator = view->animator();
    animator->setAlphaValue(0.25);
    animator->setFrame({1, 2, 3, 4});
    EXPECT_EQ(animator->alphaValue(), 0.25);
    EXPECT_EQ(animator->frame(), CGRect(1, 2, 3, 4));
}

TEST_F(NSViewAnimatorTest, FiltersAreTheLayersAndSettingSomeMakesTheViewLayerBacked)
{
    const auto blur = make<CIGaussianBlur>();
    const auto colors = make<CIColorControls>();
    view->setBackgroundFilters({});
    view->setContentFilters({});
    EXPECT_FALSE(view->wantsLayer());
    EXPECT_THAT(view->backgroundFilters(), IsEmpty());
    view->setBackgroundFilters({blur});
    view->setContentFilters({colors});
    ASSERT_TRUE(view->wantsLayer());
    EXPECT_THAT(view->layer()->backgroundFilters(), ElementsAre(blur));
    EXPECT_THAT(view->layer()->filters(), ElementsAre(colors));
    EXPECT_THAT(view->backgroundFilters(), ElementsAre(blur));
    EXPECT_THAT(view->contentFilters(), ElementsAre(colors));
}

TEST_F(NSViewAnimatorTest, FiltersInputsMoveByTheirKeyPaths)
{
    const auto blur = make<CIGaussianBlur>();
    blur->setInputRadius(0);
    blur->setName("blur");
    const auto colors = make<CIColorControls>();
    colors->setName("colors");
    view->setBackgroundFilters({blur});
    view->setContentFilters({colors});
    view->animator()->setValue(Value(8.0), "backgroundFilters.blur.inputRadius");
    view->animator()->setValue(Value(3), "contentFilters.colors.inputSaturation"); // an integer will do
    EXPECT_EQ(blur->inputRadius(), 8);
    EXPECT_EQ(valueForKeyPath(*view, "contentFilters.colors.inputSaturation"), Value(3.0));
    EXPECT_THAT(view->layer()->animationKeys(),
                ElementsAre("backgroundFilters.blur.inputRadius", "filters.colors.inputSaturation"));
    clock.advance(0.5);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), 4);
    EXPECT_EQ(shown().filterInput(*colors, "inputSaturation"), 2);
}

TEST_F(NSViewAnimatorTest, AFiltersInputJumpsWithoutTheAnimator)
{
    const auto blur = make<CIGaussianBlur>();
    blur->setName("blur");
    view->setBackgroundFilters({blur});
    setValueForKeyPath(*view, "backgroundFilters.blur.inputRadius", 5);
    EXPECT_EQ(blur->inputRadius(), 5);
    EXPECT_EQ(shown().filterInput(*blur, "inputRadius"), std::nullopt);
}

TEST_F(NSViewAnimatorTest, OtherPropertiesMoveByTheirKeyPathsOrJump)
{
    view->animator()->setValue(0, "alphaValue");
    view->animator()->setValue(CGRect(0, 0, 200, 200), "frame");
    view->animator()->setValue("name", "identifier");
    EXPECT_EQ(view->identifier(), "name");
    clock.advance(0.5);
    EXPECT_EQ(shown().opacity(), 0.5);
    EXPECT_EQ(shown().position(), (CGPoint{75, 75}));
}

TEST_F(NSViewAnimatorTest, WhatRaisesChangesNothing)
{
    const double nan = std::nan("");
    EXPECT_THAT(raised([&] { view->animator()->setAlphaValue(nan); }), HasSubstr("alpha must be finite, got nan"));
    EXPECT_THAT(raised([&] { view->animator()->setFrame({0, nan, 0, 0}); }), HasSubstr("NSView.setFrame:"));
    EXPECT_THAT(raised([&] { view->animator()->setValue(1, "glow"); }), HasSubstr("NSView has no key \"glow\""));
    EXPECT_THAT(raised([&] { view->animator()->setValue(1, "backgroundFilters.blur.inputRadius"); }),
                HasSubstr("no element of the array is named \"blur\""));
    EXPECT_THAT(raised([&] { view->animator()->setValue("wide", "alphaValue"); }), HasSubstr("must be number"));
    EXPECT_FALSE(view->wantsLayer());
    EXPECT_EQ(NSAnimationContext::currentContext()->motionEnd(), std::nullopt);
    view->setBackgroundFilters({make<CIGaussianBlur>()});
    EXPECT_THAT(raised([&] { view->animator()->setValue(nan, "backgroundFilters.CIGaussianBlur.inputRadius"); }),
                HasSubstr("NSInvalidArgumentException"));
    EXPECT_EQ(view->layer()->animationEnd(), std::nullopt);
}

TEST_F(NSViewAnimatorTest, ReducedMotionFadesAndDoesNotTravel)
{
    desktop->setPrefersReducedMotion(true);
    view->animator()->setFrame({100, 0, 200, 100});
    view->animator()->setAlphaValue(0);
    EXPECT_EQ(shown().position(), (CGPoint{200, 50}));
    EXPECT_EQ(shown().opacity(), 1);
    EXPECT_EQ(NSAnimationContext::currentContext()->motionEnd(), DispatchTime(1));
}

TEST_F(NSViewAnimatorTest, EverythingIsReachedByName)
{
    const ObjectRef animator = *send(view, "animator").object();
    setValueForKeyPath(*animator, "alphaValue", 0.5);
    EXPECT_EQ(send(animator, "alphaValue"), Value(0.5));
    send(animator, "setAlphaValue:", 0);
    send(animator, "setFrame:", CGRect(0, 0, 10, 10));
    send(animator, "setFrameOrigin:", CGPoint{1, 2});
    send(animator, "setFrameSize:", CGSize{3, 4});
    EXPECT_EQ(send(animator, "frame"), Value(CGRect(1, 2, 3, 4)));
    const auto blur = make<CIGaussianBlur>();
    const Value filters = Value::Array{blur};
    for (const char* list : {"backgroundFilters", "contentFilters"}) {
        setValueForKeyPath(*view, list, filters);
        EXPECT_EQ(valueForKeyPath(*view, list), filters);
    }
    send(animator, "setValue:forKeyPath:", 8, "backgroundFilters.CIGaussianBlur.inputRadius");
    EXPECT_EQ(blur->inputRadius(), 8);
    EXPECT_EQ(valueForKeyPath(*view, "layerUsesCoreImageFilters"), Value(false));
    setValueForKeyPath(*view, "layerUsesCoreImageFilters", true);
    EXPECT_EQ(valueForKeyPath(*view, "layerUsesCoreImageFilters"), Value(true));
    send(view, "setValue:forKeyPath:", 6, "backgroundFilters.CIGaussianBlur.inputRadius");
    EXPECT_EQ(blur->inputRadius(), 6);
    EXPECT_THAT(raised([] { send(Class::named("NSViewAnimator")->alloc(), "setAlphaValue:", 0); }),
                HasSubstr("an animator is got from its view"));
}

} // namespace
} // namespace RVCore::NSViewAnimatorTests
