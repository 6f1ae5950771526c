#include <HeadlessBackend/HeadlessBackend.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>
#include <RVCore.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::RVColorButtonTests {
namespace {

using testing::ElementsAre;

std::shared_ptr<NSColor> red()
{
    return makeColor(1, 0, 0);
}

NSImageView& arrowOf(const NSButton& button)
{
    return dynamic_cast<NSImageView&>(*button.subviews().at(0));
}

std::shared_ptr<NSEvent> movedTo(CGPoint point)
{
    NSEventContent content;
    content.type = NSEventType::mouseMoved;
    content.locationInWindow = point;
    return make<NSEvent>(content);
}

TEST(RVColorButton, isABorderlessSwatchOfTheColour)
{
    const auto button = make<RVColorButton>(red());
    EXPECT_EQ(button->frame(), CGRect());
    EXPECT_EQ(button->buttonType(), NSButtonType::momentaryLight);
    EXPECT_FALSE(button->isBordered());
    EXPECT_EQ(button->title(), "");
    ASSERT_TRUE(button->layer());
    EXPECT_EQ(button->layer()->cornerRadius(), 4.0);
    EXPECT_TRUE(button->layer()->masksToBounds());
    EXPECT_EQ(button->layer()->borderColor(), grayColor()->cgColor());
    EXPECT_EQ(button->layer()->backgroundColor(), red()->cgColor());
    EXPECT_EQ(button->layer()->borderWidth(), 0.5);
}

// Says in which order the button was set up.
class LoggingColorButton : public RVColorButton {
    RVCORE_CLASS(LoggingColorButton)

public:
    using RVColorButton::init;
    void setButtonType(NSButtonType type) override
    {
        log.push_back("type " + std::to_string(static_cast<int>(type)));
        RVColorButton::setButtonType(type);
    }
    void setBordered(bool bordered) override
    {
        log.push_back(std::string("bordered ") + (bordered ? "true" : "false"));
        RVColorButton::setBordered(bordered);
    }
    void setTitle(const std::string& title) override
    {
        log.push_back("title \"" + title + "\", " + (layer() ? "layer" : "no layer") + ", " +
                      std::to_string(subviews().size()) + " subviews");
        RVColorButton::setTitle(title);
    }
    std::vector<std::string> log;

protected:
    std::shared_ptr<CALayer> makeBackingLayer() override
    {
        log.emplace_back("layer");
        return RVColorButton::makeBackingLayer();
    }
};

Class& LoggingColorButton::staticClass()
{
    static Class& theClass =
        defineClass<LoggingColorButton>("LoggingColorButton", RVColorButton::staticClass(), [](auto&) {});
    return theClass;
}

TEST(RVColorButton, isSetUpInOrder)
{
    EXPECT_THAT(make<LoggingColorButton>(red())->log,
                ElementsAre("type 0", "bordered false", "layer", "title \"\", layer, 0 subviews"));
}

TEST(RVColorButton, reportsItsSizeWhateverTheTitleOrTheImage)
{
    const auto button = make<RVColorButton>(red());
    EXPECT_EQ(button->intrinsicContentSize(), (CGSize{40, 20}));
    button->setTitle("A title that is much longer than the button");
    button->setImage(make<NSImage>(CGSize{90, 90}, [](Canvas&, const CGRect&) {}));
    EXPECT_EQ(button->intrinsicContentSize(), (CGSize{40, 20}));
}

TEST(RVColorButton, theColourReadsBackAsTheLayerHasIt)
{
    const auto button = make<RVColorButton>(red());
    EXPECT_TRUE(button->color()->isEqual(*red()));
    button->setColor(makeColor(0, 0.25, 1, 0.5));
    EXPECT_TRUE(button->color()->isEqual(*makeColor(0, 0.25, 1, 0.5)));
    button->layer()->setBackgroundColor(CGColor{0, 1, 0, 1});
    EXPECT_TRUE(button->color()->isEqual(*makeColor(0, 1, 0))) << "nothing is stored beside the layer";
}

TEST(RVColorButton, withoutAColourTheSwatchIsClearAndItsBorderStays)
{
    const auto button = make<RVColorButton>(red());
    button->setFrameSize({40, 20});
    button->setColor(nullptr);
    EXPECT_EQ(button->color(), nullptr);
    EXPECT_EQ(button->layer()->backgroundColor(), std::nullopt);
    RecordingCanvas canvas;
    paintViewTree(*button, canvas);
    EXPECT_THAT(canvas.text(), testing::HasSubstr("stroke (0, 0) 40 × 20 radius 4 width 0.5 rgba(0.5, 0.5, 0.5, 1)"));
    EXPECT_THAT(canvas.text(), testing::Not(testing::HasSubstr("fill")));
}

TEST(RVColorButton, withoutALayerThereIsNoColour)
{
    const auto button = make<RVColorButton>(red());
    button->setWantsLayer(false);
    button->setColor(red());
    EXPECT_EQ(button->color(), nullptr);
}

TEST(RVColorButton, theArrowStandsAtTheRightInTheMiddle)
{
    const auto button = make<RVColorButton>(red());
    button->setIdentifier("button");
    arrowOf(*button).setIdentifier("arrow");
    EXPECT_EQ(constraintTexts(arrowOf(*button).constraints()), "arrow.width == 12 @1000\n"
                                                               "arrow.height == 12 @1000\n");
    button->setFrame({0, 0, 60, 30});
    button->layoutSubtreeIfNeeded();
    EXPECT_EQ(arrowOf(*button).frame(), CGRect(45, 9, 12, 12));
    EXPECT_EQ(arrowOf(*button).imageAlignment(), NSImageAlignment::center);
}

TEST(RVColorButton, anApplicationWithoutTheArrowImageGetsAnEmptyArrow)
{
    const auto button = make<RVColorButton>(red());
    EXPECT_EQ(arrowOf(*button).image(), nullptr);
    button->setFrameSize({40, 20});
    int clicks = 0;
    button->setOnAction([&] { ++clicks; });
    button->performClick();
    EXPECT_EQ(clicks, 1);
}

TEST(RVColorButton, theApplicationsImageIsTheArrow)
{
    const auto image = make<NSImage>(CGSize{12, 12}, [](Canvas&, const CGRect&) {});
    registerImage("colorPicker-arrow", image);
    const auto button = make<RVColorButton>(red());
    registerImage("colorPicker-arrow", nullptr);
    EXPECT_EQ(arrowOf(*button).image(), image);
}

TEST(RVColorButton, tracksThePointerWhereverItIsVisible)
{
    const auto button = make<RVColorButton>(red());
    ASSERT_EQ(button->trackingAreas().size(), 1U);
    const NSTrackingArea& area = *button->trackingAreas()[0];
    EXPECT_EQ(static_cast<int>(area.options()), 0x281);
    EXPECT_EQ(area.owner(), button);
    EXPECT_EQ(area.rect(), CGRect());
    button->setFrame({5, 5, 40, 20});
    EXPECT_EQ(button->trackingAreas()[0].get(), &area) << "the area is never replaced";
}

TEST(RVColorButton, thePointerShowsAndHidesTheArrow)
{
    const auto window = make<NSWindow>(CGSize{100, 100});
    const auto button = make<RVColorButton>(red());
    button->setFrame({10, 10, 40, 20});
    window->contentView()->addSubview(button);
    const auto other = make<NSWindow>();
    window->makeKeyAndOrderFront();
    other->makeKeyAndOrderFront(); // the arrow does not need the keys
    EXPECT_TRUE(arrowOf(*button).isHidden());
    window->sendEvent(*movedTo({20, 20}));
    EXPECT_FALSE(arrowOf(*button).isHidden());
    window->sendEvent(*movedTo({45, 20}));
    EXPECT_FALSE(arrowOf(*button).isHidden()) << "over the arrow itself, too";
    window->sendEvent(*movedTo({60, 20}));
    EXPECT_TRUE(arrowOf(*button).isHidden());
    other->close();
    window->close();
}

// A desktop that asks the test whenever a frame is asked for.
class AskingBackend : public HeadlessBackend {
public:
    std::unique_ptr<WindowBackend> makeWindow(WindowClient& client, CGSize contentSize) override
    {
        class AskingWindow : public HeadlessWindow {
        public:
            AskingWindow(AskingBackend& backend, WindowClient& client, CGSize size)
                : HeadlessWindow(std::make_shared<List>(), client, size), m_backend(backend)
            {
            }
            void requestFrame() override
            {
                if (m_backend.onRequest)
                    m_backend.onRequest();
            }

        private:
            AskingBackend& m_backend;
        };
        return std::make_unique<AskingWindow>(*this, client, contentSize);
    }
    std::function<void()> onRequest;
};

TEST(RVColorButton, itsOwnEnterAndExitHandlingRunsFirst)
{
    auto owned = std::make_unique<AskingBackend>();
    AskingBackend& desktop = *owned;
    Backend::install(std::move(owned));
    const auto window = make<NSWindow>(CGSize{100, 100});
    const auto button = make<RVColorButton>(red());
    button->setFrameSize({60, 21});
    button->setBordered(true); // so that the inherited handling can be seen in the look
    window->contentView()->addSubview(button);
    window->makeKeyAndOrderFront();
    // Both ask for a frame; what can be seen at that time tells them apart.
    std::vector<std::string> log;
    desktop.onRequest = [&] {
        RecordingCanvas canvas;
        button->draw(canvas, button->bounds());
        log.push_back(canvas.lines().front() + (arrowOf(*button).isHidden() ? ", no arrow" : ", arrow"));
    };
    button->mouseEntered(*movedTo({}));
    EXPECT_THAT(std::exchange(log, {}), ElementsAre("push button, hovered in (0, 0) 60 × 21, no arrow",
                                                    "push button, hovered in (0, 0) 60 × 21, arrow"));
    button->mouseExited(*movedTo({}));
    EXPECT_THAT(std::exchange(log, {}),
                ElementsAre("push button in (0, 0) 60 × 21, arrow", "push button in (0, 0) 60 × 21, no arrow"));
    desktop.onRequest = nullptr;
    window->close();
    Backend::install(nullptr);
}

TEST(RVColorButton, takenOutUnderThePointerItHidesTheArrow)
{
    const auto window = make<NSWindow>(CGSize{100, 100});
    const auto button = make<RVColorButton>(red());
    button->setFrame({10, 10, 40, 20});
    window->contentView()->addSubview(button);
    window->makeKeyAndOrderFront();
    window->sendEvent(*movedTo({20, 20}));
    EXPECT_FALSE(arrowOf(*button).isHidden());
    button->removeFromSuperview();
    EXPECT_TRUE(arrowOf(*button).isHidden());
    window->close();
}

TEST(RVColorButton, drawsNothingItself)
{
    const auto button = make<RVColorButton>(red());
    button->setFrameSize({40, 20});
    RecordingCanvas canvas;
    button->draw(canvas, button->bounds());
    EXPECT_EQ(canvas.text(), "save\n  clip (0, 0) 40 × 20\nrestore\n");
}

TEST(RVColorButton, theKeyboardFocusIsSeenOnTheColour)
{
    const auto window = make<NSWindow>(CGSize{100, 100});
    const auto button = make<RVColorButton>(red());
    window->contentView()->addSubview(button);
    button->setFrame({10, 10, 40, 20});
    window->makeFirstResponder(button.get());
    RecordingCanvas canvas;
    button->draw(canvas, button->bounds());
    EXPECT_THAT(canvas.text(), testing::EndsWith("stroke (0, 0) 40 × 20 radius 4 width 2 rgba(0, 0, 1, 1)\n"
                                                 "stroke (2, 2) 36 × 16 radius 2 width 1 rgba(1, 1, 1, 1)\n"));
}

TEST(RVColorButton, aClickOnTheArrowIsAClickOnTheButton)
{
    const auto window = make<NSWindow>(CGSize{100, 100});
    const auto button = make<RVColorButton>(red());
    window->contentView()->addSubview(button);
    button->setFrame({10, 10, 40, 20});
    window->makeKeyAndOrderFront();
    int clicks = 0;
    button->setOnAction([&] { ++clicks; });
    window->sendEvent(*movedTo({41, 20}));
    for (const NSEventType type : {NSEventType::leftMouseDown, NSEventType::leftMouseUp}) {
        NSEventContent content;
        content.type = type;
        content.locationInWindow = {41, 20};
        window->sendEvent(*make<NSEvent>(content));
    }
    EXPECT_EQ(clicks, 1);
    window->close();
}

TEST(RVColorButton, aColourIsNeeded)
{
    EXPECT_EQ(raised([] { make<RVColorButton>(std::shared_ptr<NSColor>()); }),
              "NSInvalidArgumentException: RVColorButton.init: color must not be absent");
}

TEST(RVColorButton, everySelectorIsAnswered)
{
    const ObjectRef made = send(*Class::named("RVCore.RVColorButton"), "alloc").as<ObjectRef>();
    EXPECT_EQ(send(made, "initWithColor:", red()).as<ObjectRef>(), made);
    EXPECT_TRUE(send(made, "color").as<ObjectRef>()->isEqual(*red()));
    send(made, "setColor:", makeColor(0, 1, 0));
    EXPECT_TRUE(send(made, "color").as<ObjectRef>()->isEqual(*makeColor(0, 1, 0)));
    send(made, "setColor:", Value());
    EXPECT_TRUE(send(made, "color").isNothing());
}

TEST(RVColorButtonDeathTest, aFrameAloneIsNoWayToMakeOne)
{
    EXPECT_DEATH(make<RVColorButton>(CGRect()),
                 "^Fatal error: Use of unimplemented initializer 'init\\(frame:\\)' for class "
                 "'RVCore.RVColorButton'\n$");
    EXPECT_DEATH(make<RVColorButton>(), "'init\\(frame:\\)' for class 'RVCore.RVColorButton'");
    EXPECT_DEATH(send(std::make_shared<RVColorButton>(), "initWithFrame:", CGRect()),
                 "'init\\(frame:\\)' for class 'RVCore.RVColorButton'");
}

TEST(RVColorButtonDeathTest, anArchiveIsNoWayToMakeOne)
{
    NSCoder coder;
    EXPECT_DEATH(std::make_shared<RVColorButton>()->init(coder),
                 "^Sources/Common/Misc/GlobalFunctions:12: Fatal error: Not Supported\n$");
}

} // namespace
} // namespace RVCore::RVColorButtonTests
