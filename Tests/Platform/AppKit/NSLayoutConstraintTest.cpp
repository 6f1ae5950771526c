#include "ViewTesting.h"

#include <AppKit/ViewDump.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <limits>

namespace RVCore::NSLayoutConstraintTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// A reference at (100, 50) 80 × 40 and a view of 20 × 10 in a host of 400 × 300.
struct Pair {
    std::shared_ptr<FlippedView> host = makeHost(400, 300);
    std::shared_ptr<NSView> reference = addTo(*host);
    std::shared_ptr<NSView> view = addTo(*host);

    Pair() { place(*reference, {100, 50, 80, 40}); }
    void size()
    {
        hold(*view, Attribute::width, {.constant = 20});
        hold(*view, Attribute::height, {.constant = 10});
    }
    CGRect frame()
    {
        host->layoutSubtreeIfNeeded();
        return view->frame();
    }
};

CGFloat horizontal(Attribute first, Attribute second)
{
    Pair pair;
    pair.size();
    hold(*pair.view, first, *pair.reference, second, {.constant = 3});
    return pair.frame().minX();
}

CGFloat vertical(Attribute first, Attribute second)
{
    Pair pair;
    pair.size();
    hold(*pair.view, first, *pair.reference, second, {.constant = 3});
    return pair.frame().minY();
}

TEST(NSLayoutConstraint, HoldsEveryHorizontalPositionAgainstEveryOther)
{
    EXPECT_EQ(horizontal(Attribute::left, Attribute::left), 103);
    EXPECT_EQ(horizontal(Attribute::left, Attribute::centerX), 143);
    EXPECT_EQ(horizontal(Attribute::left, Attribute::right), 183);
    EXPECT_EQ(horizontal(Attribute::centerX, Attribute::left), 93);
    EXPECT_EQ(horizontal(Attribute::centerX, Attribute::centerX), 133);
    EXPECT_EQ(horizontal(Attribute::centerX, Attribute::right), 173);
    EXPECT_EQ(horizontal(Attribute::right, Attribute::left), 83);
    EXPECT_EQ(horizontal(Attribute::right, Attribute::centerX), 123);
    EXPECT_EQ(horizontal(Attribute::right, Attribute::right), 163);
}

TEST(NSLayoutConstraint, HoldsEveryVerticalPositionAgainstEveryOtherDownward)
{
    EXPECT_EQ(vertical(Attribute::top, Attribute::top), 53);
    EXPECT_EQ(vertical(Attribute::top, Attribute::centerY), 73);
    EXPECT_EQ(vertical(Attribute::top, Attribute::bottom), 93);
    EXPECT_EQ(vertical(Attribute::centerY, Attribute::top), 48);
    EXPECT_EQ(vertical(Attribute::centerY, Attribute::centerY), 68);
    EXPECT_EQ(vertical(Attribute::centerY, Attribute::bottom), 88);
    EXPECT_EQ(vertical(Attribute::bottom, Attribute::top), 43);
    EXPECT_EQ(vertical(Attribute::bottom, Attribute::centerY), 63);
    EXPECT_EQ(vertical(Attribute::bottom, Attribute::bottom), 83);
}

TEST(NSLayoutConstraint, HoldsExtentsAgainstConstantsAndExtents)
{
    Pair pair;
    hold(*pair.view, Attribute::width, *pair.reference, Attribute::height, {.constant = 5, .multiplier = 2});
    hold(*pair.view, Attribute::height, {.constant = 7});
    EXPECT_EQ(pair.frame().size, (CGSize{85, 7}));
}

TEST(NSLayoutConstraint, AMultiplierScalesAPositionFromTheHoldersCorner)
{
    Pair pair;
    pair.size();
    hold(*pair.view, Attribute::left, *pair.reference, Attribute::right, {.constant = 1, .multiplier = 0.5});
    EXPECT_EQ(pair.frame().minX(), 91); // (100 + 80) / 2 + 1
}

