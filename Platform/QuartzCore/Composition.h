#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGImage.h>
#include <CoreImage/FilterStep.h>
#include <Foundation/NSObject.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace RVCore {

// What is to be seen in an area, as a list from the bottom to the top: a value that can be compared with the one of
// the frame before, painted and printed.
//
//     fill      white
//     group     opacity 0.5              A group holds what stands between its beginning and its end, and is blended
//       content <NSView>                 in as one picture. Everything says itself where it stands in the area, also
//     end                                in a group: in points from the area's top left corner, y downward.
//
struct CompositionItem {
    enum class Kind : std::uint8_t {
        fill,    // the outline in the colour
        image,   // stretched over the size
        content, // what the owner draws
        border,  // a line of this width along the inside of the outline
        group,
        end,
    };
    static constexpr std::uint32_t none = 0xFFFFFFFF;

    Kind kind = Kind::content;
    bool clips = false;         // a group's content is cut along its outline
    std::uint32_t group = none; // the index of the innermost group around it
    std::uint32_t end = none;   // of a group: the index of its end
    NSObject* owner = nullptr;  // whose it is; alive while the frame is being painted
    // Of a content: a number that nothing else that was ever drawn has, neither of this owner nor of another one.
    std::uint64_t revision = 0;
    CGAffineTransform placement; // from the item's coordinates, origin at its top left corner, to the area's
    CGSize size;
    CGFloat cornerRadius = 0; // of the outline; at least 0
    CGFloat borderWidth = 0;  // at least 0
    CGFloat opacity = 1;      // of a group, from 0 to 1
    CGColor color{};
    CGImageRef image; // null for none
    // Of a group: what its content goes through, and what lies behind its outline.
    std::span<const FilterStep> filters(const std::vector<FilterStep>& steps) const;
    std::span<const FilterStep> backgroundFilters(const std::vector<FilterStep>& steps) const;
    std::uint32_t firstStep = 0;
    std::uint16_t filterCount = 0;
    std::uint16_t backgroundFilterCount = 0; // behind those of the content

    // Whether it can stand for the other one in a later frame: the same part of the same owner.
    bool isSameAs(const CompositionItem& other) const { return kind == other.kind && owner == other.owner; }
};

class Composition {
public:
    // How a group is blended in.
    struct Group {
        CGAffineTransform placement;
        CGSize size;
        CGFloat cornerRadius = 0; // at least 0
        bool clips = false;
        CGFloat opacity = 1; // from 0 to 1, clipped
    };

    void clear();
    // Has room for as much as the other one.
    void reserveFor(const Composition& other);
    // The item's owner lives until the composition is cleared or lets go.
    CompositionItem& add(CompositionItem::Kind kind, const std::shared_ptr<NSObject>& owner,
                         const CGAffineTransform& placement, CGSize size);
    // Raises NSInvalidArgumentException for an opacity that is not finite and a radius that is negative or not
    // finite.
    void beginGroup(const std::shared_ptr<NSObject>& owner, const Group& group);
    // For the group that has just begun: what its content goes through, and after all of those, what lies behind its
    // outline. In any other order they stop the program.
    void addFilter(const FilterStep& step);
    void addBackgroundFilter(const FilterStep& step);
    void endGroup();
    // Owners may die from now on. Their items stay, to be compared with.
    void letGoOfOwners() { m_owners.clear(); }

    const std::vector<CompositionItem>& items() const { return m_items; }
    const std::vector<FilterStep>& steps() const { return m_steps; }

    // An item on a line, what is in a group indented.
    std::string describe() const;

private:
    CompositionItem& justBegun(std::string_view operation);

    std::vector<CompositionItem> m_items;
    std::vector<FilterStep> m_steps;
    std::vector<std::shared_ptr<NSObject>> m_owners;
    std::uint32_t m_openGroup = CompositionItem::none;
};

// Whether the items look alike: everything but where they stand in their lists.
bool looksSame(const CompositionItem& a, const Composition& inA, const CompositionItem& b, const Composition& inB);

} // namespace RVCore
