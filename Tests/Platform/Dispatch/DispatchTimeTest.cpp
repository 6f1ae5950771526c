#include <Dispatch/DispatchTime.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::DispatchTimeTests {
namespace {

TEST(DispatchTime, IsReadFromTheClockAndMovedBySeconds)
{
    ManualDispatchClock clock;
    clock.advance(3);
    const DispatchTime now = DispatchTime::now();
    EXPECT_EQ(now.seconds(), 3);
    EXPECT_EQ((now + 0.5).seconds(), 3.5);
    EXPECT_EQ((now + -1) - now, -1);
    EXPECT_LT(now, now + 1);
    EXPECT_EQ(now, DispatchTime(3));
}

TEST(DispatchTime, DoesNotMoveBySomethingThatIsNoNumberOfSeconds)
{
    const DispatchTime now = DispatchTime::now();
    EXPECT_EQ(raised([&] { now + std::nan(""); }),
              "NSInvalidArgumentException: DispatchTime +: seconds must be finite, got nan");
    EXPECT_EQ(raised([&] { now + HUGE_VAL; }),
              "NSInvalidArgumentException: DispatchTime +: seconds must be finite, got inf");
}

TEST(DispatchTime, IsANumber)
{
    EXPECT_THROW(DispatchTime(std::nan("")), NSException);
    EXPECT_EQ(DispatchTime(HUGE_VAL).seconds(), HUGE_VAL) << "never";
}

} // namespace
} // namespace RVCore::DispatchTimeTests
