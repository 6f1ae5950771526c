#include "ViewTesting.h"

#include <AppKit/ViewLayoutState.h>

namespace RVCore::ViewLayoutStateTests {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

TEST(ViewLayoutState, RemovingConstraintsKeepsTheOrderOfTheOthers)
{
    const auto view = make<NSView>();
    std::vector<std::shared_ptr<NSLayoutConstraint>> expected;
    for (int i = 0; i < 20; ++i)
        expected.push_back(hold(*view, Attribute::width, {.constant = static_cast<double>(i)}));
    for (const std::size_t index : {3u, 0u, 10u, 5u, 5u, 1u, 9u, 2u, 8u, 4u, 0u, 6u, 3u}) {
        expected[index]->setActive(false);
        expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(index));
        EXPECT_THAT(view->constraints(), ElementsAreArray(expected));
    }
    const auto again = expected.front();
    again->setActive(false);
    again->setActive(true);
    EXPECT_EQ(view->constraints().back(), again);
}

TEST(ViewLayoutState, KnowsEveryConstraintThatRefersToItsViewAsOftenAsItDoes)
{
    const auto host = make<NSView>();
    const auto view = addTo(*host);
    auto twice = hold(*view, Attribute::width, *view, Attribute::height);
    auto once = hold(*view, Attribute::left, *host, Attribute::left);
    auto inactive =
        make<NSLayoutConstraint>(*host, Attribute::left, Relation::equal, view.get(), Attribute::left, 1, 0);
    const ViewLayoutState& state = *ViewLayoutState::of(*view);
    const auto references = [&] {
        std::vector<const NSLayoutConstraint*> result;
        state.references().forEach([&](const NSLayoutConstraint& constraint) { result.push_back(&constraint); });
        return result;
    };
    EXPECT_THAT(references(), ElementsAre(twice.get(), twice.get(), once.get(), inactive.get()));
    const NSLayoutConstraint* const last = inactive.get();
    twice->setActive(false);
    twice.reset();
    EXPECT_THAT(references(), testing::UnorderedElementsAre(once.get(), last));
    inactive.reset();
    once->setActive(false);
    once.reset();
    EXPECT_TRUE(state.references().isEmpty());
    EXPECT_TRUE(ViewLayoutState::of(*host)->references().isEmpty());
}

TEST(ViewLayoutState, ConstraintsOutliveAViewThatTheyReferToTwice)
{
    auto view = make<NSView>();
    const auto constraint = hold(*view, Attribute::width, *view, Attribute::height);
    view.reset();
    EXPECT_FALSE(constraint->isActive());
    EXPECT_EQ(constraint->firstItem(), nullptr);
    EXPECT_EQ(constraint->secondItem(), nullptr);
}

TEST(ViewLayoutState, AHolderThatDiesLeavesWhatItHeldBetweenOthersInactive)
{
    auto host = makeHost(10, 10);
    const auto a = addTo(*host), b = addTo(*host);
    const auto constraint = hold(*a, Attribute::left, *b, Attribute::right);
    host->layoutSubtreeIfNeeded();
    host.reset();
    EXPECT_FALSE(constraint->isActive());
    EXPECT_EQ(constraint->firstItem(), a.get());
    const auto next = makeHost(10, 10);
    next->addSubview(a);
    next->addSubview(b);
    constraint->setActive(true);
    EXPECT_EQ(constraint->holder(), next.get());
    next->layoutSubtreeIfNeeded();
}

} // namespace
} // namespace RVCore::ViewLayoutStateTests
