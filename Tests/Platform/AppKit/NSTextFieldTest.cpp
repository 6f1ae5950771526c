#include "ViewTesting.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::NSTextFieldTests {
namespace {

using testing::HasSubstr;

// At 10 points every character is 5 wide and a line 13 high (HeadlessText.h).
std::shared_ptr<NSTextField> field(const std::string& text)
{
    const auto result = plainLabel(text);
    result->setFont(systemFontOfSize(10));
    return result;
}

// With the defaults, at 112 × 21 as large as it likes.
std::shared_ptr<NSTextField> typedField(const std::string& text)
{
    auto result = make<NSTextField>(CGRect(0, 0, 112, 21));
    result->setFont(systemFontOfSize(10));
    result->setStringValue(text);
    return result;
}

std::string drawn(NSTextField& field)
{
    RecordingCanvas canvas;
    field.draw(canvas, field.bounds());
    return canvas.text();
}

std::shared_ptr<NSTextField> wrappingField(const std::string& text)
{
    const auto result = field(text);
    result->setLineBreakMode(NSLineBreakMode::wordWrapping);
    return result;
}

TEST(NSTextField, IsAsLargeAsItsText)
{
    EXPECT_EQ(field("four")->intrinsicContentSize(), (CGSize{20, 13}));
    EXPECT_EQ(field("")->intrinsicContentSize(), (CGSize{0, 13}));
    EXPECT_EQ(field("two\nlines")->intrinsicContentSize(), (CGSize{25, 26}));
}

TEST(NSTextField, EveryChangeOfTheTextChangesItsSize)
{
    const auto label = field("four four");
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{45, 13}));
    label->setStringValue("four");
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{20, 13}));
    label->setFont(boldSystemFontOfSize(20));
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{48, 25}));
    label->setStringValue("a b c");
    label->setLineBreakMode(NSLineBreakMode::wordWrapping);
    label->setPreferredMaxLayoutWidth(20);
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{12, 75}));
    label->setMaximumNumberOfLines(2);
    EXPECT_EQ(label->intrinsicContentSize().height, 50);
}

TEST(NSTextField, IsLightOnDarkGroundUnlessItHasAColourOfItsOwn)
{
    NSApplication::shared().setAppearance(Appearance::dark);
    const auto field = make<NSTextField>();
    const CGColor nearBlack = field->textColor()->cgColor(); // on its white background
    field->setDrawsBackground(false);
    const CGColor onWindow = field->textColor()->cgColor();
    EXPECT_GT(onWindow.red, 0.5);
    EXPECT_LT(nearBlack.red, 0.5);
    field->setDrawsBackground(true);
    field->setBackgroundColor(makeColor(0.1, 0.1, 0.2));
    EXPECT_EQ(field->textColor()->cgColor(), onWindow);
    field->setTextColor(makeColor(1, 0, 0));
    EXPECT_EQ(field->textColor()->cgColor(), (CGColor{1, 0, 0, 1}));
    NSApplication::shared().setAppearance(Appearance::light);
    EXPECT_EQ(field->textColor()->cgColor(), (CGColor{1, 0, 0, 1}));
    NSApplication::shared().setAppearance(std::nullopt);
}

TEST(NSTextField, WrapsAtThePreferredWidthWhateverItsFrameIs)
{
    const auto label = wrappingField("four four four");
    label->setPreferredMaxLayoutWidth(50);
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{45, 26}));
    label->setFrameSize({20, 100});
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{45, 26}));
}

