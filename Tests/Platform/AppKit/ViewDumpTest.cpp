#include "ViewTesting.h"

#include <AppKit/NSTextField.h>
#include <AppKit/ViewDump.h>

namespace RVCore::ViewDumpTests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

TEST(ViewDump, WritesViewsInTreeOrderWithTheConstraintsThatTheyOwn)
{
    const auto host = makeHost(400, 100);
    host->setIdentifier("host");
    const auto label = plainLabel("two\nlines");
    label->setFrame({0, 0, 50, 20});
    label->setAlphaValue(0.5);
    label->setHidden(true);
    host->addSubview(label);
    const auto view = addTo(*host, "vi\new"), inner = addTo(*view);
    hold(*view, Attribute::left, *host, Attribute::left, {.constant = 8, .priority = 750})->setIdentifier("chain");
    hold(*view, Attribute::centerY, *label, Attribute::bottom,
         {.constant = -8.5, .relation = Relation::lessThanOrEqual});
    hold(*inner, Attribute::top, *view, Attribute::top, {.multiplier = 2});
    hold(*inner, Attribute::height, {.constant = 7, .relation = Relation::greaterThanOrEqual});
    hold(*inner, Attribute::right, *host, Attribute::centerX);
    EXPECT_EQ(describeViewTree(*host), "#1 NSView \"host\" (0, 0) 400 × 100\n"
                                       "  | #3.left == #1.left + 8 @750 'chain'\n"
                                       "  | #3.centerY <= #2.bottom - 8.5 @1000\n"
                                       "  | #4.right == #1.centerX @1000\n"
                                       "  #2 NSTextField (0, 0) 50 × 20 hidden alpha 0.5 “two\\nlines”\n"
                                       "  #3 NSView \"vi\\new\" (0, 0) 0 × 0\n"
                                       "    | #4.top == 2 × #3.top @1000\n"
                                       "    #4 NSView (0, 0) 0 × 0\n"
                                       "      | #4.height >= 7 @1000\n");
    EXPECT_EQ(describeViewTree(*inner), "#1 NSView (0, 0) 0 × 0\n"
                                        "  | #1.height >= 7 @1000\n");
}

TEST(ViewDump, AConstraintNamesItsViewsByIdentifierOrAddress)
{
    const auto host = makeHost(10, 10);
    const auto named = addTo(*host, "name");
    const auto constraint = hold(*named, Attribute::width, *host, Attribute::height, {.constant = 1});
    EXPECT_EQ(describeConstraint(*constraint),
              "NSView \"name\".width == " + host->description() + ".height + 1 @1000");
    EXPECT_THAT(constraint->description(), StartsWith("<NSLayoutConstraint: 0x"));
    EXPECT_THAT(constraint->description(), HasSubstr(describeConstraint(*constraint)));
}

TEST(ViewDump, AThousandLevelsAreWritten)
{
    const auto host = make<NSView>();
    NSView* innermost = host.get();
    for (int level = 0; level < 1000; ++level)
        innermost = addTo(*innermost).get();
    EXPECT_THAT(describeViewTree(*host), EndsWith(std::string(2000, ' ') + "#1001 NSView (0, 0) 0 × 0\n"));
}

} // namespace
} // namespace RVCore::ViewDumpTests
