#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>
#include <RVCore.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::NSButtonRVCoreTests {
namespace {

using testing::ElementsAre;

// Writes down what is set, in order.
class LoggingButton : public NSButton {
    RVCORE_CLASS(LoggingButton)

public:
    using NSButton::init;
    void init() override
    {
        log.emplace_back("init");
        NSButton::init();
    }
    void setTarget(const ObjectRef& target) override
    {
        log.push_back(std::string("target ") + (target ? "given" : "absent"));
        NSButton::setTarget(target);
    }
    void setAction(const std::optional<Selector>& action) override
    {
        log.push_back("action " + (action ? action->name() : "absent"));
        NSButton::setAction(action);
    }
    void setTitle(const std::string& title) override
    {
        log.push_back("title " + title);
        NSButton::setTitle(title);
    }
    void setButtonType(NSButtonType type) override
    {
        log.push_back("buttonType " + std::to_string(static_cast<int>(type)));
        isChangingType = true;
        NSButton::setButtonType(type);
        isChangingType = false;
    }
    void setBordered(bool bordered) override
    {
        note(std::string("bordered ") + (bordered ? "true" : "false"));
        NSButton::setBordered(bordered);
    }
    void setBezelStyle(NSBezelStyle style) override
    {
        note("bezelStyle " + std::to_string(static_cast<int>(style)));
        NSButton::setBezelStyle(style);
    }
    void setImagePosition(NSCellImagePosition position) override
    {
        note("imagePosition " + std::to_string(static_cast<int>(position)));
        NSButton::setImagePosition(position);
    }
    void setImageScaling(NSImageScaling scaling) override
    {
        note("imageScaling " + std::to_string(static_cast<int>(scaling)));
        NSButton::setImageScaling(scaling);
    }
    void setImage(const std::shared_ptr<NSImage>& image) override
    {
        note(std::string("image ") + (image ? "given" : "absent"));
        NSButton::setImage(image);
    }

