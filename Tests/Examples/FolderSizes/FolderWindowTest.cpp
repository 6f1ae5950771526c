#include "FolderSizesDesktop.h"

namespace FolderSizes::FolderWindowTests {
namespace {

using namespace RVCore;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::string f5 = "\xef\x9c\x88";

class FolderWindow : public FolderSizesDesktop {
protected:
    std::shared_ptr<RVProgressBlockingView> windowOverlay() { return progressBlockingView(window()); }
    std::shared_ptr<RVProgressBlockingView> listOverlay() { return progressBlockingView(host()); }
    // The first view of the class in the tree.
    template <class T> static T* find(NSView& root)
    {
        if (auto* found = dynamic_cast<T*>(&root))
            return found;
        for (const auto& subview : root.subviews()) {
            if (T* found = find<T>(*subview))
                return found;
        }
        return nullptr;
    }
    ReadingControls& controlsOf(NSView& overlay) { return *find<ReadingControls>(overlay); }
    std::string shownTexts() { return accessibilityTree(window()); }
};

TEST_F(FolderWindow, OpensAtOnceAndReadsTheFolderUnderACover)
{
    controller->showWindow(nullptr);
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().contentSize(), CGSize(760, 480));
    EXPECT_EQ(window().title(), "/home/sample – FolderSizes");
    EXPECT_EQ(gate.folder(), "/home/sample");
    ASSERT_TRUE(windowOverlay());
    EXPECT_EQ(windowOverlay()->title(), "Reading sample");
    EXPECT_EQ(windowOverlay()->message(), "/home/sample");
    EXPECT_TRUE(windowOverlay()->showProgress());
    EXPECT_FALSE(item(0).isEnabled());
    EXPECT_FALSE(item(1).isEnabled());
    EXPECT_EQ(controller->list(), nullptr);
    finish(listingOf("/home/sample", 3));
    EXPECT_TRUE(controller->list());
    EXPECT_TRUE(item(0).isEnabled());
    EXPECT_TRUE(item(1).isEnabled());
    wait(0.31);
    EXPECT_THAT(overlaysIn(content()), IsEmpty());
    EXPECT_EQ(window().firstResponder(), &row(0)) << "the list has the keys";
}

TEST_F(FolderWindow, TheMessageFollowsTheDirectoryAndTheBarThePart)
{
    controller->showWindow(nullptr);
    auto& bar = *find<NSProgressIndicator>(controlsOf(*windowOverlay()));
    EXPECT_FALSE(bar.isIndeterminate());
    report({.directory = "/home/sample"});
    EXPECT_EQ(windowOverlay()->message(), "/home/sample");
    report({.directory = "/home/sample/music/old", .finishedCount = 1, .entryCount = 4});
    EXPECT_EQ(windowOverlay()->message(), "music/old");
    wait(0.1);
    EXPECT_GT(bar.doubleValue(), 0);
    EXPECT_LT(bar.doubleValue(), 0.25) << "on its way";
    wait(0.3);
    EXPECT_EQ(bar.doubleValue(), 0.25);
    report({.directory = "/home/sample/" + std::string(100, 'n') + "/end", .finishedCount = 1, .entryCount = 4});
    EXPECT_THAT(*windowOverlay()->message(), HasSubstr("…"));
    EXPECT_THAT(*windowOverlay()->message(), testing::EndsWith("/end"));
    EXPECT_EQ(overlaysIn(content()), std::vector{windowOverlay()}) << "one overlay all the while";
}

TEST_F(FolderWindow, BarAndButtonAreLaidOutBelowTheTexts)
{
    controller->showWindow(nullptr);
    wait(0.5);
    NSView& controls = controlsOf(*windowOverlay());
    const NSView& texts = OverlayParts(*windowOverlay()).group;
    window().setContentSize({480, 360});
    wait();
    EXPECT_LT(controls.frame().maxY(), texts.frame().minY());
    EXPECT_EQ(controls.frame().midX(), windowOverlay()->bounds().midX());
    EXPECT_EQ(controls.frame().minY(), 24);
    EXPECT_EQ(controls.alphaValue(), 1);
}

TEST_F(FolderWindow, StopKeepsWhatWasFound)
{
    open();
    for (const bool usesPointer : {true, false}) {
        controller->openEnclosingFolder();
        wait(0.5);
        if (usesPointer)
            click(placeOf(*find<NSButton>(controlsOf(*windowOverlay()))));
        else
            type(NSKey::escape);
        awaitEnd();
        EXPECT_THAT(overlaysIn(content()), SizeIs(1)) << "the cover fades";
        wait(0.5);
        EXPECT_THAT(shownTexts(), HasSubstr("reading was stopped"));
        EXPECT_EQ(controller->scan(), nullptr);
        EXPECT_THAT(overlaysIn(content()), IsEmpty());
        controller->readAgain();
        finish(listingOf("/home/sample", 3));
        wait(2);
    }
}

TEST_F(FolderWindow, ReadingAgainCoversTheListForASecondAtLeast)
{
    open();
    type("r", InputModifier::command);
    EXPECT_EQ(windowOverlay(), nullptr);
    const auto overlay = listOverlay();
    ASSERT_TRUE(overlay);
    EXPECT_EQ(overlay->frame(), host().bounds());
    EXPECT_TRUE(item(1).isEnabled());
    controller->readAgain();
    EXPECT_EQ(gate.folder(), "/home/sample");
    wait(0.2);
    finish(listingOf("/home/sample", 4));
    EXPECT_THAT(controller->list()->rows(), SizeIs(5)) << "the new list is there already";
    wait(0.79);
    EXPECT_THAT(overlaysIn(host()), ElementsAre(overlay));
    EXPECT_EQ(shownAlpha(*overlay), 1) << "it has not begun to fade";
    EXPECT_EQ(controlsOf(*overlay).alphaValue(), 0) << "there is nothing to stop any more";
    controller->readAgain();
    EXPECT_EQ(controller->scan(), nullptr) << "not while the cover is there";
    wait(0.16);
    EXPECT_LT(shownAlpha(*overlay), 1);
    wait(0.2);
    EXPECT_THAT(overlaysIn(host()), IsEmpty());
    EXPECT_EQ(gate.count(), 2U);
    type(f5);
    EXPECT_TRUE(controller->scan());
}

TEST_F(FolderWindow, APictureOfTheOldListFadesOutOverTheNewOne)
{
    open();
    const auto before = controller->list();
    controller->openEnclosingFolder();
    wait(0.5);
    finish(listingOf("/home", 6));
    EXPECT_EQ(before->window(), nullptr);
    EXPECT_NE(controller->list(), before);
    ASSERT_THAT(host().subviews(), SizeIs(2));
    const auto picture = host().subviews()[1];
    EXPECT_TRUE(find<NSImageView>(*picture));
    EXPECT_EQ(picture->frame(), host().bounds());
    EXPECT_TRUE(backgroundColor(*picture)) << "it hides what is below it";
    EXPECT_EQ(LayerPresentation(*picture->layer()).opacity(), 1);
    wait(0.15);
    const double half = LayerPresentation(*picture->layer()).opacity();
    EXPECT_GT(half, 0.2);
    EXPECT_LT(half, 0.8);
    wait(0.16);
    EXPECT_EQ(picture->superview(), nullptr);
    EXPECT_THAT(host().subviews(), SizeIs(1));
    EXPECT_EQ(window().title(), "/home – FolderSizes");
}

TEST_F(FolderWindow, WhatIsCoveredGetsNeitherClicksNorScrollsNorKeys)
{
    open(30);
    const CGPoint place = placeOf(row(2));
    const auto use = [&] {
        click(place, 2);
        scroll(place, -20);
        for (const char* key : {NSKey::down, NSKey::carriageReturn, NSKey::end, NSKey::pageDown, NSKey::space})
            type(key);
        type(f5);
        type("r", InputModifier::command);
        type(NSKey::up, InputModifier::option);
    };
    for (const bool coversWindow : {false, true}) {
        const std::size_t count = gate.count();
        coversWindow ? controller->openEnclosingFolder() : controller->readAgain();
        EXPECT_EQ(gate.folder(), coversWindow ? "/home" : "/home/sample");
        wait(0.5);
        use();
        EXPECT_TRUE(controller->scan()) << "not stopped";
        EXPECT_EQ(gate.count(), count + 1);
        EXPECT_EQ(controller->list()->chosenName(), "folder 0");
        EXPECT_EQ(host().offset(), 0);
        finish(listingOf("/home/sample", 30));
        wait(2);
    }
    use(); // Return opens the last row, which is a folder, or the double click has opened another one before
    EXPECT_TRUE(controller->scan());
}

TEST_F(FolderWindow, TheKeyboardChoosesAndOpens)
{
    open();
    EXPECT_EQ(window().firstResponder(), &row(0));
    type(NSKey::down);
    type(NSKey::down);
    EXPECT_EQ(window().firstResponder(), &row(2));
    EXPECT_EQ(row(2).layer()->borderWidth(), 2) << "the focus is seen";
    EXPECT_TRUE(row(2).isChosen());
    EXPECT_FALSE(row(1).isChosen());
    type(NSKey::up);
    EXPECT_EQ(controller->list()->chosenName(), "folder 1");
    type(NSKey::end);
    EXPECT_EQ(controller->list()->chosenName(), "file");
    type(NSKey::down);
    type(NSKey::carriageReturn);
    EXPECT_EQ(controller->scan(), nullptr) << "a file does not open";
    type(NSKey::home);
    type(NSKey::up);
    type(NSKey::carriageReturn);
    ASSERT_TRUE(controller->scan());
    EXPECT_EQ(gate.folder(), "/home/sample/folder 0");
    finish(listingOf("/home/sample/folder 0", 1));
    wait(0.5);
    EXPECT_EQ(window().firstResponder(), &row(0)) << "the new list has the keys";

    type(NSKey::up, InputModifier::option);
    ASSERT_TRUE(controller->scan());
    EXPECT_EQ(gate.folder(), "/home/sample");
    finish(listingOf("/home/sample", 3));
    EXPECT_EQ(controller->list()->chosenName(), "folder 0") << "where the user comes from";
}

TEST_F(FolderWindow, TabGoesToTheChosenRow)
{
    open();
    type(NSKey::down);
    window().makeFirstResponder(nullptr);
    EXPECT_EQ(row(1).layer()->borderWidth(), 0);
    window().selectNextKeyView();
    EXPECT_EQ(window().firstResponder(), &row(1));
}

TEST_F(FolderWindow, AClickChoosesAndTwoOpen)
{
    open();
    click(placeOf(row(1)));
    EXPECT_EQ(controller->list()->chosenName(), "folder 1");
    EXPECT_EQ(controller->scan(), nullptr);
    click(placeOf(row(3)), 2);
    EXPECT_EQ(controller->scan(), nullptr) << "a file does not open";
    click(placeOf(row(2)), 2);
    ASSERT_TRUE(controller->scan());
    EXPECT_EQ(gate.folder(), "/home/sample/folder 2");
}

TEST_F(FolderWindow, AssistiveTechnologyFindsTheRowsAndOpensThem)
{
    open();
    EXPECT_THAT(shownTexts(), HasSubstr("button 'folder 1'"));
    EXPECT_TRUE(row(1).accessibilityPerformPress());
    EXPECT_EQ(gate.folder(), "/home/sample/folder 1");
    EXPECT_THAT(shownTexts(), Not(HasSubstr("button 'folder 1'"))) << "it is covered";
    EXPECT_THAT(shownTexts(), HasSubstr("button 'Stop'"));
}

TEST_F(FolderWindow, TheListScrollsAndFollowsTheKeys)
{
    open(30);
    const CGPoint place = placeOf(row(2));
    scroll(place, -50);
    EXPECT_EQ(host().offset(), 50);
    scroll(place, 500);
    EXPECT_EQ(host().offset(), 0);
    for (int i = 0; i < 18; ++i)
        type(NSKey::down);
    EXPECT_GT(host().offset(), 0);
    const CGRect shown = row(18).convertRectTo(row(18).bounds(), &host());
    EXPECT_TRUE(host().bounds().contains({shown.minX(), shown.minY()}));
    EXPECT_LE(shown.maxY(), host().bounds().maxY());
    const CGFloat offset = host().offset();
    controller->readAgain();
    finish(listingOf("/home/sample", 30));
    wait(2);
    EXPECT_EQ(host().offset(), offset) << "read again, the same part is seen";
    EXPECT_EQ(controller->list()->chosenName(), "folder 18");
    scroll(place, -5000);
    const CGFloat end = host().offset();
    type(NSKey::pageUp);
    EXPECT_LT(host().offset(), end);
    window().setContentSize({760, 1200});
    wait();
    EXPECT_EQ(host().offset(), 0) << "there is room for all of it";
}

TEST_F(FolderWindow, AProblemIsShownAsTextAndTheListStays)
{
    open();
    const auto before = controller->list();
    for (const bool coversWindow : {false, true}) {
        coversWindow ? controller->openEnclosingFolder() : controller->readAgain();
        gate.fail("/home/sample", std::errc::permission_denied);
        awaitEnd();
        wait(2);
        EXPECT_EQ(controller->list(), before);
        EXPECT_EQ(window().title(), "/home/sample – FolderSizes");
        EXPECT_THAT(shownTexts(), HasSubstr("“/home/sample” cannot be read: Permission denied"));
        EXPECT_GT(host().frame().minY(), 20) << "the list makes room";
        EXPECT_EQ(window().firstResponder(), &row(0));
        EXPECT_TRUE(item(0).isEnabled());
    }
    controller->readAgain();
    finish(listingOf("/home/sample", 3));
    wait(2);
    EXPECT_THAT(shownTexts(), Not(HasSubstr("cannot be read")));
    EXPECT_EQ(host().frame().minY(), 0);
}

TEST_F(FolderWindow, AFirstFolderThatCannotBeReadLeavesAnEmptyWindow)
{
    controller->showWindow(nullptr);
    gate.fail("/home/sample", std::errc::permission_denied);
    awaitEnd();
    wait(2);
    EXPECT_EQ(controller->list(), nullptr);
    EXPECT_THAT(shownTexts(), HasSubstr("cannot be read"));
    type(NSKey::down);
    controller->readAgain();
    finish(listingOf("/home/sample", 3));
    wait(2);
    EXPECT_EQ(window().firstResponder(), &row(0));
}

TEST_F(FolderWindow, AnotherFolderCanBeAskedForWhileTheCoverFades)
{
    open();
    controller->openEnclosingFolder();
    finish(listingOf("/home", 2));
    wait(0.1);
    item(0).sendAction();
    ASSERT_TRUE(controller->scan());
    wait(0.5);
    ASSERT_TRUE(windowOverlay());
    EXPECT_EQ(windowOverlay()->title(), "Reading /");
    EXPECT_EQ(overlaysIn(content()), std::vector{windowOverlay()}) << "the first one has gone";
    EXPECT_FALSE(item(0).isEnabled());
    finish(listingOf("/", 2));
    wait(0.5);
    EXPECT_THAT(overlaysIn(content()), IsEmpty());
    EXPECT_EQ(window().firstResponder(), &row(0));
    EXPECT_FALSE(item(0).isEnabled()) << "there is no folder around it";
    EXPECT_TRUE(item(1).isEnabled());
}

TEST_F(FolderWindow, ClosedWhileReadingItEndsThatAndGoesAway)
{
    for (const bool coversWindow : {false, true}) {
        controller = make<FolderWindowController>(
            FolderWindowController::Settings{.folder = "/home/sample", .reader = gate.reader()});
        open();
        coversWindow ? controller->openEnclosingFolder() : controller->readAgain();
        report({.directory = "/home/sample/music", .finishedCount = 1, .entryCount = 4});
        const std::weak_ptr<NSWindow> gone = controller->window();
        window().performClose();
        EXPECT_EQ(controller->scan(), nullptr);
        EXPECT_TRUE(NSApplication::shared().windows().empty());
        controller.reset();
        clock.advance(3); // what moved comes to its end
        EXPECT_TRUE(gone.expired());
    }
}

TEST_F(FolderWindow, AsksForNothingWhileNobodyDoesAnything)
{
    open();
    EXPECT_EQ(desktop->flushFrames(), 0);
    EXPECT_EQ(DispatchQueue::main().nextDeadline(), std::nullopt);
}

} // namespace
} // namespace FolderSizes::FolderWindowTests
