#include <Foundation/Message.h>
#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Platform/Foundation/Raised.h>

#include <gtest/gtest.h>

#include <limits>

namespace RVCore::NSViewConstraintLibraryTests {

namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

class ViewConstraintLibraryTest : public testing::Test {
protected:
    std::shared_ptr<NSView> host = namedView("host");
    std::shared_ptr<NSView> a = namedView("a", host.get());
    std::shared_ptr<NSView> b = namedView("b", host.get());
    std::shared_ptr<NSView> stranger = namedView("stranger");

    // What the operation raises, having changed nothing.
    template <class Operation> std::string refused(NSView& receiver, const Operation& operation)
    {
        const std::string text = raised(operation);
        EXPECT_TRUE(receiver.translatesAutoresizingMaskIntoConstraints());
        EXPECT_TRUE(host->constraints().empty());
        EXPECT_TRUE(receiver.constraints().empty());
        return text;
    }
};

TEST_F(ViewConstraintLibraryTest, edgesAxesAndDimensionsHaveTheNumbersOfLayoutAttributes)
{
    EXPECT_EQ(static_cast<int>(LayoutEdge::left), 1);
    EXPECT_EQ(static_cast<int>(LayoutEdge::right), 2);
    EXPECT_EQ(static_cast<int>(LayoutEdge::top), 3);
    EXPECT_EQ(static_cast<int>(LayoutEdge::bottom), 4);
    EXPECT_EQ(static_cast<int>(LayoutDimension::width), 7);
    EXPECT_EQ(static_cast<int>(LayoutDimension::height), 8);
    EXPECT_EQ(static_cast<int>(LayoutAxis::vertical), 9);
    EXPECT_EQ(static_cast<int>(LayoutAxis::horizontal), 10);
    EXPECT_EQ(static_cast<int>(NSLayoutRelation::greaterThanOrEqual), 1);
}

TEST_F(ViewConstraintLibraryTest, pinningToAViewAddsTheOffsetOnEveryEdge)
{
    EXPECT_EQ(constraintText(*autoPinEdge(*a, LayoutEdge::left, LayoutEdge::right, *b, 8)),
              "a.left == b.right + 8 @1000");
    EXPECT_EQ(constraintText(*autoPinEdge(*a, LayoutEdge::right, LayoutEdge::right, *b, 8)),
              "a.right == b.right + 8 @1000");
    EXPECT_EQ(constraintText(*autoPinEdge(*a, LayoutEdge::top, LayoutEdge::bottom, *b, -3)),
              "a.top == b.bottom - 3 @1000");
    EXPECT_EQ(constraintText(*autoPinEdge(*a, LayoutEdge::bottom, LayoutEdge::bottom, *b, 5)),
              "a.bottom == b.bottom + 5 @1000");
    EXPECT_EQ(constraintText(*autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *b)), "a.left == b.left @1000");
}

TEST_F(ViewConstraintLibraryTest, constraintsAreInstalledAtOnceInTheNearestCommonAncestor)
{
    const auto constraint = autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *b);
    EXPECT_TRUE(constraint->isActive());
    EXPECT_EQ(constraint->holder(), host.get());
    const auto size = autoSetDimension(*a, LayoutDimension::width, 10);
    EXPECT_EQ(size->holder(), a.get());
}

TEST_F(ViewConstraintLibraryTest, everyOperationNamesTheRoleOfItsConstraints)
{
    EXPECT_EQ(autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *b)->identifier(), "pin edge");
    EXPECT_EQ(autoPinEdgeToSuperviewEdge(*a, LayoutEdge::left)->identifier(), "pin to superview");
    EXPECT_EQ(autoAlignAxis(*a, LayoutAxis::vertical, *b)->identifier(), "align axis");
    EXPECT_EQ(autoSetDimension(*a, LayoutDimension::width, 1)->identifier(), "dimension");
    const std::pair<LayoutConstraints, const char*> several[] = {
        {autoPinEdgesToSuperviewEdges(*a), "pin to superview"},
        {autoCenterInSuperview(*a), "center"},
        {autoSetDimensionsToSize(*a, {1, 2}), "size"}};
    for (const auto& [constraints, role] : several) {
        for (const auto& constraint : constraints)
            EXPECT_EQ(constraint->identifier(), role);
    }
}

