#include "ViewTesting.h"

#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewExplanation.h>
#include <Foundation/Message.h>

namespace RVCore::ViewExplanationTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ViewExplanation : public testing::Test {
protected:
    ViewExplanation() { host->setIdentifier("host"); }

    std::shared_ptr<FlippedView> host = makeHost(100, 50);
};

TEST_F(ViewExplanation, TellsForEveryEdgeWhatHoldsIt)
{
    const auto a = addTo(*host, "a");
    place(*a, {10, 5, 30, 20});
    hold(*a, Attribute::width, {.constant = 30, .priority = 749})->setIdentifier("size");
    EXPECT_EQ(explainLayout(*a), "NSView \"a\" in NSView \"host\": (10, 5) 30 × 20\n"
                                 "left edge at 10\n"
                                 "    constraint between NSView \"a\" and NSView \"host\", 1000: left = left + 10\n"
                                 "right edge at 40\n"
                                 "    constraint between NSView \"a\" and NSView \"host\", 1000: left = left + 10\n"
                                 "    constraint of NSView \"a\", 1000: width = 30\n"
                                 "    size of NSView \"a\", 749: width = 30\n"
                                 "top edge at 5\n"
                                 "    constraint between NSView \"a\" and NSView \"host\", 1000: top = top + 5\n"
                                 "bottom edge at 25\n"
                                 "    constraint between NSView \"a\" and NSView \"host\", 1000: top = top + 5\n"
                                 "    constraint of NSView \"a\", 1000: height = 20\n"
                                 "width 30\n"
                                 "    constraint of NSView \"a\", 1000: width = 30\n"
                                 "    size of NSView \"a\", 749: width = 30\n"
                                 "height 20\n"
                                 "    constraint of NSView \"a\", 1000: height = 20\n");
}

TEST_F(ViewExplanation, APinnedEdgeIsNotHeldByWhatHoldsTheOtherOne)
{
    const auto a = addTo(*host, "a");
    hold(*a, Attribute::left, *host, Attribute::left, {.constant = 10});
    hold(*a, Attribute::right, *host, Attribute::right);
    hold(*a, Attribute::right, *host, Attribute::right, {.priority = 700})->setIdentifier("again");
    EXPECT_THAT(explainLayout(*a),
                HasSubstr("left edge at 10\n"
                          "    constraint between NSView \"a\" and NSView \"host\", 1000: left = left + 10\n"
                          "right edge at 100\n"
                          "    width of the frame of NSView \"host\", 1000: width = 100\n"
                          "    constraint between NSView \"a\" and NSView \"host\", 1000: right = right\n"
                          "    again between NSView \"a\" and NSView \"host\", 700: right = right\n"
                          "top edge"));
}

TEST_F(ViewExplanation, AViewOutsideAnyTreeIsARootThatKeepsItsFrame)
{
    EXPECT_EQ(explainLayout(*make<NSView>(CGRect(7, 8, 30, 20))),
              "NSView #1: (0, 0) 30 × 20\n"
              "left edge at 0, where a root begins\n"
              "right edge at 30\n"
              "    width of the frame of NSView #1, 1000: width = 30\n"
              "top edge at 0, where a root begins\n"
              "bottom edge at 20\n"
              "    height of the frame of NSView #1, 1000: height = 20\n"
              "width 30\n"
              "    width of the frame of NSView #1, 1000: width = 30\n"
              "height 20\n"
              "    height of the frame of NSView #1, 1000: height = 20\n");
}

TEST_F(ViewExplanation, AWindowsContentStaysPutUnlessItsContentIsStronger)
{
    const auto window = make<NSWindow>(CGSize{100, 50});
    window->setContentView(host);
    EXPECT_THAT(
        explainLayout(*host),
        HasSubstr("width 100\n    width of the frame of NSView \"host\", which stays put, 500: width = 100\n"));
    hold(*host, Attribute::width, {.constant = 130, .priority = 501});
    EXPECT_THAT(explainLayout(*host),
                HasSubstr("width 130\n"
                          "    constraint of NSView \"host\", 501: width = 130\n"
                          "    gave way by 30: width of the frame of NSView \"host\", which stays "
                          "put, 500: width = 100\n"));
}

