#include "Raised.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>

namespace RVCore {

TEST(NSExceptionTest, TextIsNameAndReason)
{
    const NSException exception(NSRangeException, "index 3 is beyond the count 2");
    EXPECT_EQ(exception.name(), "NSRangeException");
    EXPECT_EQ(exception.reason(), "index 3 is beyond the count 2");
    EXPECT_STREQ(exception.what(), "NSRangeException: index 3 is beyond the count 2");
}

TEST(NSExceptionTest, InvalidArgumentNamesOperationAndProblem)
{
    EXPECT_EQ(raised([] { raiseInvalidArgument("NSView.frame", "too wide"); }),
              "NSInvalidArgumentException: NSView.frame: too wide");
}

TEST(NSExceptionTest, RequireFiniteLetsFiniteNumbersPass)
{
    EXPECT_EQ(raised([] {
                  requireFinite("op", "x", std::numeric_limits<double>::max());
                  requireFinite("op", "x", -0.0);
                  requireFinite("op", "x", std::numeric_limits<double>::denorm_min());
              }),
              "nothing");
}

TEST(NSExceptionTest, RequireFiniteNamesTheValueThatIsNot)
{
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(raised([&] { requireFinite("NSView.setFrame:", "width", infinity); }),
              "NSInvalidArgumentException: NSView.setFrame:: width must be finite, got inf");
    EXPECT_EQ(raised([&] { requireFinite("op", "y", -infinity); }),
              "NSInvalidArgumentException: op: y must be finite, got -inf");
    EXPECT_EQ(raised([] { requireFinite("op", "y", std::nan("")); }),
              "NSInvalidArgumentException: op: y must be finite, got nan");
}

TEST(NumberTextTest, IsTheShortestThatReadsBackTheSame)
{
    EXPECT_EQ(numberText(13), "13");
    EXPECT_EQ(numberText(0.1), "0.1");
    EXPECT_EQ(numberText(-2.5), "-2.5");
    EXPECT_EQ(numberText(1e300), "1e+300");
    EXPECT_EQ(numberText(1.0 / 3), "0.3333333333333333");
    for (const double number : {0.1 + 0.2, std::numeric_limits<double>::denorm_min(), -1.7976931348623157e308})
        EXPECT_EQ(std::strtod(numberText(number).c_str(), nullptr), number);
}

TEST(NumberTextTest, HasNoSignOnZeroAndNan)
{
    EXPECT_EQ(numberText(0.0), "0");
    EXPECT_EQ(numberText(-0.0), "0");
    EXPECT_EQ(numberText(std::nan("")), "nan");
    EXPECT_EQ(numberText(-std::nan("")), "nan");
    EXPECT_EQ(numberText(-std::numeric_limits<double>::infinity()), "-inf");
}

} // namespace RVCore