TEST(NSLayoutConstraint, AnInequalityHoldsOnItsSideOnly)
{
    for (const auto& [relation, wish, expected] :
         {std::tuple{Relation::lessThanOrEqual, 300.0, 80.0}, std::tuple{Relation::lessThanOrEqual, 30.0, 30.0},
          std::tuple{Relation::greaterThanOrEqual, 300.0, 300.0},
          std::tuple{Relation::greaterThanOrEqual, 30.0, 80.0}, std::tuple{Relation::equal, 30.0, 80.0}}) {
        Pair pair;
        hold(*pair.view, Attribute::width, *pair.reference, Attribute::width, {.relation = relation});
        hold(*pair.view, Attribute::width, {.constant = wish, .priority = 10});
        EXPECT_EQ(pair.frame().size.width, expected) << static_cast<int>(relation) << " " << wish;
    }
}

TEST(NSLayoutConstraint, VerticalPositionsGrowDownwardInViewsThatAreNotFlipped)
{
    const auto host = make<NSView>(CGRect(0, 0, 100, 200));
    const auto view = addTo(*host);
    place(*view, {10, 20, 30, 40});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(10, 140, 30, 40));
    host->setFrameSize({100, 300});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame(), CGRect(10, 240, 30, 40));
}

TEST(NSLayoutConstraint, ANewConstantMovesWhatItHolds)
{
    Pair pair;
    pair.size();
    const auto left = hold(*pair.view, Attribute::left, *pair.host, Attribute::left, {.constant = 5});
    EXPECT_EQ(pair.frame().minX(), 5);
    left->setConstant(8);
    EXPECT_EQ(pair.frame().minX(), 8);
    left->setActive(false);
    left->setConstant(9);
    left->setActive(true);
    EXPECT_EQ(pair.frame().minX(), 9);
}

TEST(NSLayoutConstraint, ThePriorityDecidesWhichOneGivesWay)
{
    Pair pair;
    const auto weak = hold(*pair.view, Attribute::width, {.constant = 10, .priority = 400});
    hold(*pair.view, Attribute::width, {.constant = 20, .priority = 500});
    EXPECT_EQ(pair.frame().size.width, 20);
    weak->setPriority(501);
    EXPECT_EQ(pair.frame().size.width, 10);
    weak->setPriority(1000);
    EXPECT_EQ(pair.frame().size.width, 10);
}

TEST(NSLayoutConstraint, TheNearestCommonAncestorHoldsIt)
{
    const auto root = make<NSView>(), a = make<NSView>(), b = make<NSView>(), inA = make<NSView>(),
               inB = make<NSView>();
    root->addSubview(a);
    root->addSubview(b);
    a->addSubview(inA);
    b->addSubview(inB);
    EXPECT_EQ(hold(*a, Attribute::left, *b, Attribute::left)->holder(), root.get());
    EXPECT_EQ(hold(*inA, Attribute::left, *inB, Attribute::left)->holder(), root.get());
    EXPECT_EQ(hold(*inA, Attribute::left, *b, Attribute::left)->holder(), root.get());
    EXPECT_EQ(hold(*inA, Attribute::left, *a, Attribute::left)->holder(), a.get());
    EXPECT_EQ(hold(*a, Attribute::left, *inA, Attribute::left)->holder(), a.get());
    EXPECT_EQ(hold(*root, Attribute::left, *inB, Attribute::left)->holder(), root.get());
    EXPECT_EQ(hold(*inB, Attribute::width, *inB, Attribute::height)->holder(), inB.get());
    EXPECT_EQ(hold(*inB, Attribute::width, {.constant = 1})->holder(), inB.get());
    EXPECT_EQ(root->constraints().size(), 4u);
}

TEST(NSLayoutConstraint, ActivatingOrDeactivatingTwiceIsHarmless)
{
    Pair pair;
    const auto constraint = hold(*pair.view, Attribute::width, {.constant = 1});
    constraint->setActive(true);
    EXPECT_THAT(pair.view->constraints(), ElementsAre(constraint));
    constraint->setActive(false);
    constraint->setActive(false);
    EXPECT_THAT(pair.view->constraints(), ElementsAre());
    EXPECT_EQ(constraint->holder(), nullptr);
    pair.host->layoutSubtreeIfNeeded();
    constraint->setActive(true);
    constraint->setActive(true);
    EXPECT_EQ(pair.frame().size.width, 1);
}

