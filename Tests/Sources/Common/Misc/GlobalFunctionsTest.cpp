#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>
#include <RVCore.h>

#include <gtest/gtest.h>

#include <set>

namespace RVCore::GlobalFunctionsTests {

namespace {

// Answers every draw with the same number and notes the bound that it was asked for.
class ScriptedDraw {
public:
    explicit ScriptedDraw(std::uint32_t draw)
        : m_source([this, draw](std::uint32_t bound) {
              bounds.push_back(bound);
              return draw;
          })
    {
    }
    std::vector<std::uint32_t> bounds;

private:
    ScopedRandomSource m_source;
};

TEST(GlobalFunctions, theLayoutPrioritiesHaveTheirValues)
{
    static_assert(std::is_same_v<decltype(RVLayoutPriorityRequired), const float>);
    EXPECT_EQ(RVLayoutPriorityRequired, 1000.0F);
    EXPECT_EQ(RVLayoutPriorityDefaultHigh, 750.0F);
    EXPECT_EQ(RVLayoutPriorityDefaultMedium, 700.0F);
    EXPECT_EQ(RVLayoutPriorityDefaultLow, 250.0F);
}

TEST(GlobalFunctions, theAbsentIntrinsicMetricIsMinusOne)
{
    static_assert(std::is_same_v<decltype(RVViewNoIntrinsicMetric), const CGFloat>);
    EXPECT_EQ(RVViewNoIntrinsicMetric, -1.0);
}

class AutoCreateConstraintsTest : public testing::Test {
protected:
    std::shared_ptr<NSView> view = namedView("view");

