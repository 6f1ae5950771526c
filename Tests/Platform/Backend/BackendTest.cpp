#include <Backend/Backend.h>
#include <HeadlessBackend/HeadlessBackend.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::BackendTests {
namespace {

class BackendTest : public testing::Test {
protected:
    void TearDown() override { Backend::install(nullptr); }
};

// The two registrations below stay for the rest of the program: there is no way back, as in any other program.
class PreferredBackend : public HeadlessBackend {};
class LesserBackend : public HeadlessBackend {};

TEST_F(BackendTest, TheLinkedOneIsMadeOnceAndShared)
{
    Backend& backend = Backend::shared();
    EXPECT_NE(dynamic_cast<HeadlessBackend*>(&backend), nullptr);
    EXPECT_EQ(&Backend::shared(), &backend);
}

TEST_F(BackendTest, AnInstalledOneTakesItsPlace)
{
    auto own = std::make_unique<HeadlessBackend>();
    const Backend* expected = own.get();
    Backend::install(std::move(own));
    EXPECT_EQ(&Backend::shared(), expected);
}

TEST_F(BackendTest, TheHigherRankIsPreferred)
{
    Backend::registerFactory(100, []() -> std::unique_ptr<Backend> { return std::make_unique<PreferredBackend>(); });
    Backend::registerFactory(99, []() -> std::unique_ptr<Backend> { return std::make_unique<LesserBackend>(); });
    Backend::install(nullptr);
    EXPECT_NE(dynamic_cast<PreferredBackend*>(&Backend::shared()), nullptr);
}

TEST_F(BackendTest, RegisteringTwiceChangesNothing)
{
    rvcoreRegisterHeadlessBackend();
    Backend::install(nullptr);
    EXPECT_NE(dynamic_cast<HeadlessBackend*>(&Backend::shared()), nullptr);
}

} // namespace
} // namespace RVCore::BackendTests
