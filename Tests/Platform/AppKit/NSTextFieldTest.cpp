#include "ViewTesting.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore {
namespace {

using testing::HasSubstr;

// At 10 points every character is 5 wide and a line 13 high (HeadlessText.h).
std::shared_ptr<NSTextField> field(const std::string& text)
{
    const auto result = makeTextField(text);
    result->setFont(systemFontOfSize(10));
    return result;
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
    EXPECT_THAT(raised([&] { label->setPreferredMaxLayoutWidth(-2); }), HasSubstr("must not be negative, got -2"));
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

TEST(NSTextField, EveryPropertyIsReadAndWrittenByName)
{
    const auto label = makeTextField("");
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
}

} // namespace
} // namespace RVCore
