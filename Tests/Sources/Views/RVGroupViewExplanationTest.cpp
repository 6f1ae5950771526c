#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <fstream>

namespace RVCore::RVGroupViewExplanationTests {
namespace {

std::string goldenText()
{
    std::ifstream file(std::string(RVCORE_GOLDENS) + "/GroupExplanation.txt");
    EXPECT_TRUE(file.is_open());
    return {std::istreambuf_iterator<char>(file), {}};
}

class RVGroupViewExplanation : public testing::Test {
protected:
    RVGroupViewExplanation()
    {
        group->setIdentifier("g");
        group->setPadding({.top = 2, .left = 4, .bottom = 6, .right = 10});
        nameSpacers(*group);
    }

    std::shared_ptr<SizedView> a = sized(30, 20, "a"), b = sized(50, 40, "b"), c = sized(20, 10, "c");
    std::shared_ptr<RVGroupView> group = makeGroupView({a, b, c}, {.spacing = 8});
    std::shared_ptr<NSView> host = hostOf(group, {200, 60});
};

TEST_F(RVGroupViewExplanation, ofVisibleHiddenAndCompressedMembers)
{
    group->setVisibility(b, false);
    std::string text = "b is hidden, c takes what is left:\n\n" + explainLayout(*c) + "\n" + explainLayout(*b);
    host->setFrameSize({60, 60});
    text += "\nThere is no room for both:\n\n" + explainLayout(*group);
    c->setContentCompressionResistancePriority(249, NSLayoutConstraintOrientation::horizontal);
    text += "\nThe group's width is stronger than the size of c:\n\n" + explainLayout(*c);
    EXPECT_EQ(text, goldenText());
}

TEST_F(RVGroupViewExplanation, whatAHiddenMemberTakesWithItIsAmbiguous)
{
    EXPECT_TRUE(ambiguousViews(*host).empty());
    group->setVisibility(b, false);
    EXPECT_EQ(ambiguousViews(*host), (RVGroupView::Views{b, spacersOf(*group)[2]}));
    group->setVisibility(b, true);
    EXPECT_TRUE(ambiguousViews(*host).empty());
}

} // namespace
} // namespace RVCore::RVGroupViewExplanationTests