TEST(NSTextField, TheHeightOfWrappingTextFollowsTheWidthThatLayoutGives)
{
    const auto host = makeHost(50, 400);
    const auto label = wrappingField("four four four");
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    host->addSubview(label);
    hold(*label, Attribute::left, *host, Attribute::left);
    hold(*label, Attribute::top, *host, Attribute::top);
    hold(*label, Attribute::width, *host, Attribute::width);
    const auto heightAt = [&](CGFloat width) {
        host->setFrameSize({width, 400});
        host->layoutSubtreeIfNeeded();
        EXPECT_EQ(label->frame().size.width, width);
        return label->frame().size.height;
    };
    EXPECT_EQ(heightAt(50), 26);
    EXPECT_EQ(heightAt(20), 39);
    EXPECT_EQ(heightAt(100), 13);
    EXPECT_EQ(heightAt(50), 26);
    // Also when the preferred width took its turn in between.
    label->setPreferredMaxLayoutWidth(20);
    EXPECT_EQ(heightAt(20), 39);
    label->setPreferredMaxLayoutWidth(0);
    EXPECT_EQ(label->intrinsicContentSize().height, 39);
    label->setPreferredMaxLayoutWidth(-40);
    EXPECT_EQ(label->preferredMaxLayoutWidth(), -40);
    EXPECT_EQ(label->intrinsicContentSize().height, 39) << "a width that is none";
    EXPECT_EQ(heightAt(50), 26);
    label->setStringValue("four");
    EXPECT_EQ(heightAt(50), 13);
}

TEST(NSTextField, AnEqualValueMeasuresNothingAnew)
{
    const auto host = makeHost(50, 400);
    const auto label = field("text");
    host->addSubview(label);
    host->layoutSubtreeIfNeeded();
    label->setStringValue("text");
    label->setFont(systemFontOfSize(10));
    label->setLineBreakMode(NSLineBreakMode::clipping);
    label->setMaximumNumberOfLines(0);
    label->setPreferredMaxLayoutWidth(0);
    label->setAlignment(NSTextAlignment::natural);
    EXPECT_FALSE(host->needsLayout());
    EXPECT_FALSE(host->hasAmbiguousLayout());
}

TEST(NSTextField, WhatMakesNoSenseRaisesAndChangesNothing)
{
    const auto label = field("text");
    EXPECT_THAT(raised([&] { label->setFont(nullptr); }), HasSubstr("NSTextField.setFont:: there is no font"));
    EXPECT_THAT(raised([&] { label->setTextColor(nullptr); }), HasSubstr("there is no colour"));
    EXPECT_THAT(raised([&] { label->setMaximumNumberOfLines(-1); }), HasSubstr("must not be negative, got -1"));
    EXPECT_THAT(raised([&] { label->setPreferredMaxLayoutWidth(std::nan("")); }), HasSubstr("width"));
    EXPECT_EQ(label->maximumNumberOfLines(), 0);
    EXPECT_EQ(label->preferredMaxLayoutWidth(), 0);
    EXPECT_TRUE(label->font()->isEqual(*systemFontOfSize(10)));
}

TEST(NSTextField, DrawsItsTextInItsBounds)
{
    const auto label = field("text");
    label->setTextColor(makeColor(1, 0, 0));
    label->setAlignment(NSTextAlignment::right);
    label->setFrameSize({40, 13});
    RecordingCanvas canvas;
    label->draw(canvas, label->bounds());
    EXPECT_EQ(canvas.text(), "text \"text\" system 10 rgba(1, 0, 0, 1) in (0, 0) 40 × 13, right\n");
    canvas.clear();
    field("")->draw(canvas, {});
    EXPECT_EQ(canvas.text(), "");
}

TEST(NSTextField, StartsAsAFieldToTypeIn)
{
    const auto plain = make<NSTextField>();
    EXPECT_EQ(plain->stringValue(), "");
    EXPECT_EQ(plain->placeholderString(), std::nullopt);
    EXPECT_TRUE(plain->isEditable());
    EXPECT_TRUE(plain->isSelectable());
    EXPECT_TRUE(plain->isBezeled());
    EXPECT_FALSE(plain->isBordered());
    EXPECT_TRUE(plain->drawsBackground());
    EXPECT_EQ(plain->backgroundColor()->cgColor(), (CGColor{1, 1, 1, 1}));
    EXPECT_FALSE(plain->isEditing());
    EXPECT_EQ(plain->delegate(), nullptr);
}

TEST(NSTextField, AnEditableFieldIsAsWideAsTwentyDigitsWhateverItSays)
{
    const auto editable = typedField("");
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{112, 21}));
    editable->setStringValue("many more than twenty letters, and on");
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{112, 21}));
    editable->setPlaceholderString("an explanation that is long, too");
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{112, 21}));
    editable->setFont(systemFontOfSize(20));
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{212, 33}));
}

