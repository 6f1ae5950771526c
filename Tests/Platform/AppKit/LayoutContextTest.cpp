#include "ViewTesting.h"

#include <AppKit/ViewDump.h>

#include <cctype>

namespace RVCore {
namespace {

using testing::HasSubstr;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

// The report without addresses.
std::string withoutAddresses(std::string text)
{
    for (std::size_t start = text.find(": 0x"); start != std::string::npos; start = text.find(": 0x")) {
        std::size_t end = start + 4;
        while (end < text.size() && std::isxdigit(static_cast<unsigned char>(text[end])))
            ++end;
        text.erase(start, end - start);
    }
    return text;
}

std::string reportOf(NSView& host)
{
    CaptureStderr();
    host.layoutSubtreeIfNeeded();
    return withoutAddresses(GetCapturedStderr());
}

struct Conflict {
    std::shared_ptr<FlippedView> host = makeHost(100, 100);
    std::shared_ptr<NSView> view = addTo(*host, "box");
    std::shared_ptr<NSLayoutConstraint> first = hold(*view, Attribute::width, {.constant = 10});
    std::shared_ptr<NSLayoutConstraint> second = hold(*view, Attribute::width, *host, Attribute::width);

    Conflict() { second->setIdentifier("fill"); }
};

TEST(LayoutConflictReport, NamesTheWholeSetAndWhatIsLeftOutOnce)
{
    Conflict conflict;
    conflict.host->setIdentifier("host");
    EXPECT_EQ(reportOf(*conflict.host),
              "Layout conflict: these required constraints contradict each other:\n"
              "    width of the frame of NSView \"host\"\n"
              "    <NSLayoutConstraint NSView \"box\".width == 10 @1000>\n"
              "    <NSLayoutConstraint NSView \"box\".width == NSView \"host\".width @1000 'fill'>\n"
              "Left out: <NSLayoutConstraint NSView \"box\".width == NSView \"host\".width @1000 'fill'>\n");
    EXPECT_EQ(conflict.view->frame().size.width, 10);
    conflict.host->setNeedsLayout(true);
    hold(*conflict.view, Attribute::height, {.constant = 5});
    EXPECT_EQ(reportOf(*conflict.host), "");
}

TEST(LayoutConflictReport, NamesARowThatKeepsAnExtentFromBeingNegative)
{
    Conflict conflict;
    conflict.first->setConstant(-5);
    conflict.second->setActive(false);
    EXPECT_EQ(reportOf(*conflict.host), "Layout conflict: these required constraints contradict each other:\n"
                                        "    width ≥ 0 of NSView \"box\"\n"
                                        "    <NSLayoutConstraint NSView \"box\".width == -5 @1000>\n"
                                        "Left out: <NSLayoutConstraint NSView \"box\".width == -5 @1000>\n");
}

TEST(LayoutConflictReport, WhatWasLeftOutComesBackWhenTheConflictIsGone)
{
    Conflict conflict;
    reportOf(*conflict.host);
    conflict.first->setActive(false);
    EXPECT_EQ(reportOf(*conflict.host), "");
    EXPECT_EQ(conflict.view->frame().size.width, 100);
    conflict.first->setActive(true);
    EXPECT_THAT(reportOf(*conflict.host), HasSubstr("Left out: <NSLayoutConstraint NSView \"box\".width == 10"));
    conflict.first->setConstant(100);
    EXPECT_EQ(reportOf(*conflict.host), "");
}

TEST(LayoutContext, TheOrderOfActivationDecidesWhenADetachedTreeIsFirstLaidOut)
{
    for (const bool innerFirst : {false, true}) {
        const auto host = makeHost(100, 100);
        const auto outer = addTo(*host), inner = addTo(*outer);
        const auto byHost =
            make<NSLayoutConstraint>(*inner, Attribute::width, Relation::equal, host.get(), Attribute::width, 1, 0);
        const auto own = make<NSLayoutConstraint>(*inner, Attribute::width, Relation::equal, nullptr,
                                                  Attribute::notAnAttribute, 1, 7);
        (innerFirst ? own : byHost)->setActive(true);
        (innerFirst ? byHost : own)->setActive(true);
        EXPECT_THAT(reportOf(*host), HasSubstr("Left out"));
        EXPECT_EQ(inner->frame().size.width, innerFirst ? 7 : 100);
    }
}

TEST(LayoutContext, ASubtreeThatIsAddedAndRemovedBeforeThePassLeavesNothingBehind)
{
    const auto host = makeHost(100, 100);
    host->layoutSubtreeIfNeeded();
    std::vector<std::shared_ptr<NSView>> views;
    for (int i = 0; i < 4; ++i)
        views.push_back(addTo(*host));
    const auto nested = addTo(*views[2]);
    views[1]->removeFromSuperview();
    views[3]->removeFromSuperview();
    place(*views[2], {1, 2, 3, 4});
    place(*nested, {5, 6, 7, 8});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(views[2]->frame(), CGRect(1, 2, 3, 4));
    EXPECT_EQ(nested->frame(), CGRect(5, -10, 7, 8)); // 6 below the top of a view that is 4 high
    const auto late = addTo(*nested);
    views[2]->removeFromSuperview(); // while something in it waits
    host->addSubview(views[2]);
    place(*late, {9, 9, 9, 9});
    views[2]->addSubview(views[1]);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(late->frame(), CGRect(9, -10, 9, 9)); // 9 below the top of a view that is 8 high
}

TEST(LayoutContext, AConstraintToAViewThatWaitsTakesItIn)
{
    const auto host = makeHost(100, 100);
    host->layoutSubtreeIfNeeded();
    const auto view = addTo(*host), inner = addTo(*view);
    const auto early = hold(*inner, Attribute::width, *view, Attribute::width, {.constant = -4});
    hold(*view, Attribute::width, *host, Attribute::width, {.constant = -10});
    early->setConstant(-5);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 90);
    EXPECT_EQ(inner->frame().size.width, 85);
}

TEST(LayoutContext, AddedAndRemovedIsTheSameAsNeverThere)
{
    const auto host = makeHost(100, 100);
    const auto view = addTo(*host);
    place(*view, {1, 2, 3, 4});
    host->layoutSubtreeIfNeeded();
    const std::string before = describeViewTree(*host);
    const auto guest = addTo(*host);
    hold(*guest, Attribute::right, *view, Attribute::left);
    hold(*view, Attribute::width, *guest, Attribute::width, {.priority = 400});
    host->layoutSubtreeIfNeeded();
    guest->removeFromSuperview();
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(describeViewTree(*host), before);
}

} // namespace
} // namespace RVCore