TEST(NSLayoutConstraint, ItsHolderKeepsItAliveWhileItIsActive)
{
    Pair pair;
    const std::weak_ptr<NSLayoutConstraint> constraint = hold(*pair.view, Attribute::width, {.constant = 1});
    EXPECT_FALSE(constraint.expired());
    constraint.lock()->setActive(false);
    EXPECT_TRUE(constraint.expired());
}

TEST(NSLayoutConstraint, AnItemThatDiesMakesItInactiveForGood)
{
    Pair pair;
    auto other = addTo(*pair.host);
    const auto constraint = hold(*pair.view, Attribute::left, *other, Attribute::right);
    const auto onlyInactive =
        make<NSLayoutConstraint>(*other, Attribute::width, Relation::equal, other.get(), Attribute::height, 1, 0);
    pair.host->layoutSubtreeIfNeeded();
    other->removeFromSuperview();
    other.reset();
    EXPECT_FALSE(constraint->isActive());
    EXPECT_EQ(constraint->firstItem(), pair.view.get());
    EXPECT_EQ(constraint->secondItem(), nullptr);
    EXPECT_EQ(onlyInactive->firstItem(), nullptr);
    EXPECT_THAT(raised([&] { constraint->setActive(true); }), HasSubstr("a view of the constraint no longer exists"));
    EXPECT_THAT(raised([&] { onlyInactive->setActive(true); }), HasSubstr("no longer exists"));
    constraint->setActive(false);
    constraint->setConstant(4);
    EXPECT_THAT(constraint->description(), HasSubstr("(a view that is gone).right + 4"));
    pair.host->layoutSubtreeIfNeeded();
}

TEST(NSLayoutConstraint, ActivatingBetweenTreesRaisesAndChangesNothing)
{
    const auto a = make<NSView>(), b = make<NSView>();
    const auto constraint =
        make<NSLayoutConstraint>(*a, Attribute::left, Relation::equal, b.get(), Attribute::left, 1, 0);
    EXPECT_THAT(raised([&] { constraint->setActive(true); }), HasSubstr("have no common ancestor"));
    EXPECT_FALSE(constraint->isActive());
    a->addSubview(b);
    constraint->setActive(true);
    EXPECT_EQ(constraint->holder(), a.get());
}

std::string made(NSView& first, Attribute firstAttribute, NSView* second, Attribute secondAttribute,
                 double multiplier = 1, double constant = 0, Relation relation = Relation::equal)
{
    return raised([&] {
        make<NSLayoutConstraint>(first, firstAttribute, relation, second, secondAttribute, multiplier, constant);
    });
}

TEST(NSLayoutConstraint, WhatMakesNoSenseRaises)
{
    const auto host = make<NSView>(), view = make<NSView>();
    NSView* const none = nullptr;
    const auto nothing = Attribute::notAnAttribute;
    EXPECT_THAT(made(*view, Attribute::left, host.get(), Attribute::left, nan), HasSubstr("multiplier"));
    EXPECT_THAT(made(*view, Attribute::left, host.get(), Attribute::left, 1, nan), HasSubstr("constant"));
    EXPECT_THAT(made(*view, Attribute::left, host.get(), Attribute::left, 1, 2e15), HasSubstr("constant"));
    EXPECT_THAT(made(*view, nothing, host.get(), Attribute::left), HasSubstr("first attribute is missing"));
    EXPECT_THAT(made(*view, Attribute::left, host.get(), nothing), HasSubstr("go together"));
    EXPECT_THAT(made(*view, Attribute::width, none, Attribute::width), HasSubstr("go together"));
    EXPECT_THAT(made(*view, Attribute::left, none, nothing), HasSubstr("a position needs a second item"));
    EXPECT_THAT(made(*view, Attribute::left, host.get(), Attribute::top), HasSubstr("cannot be compared"));
    EXPECT_THAT(made(*view, Attribute::left, host.get(), Attribute::width), HasSubstr("cannot be compared"));
    EXPECT_THAT(made(*view, Attribute{99}, host.get(), Attribute::left), HasSubstr("no layout attribute 99"));
    EXPECT_THAT(made(*view, Attribute::left, host.get(), Attribute::left, 1, 0, Relation{5}),
                HasSubstr("no layout relation 5"));
}