TEST(NSTextField, WhatIsAroundTheTextTakesItsRoom)
{
    const auto label = field("four");
    label->setBordered(true);
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{26, 17}));
    label->setBezeled(true);
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{32, 21})) << "the bezel counts";
    label->setBordered(false);
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{32, 21}));
    label->setBezeled(false);
    EXPECT_EQ(label->intrinsicContentSize(), (CGSize{20, 13}));
}

TEST(NSTextField, TheHeightOfAnEditableFieldThatWrapsFollowsTheWidthInsideItsBezel)
{
    const auto editable = typedField("four four four");
    editable->setLineBreakMode(NSLineBreakMode::wordWrapping);
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{112, 21})) << "twenty digits' room at first";
    editable->setFrameSize({62, 10});
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{112, 34}));
    editable->setPreferredMaxLayoutWidth(20);
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{32, 47}));
    editable->setEditable(false);
    EXPECT_EQ(editable->intrinsicContentSize(), (CGSize{32, 47}));
}

TEST(NSTextField, DrawsGroundBezelAndText)
{
    const auto editable = typedField("text");
    editable->setTextColor(makeColor(0, 0, 0));
    EXPECT_EQ(drawn(*editable), "fill (0, 0) 112 × 21 radius 2 rgba(1, 1, 1, 1)\n"
                                "text field in (0, 0) 112 × 21\n"
                                "text \"text\" system 10 rgba(0, 0, 0, 1) in (6, 4) 100 × 13\n");
    editable->setBezeled(false);
    editable->setBordered(true);
    editable->setBackgroundColor(makeColor(1, 0, 0, 0.5));
    EXPECT_EQ(drawn(*editable), "fill (0, 0) 112 × 21 rgba(1, 0, 0, 0.5)\n"
                                "stroke (0, 0) 112 × 21 width 1 rgba(0.7, 0.7, 0.72, 1)\n"
                                "text \"text\" system 10 rgba(0, 0, 0, 1) in (3, 2) 106 × 17\n");
    editable->setBordered(false);
    editable->setDrawsBackground(false);
    EXPECT_EQ(drawn(*editable), "text \"text\" system 10 rgba(0, 0, 0, 1) in (0, 0) 112 × 21\n");
    editable->setDrawsBackground(true);
    editable->setBackgroundColor(makeColor(0, 0, 0, 0));
    EXPECT_EQ(drawn(*editable), "text \"text\" system 10 rgba(0, 0, 0, 1) in (0, 0) 112 × 21\n") << "clear";
}

TEST(NSTextField, AnEmptyFieldShowsItsPlaceholderPale)
{
    const auto editable = typedField("");
    editable->setTextColor(makeColor(0, 0, 0));
    editable->setBezeled(false);
    editable->setDrawsBackground(false);
    EXPECT_EQ(drawn(*editable), "");
    editable->setPlaceholderString("Name");
    EXPECT_EQ(drawn(*editable), "text \"Name\" system 10 rgba(0, 0, 0, 0.45) in (0, 0) 112 × 21\n");
    editable->setPlaceholderString("");
    EXPECT_EQ(drawn(*editable), "");
    editable->setPlaceholderString("Name");
    editable->setStringValue("Ada");
    EXPECT_EQ(drawn(*editable), "text \"Ada\" system 10 rgba(0, 0, 0, 1) in (0, 0) 112 × 21\n");
}

TEST(NSTextField, WhatIsDisabledIsDrawnPale)
{
    const auto editable = typedField("text");
    editable->setTextColor(makeColor(0, 0, 0));
    editable->setEnabled(false);
    EXPECT_THAT(drawn(*editable), HasSubstr("rgba(0, 0, 0, 0.4)"));
    editable->setEnabled(true);
    EXPECT_THAT(drawn(*editable), HasSubstr("rgba(0, 0, 0, 1)"));
}