TEST_F(ViewExplanation, AHiddenViewIsExplainedLikeAnyOther)
{
    const auto a = addTo(*host, "a"), b = addTo(*host, "b");
    place(*a, {10, 5, 30, 20});
    place(*b, {10, 5, 30, 20});
    const std::string shown = explainLayout(*a);
    a->setHidden(true);
    b->setAlphaValue(0);
    EXPECT_THAT(explainLayout(*a), StartsWith("NSView \"a\" in NSView \"host\": (10, 5) 30 × 20, hidden\n"));
    EXPECT_THAT(explainLayout(*b), StartsWith("NSView \"b\" in NSView \"host\": (10, 5) 30 × 20, transparent\n"));
    EXPECT_EQ(explainLayout(*a).substr(explainLayout(*a).find('\n')), shown.substr(shown.find('\n')));
}

TEST_F(ViewExplanation, ATranslatedMaskIsNamedAsTheFrame)
{
    const auto a = make<NSView>(CGRect(10, 5, 30, 20));
    a->setIdentifier("a");
    host->addSubview(a);
    const std::string text = explainLayout(*a);
    for (const char* row :
         {"left edge at 10\n    horizontal position of the frame", "width 30\n    width of the frame",
          "top edge at 5\n    vertical position of the frame", "height 20\n    height of the frame"})
        EXPECT_THAT(text,
                    HasSubstr(row + std::string(" of NSView \"a\", 1000: its autoresizing mask is translated\n")));
}

TEST_F(ViewExplanation, WhatOverflowsTellsByHowMuchItGaveWay)
{
    const auto a = addTo<ProbeView>(*host, "a");
    a->intrinsicSize = {140, NSViewNoIntrinsicMetric};
    a->setContentCompressionResistancePriority(300, Orientation::horizontal);
    hold(*a, Attribute::left, *host, Attribute::left);
    hold(*a, Attribute::right, *host, Attribute::right)->setIdentifier("end");
    hold(*a, Attribute::width, {.constant = 120.5, .priority = 250, .relation = Relation::greaterThanOrEqual});
    EXPECT_THAT(explainLayout(*a),
                HasSubstr("    end between NSView \"a\" and NSView \"host\", 1000: right = right\n"
                          "    gave way by 20.5: constraint of NSView \"a\", 250: width ≥ 120.5\n"
                          "    gave way by 40: horizontal compression resistance of NSView \"a\", 300: width ≥ 140\n"
                          "height"));
}

TEST_F(ViewExplanation, AnExtentThatWouldBeNegativeIsHeldAtNothing)
{
    const auto a = addTo(*host, "a");
    hold(*a, Attribute::left, *host, Attribute::right);
    hold(*a, Attribute::right, *host, Attribute::left, {.priority = 700});
    EXPECT_THAT(explainLayout(*a), HasSubstr("width 0\n    smallest width of NSView \"a\", 1000: width ≥ 0\n"));
}

