#include "ViewTesting.h"

namespace RVCore::LayoutConflictReportTests {
namespace {

using testing::HasSubstr;

struct Conflict {
    std::shared_ptr<FlippedView> host = makeHost(100, 100);
    std::shared_ptr<NSView> view = addTo(*host, "box");
    std::shared_ptr<NSLayoutConstraint> first = hold(*view, Attribute::width, {.constant = 10});
    std::shared_ptr<NSLayoutConstraint> second = hold(*view, Attribute::width, *host, Attribute::width);

    Conflict() { second->setIdentifier("fill"); }
};

TEST(LayoutConflictReport, NamesTheWholeSetWithItsOwnersAndWhatIsLeftOutOnce)
{
    Conflict conflict;
    EXPECT_EQ(reportOf(*conflict.host),
              "Layout conflict: these required constraints contradict each other:\n"
              "    width of the frame of NSView #1: width = 100, the view's own\n"
              "    constraint of NSView \"box\": width = 10, owned by NSView \"box\"\n"
              "    fill between NSView \"box\" and NSView #1: width = width, owned by NSView #1\n"
              "Left out, because it was installed last: fill between NSView \"box\" and NSView #1: width = width\n");
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
    EXPECT_EQ(reportOf(*conflict.host),
              "Layout conflict: these required constraints contradict each other:\n"
              "    smallest width of NSView \"box\": width ≥ 0, the view's own\n"
              "    constraint of NSView \"box\": width = -5, owned by NSView \"box\"\n"
              "Left out, because it was installed last: constraint of NSView \"box\": width = -5\n");
}

TEST(LayoutConflictReport, TellsTheRowsOfAViewsContentApart)
{
    using Set = void (NSView::*)(NSLayoutPriority, Orientation);
    const std::tuple<Set, Orientation, Attribute, double, const char*> rows[] = {
        {&NSView::setContentHuggingPriority, Orientation::horizontal, Attribute::width, 9,
         "horizontal content hugging of NSView \"a\": width ≤ 8"},
        {&NSView::setContentCompressionResistancePriority, Orientation::horizontal, Attribute::width, 7,
         "horizontal compression resistance of NSView \"a\": width ≥ 8"},
        {&NSView::setContentHuggingPriority, Orientation::vertical, Attribute::height, 7,
         "vertical content hugging of NSView \"a\": height ≤ 6"},
        {&NSView::setContentCompressionResistancePriority, Orientation::vertical, Attribute::height, 5,
         "vertical compression resistance of NSView \"a\": height ≥ 6"}};
    for (const auto& [set, orientation, extent, constant, name] : rows) {
        const auto host = makeHost(100, 100);
        const auto view = addTo<ProbeView>(*host, "a");
        view->intrinsicSize = {8, 6};
        ((*view).*set)(NSLayoutPriorityRequired, orientation);
        hold(*view, extent, {.constant = constant});
        EXPECT_THAT(reportOf(*host), HasSubstr(std::string("    ") + name + ", the view's own\n"));
    }
}

TEST(LayoutConflictReport, WhatWasLeftOutComesBackWhenTheConflictIsGone)
{
    Conflict conflict;
    reportOf(*conflict.host);
    conflict.first->setActive(false);
    EXPECT_EQ(reportOf(*conflict.host), "");
    EXPECT_EQ(conflict.view->frame().size.width, 100);
    conflict.first->setActive(true);
    EXPECT_THAT(reportOf(*conflict.host), HasSubstr("installed last: constraint of NSView \"box\": width = 10\n"));
    conflict.first->setConstant(100);
    EXPECT_EQ(reportOf(*conflict.host), "");
}

} // namespace
} // namespace RVCore::LayoutConflictReportTests
