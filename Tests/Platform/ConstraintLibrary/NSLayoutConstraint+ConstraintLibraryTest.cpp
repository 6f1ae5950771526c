#include <Foundation/Message.h>
#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

namespace RVCore::NSLayoutConstraintConstraintLibraryTests {

namespace {

TEST(LayoutConstraintLibrary, aConstraintIsInstalledAndTakenOut)
{
    const auto view = namedView("view");
    const auto constraint = autoSetDimension(*view, LayoutDimension::width, 10);
    autoRemove(*constraint);
    EXPECT_FALSE(constraint->isActive());
    autoInstall(*constraint);
    EXPECT_TRUE(constraint->isActive());
}

TEST(LayoutConstraintLibrary, doingEitherTwiceChangesNothing)
{
    const auto view = namedView("view");
    const auto constraint = autoSetDimension(*view, LayoutDimension::width, 10);
    autoInstall(*constraint);
    EXPECT_EQ(view->constraints().size(), 1U);
    autoRemove(*constraint);
    autoRemove(*constraint);
    EXPECT_TRUE(view->constraints().empty());
}

TEST(LayoutConstraintLibrary, viewsWithoutACommonAncestorCannotHaveOneInstalled)
{
    const auto first = namedView("first"), second = namedView("second");
    const auto created = autoCreateConstraintsWithoutInstalling(
        [&] { autoPinEdge(*first, LayoutEdge::left, LayoutEdge::left, *second); });
    EXPECT_THAT(raised([&] { autoInstall(*created.at(0)); }), testing::HasSubstr("have no common ancestor"));
    EXPECT_FALSE(created[0]->isActive());
}

TEST(LayoutConstraintLibrary, theSelectorsDoTheSame)
{
    const auto view = namedView("view");
    const auto constraint = autoSetDimension(*view, LayoutDimension::width, 10);
    send(constraint, "autoRemove");
    EXPECT_FALSE(constraint->isActive());
    send(constraint, "autoInstall");
    EXPECT_TRUE(constraint->isActive());
    EXPECT_EQ(NSLayoutConstraint::staticClass().method("autoInstall")->category, "ConstraintLibrary");
}

} // namespace

} // namespace RVCore::NSLayoutConstraintConstraintLibraryTests
