#include <FolderSizes/FolderView.h>

namespace FolderSizes::FolderViewTests {
namespace {

using namespace RVCore;

FolderListing sampleListing()
{
    FolderListing listing;
    listing.path = "/home/sample";
    listing.entries = {{.name = "photographs", .kind = EntryKind::folder, .size = 6000},
                       {.name = std::string(200, 'n'), .kind = EntryKind::file, .size = 3000},
                       {.name = "notes", .kind = EntryKind::file, .size = 900},
                       {.name = "link", .kind = EntryKind::link, .size = 0}};
    listing.totalSize = 9900;
    return listing;
}

std::shared_ptr<FolderView> laidOut(const FolderListing& listing, std::size_t rowLimit, CGFloat viewWidth = 760)
{
    auto view = make<FolderView>(listing, rowLimit);
    view->setFrameSize({viewWidth, 1});
    view->layoutSubtreeIfNeeded();
    return view;
}

void collect(NSView& view, std::vector<NSView*>& found, const std::string& className)
{
    if (view.classObject().name() == className)
        found.push_back(&view);
    for (const auto& subview : view.subviews())
        collect(*subview, found, className);
}

std::vector<NSView*> views(NSView& root, const std::string& className)
{
    std::vector<NSView*> result;
    collect(root, result, className);
    return result;
}

std::vector<CGRect> allFrames(NSView& root)
{
    std::vector<CGRect> frames{root.frame()};
    for (const auto& subview : root.subviews()) {
        const auto below = allFrames(*subview);
        frames.insert(frames.end(), below.begin(), below.end());
    }
    return frames;
}

CGRect inRoot(NSView& view, const NSView& root)
{
    return view.convertRectTo(view.bounds(), &root);
}

TEST(FolderView, alignsEveryCellWithItsHeading)
{
    for (const CGFloat viewWidth : {640.0, 760.0, 1203.0}) {
        const auto view = laidOut(sampleListing(), 20, viewWidth);
        EXPECT_EQ(width(*view), viewWidth);
        const auto texts = views(*view, "NSTextField");
        std::vector<CGRect> headings;
        for (NSView* text : texts) {
            const std::string& string = static_cast<NSTextField*>(text)->stringValue();
            if (string == "Name" || string == "Kind" || string == "Size")
                headings.push_back(inRoot(*text, *view));
        }
        ASSERT_EQ(headings.size(), 3U);
        for (NSView* row : views(*view, "FolderSizes.EntryRow")) {
            const auto& cells = static_cast<RVGroupView*>(row)->views();
            for (std::size_t column = 0; column < 3; ++column) {
                NSView& content = *static_cast<RVGroupView&>(*cells[column]).views()[0];
                EXPECT_EQ(inRoot(content, *view).minX(), headings[column].minX());
                EXPECT_EQ(inRoot(content, *view).maxX(), headings[column].maxX());
            }
        }
    }
}

TEST(FolderView, wrapsALongNameInItsColumnAndMakesTheRowHigher)
{
    const auto view = laidOut(sampleListing(), 20);
    const auto rows = views(*view, "FolderSizes.EntryRow");
    EXPECT_EQ(height(*rows[0]), height(*rows[2]));
    EXPECT_GT(height(*rows[1]), 2 * height(*rows[0]));
    EXPECT_GE(top(*rows[2]), bottom(*rows[1]));
}

TEST(FolderView, namesUnwrapWhenThereIsRoomAgain)
{
    const auto view = laidOut(sampleListing(), 20, 640);
    view->setFrameSize({2400, 1});
    view->layoutSubtreeIfNeeded();
    const auto rows = views(*view, "FolderSizes.EntryRow");
    EXPECT_EQ(height(*rows[1]), height(*rows[0]));
}

TEST(FolderView, isAsHighAsItsContentAndLeavesRoomBelowInAHigherWindow)
{
    const auto view = laidOut(sampleListing(), 20);
    const CGFloat contentHeight = height(*view);
    const auto rows = views(*view, "FolderSizes.EntryRow");
    const CGFloat totalTop = inRoot(*rows.back(), *view).minY();
    view->setFrameSize({760, contentHeight + 200});
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(height(*view), contentHeight + 200);
    EXPECT_EQ(inRoot(*rows.back(), *view).minY(), totalTop);
}

TEST(FolderView, sumsUpTheEntriesBeyondTheLimitInOneRow)
{
    const auto view = laidOut(sampleListing(), 1);
    EXPECT_EQ(view->rowCount(), 2U);
    const auto rows = views(*view, "FolderSizes.EntryRow");
    ASSERT_EQ(rows.size(), 3U); // with the total
    EXPECT_EQ(rows[1]->identifier(), "3 smaller entries");
    EXPECT_EQ(rows[2]->identifier(), "Total");
}

TEST(FolderView, ofAnEmptyFolderShowsTheTotalOnly)
{
    FolderListing listing;
    listing.path = "/";
    const auto view = laidOut(listing, 20);
    EXPECT_EQ(view->rowCount(), 0U);
    EXPECT_EQ(views(*view, "FolderSizes.EntryRow").size(), 1U);
}

TEST(FolderView, closesTheGapOfAHiddenRowAndShowingItRestoresEveryFrame)
{
    const auto view = laidOut(sampleListing(), 20);
    const std::vector<CGRect> before = allFrames(*view);
    const auto rows = views(*view, "FolderSizes.EntryRow");
    const CGFloat hiddenTop = inRoot(*rows[1], *view).minY();
    view->setRowVisible(1, false);
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(inRoot(*rows[2], *view).minY(), hiddenTop);
    EXPECT_EQ(rows[1]->alphaValue(), 0);
    view->setRowVisible(1, true);
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(allFrames(*view), before);
}

TEST(FolderView, saysThatReadingWasStopped)
{
    FolderListing listing = sampleListing();
    listing.isStopped = true;
    const auto view = laidOut(listing, 20);
    const auto texts = views(*view, "NSTextField");
    EXPECT_TRUE(std::ranges::any_of(texts, [](const NSView* text) {
        return static_cast<const NSTextField*>(text)->stringValue() ==
               "1 folder, 3 other entries — reading was stopped";
    }));
}

TEST(FolderView, rowsOfAPictureAreNothingToChoose)
{
    const auto view = laidOut(sampleListing(), 20);
    for (const auto& row : view->rows()) {
        EXPECT_FALSE(row->isChosen());
        EXPECT_FALSE(row->acceptsFirstResponder());
        EXPECT_EQ(row->accessibilityRole(), AccessibleRole::none);
        EXPECT_FALSE(row->accessibilityPerformPress());
    }
}

TEST(FolderView, ofTheChoosableRowsOneIsChosen)
{
    const auto view = laidOut(sampleListing(), 3);
    view->makeChoosable({.open = [](const std::string&) {}, .choose = [](NSView&) {}});
    EXPECT_EQ(view->chosenName(), "photographs");
    view->choose("notes");
    view->choose("not there");
    EXPECT_EQ(view->chosenName(), "notes");
    std::vector<std::pair<bool, bool>> states; // choosable, chosen
    for (const auto& row : view->rows())
        states.emplace_back(row->acceptsFirstResponder(), row->isChosen());
    EXPECT_EQ(states, (std::vector<std::pair<bool, bool>>{
                          {true, false}, {true, false}, {true, true}, {false, false}})) // the smaller ones
        << "the row of smaller entries is none";
}

TEST(FolderView, laysOutTwoHundredRows)
{
    FolderListing listing;
    listing.path = "/home/sample";
    for (int i = 0; i < 5000; ++i)
        listing.entries.push_back({.name = "entry " + std::to_string(i), .kind = EntryKind::file, .size = 10});
    listing.totalSize = 50000;
    const auto view = laidOut(listing, 200);
    const auto rows = views(*view, "FolderSizes.EntryRow");
    ASSERT_EQ(rows.size(), 202U);
    for (std::size_t i = 1; i < 201; ++i)
        EXPECT_EQ(top(*rows[i]), bottom(*rows[i - 1]));
}

} // namespace
} // namespace FolderSizes::FolderViewTests