TEST_F(ViewConstraintLibraryTest, onlyTheReceiverIsMarkedAsNotTranslatingItsMask)
{
    autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *b);
    EXPECT_FALSE(a->translatesAutoresizingMaskIntoConstraints());
    EXPECT_TRUE(b->translatesAutoresizingMaskIntoConstraints());
    EXPECT_TRUE(host->translatesAutoresizingMaskIntoConstraints());
}

TEST_F(ViewConstraintLibraryTest, everyOperationMarksItsReceiver)
{
    const std::pair<const char*, std::function<void(NSView&)>> operations[] = {
        {"pin", [this](NSView& view) { autoPinEdge(view, LayoutEdge::left, LayoutEdge::left, *b); }},
        {"pin to superview", [](NSView& view) { autoPinEdgeToSuperviewEdge(view, LayoutEdge::top); }},
        {"pin edges", [](NSView& view) { autoPinEdgesToSuperviewEdges(view); }},
        {"align", [this](NSView& view) { autoAlignAxis(view, LayoutAxis::vertical, *b); }},
        {"center", [](NSView& view) { autoCenterInSuperview(view); }},
        {"dimension", [](NSView& view) { autoSetDimension(view, LayoutDimension::height, 1); }},
        {"dimensions",
         [](NSView& view) {
             autoSetDimensionsToSize(view, {1, 2});
         }},
        {"hugging",
         [](NSView& view) {
             autoSetPriorityForConstraints(300,
                                           [&] { autoSetContentHuggingPriorityForAxis(view, LayoutAxis::vertical); });
         }},
    };
    for (const auto& [name, operation] : operations) {
        const auto view = namedView(name, host.get());
        operation(*view);
        EXPECT_FALSE(view->translatesAutoresizingMaskIntoConstraints()) << name;
    }
}

TEST_F(ViewConstraintLibraryTest, insetsPointInwardOnEveryEdge)
{
    const auto text = [this](LayoutEdge edge) {
        return constraintText(*autoPinEdgeToSuperviewEdge(*a, edge, 4, NSLayoutRelation::equal));
    };
    EXPECT_EQ(text(LayoutEdge::left), "a.left == host.left + 4 @1000");
    EXPECT_EQ(text(LayoutEdge::top), "a.top == host.top + 4 @1000");
    EXPECT_EQ(text(LayoutEdge::right), "a.right == host.right - 4 @1000");
    EXPECT_EQ(text(LayoutEdge::bottom), "a.bottom == host.bottom - 4 @1000");
}

TEST_F(ViewConstraintLibraryTest, anInequalityIsReversedOnTheRightAndBottomEdges)
{
    const auto text = [this](LayoutEdge edge, NSLayoutRelation relation) {
        return constraintText(*autoPinEdgeToSuperviewEdge(*a, edge, 4, relation));
    };
    EXPECT_EQ(text(LayoutEdge::left, NSLayoutRelation::greaterThanOrEqual), "a.left >= host.left + 4 @1000");
    EXPECT_EQ(text(LayoutEdge::top, NSLayoutRelation::lessThanOrEqual), "a.top <= host.top + 4 @1000");
    EXPECT_EQ(text(LayoutEdge::right, NSLayoutRelation::greaterThanOrEqual), "a.right <= host.right - 4 @1000");
    EXPECT_EQ(text(LayoutEdge::right, NSLayoutRelation::lessThanOrEqual), "a.right >= host.right - 4 @1000");
    EXPECT_EQ(text(LayoutEdge::bottom, NSLayoutRelation::greaterThanOrEqual), "a.bottom <= host.bottom - 4 @1000");
}

TEST_F(ViewConstraintLibraryTest, aNegativeInsetPointsOutward)
{
    EXPECT_EQ(constraintText(*autoPinEdgeToSuperviewEdge(*a, LayoutEdge::right, -4)),
              "a.right == host.right + 4 @1000");
    EXPECT_EQ(constraintText(*autoPinEdgeToSuperviewEdge(*a, LayoutEdge::left, -4)), "a.left == host.left - 4 @1000");
}

TEST_F(ViewConstraintLibraryTest, anInsetOfZeroGivesAPositiveZero)
{
    EXPECT_FALSE(std::signbit(autoPinEdgeToSuperviewEdge(*a, LayoutEdge::right)->constant()));
}

