#pragma once

#include <AppKit/AppKitKey.h>
#include <Foundation/InternedString.h>
#include <Foundation/NSObject.h>

#include <cmath>
#include <limits>

namespace RVCore {

// An edge, centre line or extent of a view. Vertical positions grow downward in constraints, whether or not a view
// is flipped.
enum class NSLayoutAttribute : std::int8_t {
    notAnAttribute = 0,
    left = 1,
    right = 2,
    top = 3,
    bottom = 4,
    width = 7,
    height = 8,
    centerX = 9,
    centerY = 10,
};

enum class NSLayoutRelation : std::int8_t { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };

// From just above 0 to 1000.
using NSLayoutPriority = float;
inline constexpr NSLayoutPriority NSLayoutPriorityRequired = 1000;
// How strongly a window keeps its size against its content; also that of a detached root view.
inline constexpr NSLayoutPriority NSLayoutPriorityWindowSizeStayPut = 500;
// What fittingSize asks for the smallest size with.
inline constexpr NSLayoutPriority NSLayoutPriorityFittingSizeCompression = 50;

enum class NSLayoutConstraintOrientation : std::int8_t { horizontal = 0, vertical = 1 };

// Raises NSInvalidArgumentException naming the operation unless the priority lies in (0, 1000].
void requirePriority(std::string_view operation, NSLayoutPriority priority);
// Says what is wrong with a number that requireLayoutNumber below refuses.
[[noreturn]] void raiseNoLayoutNumber(std::string_view operation, std::string_view name, double value);
// Raises NSInvalidArgumentException unless the number is finite and of a magnitude of at most 1e15, where points
// still differ.
inline void requireLayoutNumber(std::string_view operation, std::string_view name, double value)
{
    if (!(std::abs(value) <= 1e15)) // nor is NaN
        raiseNoLayoutNumber(operation, name, value);
}

//     firstItem.firstAttribute  relation  multiplier × secondItem.secondAttribute + constant
// Without a second item, the first attribute is held against the constant alone. Active, it belongs to the nearest
// common ancestor of its items, which owns it; positions count from that view's top left corner. It does not own its
// items: when one of them dies, it becomes inactive for good.
class NSLayoutConstraint final : public NSObject {
    RVCORE_CLASS(NSLayoutConstraint)

public:
    using IsRecycled = std::true_type; // groups make theirs anew for every change

    ~NSLayoutConstraint() override;

    // Once per object. Raises NSInvalidArgumentException for values that are not finite, for a first item or
    // attribute that is not there, for a second attribute without a second item or the other way round, for a
    // position without a second item, and for attributes of different kinds (a position and an extent, a horizontal
    // and a vertical position).
    using NSObject::init;
    void init(NSView& firstItem, NSLayoutAttribute firstAttribute, NSLayoutRelation relation, NSView* secondItem,
              NSLayoutAttribute secondAttribute, double multiplier, double constant);

    // Null once the view has died.
    NSView* firstItem() const { return m_items[0]; }
    NSView* secondItem() const { return m_items[1]; }
    NSLayoutAttribute firstAttribute() const { return static_cast<NSLayoutAttribute>(m_firstAttribute); }
    NSLayoutAttribute secondAttribute() const { return static_cast<NSLayoutAttribute>(m_secondAttribute); }
    NSLayoutRelation relation() const { return static_cast<NSLayoutRelation>(m_relation); }
    double multiplier() const;

    double constant() const { return m_constant; }
    void setConstant(double constant);
    NSLayoutPriority priority() const { return m_priority; } // default 1000
    void setPriority(NSLayoutPriority priority);
    // Names the constraint's role in dumps and reports; a role is a name, kept for the life of the program. Default
    // empty.
    std::string identifier() const;
    void setIdentifier(const std::string& identifier);
    void setIdentifier(ShortName identifier) { m_identifier = identifier.number() & 0xffffff; }

    // Activating raises NSInvalidArgumentException when the items have no common ancestor or one has died;
    // activating twice or deactivating twice does nothing.
    bool isActive() const { return m_holder != Holder::none; }
    void setActive(bool active);
    // The view that owns the constraint while it is active, else null.
    NSView* holder() const;

    // "<NSLayoutConstraint: 0x… NSView.left == NSView.right + 8 @749 'chain'>"
    std::string description() const override;

    // For AppKit's own classes: where the constraint is entered, so that taking it out needs no search.
    struct Bookkeeping {
        static constexpr std::uint32_t noRow = std::numeric_limits<std::uint32_t>::max();

        std::uint32_t row = noRow; // the index of its row in the engine
        std::uint32_t placeInHolder = 0;
        std::uint32_t placeInItem[2] = {};
    };
    Bookkeeping& bookkeeping(AppKitKey) { return m_bookkeeping; }
    std::uint64_t activation(AppKitKey) const { return m_activation; }
    void forgetHolder(AppKitKey) { m_holder = Holder::none; }
    void forgetItem(int item, AppKitKey) { m_items[item] = nullptr; } // it dies

private:
    struct Holder { // which view that is
        enum Kind : std::uint64_t { none, first, second, ancestor };
    };

    void rowChanged(); // its constant or priority

    // There are ten for each member of a group. The first ones fit into what the base class leaves free at its end.
    std::uint32_t m_identifier : 24 = 0; // number of a ShortName
    NSLayoutPriority m_priority = NSLayoutPriorityRequired;
    NSView* m_items[2] = {};
    double m_constant = 0;
    std::uint64_t m_activation : 48 = 0; // which activation of the program this was: the order of installation
    std::uint64_t m_firstAttribute : 4 = 0;
    std::uint64_t m_secondAttribute : 4 = 0;
    std::int64_t m_relation : 2 = 0;
    std::uint64_t m_holder : 2 = 0; // a Holder; nothing between the items and it moves while the constraint is active
    std::uint64_t m_hasMultiplier : 1 = false; // another one than 1, kept beside the object
    Bookkeeping m_bookkeeping;
};

} // namespace RVCore