    std::function<void()> sizes()
    {
        return [this] {
            autoSetDimension(*view, LayoutDimension::width, 1);
            autoSetDimension(*view, LayoutDimension::height, 2);
        };
    }
};

TEST_F(AutoCreateConstraintsTest, withNoArgumentsConstraintsAreInstalledAtPriority1000)
{
    const LayoutConstraints created = autoCreateConstraints(sizes());
    EXPECT_EQ(constraintTexts(created), "view.width == 1 @1000\nview.height == 2 @1000\n");
    EXPECT_EQ(view->constraints(), created);
}

TEST_F(AutoCreateConstraintsTest, withoutInstallingTheReturnedConstraintsAreNotActive)
{
    const LayoutConstraints created = autoCreateConstraints({.installConstraints = false}, sizes());
    ASSERT_EQ(created.size(), 2U);
    EXPECT_FALSE(created[0]->isActive());
    EXPECT_FALSE(created[1]->isActive());
}

TEST_F(AutoCreateConstraintsTest, aPriorityIsGivenToAll)
{
    const LayoutConstraints created = autoCreateConstraints({.priority = 749.0F}, sizes());
    EXPECT_EQ(constraintTexts(created), "view.width == 1 @749\nview.height == 2 @749\n");
    EXPECT_TRUE(created.at(0)->isActive());
}

TEST_F(AutoCreateConstraintsTest, theDefaultPriorityTakesThePlaceOfAnEnclosingOne)
{
    autoSetPriority(500, [this] { autoCreateConstraints(sizes()); });
    EXPECT_EQ(constraintTexts(view->constraints()), "view.width == 1 @1000\nview.height == 2 @1000\n");
}

TEST_F(AutoCreateConstraintsTest, aClosureThatCreatesNothingGivesAnEmptyArray)
{
    EXPECT_TRUE(autoCreateConstraints([] {}).empty());
}

TEST_F(AutoCreateConstraintsTest, theLibraryIsReachedByItsSelectors)
{
    const ClassMethod original = *NSLayoutConstraint::staticClass().classMethod("autoCreateAndInstallConstraints:");
    NSLayoutConstraint::staticClass().addClassMethod(
        {original.selector, "Test", [](const Class&, std::span<const Value>) { return Value(); }});
    EXPECT_TRUE(autoCreateConstraints(sizes()).empty()) << "a library that returns nothing";
    NSLayoutConstraint::staticClass().addClassMethod(original);
    EXPECT_EQ(autoCreateConstraints(sizes()).size(), 2U);
}

TEST_F(AutoCreateConstraintsTest, anIdentifierNamesWhatIsCreatedUnlessABlockInsideDoes)
{
    const LayoutConstraints created = autoCreateConstraints({.identifier = "outer"}, [this] {
        sizes()();
        autoCreateConstraints({.identifier = "inner"}, sizes());
        autoCreateConstraints(sizes());
    });
    std::vector<std::string> identifiers;
    for (const auto& constraint : created)
        identifiers.push_back(constraint->identifier());
    EXPECT_EQ(identifiers, (std::vector<std::string>{"outer", "outer", "inner", "inner", "outer", "outer"}));
}

TEST_F(AutoCreateConstraintsTest, autoSetPriorityGivesItsPriorityToEveryConstraintCreatedInside)
{
    autoSetPriority(300, sizes());
    EXPECT_EQ(constraintTexts(view->constraints()), "view.width == 1 @300\nview.height == 2 @300\n");
}

TEST_F(AutoCreateConstraintsTest, aPriorityOutOfRangeIsRefused)
{
    EXPECT_THAT(raised([this] { autoCreateConstraints({.priority = 0.0F}, sizes()); }),
                testing::HasSubstr("priority must be above 0 and at most 1000, got 0"));
    EXPECT_THAT(raised([this] { autoSetPriority(1001, sizes()); }), testing::HasSubstr("got 1001"));
    EXPECT_THAT(raised([this] { autoSetPriority(std::numeric_limits<float>::quiet_NaN(), sizes()); }),
                testing::HasSubstr("got nan"));
    EXPECT_TRUE(view->constraints().empty());
}

TEST_F(AutoCreateConstraintsTest, theOperationsOnArraysInstallRemoveAndIdentify)
{
    const LayoutConstraints created = autoCreateConstraints({.installConstraints = false}, sizes());
    autoInstallConstraints(created);
    EXPECT_EQ(view->constraints(), created);
    autoIdentifyConstraints(created, "size");
    EXPECT_EQ(created.at(1)->identifier(), "size");
    autoRemoveConstraints(created);
    EXPECT_TRUE(view->constraints().empty());
    autoInstallConstraints(LayoutConstraints());
}

TEST(GlobalFunctionsDeathTest, notSupportedErrorReportsItsFileAndLine)
{
    EXPECT_DEATH(notSupportedError(), "^Sources/Common/Misc/GlobalFunctions:12: Fatal error: Not Supported\n$");
}

TEST(RandomNumbers, equalBoundsReturnTheBound)
{
    EXPECT_EQ(random<std::uint32_t>({.lower = 5, .upper = 5}), 5U);
    EXPECT_EQ(random<std::int32_t>({.lower = -5, .upper = -5}), -5);
    EXPECT_EQ(random<std::uint64_t>({.lower = 5, .upper = 5}), 5U);
    EXPECT_EQ(random<std::int64_t>({.lower = -5, .upper = -5}), -5);
}

TEST(RandomNumbers, theUpperBoundIsNeverReturned)
{
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(random<std::uint32_t>({.lower = 5, .upper = 6}), 5U);
    std::set<std::int32_t> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(random<std::int32_t>({.lower = -1, .upper = 2}));
    EXPECT_EQ(seen, (std::set<std::int32_t>{-1, 0, 1}));
}

TEST(RandomNumbers, uint32DrawsBelowTheDifference)
{
    ScriptedDraw draw(7);
    EXPECT_EQ(random<std::uint32_t>({.lower = 10, .upper = 30}), 17U);
    EXPECT_EQ(random<std::uint32_t>(), 7U);
    EXPECT_EQ(draw.bounds, (std::vector<std::uint32_t>{20, 4294967295}));
}

TEST(RandomNumbers, int32CanReturnTheSmallestNumber)
{
    ScriptedDraw draw(0);
    EXPECT_EQ(random<std::int32_t>(), -2147483647 - 1);
    EXPECT_EQ(draw.bounds, (std::vector<std::uint32_t>{4294967295}));
}

TEST(RandomNumbers, int32NeverReturnsTheLargestNumber)
{
    ScriptedDraw draw(4294967294); // the largest below the bound
    EXPECT_EQ(random<std::int32_t>(), 2147483646);
}

TEST(RandomNumbers, bitsOf64DrawFrom32)
{
    ScriptedDraw draw(3);
    EXPECT_EQ(random<std::uint64_t>({.lower = 1, .upper = 4294967295}), 4U);
    EXPECT_EQ(random<std::int64_t>({.lower = -2147483648, .upper = 2147483647}), -2147483645);
    EXPECT_EQ(draw.bounds, (std::vector<std::uint32_t>{4294967294, 4294967295}));
}

TEST(RandomNumbersDeathTest, anUpperBoundBelowTheLowerOneStopsTheProgram)
{
    EXPECT_DEATH(random<std::uint32_t>({.lower = 5, .upper = 4}),
                 "Fatal error: Arithmetic overflow: the upper bound 4 of a random number is below the lower bound 5");
    EXPECT_DEATH(
        random<std::int32_t>({.lower = -4, .upper = -5}),
        "Fatal error: Arithmetic overflow: the upper bound -5 of a random number is below the lower bound -4");
    EXPECT_DEATH(random<std::uint64_t>({.lower = 5, .upper = 4}), "Arithmetic overflow: the upper bound 4");
    EXPECT_DEATH(random<std::int64_t>({.lower = 5, .upper = 4}), "Arithmetic overflow: the upper bound 4");
}

TEST(RandomNumbersDeathTest, boundsThatDoNotFitIn32BitsStopTheProgram)
{
    EXPECT_DEATH(random<std::uint64_t>({.lower = 0, .upper = 4294967296}),
                 "Fatal error: Arithmetic overflow: 4294967296 does not fit in 32 bits");
    EXPECT_DEATH(random<std::int64_t>({.lower = 0, .upper = 2147483648}),
                 "Fatal error: Arithmetic overflow: 2147483648 does not fit in 32 bits");
    EXPECT_DEATH(random<std::int64_t>({.lower = -2147483649, .upper = 0}),
                 "Fatal error: Arithmetic overflow: -2147483649 does not fit in 32 bits");
}

TEST(RandomNumbersDeathTest, theDefaultBoundsOf64BitsAlwaysStopTheProgram)
{
    EXPECT_DEATH(random<std::int64_t>(), "-9223372036854775808 does not fit in 32 bits");
    EXPECT_DEATH(random<std::uint64_t>(), "18446744073709551615 does not fit in 32 bits");
    EXPECT_DEATH(random<std::uint64_t>({.lower = 1}), "18446744073709551615 does not fit in 32 bits");
    EXPECT_DEATH(random<std::int64_t>({.upper = 1}), "-9223372036854775808 does not fit in 32 bits");
}

TEST(RandomNumbers, aFloatIsRoundedBeforeItIsScaled)
{
    const auto drawn = [](std::uint32_t draw) {
        ScriptedDraw source(draw);
        const float result = random<float>();
        EXPECT_EQ(source.bounds, (std::vector<std::uint32_t>{4294967295}));
        return result;
    };
    EXPECT_EQ(drawn(0), 0.0F);
    EXPECT_EQ(drawn(2147483648), 0.5F);
    EXPECT_LT(drawn(4294967295U - 128), 1.0F); // 2^32 - 129
    EXPECT_EQ(drawn(4294967168), 1.0F);        // 2^32 - 128
    EXPECT_EQ(drawn(4294967294), 1.0F);
}

TEST(RandomNumbers, aDoubleIsNeverOne)
{
    const auto drawn = [](std::uint32_t draw) {
        ScriptedDraw source(draw);
        return random<double>();
    };
    EXPECT_EQ(drawn(0), 0.0);
    EXPECT_EQ(drawn(4294967294), 4294967294.0 / 4294967295.0);
    EXPECT_LT(drawn(4294967294), 1.0);
    EXPECT_EQ(drawn(1), 1.0 / 4294967295.0);
}

TEST(RandomNumbers, realDrawsLieInTheirRange)
{
    for (int i = 0; i < 1000; ++i) {
        const float single = random<float>();
        EXPECT_TRUE(single >= 0 && single <= 1);
        const double full = random<double>();
        EXPECT_TRUE(full >= 0 && full < 1);
    }
}

TEST(EdgeInsetsMaker, horizontalGivesLeftAndRightVerticalGivesTopAndBottom)
{
    EXPECT_EQ(makeEdgeInsets({.horizontal = 8, .vertical = 2}), (EdgeInsets{2, 8, 2, 8}));
}

} // namespace

} // namespace RVCore::GlobalFunctionsTests