    std::vector<std::string> log;

private:
    // What the platform does to a button whose type changes is its own affair.
    void note(const std::string& line)
    {
        if (!isChangingType)
            log.push_back(line);
    }
    bool isChangingType = false;
};

Class& LoggingButton::staticClass()
{
    static Class& theClass = defineClass<LoggingButton>("LoggingButton", NSButton::staticClass(), [](auto&) {});
    return theClass;
}

std::shared_ptr<NSImage> picture()
{
    return make<NSImage>(CGSize{17, 9}, [](Canvas& canvas, const CGRect& rect) { canvas.fill({rect, 0}, {}); });
}

std::shared_ptr<LoggingButton> sendInit(Selector selector, const Value& first, const Value& target,
                                        const Value& action)
{
    const auto made = send(LoggingButton::staticClass(), "alloc").as<std::shared_ptr<LoggingButton>>();
    EXPECT_EQ(send(made, selector, first, target, action).as<ObjectRef>(), made);
    return made;
}

class NSButtonFactories : public testing::Test {
protected:
    std::shared_ptr<NSObject> target = make<NSObject>();
};

TEST_F(NSButtonFactories, aPushButtonIsSetUpInOrder)
{
    const auto expected = ElementsAre("init", "target given", "action save:", "title Save", "buttonType 7",
                                      "bordered true", "bezelStyle 1");
    const auto button = makeButton<LoggingButton>({.title = "Save", .target = target, .action = "save:"});
    EXPECT_THAT(button->log, expected);
    const auto sent = sendInit("initWithButtonTitle:target:action:", "Save", target, Selector("save:"));
    EXPECT_THAT(sent->log, expected);
    for (const auto& made : {button, sent}) {
        EXPECT_EQ(made->target(), target);
        EXPECT_EQ(made->action(), Selector("save:"));
        EXPECT_EQ(made->title(), "Save");
        EXPECT_EQ(made->buttonType(), NSButtonType::momentaryPushIn);
        EXPECT_TRUE(made->isBordered());
        EXPECT_EQ(made->bezelStyle(), NSBezelStyle::rounded);
    }
}

TEST_F(NSButtonFactories, aCheckBoxGetsItsTypeBeforeItsTitle)
{
    const auto expected = ElementsAre("init", "target given", "action toggle:", "buttonType 3", "title Wrap");
    const auto button = makeCheckbox<LoggingButton>({.title = "Wrap", .target = target, .action = "toggle:"});
    EXPECT_THAT(button->log, expected);
    const auto sent = sendInit("initWithCheckboxTitle:target:action:", "Wrap", target, Selector("toggle:"));
    EXPECT_THAT(sent->log, expected);
    EXPECT_EQ(sent->buttonType(), NSButtonType::switchButton);
    EXPECT_EQ(sent->title(), "Wrap");
    EXPECT_FALSE(sent->isBordered()) << "the platform's default for the type";
}

TEST_F(NSButtonFactories, aRadioButtonGetsItsTypeBeforeItsTitle)
{
    const auto expected = ElementsAre("init", "target given", "action pick:", "buttonType 4", "title Left");
    const auto button = makeRadio<LoggingButton>({.title = "Left", .target = target, .action = "pick:"});
    EXPECT_THAT(button->log, expected);
    const auto sent = sendInit("initWithRadioTitle:target:action:", "Left", target, Selector("pick:"));
    EXPECT_THAT(sent->log, expected);
    EXPECT_EQ(sent->buttonType(), NSButtonType::radio);
    EXPECT_FALSE(sent->isBordered());
}

TEST_F(NSButtonFactories, anImageButtonIsSetUpInOrder)
{
    const auto expected = ElementsAre("init", "target given", "action pick:", "buttonType 5", "bordered false",
                                      "imagePosition 1", "imageScaling 2", "image given");
    const auto image = picture();
    const auto button = makeImageButton<LoggingButton>({.image = image, .target = target, .action = "pick:"});
    EXPECT_THAT(button->log, expected);
    const auto sent = sendInit("initWithImage:target:action:", image, target, Selector("pick:"));
    EXPECT_THAT(sent->log, expected);
    EXPECT_EQ(sent->image(), image);
    EXPECT_EQ(sent->buttonType(), NSButtonType::momentaryChange);
    EXPECT_FALSE(sent->isBordered());
    EXPECT_EQ(sent->imagePosition(), NSCellImagePosition::imageOnly);
    EXPECT_EQ(sent->imageScaling(), NSImageScaling::none);
}

TEST_F(NSButtonFactories, anImageButtonShowsItsImageAtItsOwnSizeWithoutBorderOrTitle)
{
    const auto button = makeImageButton({.image = picture()});
    EXPECT_EQ(button->intrinsicContentSize(), (CGSize{17, 9}));
    EXPECT_EQ(button->title(), "");
    button->setFrameSize({41, 29}); // whose room it leaves empty
    RecordingCanvas canvas;
    button->draw(canvas, button->bounds());
    EXPECT_EQ(canvas.text(), "save\n"
                             "  clip (0, 0) 41 × 29\n"
                             "  save\n"
                             "    fill (12, 10) 17 × 9 rgba(0, 0, 0, 1)\n"
                             "  restore\n"
                             "restore\n");
}

TEST_F(NSButtonFactories, targetActionAndImageMayBeAbsent)
{
    EXPECT_THAT(makeCheckbox<LoggingButton>({.title = "Wrap"})->log,
                ElementsAre("init", "target absent", "action absent", "buttonType 3", "title Wrap"));
    EXPECT_EQ(sendInit("initWithButtonTitle:target:action:", "", Value(), Value())->action(), std::nullopt);
    EXPECT_EQ(sendInit("initWithImage:target:action:", Value(), Value(), Value())->image(), nullptr);
    EXPECT_EQ(makeImageButton({})->intrinsicContentSize().width, 0);
}

TEST_F(NSButtonFactories, whatIsNoTitleIsRefused)
{
    EXPECT_EQ(raised([] { sendInit("initWithButtonTitle:target:action:", 7, Value(), Value()); }),
              "NSInvalidArgumentException: NSButton.initWithButtonTitle:target:action:: argument 1 must be text, got "
              "integer");
}

} // namespace
} // namespace RVCore::NSButtonRVCoreTests