TEST(NSTextField, AFieldThatIsEditedHasAFocusRingAndLeavesItsTextToTheEditor)
{
    const auto window = make<NSWindow>(CGSize{200, 100});
    const auto editable = typedField("text");
    editable->setTextColor(makeColor(0, 0, 0));
    editable->setPlaceholderString("Name");
    window->contentView()->addSubview(editable);
    window->makeFirstResponder(editable.get());
    window->makeKeyAndOrderFront();
    editable->setSelectedRange({4, 0});
    EXPECT_EQ(drawn(*editable), "fill (0, 0) 112 × 21 radius 2 rgba(1, 1, 1, 1)\n"
                                "text field, focused in (0, 0) 112 × 21\n"
                                "save\n"
                                "  clip (6, 4) 100 × 13\n"
                                "  text \"text\" system 10 rgba(0, 0, 0, 1) in (6, 4) 100 × 13\n"
                                "  fill (26, 4) 1 × 13 rgba(0, 0, 0, 1)\n"
                                "restore\n");
    editable->setStringValue("");
    EXPECT_THAT(drawn(*editable), HasSubstr("\"Name\"")) << "until something is typed";
    editable->setTextColor(makeColor(1, 0, 0));
    editable->setStringValue("red");
    EXPECT_THAT(drawn(*editable), HasSubstr("\"red\" system 10 rgba(1, 0, 0, 1)"));
    window->close();
}

TEST(NSTextField, TextsAreAlwaysUtf8)
{
    const auto editable = typedField("a\xFFz");
    EXPECT_EQ(editable->stringValue(), "a\xEF\xBF\xBDz");
    editable->setPlaceholderString("\xC3");
    EXPECT_EQ(editable->placeholderString(), "\xEF\xBF\xBD");
}

TEST(NSTextField, AHugeTextIsAsGoodAsAnyOther)
{
    const auto window = make<NSWindow>(CGSize{200, 100});
    const auto editable = typedField(std::string(1000000, 'm'));
    window->contentView()->addSubview(editable);
    window->makeFirstResponder(editable.get());
    EXPECT_EQ(editable->selectedRange(), (TextRange{0, 1000000}));
    editable->perform(TextCommand::deleteSelection);
    EXPECT_EQ(editable->stringValue(), "");
}

TEST(NSTextField, TruthValuesAndColoursAreReadAndWrittenByName)
{
    const auto editable = make<NSTextField>();
    for (const std::string name : {"Editable", "Selectable", "Bordered", "Bezeled"}) {
        for (const bool value : {false, true}) {
            send(editable, Selector("set" + name + ":"), value);
            EXPECT_EQ(send(editable, Selector("is" + name)).as<bool>(), value) << name;
        }
    }
    send(editable, "setDrawsBackground:", false);
    EXPECT_FALSE(send(editable, "drawsBackground").as<bool>());
    send(editable, "setPlaceholderString:", "Name");
    EXPECT_EQ(send(editable, "placeholderString").as<std::string>(), "Name");
    send(editable, "setPlaceholderString:", Value());
    EXPECT_FALSE(editable->placeholderString());
    send(editable, "setBackgroundColor:", makeColor(0, 1, 0));
    EXPECT_EQ(send(editable, "backgroundColor").as<std::shared_ptr<NSColor>>()->cgColor(), (CGColor{0, 1, 0, 1}));
    EXPECT_THAT(raised([&] { send(editable, "setBackgroundColor:", Value()); }), HasSubstr("there is no colour"));
    EXPECT_FALSE(send(editable, "isEditing").as<bool>());
}

TEST(NSTextField, EveryPropertyIsReadAndWrittenByName)
{
    const auto label = plainLabel("");
    send(label, "setStringValue:", "text");
    EXPECT_EQ(send(label, "stringValue").as<std::string>(), "text");
    send(label, "setFont:", boldSystemFontOfSize(9));
    EXPECT_TRUE(send(label, "font").as<std::shared_ptr<NSFont>>()->isEqual(*boldSystemFontOfSize(9)));
    send(label, "setTextColor:", makeColor(0, 1, 0));
    EXPECT_TRUE(send(label, "textColor").as<std::shared_ptr<NSColor>>()->isEqual(*makeColor(0, 1, 0)));
    send(label, "setAlignment:", 2);
    EXPECT_EQ(send(label, "alignment").as<int>(), 2);
    send(label, "setLineBreakMode:", 1);
    EXPECT_EQ(send(label, "lineBreakMode").as<int>(), 1);
    send(label, "setMaximumNumberOfLines:", 3);
    EXPECT_EQ(send(label, "maximumNumberOfLines").as<int>(), 3);
    send(label, "setPreferredMaxLayoutWidth:", 70);
    EXPECT_EQ(send(label, "preferredMaxLayoutWidth").as<double>(), 70);
    EXPECT_TRUE(send(label, "isFlipped").as<bool>());
}

