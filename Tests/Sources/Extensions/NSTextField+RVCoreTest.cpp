#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <Extensions/NSTextField+RVCore.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::NSTextFieldRVCoreTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Writes down what is set on it, in order.
class LoggedField : public NSTextField {
    RVCORE_CLASS(LoggedField)

public:
    using NSTextField::init;
    void init() override
    {
        NSTextField::init();
        log.push_back("init");
    }
    void setStringValue(const std::string& text) override
    {
        log.push_back("stringValue = '" + text + "'");
        NSTextField::setStringValue(text);
    }
    void setPlaceholderString(const std::optional<std::string>& text) override
    {
        log.push_back("placeholderString = " + (text ? "'" + *text + "'" : "none"));
        NSTextField::setPlaceholderString(text);
    }
    void setBordered(bool bordered) override
    {
        note("bordered", bordered);
        NSTextField::setBordered(bordered);
    }
    void setBezeled(bool bezeled) override
    {
        note("bezeled", bezeled);
        NSTextField::setBezeled(bezeled);
    }
    void setEditable(bool editable) override
    {
        note("editable", editable);
        NSTextField::setEditable(editable);
    }
    void setSelectable(bool selectable) override
    {
        note("selectable", selectable);
        NSTextField::setSelectable(selectable);
    }
    void setBackgroundColor(const std::shared_ptr<NSColor>& color) override
    {
        log.push_back("backgroundColor = " + describe(color->cgColor()));
        NSTextField::setBackgroundColor(color);
    }

    std::vector<std::string> log;

private:
    void note(const std::string& name, bool value) { log.push_back(name + " = " + (value ? "true" : "false")); }
};

Class& LoggedField::staticClass()
{
    static Class& theClass = defineClass<LoggedField>("LoggedField", NSTextField::staticClass(), [](auto&) {});
    return theClass;
}

const auto labelSettings =
    ElementsAre("init", "stringValue = 'Name'", "bordered = false", "bezeled = false", "editable = false",
                "selectable = false", "backgroundColor = rgba(0, 0, 0, 0)");
const auto fieldSettings =
    ElementsAre("init", "stringValue = 'Ada'", "placeholderString = 'Name'", "bordered = true", "bezeled = true",
                "editable = true", "selectable = true", "backgroundColor = rgba(1, 1, 1, 1)");

// What both leave as it is.
void expectDefaults(const NSTextField& field)
{
    const auto plain = make<NSTextField>();
    EXPECT_EQ(field.drawsBackground(), plain->drawsBackground());
    EXPECT_TRUE(field.font()->isEqual(*plain->font()));
    EXPECT_EQ(field.alignment(), plain->alignment());
    EXPECT_EQ(field.lineBreakMode(), plain->lineBreakMode());
}

TEST(NSTextFieldRVCore, ALabelIsSetUpInOrder)
{
    EXPECT_THAT(makeLabel<LoggedField>("Name")->log, labelSettings);
}

TEST(NSTextFieldRVCore, ALabelHasTheTextAndNothingAroundIt)
{
    const auto label = makeLabel("Name");
    EXPECT_EQ(label->stringValue(), "Name");
    EXPECT_FALSE(label->isBordered());
    EXPECT_FALSE(label->isBezeled());
    EXPECT_FALSE(label->isEditable());
    EXPECT_FALSE(label->isSelectable());
    EXPECT_EQ(label->backgroundColor()->cgColor(), (CGColor{0, 0, 0, 0}));
    EXPECT_EQ(label->placeholderString(), std::nullopt);
    expectDefaults(*label);
}

TEST(NSTextFieldRVCore, ALabelWithoutATextIsANonEditableNonSelectableBorderlessLabelWithAnEmptyText)
{
    const auto label = makeLabel(std::nullopt);
    EXPECT_EQ(label->stringValue(), "");
    EXPECT_FALSE(label->isEditable());
    EXPECT_FALSE(label->isSelectable());
    EXPECT_FALSE(label->isBordered());
    EXPECT_FALSE(label->isBezeled());
}

TEST(NSTextFieldRVCore, ATextFieldIsSetUpInOrder)
{
    EXPECT_THAT(makeTextField<LoggedField>({.string = "Ada", .placeholder = "Name"})->log, fieldSettings);
}

TEST(NSTextFieldRVCore, ATextFieldCanBeTypedInAndSaysWhatIsMissing)
{
    const auto field = makeTextField({.string = "Ada", .placeholder = "Name"});
    EXPECT_EQ(field->stringValue(), "Ada");
    EXPECT_EQ(field->placeholderString(), "Name");
    EXPECT_TRUE(field->isBordered());
    EXPECT_TRUE(field->isBezeled());
    EXPECT_TRUE(field->isEditable());
    EXPECT_TRUE(field->isSelectable());
    EXPECT_EQ(field->backgroundColor()->cgColor(), (CGColor{1, 1, 1, 1}));
    expectDefaults(*field);
}

TEST(NSTextFieldRVCore, ATextFieldWithoutTextAndPlaceholderIsAnEditableBezeledFieldWithAnEmptyTextAndNoPlaceholder)
{
    const auto field = makeTextField();
    EXPECT_EQ(field->stringValue(), "");
    EXPECT_EQ(field->placeholderString(), std::nullopt);
    EXPECT_TRUE(field->isEditable());
    EXPECT_TRUE(field->isBezeled());
}

TEST(NSTextFieldRVCore, AnEmptyPlaceholderIsNotNone)
{
    EXPECT_EQ(makeTextField({.placeholder = ""})->placeholderString(), "");
}

TEST(NSTextFieldRVCore, BothAreMadeByNameWithTheSameSettings)
{
    const auto label = make<LoggedField>();
    label->log.clear();
    send(label, "initWithLabelString:", "Name");
    EXPECT_THAT(label->log, labelSettings);
    const auto field = make<LoggedField>();
    field->log.clear();
    send(field, "initWithString:placeholder:", "Ada", "Name");
    EXPECT_THAT(field->log, fieldSettings);
}

TEST(NSTextFieldRVCore, ByNameAnAbsentTextIsNothing)
{
    const auto label = make<NSTextField>();
    EXPECT_EQ(send(label, "initWithLabelString:", Value()).as<ObjectRef>(), label);
    EXPECT_EQ(label->stringValue(), "");
    EXPECT_FALSE(label->isEditable());
    const auto field = make<NSTextField>();
    EXPECT_EQ(send(field, "initWithString:placeholder:", Value(), Value()).as<ObjectRef>(), field);
    EXPECT_EQ(field->stringValue(), "");
    EXPECT_EQ(field->placeholderString(), std::nullopt);
    EXPECT_TRUE(field->isEditable());
}

TEST(NSTextFieldRVCore, ByNameATextThatIsNoneRaises)
{
    const auto label = make<NSTextField>();
    EXPECT_THAT(raised([&] { send(label, "initWithLabelString:", 3); }), HasSubstr("initWithLabelString:"));
}

} // namespace
} // namespace RVCore::NSTextFieldRVCoreTests