TEST_F(ViewConstraintLibraryTest, theFourEdgesArePinnedInTheOrderTopLeftBottomRight)
{
    EXPECT_EQ(constraintTexts(autoPinEdgesToSuperviewEdges(*a)), "a.top == host.top @1000\n"
                                                                 "a.left == host.left @1000\n"
                                                                 "a.bottom == host.bottom @1000\n"
                                                                 "a.right == host.right @1000\n");
    EXPECT_EQ(host->constraints().size(), 4U);
}

TEST_F(ViewConstraintLibraryTest, theHorizontalAxisIsTheLineThroughTheVerticalCentre)
{
    EXPECT_EQ(constraintText(*autoAlignAxis(*a, LayoutAxis::horizontal, *b, 3)), "a.centerY == b.centerY + 3 @1000");
    EXPECT_EQ(constraintText(*autoAlignAxis(*a, LayoutAxis::vertical, *b, -3)), "a.centerX == b.centerX - 3 @1000");
    EXPECT_EQ(constraintText(*autoAlignAxis(*a, LayoutAxis::vertical, *b)), "a.centerX == b.centerX @1000");
}

TEST_F(ViewConstraintLibraryTest, centeringAlignsTheHorizontalAxisFirst)
{
    EXPECT_EQ(constraintTexts(autoCenterInSuperview(*a)), "a.centerY == host.centerY @1000\n"
                                                          "a.centerX == host.centerX @1000\n");
}

TEST_F(ViewConstraintLibraryTest, dimensionsTakeAnyRelation)
{
    EXPECT_EQ(constraintText(*autoSetDimension(*a, LayoutDimension::width, 30)), "a.width == 30 @1000");
    EXPECT_EQ(constraintText(*autoSetDimension(*a, LayoutDimension::height, 5, NSLayoutRelation::greaterThanOrEqual)),
              "a.height >= 5 @1000");
    EXPECT_EQ(constraintText(*autoSetDimension(*a, LayoutDimension::width, 6, NSLayoutRelation::lessThanOrEqual)),
              "a.width <= 6 @1000");
}

TEST_F(ViewConstraintLibraryTest, dimensionsToSizeSetsTheWidthFirst)
{
    EXPECT_EQ(constraintTexts(autoSetDimensionsToSize(*a, {30, 20})), "a.width == 30 @1000\n"
                                                                      "a.height == 20 @1000\n");
}

TEST_F(ViewConstraintLibraryTest, anAxisNamesTheOrientationOfHugging)
{
    const auto hugging = [this](NSLayoutConstraintOrientation orientation) {
        return a->contentHuggingPriority(orientation);
    };
    autoSetPriorityForConstraints(300, [this] { autoSetContentHuggingPriorityForAxis(*a, LayoutAxis::horizontal); });
    EXPECT_EQ(hugging(NSLayoutConstraintOrientation::horizontal), 300.0F);
    EXPECT_EQ(hugging(NSLayoutConstraintOrientation::vertical), 250.0F);
    autoSetPriorityForConstraints(400, [this] { autoSetContentHuggingPriorityForAxis(*a, LayoutAxis::vertical); });
    EXPECT_EQ(hugging(NSLayoutConstraintOrientation::horizontal), 300.0F);
    EXPECT_EQ(hugging(NSLayoutConstraintOrientation::vertical), 400.0F);
    EXPECT_TRUE(a->constraints().empty());
}

TEST_F(ViewConstraintLibraryTest, huggingNeedsAPriorityBlock)
{
    EXPECT_EQ(refused(*a, [this] { autoSetContentHuggingPriorityForAxis(*a, LayoutAxis::horizontal); }),
              "NSInvalidArgumentException: autoSetContentHuggingPriorityForAxis: needs a block of "
              "autoSetPriorityForConstraints around it");
    EXPECT_EQ(refused(*a,
                      [this] {
                          autoCreateAndInstallConstraints(
                              [this] { autoSetContentHuggingPriorityForAxis(*a, LayoutAxis::horizontal); });
                      }),
              "NSInvalidArgumentException: autoSetContentHuggingPriorityForAxis: needs a block of "
              "autoSetPriorityForConstraints around it");
}

