#include <Dispatch/DispatchClock.h>
#include <Dispatch/ManualDispatchClock.h>

#include <ctime>

namespace RVCore::DispatchClockTests {
namespace {

TEST(DispatchClock, IsTheSystemsUnlessAnotherOneIsInstalled)
{
    DispatchClock& system = DispatchClock::shared();
    EXPECT_TRUE(system.isRunning());
    {
        const ManualDispatchClock manual;
        EXPECT_EQ(&DispatchClock::shared(), &manual);
        EXPECT_FALSE(DispatchClock::shared().isRunning());
    }
    EXPECT_EQ(&DispatchClock::shared(), &system);
}

TEST(DispatchClock, TheSystemsNeverGoesBackAndKnowsTheDate)
{
    const DispatchClock& clock = DispatchClock::shared();
    const double before = clock.seconds();
    EXPECT_GE(clock.seconds(), before);
    EXPECT_NEAR(clock.secondsSince1970(), static_cast<double>(std::time(nullptr)), 2);
}

} // namespace
} // namespace RVCore::DispatchClockTests
