#include "WindowTesting.h"

#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSViewAnimator.h>
#include <Dispatch/DispatchQueue.h>
#include <Foundation/KeyPath.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/LayerPresentation.h>

#include <cmath>

namespace RVCore::NSAnimationContextTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// A view that is layer-backed, and a list of what came to its end and when.
class NSAnimationContextTest : public WindowTest {
protected:
    NSAnimationContextTest() { view->setWantsLayer(true); }

    NSAnimationContext::Completion noting(const std::string& name)
    {
        return [this, name] { ended.push_back(name + " at " + numberText(clock.seconds())); };
    }
    // Fades the view within a group of this duration.
    void fade(CGFloat alpha, double duration, const std::string& name)
    {
        NSAnimationContext::runAnimationGroup(
            [&](NSAnimationContext& context) {
                context.setDuration(duration);
                context.setTimingFunction(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear));
                view->animator()->setAlphaValue(alpha);
            },
            noting(name));
    }
    CGFloat shownAlpha() const { return LayerPresentation(*view->layer()).opacity(); }

    std::shared_ptr<NSView> view = make<NSView>(CGRect(0, 0, 100, 100));
    std::vector<std::string> ended;
};

TEST_F(NSAnimationContextTest, OutsideOfAllGroupsTheProgramsOwnContextCounts)
{
    const auto context = NSAnimationContext::currentContext();
    EXPECT_EQ(context, NSAnimationContext::currentContext());
    EXPECT_EQ(context->duration(), 0.25);
    EXPECT_EQ(context->timingFunction(), nullptr);
    EXPECT_FALSE(context->allowsImplicitAnimation());
    view->animator()->setAlphaValue(0);
    clock.advance(0.2);
    EXPECT_GT(shownAlpha(), 0);
    clock.advance(0.05);
    EXPECT_EQ(shownAlpha(), 0);
}

TEST_F(NSAnimationContextTest, AGroupStartsWithTheValuesAroundItAndKeepsItsOwnToItself)
{
    const auto easeIn = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseIn);
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& outer) {
        EXPECT_EQ(&outer, NSAnimationContext::currentContext().get());
        EXPECT_EQ(outer.duration(), 0.25);
        outer.setDuration(2);
        outer.setTimingFunction(easeIn);
        outer.setAllowsImplicitAnimation(true);
        NSAnimationContext::runAnimationGroup([&](NSAnimationContext& inner) {
            EXPECT_EQ(inner.duration(), 2);
            EXPECT_EQ(inner.timingFunction(), easeIn);
            EXPECT_TRUE(inner.allowsImplicitAnimation());
            inner.setDuration(5);
            inner.setAllowsImplicitAnimation(false);
        });
        EXPECT_EQ(outer.duration(), 2);
        EXPECT_TRUE(outer.allowsImplicitAnimation());
        view->setAlphaValue(0);
        EXPECT_EQ(shownAlpha(), 1);
    });
    EXPECT_EQ(NSAnimationContext::currentContext()->duration(), 0.25);
    view->setAlphaValue(0.5);
    EXPECT_EQ(shownAlpha(), 0.5);
}

TEST_F(NSAnimationContextTest, WhatIsAllowedInAGroupWhileAnInnerOneIsUnderWayCountsWhenThatIsOver)
{
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& outer) {
        NSAnimationContext::runAnimationGroup([&](NSAnimationContext&) {
            outer.setAllowsImplicitAnimation(true);
            view->setAlphaValue(0.5);
            EXPECT_EQ(shownAlpha(), 0.5) << "not in this one";
        });
        view->setAlphaValue(0);
        EXPECT_EQ(shownAlpha(), 0.5);
    });
    clock.advance(1);
    EXPECT_EQ(shownAlpha(), 0);
}

TEST_F(NSAnimationContextTest, TheCompletionComesWhenTheLastOfTheGroupIsOver)
{
    NSAnimationContext::runAnimationGroup(
        [&](NSAnimationContext& context) {
            context.setDuration(2);
            view->animator()->setFrameOrigin({50, 0});
            context.setDuration(0.5);
            view->animator()->setAlphaValue(0);
        },
        noting("group"));
    clock.advance(1.9);
    EXPECT_THAT(ended, IsEmpty());
    clock.advance(1);
    EXPECT_THAT(ended, ElementsAre("group at 2"));
}

TEST_F(NSAnimationContextTest, AValueThatIsThereAlreadyTakesTheGroupsTimeAllTheSame)
{
    fade(1, 0.3, "fade");
    clock.advance(1);
    EXPECT_THAT(ended, ElementsAre("fade at 0.3"));
}

