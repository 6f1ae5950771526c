#include <Foundation/Message.h>
#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

#include <limits>
#include <thread>

namespace RVCore::ConstraintBlocksTests {

namespace {

using Closure = std::function<void()>;

class ConstraintBlocksTest : public testing::Test {
protected:
    std::shared_ptr<NSView> host = namedView("host");
    std::shared_ptr<NSView> a = namedView("a", host.get());

    std::shared_ptr<NSLayoutConstraint> width(CGFloat size)
    {
        return autoSetDimension(*a, LayoutDimension::width, size);
    }
    std::string installed() const { return constraintTexts(a->constraints()); }
};

TEST_F(ConstraintBlocksTest, aCollectingBlockReturnsWhatWasCreatedInOrder)
{
    const LayoutConstraints created = autoCreateAndInstallConstraints([this] {
        width(1);
        width(2);
    });
    EXPECT_EQ(constraintTexts(created), "a.width == 1 @1000\na.width == 2 @1000\n");
    EXPECT_EQ(installed(), "a.width == 1 @1000\na.width == 2 @1000\n");
}

TEST_F(ConstraintBlocksTest, anEmptyBlockReturnsNothing)
{
    EXPECT_TRUE(autoCreateAndInstallConstraints([] {}).empty());
    EXPECT_TRUE(autoCreateConstraintsWithoutInstalling([] {}).empty());
}

TEST_F(ConstraintBlocksTest, withoutInstallingNothingIsInstalledButTheReceiverIsMarked)
{
    const LayoutConstraints created = autoCreateConstraintsWithoutInstalling([this] { width(1); });
    ASSERT_EQ(created.size(), 1U);
    EXPECT_FALSE(created[0]->isActive());
    EXPECT_EQ(installed(), "");
    EXPECT_FALSE(a->translatesAutoresizingMaskIntoConstraints());
}

TEST_F(ConstraintBlocksTest, withoutInstallingNoCommonAncestorIsNeededYet)
{
    const auto stranger = namedView("stranger");
    const LayoutConstraints created = autoCreateConstraintsWithoutInstalling(
        [&] { autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *stranger); });
    host->addSubview(stranger);
    autoInstall(*created.at(0));
    EXPECT_TRUE(created[0]->isActive());
}

TEST_F(ConstraintBlocksTest, aPriorityBlockGivesItsPriorityToWhatIsCreatedInIt)
{
    width(1);
    autoSetPriorityForConstraints(749, [this] { width(2); });
    width(3);
    EXPECT_EQ(installed(), "a.width == 1 @1000\na.width == 2 @749\na.width == 3 @1000\n");
}

TEST_F(ConstraintBlocksTest, theInnermostIdentifierApplies)
{
    std::vector<std::string> identifiers;
    const auto add = [&] { identifiers.push_back(width(1)->identifier()); };
    autoSetIdentifierForConstraints("outer", [&] {
        add();
        autoSetPriorityForConstraints(600, [&] { autoSetIdentifierForConstraints("inner", add); });
        autoSetIdentifierForConstraints("", add);
        EXPECT_ANY_THROW(autoSetIdentifierForConstraints("lost", [] { throw std::exception(); }));
        add();
    });
    add();
    EXPECT_EQ(identifiers, (std::vector<std::string>{"outer", "inner", "", "outer", "dimension"}));
}

TEST_F(ConstraintBlocksTest, anIdentifierBlockIsFoundByName)
{
    send(NSLayoutConstraint::staticClass(), "autoSetIdentifier:forConstraints:", "role",
         Closure([this] { width(1); }));
    EXPECT_EQ(a->constraints().at(0)->identifier(), "role");
    EXPECT_EQ(raised([] { autoSetIdentifierForConstraints("role", nullptr); }),
              "NSInvalidArgumentException: autoSetIdentifierForConstraints: there is no closure to run");
}

TEST_F(ConstraintBlocksTest, theInnermostPriorityApplies)
{
    autoSetPriorityForConstraints(500, [this] {
        width(1);
        autoSetPriorityForConstraints(600, [this] { width(2); });
        width(3);
    });
    EXPECT_EQ(installed(), "a.width == 1 @500\na.width == 2 @600\na.width == 3 @500\n");
}

TEST_F(ConstraintBlocksTest, blocksOfBothKindsNestEitherWay)
{
    LayoutConstraints inner;
    autoSetPriorityForConstraints(500, [&] { inner = autoCreateConstraintsWithoutInstalling([this] { width(1); }); });
    EXPECT_EQ(constraintTexts(inner), "a.width == 1 @500\n");
    const LayoutConstraints outer =
        autoCreateConstraintsWithoutInstalling([this] { autoSetPriorityForConstraints(400, [this] { width(2); }); });
    EXPECT_EQ(constraintTexts(outer), "a.width == 2 @400\n");
    EXPECT_EQ(installed(), "");
}

TEST_F(ConstraintBlocksTest, everyEnclosingCollectorHasAConstraint)
{
    LayoutConstraints inner;
    const LayoutConstraints outer = autoCreateAndInstallConstraints([&] {
        width(1);
        inner = autoCreateAndInstallConstraints([this] { width(2); });
        width(3);
    });
    EXPECT_EQ(constraintTexts(inner), "a.width == 2 @1000\n");
    EXPECT_EQ(constraintTexts(outer), "a.width == 1 @1000\na.width == 2 @1000\na.width == 3 @1000\n");
    EXPECT_EQ(installed(), constraintTexts(outer)) << "installed in order of creation, whatever the nesting";
}

TEST_F(ConstraintBlocksTest, anEnclosingBlockWithoutInstallingHoldsBackAnInnerOne)
{
    LayoutConstraints inner;
    const LayoutConstraints outer = autoCreateConstraintsWithoutInstalling(
        [&] { inner = autoCreateAndInstallConstraints([this] { width(1); }); });
    ASSERT_EQ(outer.size(), 1U);
    EXPECT_EQ(outer, inner);
    EXPECT_FALSE(outer[0]->isActive());
}

TEST_F(ConstraintBlocksTest, anInnerBlockWithoutInstallingHoldsBackOnlyItsOwn)
{
    const LayoutConstraints outer = autoCreateAndInstallConstraints([this] {
        width(1);
        autoCreateConstraintsWithoutInstalling([this] { width(2); });
        width(3);
    });
    EXPECT_EQ(constraintTexts(outer), "a.width == 1 @1000\na.width == 2 @1000\na.width == 3 @1000\n");
    EXPECT_EQ(installed(), "a.width == 1 @1000\na.width == 3 @1000\n");
}

TEST_F(ConstraintBlocksTest, explicitInstallationIsNotHeldBack)
{
    autoCreateConstraintsWithoutInstalling([this] { autoInstall(*width(1)); });
    EXPECT_EQ(installed(), "a.width == 1 @1000\n");
}

TEST_F(ConstraintBlocksTest, anExceptionTakesBackWhatTheBlockInstalled)
{
    width(1);
    EXPECT_THAT(raised([this] {
                    autoCreateAndInstallConstraints([this] {
                        width(2);
                        autoSetDimension(*a, LayoutDimension::height, 3);
                        autoSetDimension(*a, LayoutDimension::height, std::numeric_limits<double>::quiet_NaN());
                    });
                }),
                testing::HasSubstr("size must be finite"));
    EXPECT_EQ(installed(), "a.width == 1 @1000\n");
}

TEST_F(ConstraintBlocksTest, anExceptionTakesBackWhatAPriorityBlockInstalled)
{
    EXPECT_THROW(autoSetPriorityForConstraints(500,
                                               [this] {
                                                   width(1);
                                                   throw std::runtime_error("closure");
                                               }),
                 std::runtime_error);
    EXPECT_EQ(installed(), "");
}

TEST_F(ConstraintBlocksTest, anExceptionClosesEveryBlockThatItLeaves)
{
    EXPECT_THROW(
        autoSetPriorityForConstraints(
            500, [] { autoCreateConstraintsWithoutInstalling([] { throw std::runtime_error("closure"); }); }),
        std::runtime_error);
    EXPECT_TRUE(width(1)->isActive());
    EXPECT_EQ(installed(), "a.width == 1 @1000\n");
}

TEST_F(ConstraintBlocksTest, anEnclosingBlockThatCatchesKeepsOnlyItsOwn)
{
    const LayoutConstraints outer = autoCreateAndInstallConstraints([this] {
        width(1);
        try {
            autoCreateAndInstallConstraints([this] {
                width(2);
                throw std::runtime_error("closure");
            });
        } catch (const std::runtime_error&) {
        }
        width(3);
    });
    EXPECT_EQ(constraintTexts(outer), "a.width == 1 @1000\na.width == 3 @1000\n");
    EXPECT_EQ(installed(), constraintTexts(outer));
}

TEST_F(ConstraintBlocksTest, prioritiesMustLieAboveZeroAndAtMostAtAThousand)
{
    for (const float priority :
         {0.0F, -1.0F, 1000.5F, std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        bool ran = false;
        EXPECT_THAT(raised([&] { autoSetPriorityForConstraints(priority, [&] { ran = true; }); }),
                    testing::StartsWith("NSInvalidArgumentException: autoSetPriorityForConstraints: priority"));
        EXPECT_FALSE(ran);
    }
    autoSetPriorityForConstraints(1000, [this] { width(1); });
    autoSetPriorityForConstraints(0.5F, [this] { width(2); });
    EXPECT_EQ(installed(), "a.width == 1 @1000\na.width == 2 @0.5\n");
}

TEST_F(ConstraintBlocksTest, anAbsentClosureIsRefused)
{
    EXPECT_EQ(raised([] { autoCreateAndInstallConstraints(Closure()); }),
              "NSInvalidArgumentException: autoCreateAndInstallConstraints: there is no closure to run");
    EXPECT_EQ(raised([] { autoCreateConstraintsWithoutInstalling(Closure()); }),
              "NSInvalidArgumentException: autoCreateConstraintsWithoutInstalling: there is no closure to run");
    EXPECT_EQ(raised([] { autoSetPriorityForConstraints(5, Closure()); }),
              "NSInvalidArgumentException: autoSetPriorityForConstraints: there is no closure to run");
}

TEST_F(ConstraintBlocksTest, anotherThreadHasBlocksOfItsOwn)
{
    autoCreateConstraintsWithoutInstalling([] {
        std::thread([] {
            const auto view = namedView("other");
            EXPECT_TRUE(autoSetDimension(*view, LayoutDimension::width, 1)->isActive());
        }).join();
    });
}

TEST_F(ConstraintBlocksTest, noBlockKeepsConstraintsAlive)
{
    std::weak_ptr<NSLayoutConstraint> created;
    autoSetPriorityForConstraints(500, [&] { autoCreateConstraintsWithoutInstalling([&] { created = width(1); }); });
    EXPECT_TRUE(created.expired());
}

TEST_F(ConstraintBlocksTest, theClassOfConstraintsAnswersTheSelectors)
{
    const Class& constraintClass = NSLayoutConstraint::staticClass();
    const Value inside = send(constraintClass, "autoCreateAndInstallConstraints:", Closure([this] { width(1); }));
    EXPECT_EQ(constraintTexts(inside.as<LayoutConstraints>()), "a.width == 1 @1000\n");
    const Value apart =
        send(constraintClass, "autoCreateConstraintsWithoutInstalling:", Closure([this] { width(2); }));
    EXPECT_FALSE(apart.as<LayoutConstraints>().at(0)->isActive());
    send(constraintClass, "autoSetPriority:forConstraints:", 300.0F, Closure([this] { width(3); }));
    EXPECT_EQ(installed(), "a.width == 1 @1000\na.width == 3 @300\n");
    EXPECT_THAT(raised([&] { send(constraintClass, "autoCreateAndInstallConstraints:", Value()); }),
                testing::HasSubstr("there is no closure to run"));
    EXPECT_EQ(constraintClass.classMethod("autoSetPriority:forConstraints:")->category, "ConstraintLibrary");
}

} // namespace

} // namespace RVCore::ConstraintBlocksTests