TEST_F(ViewConstraintLibraryTest, operationsOnTheSuperviewNeedOne)
{
    const std::string who = stranger->description() + " has no superview";
    EXPECT_EQ(refused(*stranger, [this] { autoPinEdgeToSuperviewEdge(*stranger, LayoutEdge::left); }),
              "NSInvalidArgumentException: autoPinEdgeToSuperviewEdge: " + who);
    EXPECT_EQ(refused(*stranger, [this] { autoPinEdgesToSuperviewEdges(*stranger); }),
              "NSInvalidArgumentException: autoPinEdgesToSuperviewEdges: " + who);
    EXPECT_EQ(refused(*stranger, [this] { autoCenterInSuperview(*stranger); }),
              "NSInvalidArgumentException: autoCenterInSuperview: " + who);
}

TEST_F(ViewConstraintLibraryTest, viewsOfDifferentTreesCannotBeTiedTogether)
{
    EXPECT_THAT(refused(*a, [this] { autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *stranger); }),
                testing::HasSubstr("have no common ancestor"));
    EXPECT_THAT(refused(*a, [this] { autoAlignAxis(*a, LayoutAxis::vertical, *stranger); }),
                testing::HasSubstr("have no common ancestor"));
}

TEST_F(ViewConstraintLibraryTest, edgesOfDifferentDirectionsCannotBePinned)
{
    EXPECT_EQ(
        refused(*a, [this] { autoPinEdge(*a, LayoutEdge::left, LayoutEdge::top, *b); }),
        "NSInvalidArgumentException: autoPinEdge: a left or right edge cannot be pinned to a top or bottom edge");
}

TEST_F(ViewConstraintLibraryTest, numbersMustBeFinite)
{
    EXPECT_EQ(refused(*a, [this] { autoPinEdge(*a, LayoutEdge::left, LayoutEdge::left, *b, nan); }),
              "NSInvalidArgumentException: autoPinEdge: offset must be finite, got nan");
    EXPECT_EQ(refused(*a, [this] { autoPinEdgeToSuperviewEdge(*a, LayoutEdge::left, infinity); }),
              "NSInvalidArgumentException: autoPinEdgeToSuperviewEdge: inset must be finite, got inf");
    EXPECT_EQ(refused(*a, [this] { autoPinEdgeToSuperviewEdge(*a, LayoutEdge::right, nan); }),
              "NSInvalidArgumentException: autoPinEdgeToSuperviewEdge: inset must be finite, got nan");
    EXPECT_EQ(refused(*a, [this] { autoAlignAxis(*a, LayoutAxis::vertical, *b, -infinity); }),
              "NSInvalidArgumentException: autoAlignAxis: offset must be finite, got -inf");
    EXPECT_EQ(refused(*a, [this] { autoSetDimension(*a, LayoutDimension::width, nan); }),
              "NSInvalidArgumentException: autoSetDimension: size must be finite, got nan");
    EXPECT_EQ(refused(*a,
                      [this] {
                          autoSetDimensionsToSize(*a, {10, nan});
                      }),
              "NSInvalidArgumentException: autoSetDimensionsToSize: size.height must be finite, got nan");
}

TEST_F(ViewConstraintLibraryTest, valuesThatNameNothingAreRefused)
{
    EXPECT_EQ(refused(*a, [this] { autoPinEdge(*a, static_cast<LayoutEdge>(5), LayoutEdge::left, *b); }),
              "NSInvalidArgumentException: autoPinEdge: there is no edge 5");
    EXPECT_EQ(refused(*a, [this] { autoPinEdgeToSuperviewEdge(*a, static_cast<LayoutEdge>(0)); }),
              "NSInvalidArgumentException: autoPinEdgeToSuperviewEdge: there is no edge 0");
    EXPECT_EQ(refused(*a, [this] { autoAlignAxis(*a, static_cast<LayoutAxis>(1), *b); }),
              "NSInvalidArgumentException: autoAlignAxis: there is no axis 1");
    EXPECT_EQ(refused(*a, [this] { autoSetDimension(*a, static_cast<LayoutDimension>(9), 1); }),
              "NSInvalidArgumentException: autoSetDimension: there is no dimension 9");
    EXPECT_EQ(
        refused(*a, [this] { autoSetDimension(*a, LayoutDimension::width, 1, static_cast<NSLayoutRelation>(2)); }),
        "NSInvalidArgumentException: autoSetDimension: there is no relation 2");
    EXPECT_EQ(refused(*a,
                      [this] {
                          autoSetPriorityForConstraints(
                              300, [this] { autoSetContentHuggingPriorityForAxis(*a, static_cast<LayoutAxis>(0)); });
                      }),
              "NSInvalidArgumentException: autoSetContentHuggingPriorityForAxis: there is no axis 0");
}