TEST_F(NSAnimationContextTest, WhatTakesNoTimeEndsSoonInOrderAndNeverWithinTheCall)
{
    NSAnimationContext::runAnimationGroup([](NSAnimationContext&) {}, noting("nothing"));
    fade(0, 0, "no time");
    NSAnimationContext::runAnimationGroup([](NSAnimationContext&) {}, noting("nothing again"));
    EXPECT_EQ(shownAlpha(), 0);
    EXPECT_THAT(ended, IsEmpty());
    clock.advance(0);
    EXPECT_THAT(ended, ElementsAre("nothing at 0", "no time at 0", "nothing again at 0"));
}

TEST_F(NSAnimationContextTest, NestedGroupsHaveTheirOwnEnds)
{
    NSAnimationContext::runAnimationGroup(
        [&](NSAnimationContext& outer) {
            outer.setDuration(1);
            view->animator()->setAlphaValue(0);
            NSAnimationContext::runAnimationGroup(
                [&](NSAnimationContext& inner) {
                    inner.setDuration(2);
                    view->animator()->setFrameOrigin({9, 9});
                },
                noting("inner"));
        },
        noting("outer"));
    clock.advance(3);
    EXPECT_THAT(ended, ElementsAre("outer at 1", "inner at 2"));
}

TEST_F(NSAnimationContextTest, EachGroupThatMovesTheSamePropertyEndsAtItsOwnTime)
{
    fade(0, 1, "first");
    clock.advance(0.5);
    fade(1, 1, "second");
    EXPECT_EQ(shownAlpha(), 0.5);
    clock.advance(0.25);
    view->setAlphaValue(0.3); // without an animation
    clock.advance(2);
    EXPECT_EQ(shownAlpha(), 0.3);
    EXPECT_THAT(ended, ElementsAre("first at 1", "second at 1.5"));
}

TEST_F(NSAnimationContextTest, TheCompletionComesAlsoWhenTheViewDies)
{
    fade(0, 1, "fade");
    const std::weak_ptr<NSView> watched = view;
    view = nullptr;
    EXPECT_TRUE(watched.expired());
    clock.advance(1);
    EXPECT_THAT(ended, ElementsAre("fade at 1"));
}

TEST_F(NSAnimationContextTest, TheCompletionComesAlsoWhenTheWindowCloses)
{
    const auto window = make<NSWindow>(CGSize{200, 200});
    window->contentView()->addSubview(view);
    window->orderFront();
    fade(0, 1, "fade");
    clock.advance(0.5);
    window->close();
    clock.advance(0.5);
    EXPECT_THAT(ended, ElementsAre("fade at 1"));
}

TEST_F(NSAnimationContextTest, TheCompletionMayRunAnotherGroup)
{
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext&) { view->animator()->setAlphaValue(0); },
                                          [this] { fade(1, 1, "back"); });
    clock.advance(2);
    EXPECT_THAT(ended, ElementsAre("back at 1.25"));
    EXPECT_EQ(shownAlpha(), 1);
}

TEST_F(NSAnimationContextTest, WhatTheChangesRaisePassesThroughAndTheGroupIsOver)
{
    EXPECT_THAT(raised([&] {
                    NSAnimationContext::runAnimationGroup(
                        [&](NSAnimationContext& context) {
                            context.setAllowsImplicitAnimation(true);
                            NSAnimationContext::beginGrouping();
                            raiseInvalidArgument("changes", "no");
                        },
                        noting("group"));
                }),
                HasSubstr("changes: no"));
    EXPECT_EQ(LayerMotion::current(), nullptr);
    EXPECT_EQ(NSAnimationContext::currentContext()->duration(), 0.25);
    clock.advance(0);
    EXPECT_THAT(ended, ElementsAre("group at 0"));
}

TEST_F(NSAnimationContextTest, GroupsCanBeBegunAndEndedInPieces)
{
    NSAnimationContext::beginGrouping();
    NSAnimationContext::currentContext()->setDuration(0.5);
    NSAnimationContext::currentContext()->setCompletionHandler(noting("outer"));
    NSAnimationContext::beginGrouping();
    EXPECT_EQ(NSAnimationContext::currentContext()->duration(), 0.5);
    NSAnimationContext::currentContext()->setCompletionHandler(noting("inner"));
    NSAnimationContext::endGrouping();
    view->animator()->setAlphaValue(0);
    NSAnimationContext::endGrouping();
    clock.advance(1);
    EXPECT_THAT(ended, ElementsAre("inner at 0", "outer at 0.5"));
}