TEST_F(ViewExplanation, WhatAConflictLeavesOutIsSaidToBe)
{
    const auto a = addTo(*host, "a");
    place(*a, {10, 5, 30, 20});
    hold(*a, Attribute::width, {.constant = 40});
    testing::internal::CaptureStderr();
    EXPECT_THAT(explainLayout(*a), HasSubstr("width 30\n"
                                             "    constraint of NSView \"a\", 1000: width = 30\n"
                                             "    left out of a conflict, short by 10: constraint of NSView \"a\", "
                                             "1000: width = 40\n"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("Layout conflict"));
}

TEST_F(ViewExplanation, AmbiguousEdgesAreSaidToBe)
{
    const auto a = addTo(*host, "a");
    hold(*a, Attribute::right, *host, Attribute::right);
    hold(*a, Attribute::top, *host, Attribute::top);
    const std::string text = explainLayout(*a);
    EXPECT_THAT(text, HasSubstr("left edge at 100, ambiguous\n"));
    EXPECT_THAT(text, HasSubstr("right edge at 100\n"
                                "    width of the frame of NSView \"host\", 1000: width = 100\n"
                                "    constraint between NSView \"a\" and NSView \"host\", 1000: right = right\n"
                                "top"));
    EXPECT_THAT(text, HasSubstr("top edge at 0\n"));
    EXPECT_THAT(text, HasSubstr("bottom edge at 0, ambiguous\n"));
    EXPECT_THAT(text, HasSubstr("height 0, ambiguous\n"));
}

TEST_F(ViewExplanation, ViewsWithoutAnIdentifierAreNumberedInTreeOrder)
{
    host->setIdentifier("");
    const auto a = addTo(*host), inner = addTo(*a), b = addTo(*host, "b");
    place(*a, {0, 0, 10, 10});
    place(*b, {0, 0, 10, 10});
    hold(*inner, Attribute::left, *b, Attribute::right, {.constant = -3});
    hold(*inner, Attribute::width, *inner, Attribute::height, {.multiplier = 0.5});
    const std::string text = explainLayout(*inner);
    EXPECT_THAT(text, StartsWith("NSView #3 in NSView #2: "));
    EXPECT_THAT(text, HasSubstr("constraint between NSView #3 and NSView \"b\", 1000: left = right - 3\n"));
    EXPECT_THAT(text, HasSubstr("constraint of NSView #3, 1000: width = 0.5 × height\n"));
    EXPECT_THAT(text, Not(HasSubstr("0x")));
    EXPECT_EQ(explainLayout(*inner), text);
}

TEST_F(ViewExplanation, AWrappedLabelHasItsHeightFromItsLines)
{
    const auto label = plainLabel("four four four");
    label->setIdentifier("label");
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    host->addSubview(label);
    label->setLineBreakMode(NSLineBreakMode::wordWrapping);
    hold(*label, Attribute::left, *host, Attribute::left);
    hold(*label, Attribute::width, {.constant = 40});
    hold(*label, Attribute::top, *host, Attribute::top);
    host->layoutSubtreeIfNeeded();
    EXPECT_THAT(explainLayout(*label),
                HasSubstr("height 51\n"
                          "    vertical content hugging of NSTextField \"label\", 250: height ≤ 51\n"
                          "    vertical compression resistance of NSTextField \"label\", 750: height ≥ 51\n"));
}

TEST_F(ViewExplanation, AsksForConstraintsButSetsNoFrames)
{
    const auto a = addTo<ProbeView>(*host, "a");
    a->onUpdateConstraints = [&] { place(*a, {10, 5, 30, 20}); };
    EXPECT_THAT(explainLayout(*a), StartsWith("NSView \"a\" in NSView \"host\": (10, 5) 30 × 20\n"));
    EXPECT_EQ(a->frame(), CGRect());
}

TEST_F(ViewExplanation, AViewThatMovesToAnotherTreeMeanwhileSaysSo)
{
    const auto a = addTo<ProbeView>(*host, "a");
    a->onIntrinsicSize = [&] { a->removeFromSuperview(); };
    EXPECT_EQ(explainLayout(*a), "NSView moved to another tree when constraints were brought up to date\n");
}

TEST_F(ViewExplanation, IsFoundByName)
{
    const auto a = addTo(*host, "a");
    EXPECT_EQ(send(a, "explainLayout").as<std::string>(), explainLayout(*a));
    EXPECT_EQ(send(host, "ambiguousViews").as<std::vector<std::shared_ptr<NSView>>>(), ambiguousViews(*host));
}

TEST_F(ViewExplanation, AmbiguousViewsAreListedInTreeOrder)
{
    const auto a = addTo(*host, "a"), inner = addTo(*a, "inner"), b = addTo(*host, "b"), c = addTo(*host, "c");
    EXPECT_THAT(ambiguousViews(*host), ElementsAre(a, inner, b, c));
    EXPECT_THAT(ambiguousViews(*a), ElementsAre(a, inner));
    place(*a, {0, 0, 10, 10});
    place(*c, {0, 0, 10, 10});
    c->setHidden(true);
    EXPECT_THAT(ambiguousViews(*host), ElementsAre(inner, b));
    EXPECT_THAT(ambiguousViews(*c), IsEmpty());
    EXPECT_THAT(ambiguousViews(*make<NSView>()), IsEmpty());
}

} // namespace
} // namespace RVCore::ViewExplanationTests
