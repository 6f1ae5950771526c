#include <Backend/Backend.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::BackendMissingTests {
namespace {

TEST(BackendMissingDeathTest, AProgramWithoutABackendIsToldWhatToLink)
{
    EXPECT_DEATH(Backend::shared(), "Fatal error: no backend is linked into this program: link "
                                    "RVCore::QtBackend or RVCore::HeadlessBackend");
}

} // namespace
} // namespace RVCore::BackendMissingTests