TEST(NSLayoutConstraint, SettersRefuseWhatIsOutOfRangeAndChangeNothing)
{
    Pair pair;
    const auto constraint = hold(*pair.view, Attribute::width, {.constant = 5, .priority = 700});
    for (const float priority : {0.0f, -1.0f, 1000.5f, std::numeric_limits<float>::quiet_NaN()})
        EXPECT_THAT(raised([&] { constraint->setPriority(priority); }),
                    HasSubstr("NSLayoutConstraint.setPriority:: priority must be above 0 and at most 1000, got"));
    EXPECT_THAT(raised([&] { constraint->setConstant(nan); }), HasSubstr("NSLayoutConstraint.setConstant:"));
    EXPECT_EQ(constraint->priority(), 700);
    EXPECT_EQ(constraint->constant(), 5);
}

TEST(NSLayoutConstraint, InitialisingTwiceRaises)
{
    Pair pair;
    const auto constraint = hold(*pair.view, Attribute::width, {.constant = 5});
    EXPECT_THAT(raised([&] {
                    constraint->init(*pair.host, Attribute::height, Relation::equal, nullptr,
                                     Attribute::notAnAttribute, 1, 5);
                }),
                HasSubstr("has been initialised before"));
    EXPECT_EQ(constraint->firstItem(), pair.view.get());
}

TEST(NSLayoutConstraint, AnEqualValueAsksForNothing)
{
    Pair pair;
    const auto constraint = hold(*pair.view, Attribute::width, {.constant = 5});
    const auto probe = addTo<ProbeView>(*pair.host);
    pair.host->layoutSubtreeIfNeeded();
    const int before = probe->layoutCount;
    constraint->setConstant(5);
    constraint->setPriority(1000);
    pair.host->layoutSubtreeIfNeeded();
    EXPECT_FALSE(pair.host->needsLayout());
    EXPECT_EQ(probe->layoutCount, before);
}

TEST(NSLayoutConstraint, EveryPropertyIsReachedByName)
{
    Pair pair;
    const auto constraint = send(send(NSLayoutConstraint::staticClass(), "alloc").as<ObjectRef>(),
                                 "initWithItem:attribute:relatedBy:toItem:attribute:multiplier:constant:", pair.view,
                                 7, -1, pair.host, 8, 0.5, 6)
                                .as<std::shared_ptr<NSLayoutConstraint>>();
    EXPECT_EQ(send(constraint, "firstItem").as<std::shared_ptr<NSView>>(), pair.view);
    EXPECT_EQ(send(constraint, "secondItem").as<std::shared_ptr<NSView>>(),
              std::static_pointer_cast<NSView>(pair.host));
    EXPECT_EQ(send(constraint, "firstAttribute").as<int>(), 7);
    EXPECT_EQ(send(constraint, "secondAttribute").as<int>(), 8);
    EXPECT_EQ(send(constraint, "relation").as<int>(), -1);
    EXPECT_EQ(send(constraint, "multiplier").as<double>(), 0.5);
    send(constraint, "setConstant:", 7);
    EXPECT_EQ(send(constraint, "constant").as<double>(), 7);
    send(constraint, "setPriority:", 70);
    EXPECT_EQ(send(constraint, "priority").as<float>(), 70);
    send(constraint, "setIdentifier:", "role");
    EXPECT_EQ(send(constraint, "identifier").as<std::string>(), "role");
    send(constraint, "setActive:", true);
    EXPECT_TRUE(send(constraint, "isActive").as<bool>());
    EXPECT_EQ(constraint->holder(), pair.host.get());
}

} // namespace
} // namespace RVCore::NSLayoutConstraintTests