TEST_F(NSAnimationContextTest, EndingWhatWasNotBegunRaises)
{
    EXPECT_EQ(raised([] { NSAnimationContext::endGrouping(); }),
              "NSInvalidArgumentException: NSAnimationContext.endGrouping: no group was begun with beginGrouping");
    NSAnimationContext::runAnimationGroup([](NSAnimationContext&) {
        EXPECT_THAT(raised([] { NSAnimationContext::endGrouping(); }), HasSubstr("no group was begun"));
        NSAnimationContext::beginGrouping(); // is ended with the group around it
    });
    EXPECT_THAT(raised([] { NSAnimationContext::endGrouping(); }), HasSubstr("no group was begun"));
}

TEST_F(NSAnimationContextTest, BadInputRaisesAndChangesNothing)
{
    const auto context = NSAnimationContext::currentContext();
    EXPECT_EQ(raised([&] { context->setDuration(-1); }),
              "NSInvalidArgumentException: NSAnimationContext.setDuration:: duration must not be negative, got -1");
    EXPECT_THAT(raised([&] { context->setDuration(std::nan("")); }), HasSubstr("duration must be finite, got nan"));
    EXPECT_THAT(raised([&] { context->setDuration(HUGE_VAL); }), HasSubstr("duration must be finite, got inf"));
    EXPECT_EQ(context->duration(), 0.25);
    EXPECT_THAT(raised([&] { context->setCompletionHandler([] {}); }), HasSubstr("no group that is under way"));
    EXPECT_THAT(raised([&] { NSAnimationContext::runAnimationGroup(nullptr); }), HasSubstr("there are no changes"));
}

TEST_F(NSAnimationContextTest, OrdinarySettersMoveWhereThatIsAllowed)
{
    NSAnimationContext::runAnimationGroup(
        [&](NSAnimationContext& context) {
            view->setAlphaValue(0.8);
            EXPECT_EQ(shownAlpha(), 0.8);
            context.setAllowsImplicitAnimation(true);
            context.setDuration(1);
            context.setTimingFunction(CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionLinear));
            view->setAlphaValue(0);
            view->setFrame({100, 0, 200, 100});
            view->layer()->setCornerRadius(10);
            context.setAllowsImplicitAnimation(false);
            view->layer()->setBorderWidth(2);
        },
        noting("group"));
    clock.advance(0.5);
    const LayerPresentation shown(*view->layer());
    EXPECT_EQ(shown.opacity(), 0.4);
    EXPECT_EQ(shown.position(), (CGPoint{125, 50}));
    EXPECT_EQ(shown.bounds(), CGRect(0, 0, 150, 100));
    EXPECT_EQ(shown.cornerRadius(), 5);
    EXPECT_EQ(shown.borderWidth(), 2);
    EXPECT_EQ(view->frame(), CGRect(100, 0, 200, 100));
    clock.advance(0.5);
    EXPECT_THAT(ended, ElementsAre("group at 1"));
}

TEST_F(NSAnimationContextTest, AViewThatWasNotThereAppearsInItsPlace)
{
    std::shared_ptr<NSView> made;
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setAllowsImplicitAnimation(true);
        made = make<NSView>();
        made->setWantsLayer(true);
        made->setFrame({10, 20, 30, 40});
    });
    EXPECT_EQ(LayerPresentation(*made->layer()).position(), (CGPoint{25, 40}));
    EXPECT_EQ(LayerPresentation(*made->layer()).bounds(), CGRect(0, 0, 30, 40));
}

TEST_F(NSAnimationContextTest, EverythingIsReachedByName)
{
    const Class& theClass = *Class::named("NSAnimationContext");
    const auto easeOut = CAMediaTimingFunction::functionWithName(kCAMediaTimingFunctionEaseOut);
    const auto changes = [&](const std::shared_ptr<NSAnimationContext>& context) {
        EXPECT_EQ(send(theClass, "currentContext"), Value(context));
        const std::pair<const char*, Value> values[] = {
            {"duration", 0.5}, {"timingFunction", easeOut}, {"allowsImplicitAnimation", true}};
        for (const auto& [name, value] : values) {
            setValueForKeyPath(*context, name, value);
            EXPECT_EQ(valueForKeyPath(*context, name), value) << name;
        }
        send(view, "setAlphaValue:", 0);
    };
    using Changes = std::function<void(const std::shared_ptr<NSAnimationContext>&)>;
    send(theClass, "runAnimationGroup:completionHandler:", Changes(changes), noting("group"));
    send(theClass, "runAnimationGroup:completionHandler:", Changes(changes), nullptr);
    send(theClass, "runAnimationGroup:", Changes(changes));
    send(theClass, "beginGrouping");
    send(*send(theClass, "currentContext").object(), "setCompletionHandler:", noting("pieces"));
    send(theClass, "endGrouping");
    clock.advance(1);
    EXPECT_THAT(ended, ElementsAre("pieces at 0", "group at 0.5"));
}

} // namespace
} // namespace RVCore::NSAnimationContextTests
