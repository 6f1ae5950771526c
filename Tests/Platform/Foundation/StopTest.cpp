#include <Foundation/Stop.h>

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace RVCore {

TEST(StopDeathTest, PrintsFileLineAndMessage)
{
    EXPECT_DEATH(fatalError("the house is on fire", "House.cpp", 17),
                 "^House\\.cpp:17: Fatal error: the house is on fire\n$");
}

TEST(StopDeathTest, ReportsTheCallersPlaceByDefault)
{
    const std::string line = std::to_string(__LINE__ + 1);
    EXPECT_DEATH(fatalError("here"), "StopTest\\.cpp:" + line + ": Fatal error: here\n$");
}

TEST(StopDeathTest, NamesTheInitialiserThatAClassDoesNotOffer)
{
    EXPECT_DEATH(unimplementedInitializer("RVCore.RVSpacerView", "init(frame:)"),
                 "^Fatal error: Use of unimplemented initializer 'init\\(frame:\\)' for class "
                 "'RVCore\\.RVSpacerView'\n$");
}

TEST(StopDeathTest, EndsTheProgramByAbortSoThatADebuggerStopsThere)
{
    EXPECT_EXIT(fatalError("stop", "a", 1), testing::KilledBySignal(SIGABRT), "Fatal error: stop");
}

TEST(StopDeathTest, LetsEarlierOutputThroughFirst)
{
    EXPECT_DEATH(
        {
            dup2(2, 1);
            std::printf("before ");
            fatalError("after", "a", 1);
        },
        "^before a:1: Fatal error: after\n$");
}

} // namespace RVCore
