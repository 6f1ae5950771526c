#include <AppKit/NSAccessibility.h>
#include <AppKit/NSButton.h>
#include <AppKit/NSTrackingArea.h>
#include <Platform/AppKit/InputTesting.h>
#include <Sources/Views/TestViews.h>

#include <gmock/gmock.h>

namespace RVCore::RVGroupViewInputTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A member of its own size that writes down what reaches it.
class SizedListener : public ListeningView {
public:
    CGSize intrinsicContentSize() const override { return {40, 20}; }
    AccessibleRole accessibilityRole() const override { return AccessibleRole::button; }
    std::string accessibilityLabel() const override { return identifier(); }
};

// A group of a, b and c in the window, each 40 × 20, of which b is hidden: a, then c, from the top left corner.
class RVGroupViewInputTest : public WindowInputTest {
protected:
    RVGroupViewInputTest()
    {
        content().addSubview(group);
        autoPinEdge(*group, LayoutEdge::left, LayoutEdge::left, content());
        autoPinEdge(*group, LayoutEdge::top, LayoutEdge::top, content());
        window->setTitle("Group");
        group->setVisibility(b, false);
        window->layoutIfNeeded();
    }

    std::shared_ptr<SizedListener> member(const std::string& name)
    {
        auto view = make<SizedListener>();
        view->setIdentifier(name);
        view->log = &log;
        view->accepts = true;
        return view;
    }

    std::shared_ptr<SizedListener> a = member("a"), b = member("b"), c = member("c");
    std::shared_ptr<RVGroupView> group = makeGroupView({a, b, c});
};

TEST_F(RVGroupViewInputTest, theHiddenMemberLiesOverTheFirstOne)
{
    EXPECT_EQ(frames({a, c}), "a (0, 0) 40 × 20\nc (40, 0) 40 × 20\n");
    EXPECT_EQ(frames({b}), "b (0, 0) 40 × 20\n") << "which is why the pointer has to pass through it";
}

TEST_F(RVGroupViewInputTest, aClickPassesThroughAHiddenMember)
{
    click(20, 10);
    click(60, 10);
    EXPECT_THAT(takeLog(), ElementsAre("a down", "a up", "c down", "c up"));
    group->setVisibility(b, true);
    window->layoutIfNeeded();
    click(60, 10);
    EXPECT_THAT(takeLog(), ElementsAre("b down", "b up"));
}

TEST_F(RVGroupViewInputTest, thePointerDoesNotEnterAHiddenMember)
{
    using Options = NSTrackingAreaOptions;
    for (const auto& view : {a, b}) {
        view->addTrackingArea(make<NSTrackingArea>(
            CGRect(), Options::mouseEnteredAndExited | Options::activeAlways | Options::inVisibleRect, *view));
    }
    move(20, 10);
    EXPECT_THAT(takeLog(), ElementsAre("a entered"));
}

TEST_F(RVGroupViewInputTest, tabPassesOverAHiddenMember)
{
    for (const auto& view : {a, b, c})
        view->keeps = false;
    window->makeFirstResponder(a.get());
    type(NSKey::tab);
    EXPECT_EQ(window->firstResponder(), c.get());
    EXPECT_FALSE(b->canBecomeKeyView());
}

TEST_F(RVGroupViewInputTest, assistiveTechnologyDoesNotReachAHiddenMember)
{
    EXPECT_EQ(accessibilityTree(*window), "window 'Group'\n"
                                          "  button 'a'\n"
                                          "  button 'c'\n");
}

TEST_F(RVGroupViewInputTest, aHiddenDefaultButtonIsNotPressed)
{
    int count = 0;
    const auto button = make<NSButton>();
    button->setTitle("OK");
    button->setKeyEquivalent(NSKey::carriageReturn);
    button->setOnAction([&] { ++count; });
    group->setViews({a, button});
    group->setVisibility(button, false);
    type(NSKey::carriageReturn);
    EXPECT_EQ(count, 0);
    group->setVisibility(button, true);
    type(NSKey::carriageReturn);
    EXPECT_EQ(count, 1);
}

TEST_F(RVGroupViewInputTest, aMemberThatIsHiddenLetsGoOfTheKeys)
{
    window->makeFirstResponder(a.get());
    group->setVisibility(a, false);
    EXPECT_EQ(window->firstResponder(), window.get());
    type("x");
    EXPECT_THAT(takeLog(), IsEmpty());
}

} // namespace
} // namespace RVCore::RVGroupViewInputTests
