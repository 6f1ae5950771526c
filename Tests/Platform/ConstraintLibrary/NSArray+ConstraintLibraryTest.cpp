#include <Foundation/Message.h>
#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

namespace RVCore::NSArrayConstraintLibraryTests {

namespace {

class ArrayConstraintLibraryTest : public testing::Test {
protected:
    std::shared_ptr<NSView> view = namedView("view");
    LayoutConstraints constraints = autoCreateConstraintsWithoutInstalling([this] {
        autoSetDimension(*view, LayoutDimension::width, 1);
        autoSetDimension(*view, LayoutDimension::height, 2);
    });
    std::shared_ptr<NSArray> array = makeArray(constraints);
};

TEST_F(ArrayConstraintLibraryTest, constraintsAreInstalledInOrderAndTakenOut)
{
    autoInstallConstraints(*array);
    EXPECT_EQ(view->constraints(), constraints);
    autoRemoveConstraints(*array);
    EXPECT_TRUE(view->constraints().empty());
}

TEST_F(ArrayConstraintLibraryTest, identifyingReturnsTheSameList)
{
    EXPECT_EQ(autoIdentifyConstraints(*array, "size"), array);
    EXPECT_EQ(constraints[0]->identifier(), "size");
    EXPECT_EQ(constraints[1]->identifier(), "size");
}

TEST_F(ArrayConstraintLibraryTest, anEmptyListDoesNothing)
{
    const auto empty = make<NSArray>(Value::Array());
    autoInstallConstraints(*empty);
    autoRemoveConstraints(*empty);
    EXPECT_EQ(autoIdentifyConstraints(*empty, "none"), empty);
}

TEST_F(ArrayConstraintLibraryTest, whenOneCannotBeInstalledNoneIs)
{
    const auto stranger = namedView("stranger");
    LayoutConstraints more = autoCreateConstraintsWithoutInstalling(
        [&] { autoPinEdge(*view, LayoutEdge::left, LayoutEdge::left, *stranger); });
    autoInstall(*constraints[0]);
    const auto list = makeArray(LayoutConstraints{constraints[0], constraints[1], more.at(0)});
    EXPECT_THAT(raised([&] { autoInstallConstraints(*list); }), testing::HasSubstr("have no common ancestor"));
    EXPECT_TRUE(constraints[0]->isActive()) << "it was installed before";
    EXPECT_FALSE(constraints[1]->isActive());
}

TEST_F(ArrayConstraintLibraryTest, aListWithAnythingElseIsRefusedAsAWhole)
{
    const auto mixed = make<NSArray>(Value::Array{constraints[0], 5});
    EXPECT_EQ(
        raised([&] { autoInstallConstraints(*mixed); }),
        "NSInvalidArgumentException: autoInstallConstraints: element 1 must be NSLayoutConstraint, got integer");
    EXPECT_FALSE(constraints[0]->isActive());
    autoInstall(*constraints[0]);
    EXPECT_EQ(raised([&] { autoRemoveConstraints(*mixed); }),
              "NSInvalidArgumentException: autoRemoveConstraints: element 1 must be NSLayoutConstraint, got integer");
    EXPECT_TRUE(constraints[0]->isActive());
    EXPECT_EQ(
        raised([&] { autoIdentifyConstraints(*mixed, "x"); }),
        "NSInvalidArgumentException: autoIdentifyConstraints: element 1 must be NSLayoutConstraint, got integer");
    EXPECT_EQ(constraints[0]->identifier(), "dimension");
}

TEST_F(ArrayConstraintLibraryTest, theSelectorsDoTheSame)
{
    send(array, "autoInstallConstraints");
    EXPECT_EQ(view->constraints(), constraints);
    EXPECT_EQ(send(array, "autoIdentifyConstraints:", "role").as<std::shared_ptr<NSArray>>(), array);
    EXPECT_EQ(constraints[1]->identifier(), "role");
    send(array, "autoRemoveConstraints");
    EXPECT_TRUE(view->constraints().empty());
    EXPECT_EQ(NSArray::staticClass().method("autoInstallConstraints")->category, "ConstraintLibrary");
}

} // namespace

} // namespace RVCore::NSArrayConstraintLibraryTests