TEST_F(ViewConstraintLibraryTest, everyOperationIsReachedByItsSelector)
{
    const auto text = [](const Value& result) {
        return constraintText(*result.as<std::shared_ptr<NSLayoutConstraint>>());
    };
    const auto texts = [](const Value& result) { return constraintTexts(result.as<LayoutConstraints>()); };
    EXPECT_EQ(text(send(a, "autoPinEdge:toEdge:ofView:", 1, 2, b)), "a.left == b.right @1000");
    EXPECT_EQ(text(send(a, "autoPinEdge:toEdge:ofView:withOffset:", 3, 4, b, 8)), "a.top == b.bottom + 8 @1000");
    EXPECT_EQ(text(send(a, "autoPinEdgeToSuperviewEdge:", 2)), "a.right == host.right @1000");
    EXPECT_EQ(text(send(a, "autoPinEdgeToSuperviewEdge:withInset:relation:", 4, 2.5, 1)),
              "a.bottom <= host.bottom - 2.5 @1000");
    EXPECT_EQ(texts(send(a, "autoPinEdgesToSuperviewEdges")),
              "a.top == host.top @1000\na.left == host.left @1000\na.bottom == host.bottom @1000\n"
              "a.right == host.right @1000\n");
    EXPECT_EQ(text(send(a, "autoAlignAxis:toSameAxisOfView:", 9, b)), "a.centerX == b.centerX @1000");
    EXPECT_EQ(text(send(a, "autoAlignAxis:toSameAxisOfView:withOffset:", 10, b, 6)),
              "a.centerY == b.centerY + 6 @1000");
    EXPECT_EQ(texts(send(a, "autoCenterInSuperview")),
              "a.centerY == host.centerY @1000\na.centerX == host.centerX @1000\n");
    EXPECT_EQ(text(send(a, "autoSetDimension:toSize:", 7, 30)), "a.width == 30 @1000");
    EXPECT_EQ(text(send(a, "autoSetDimension:toSize:relation:", 8, 20, 1)), "a.height >= 20 @1000");
    EXPECT_EQ(texts(send(a, "autoSetDimensionsToSize:", CGSize{1, 2})), "a.width == 1 @1000\na.height == 2 @1000\n");
    send(NSLayoutConstraint::staticClass(), "autoSetPriority:forConstraints:", 321,
         std::function<void()>([this] { send(a, "autoSetContentHuggingPriorityForAxis:", 10); }));
    EXPECT_EQ(a->contentHuggingPriority(NSLayoutConstraintOrientation::horizontal), 321.0F);
}

TEST_F(ViewConstraintLibraryTest, theOperationsFormACategory)
{
    for (const char* selector : {"autoPinEdge:toEdge:ofView:", "autoPinEdgesToSuperviewEdges",
                                 "autoSetContentHuggingPriorityForAxis:", "autoCenterInSuperview"})
        EXPECT_EQ(NSView::staticClass().method(selector)->category, "ConstraintLibrary") << selector;
}

TEST_F(ViewConstraintLibraryTest, layoutFollowsTheConstraints)
{
    host->setFrame({0, 0, 200, 100});
    autoPinEdgeToSuperviewEdge(*a, LayoutEdge::left, 10);
    autoPinEdgeToSuperviewEdge(*a, LayoutEdge::top, 20);
    autoPinEdgeToSuperviewEdge(*a, LayoutEdge::bottom, 30);
    autoPinEdgeToSuperviewEdge(*a, LayoutEdge::right, 40);
    autoSetDimensionsToSize(*b, {20, 10});
    autoPinEdge(*b, LayoutEdge::left, LayoutEdge::left, *a, 5);
    autoAlignAxis(*b, LayoutAxis::horizontal, *a);
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(a->frame(), CGRect(10, 30, 150, 50)); // the host's origin is at the bottom left
    EXPECT_EQ(b->frame(), CGRect(15, 50, 20, 10));
}

} // namespace

} // namespace RVCore::NSViewConstraintLibraryTests