TEST(NSTextField, ComesBackFromAnArchiveAsItWas)
{
    const auto label = wrappingField("text");
    label->setTextColor(makeColor(0, 0, 1));
    label->setAlignment(NSTextAlignment::center);
    label->setMaximumNumberOfLines(4);
    label->setPreferredMaxLayoutWidth(15);
    label->setFrame({1, 2, 3, 4});
    label->setPlaceholderString("Name");
    label->setBordered(true);
    label->setBackgroundColor(makeColor(0, 1, 1));
    label->setEnabled(false);
    const auto copy = std::dynamic_pointer_cast<NSTextField>(unarchivedObject(archivedObject(*label)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->stringValue(), "text");
    EXPECT_TRUE(copy->font()->isEqual(*label->font()));
    EXPECT_TRUE(copy->textColor()->isEqual(*label->textColor()));
    EXPECT_EQ(copy->alignment(), NSTextAlignment::center);
    EXPECT_EQ(copy->lineBreakMode(), NSLineBreakMode::wordWrapping);
    EXPECT_EQ(copy->maximumNumberOfLines(), 4);
    EXPECT_EQ(copy->preferredMaxLayoutWidth(), 15);
    EXPECT_EQ(copy->frame(), CGRect(1, 2, 3, 4));
    EXPECT_EQ(copy->placeholderString(), "Name");
    EXPECT_TRUE(copy->isBordered());
    EXPECT_FALSE(copy->isBezeled());
    EXPECT_FALSE(copy->isEditable());
    EXPECT_FALSE(copy->isSelectable());
    EXPECT_FALSE(copy->drawsBackground());
    EXPECT_FALSE(copy->isEnabled());
    EXPECT_EQ(copy->backgroundColor()->cgColor(), (CGColor{0, 1, 1, 1}));
    const auto plain = std::dynamic_pointer_cast<NSTextField>(unarchivedObject(archivedObject(*make<NSTextField>())));
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->placeholderString(), std::nullopt);
    EXPECT_TRUE(plain->isEditable());
}

std::shared_ptr<NSTextField> copyOf(NSTextField& field)
{
    return std::dynamic_pointer_cast<NSTextField>(unarchivedObject(archivedObject(field)));
}

TEST(NSTextField, AnArchiveMakesNoColourItsOwn)
{
    const auto label = plainLabel("text");
    NSApplication::shared().setAppearance(Appearance::dark);
    const auto shown = label->textColor();
    const auto copy = copyOf(*label);
    EXPECT_TRUE(copy->textColor()->isEqual(*shown));
    NSApplication::shared().setAppearance(Appearance::light);
    EXPECT_TRUE(copy->textColor()->isEqual(*label->textColor()));
    EXPECT_FALSE(copy->textColor()->isEqual(*shown)) << "it goes with the ground, as the field does";
    NSApplication::shared().setAppearance(std::nullopt);
}

TEST(NSTextField, AColourThatItShowsAnywayBecomesItsOwn)
{
    const auto label = plainLabel("text");
    NSApplication::shared().setAppearance(Appearance::dark);
    const auto shown = label->textColor();
    label->setTextColor(shown);
    NSApplication::shared().setAppearance(Appearance::light);
    EXPECT_TRUE(label->textColor()->isEqual(*shown));
    EXPECT_TRUE(copyOf(*label)->textColor()->isEqual(*shown));
    NSApplication::shared().setAppearance(std::nullopt);
}

} // namespace
} // namespace RVCore::NSTextFieldTests
