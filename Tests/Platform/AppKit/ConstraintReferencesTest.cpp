#include "ViewTesting.h"

#include <AppKit/ConstraintReferences.h>

namespace RVCore::ConstraintReferencesTests {
namespace {

TEST(ConstraintReferences, EachKeepsItsPlaceWhileOthersComeAndGo)
{
    const auto view = make<NSView>();
    std::vector<std::shared_ptr<NSLayoutConstraint>> constraints;
    for (int i = 0; i < 30; ++i)
        constraints.push_back(hold(*view, Attribute::width, {.constant = static_cast<double>(i)}));
    ConstraintReferences references;
    std::vector<std::uint32_t> places;
    for (const auto& constraint : constraints)
        places.push_back(references.add(*constraint));
    EXPECT_EQ(references.placeCount(), 30u);
    for (const std::size_t index : {3u, 29u, 0u, 17u})
        references.remove(places[index]);
    EXPECT_EQ(references.at(places[3]), nullptr);
    EXPECT_EQ(references.at(places[17]), nullptr);
    for (const std::size_t index : {1u, 7u, 8u, 28u})
        EXPECT_EQ(references.at(places[index]), constraints[index].get());
    std::size_t count = 0;
    references.forEach([&](const NSLayoutConstraint&) { ++count; });
    EXPECT_EQ(count, 26u);
}

TEST(ConstraintReferences, FreePlacesAreUsedAgain)
{
    const auto view = make<NSView>();
    const auto constraint = hold(*view, Attribute::width, {.constant = 1});
    ConstraintReferences references;
    for (int i = 0; i < 20; ++i)
        references.add(*constraint);
    references.remove(4);
    references.remove(12);
    EXPECT_THAT((std::vector{references.add(*constraint), references.add(*constraint)}),
                testing::UnorderedElementsAre(4u, 12u));
    EXPECT_EQ(references.placeCount(), 20u);
    EXPECT_EQ(references.add(*constraint), 20u);
}

TEST(ConstraintReferences, AnEmptyListBeginsAnew)
{
    const auto view = make<NSView>();
    const auto constraint = hold(*view, Attribute::width, {.constant = 1});
    ConstraintReferences references;
    EXPECT_TRUE(references.isEmpty());
    for (int i = 0; i < 10; ++i)
        references.add(*constraint);
    EXPECT_FALSE(references.isEmpty());
    for (std::uint32_t place = 0; place < 10; ++place)
        references.remove(place);
    EXPECT_TRUE(references.isEmpty());
    EXPECT_EQ(references.placeCount(), 0u);
    EXPECT_EQ(references.add(*constraint), 0u);
}

} // namespace
} // namespace RVCore::ConstraintReferencesTests
