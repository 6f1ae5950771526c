#pragma once

#include <AppKit/NSView.h>
#include <AppKit/ViewLayoutState.h>

// What a tag of the layout engine stands for: of a variable, its view; of a row, its constraint, or a view and which
// of the view's own rows it is. A tag is an address; the kind of an own row stands in the bits that are 0 in a
// view's.
namespace RVCore::LayoutTag {

constexpr std::uint64_t kindBits = 15;
constexpr std::uint64_t constraintBits = 7; // 0 in a constraint's address, and in no code of a kind
static_assert(alignof(NSView) > kindBits && alignof(NSLayoutConstraint) > constraintBits);
static_assert(ViewLayoutState::ownRowCount + 1 <= kindBits);

inline std::uint64_t of(const NSView& view)
{
    return reinterpret_cast<std::uintptr_t>(&view);
}

inline std::uint64_t of(const NSLayoutConstraint& constraint)
{
    return reinterpret_cast<std::uintptr_t>(&constraint);
}

inline std::uint64_t of(const NSView& view, ViewLayoutState::OwnRow kind)
{
    return of(view) | (kind < constraintBits ? kind + 1 : kind + 2);
}

// Of any row's tag; null for a row of a view's own.
inline NSLayoutConstraint* constraint(std::uint64_t tag)
{
    if ((tag & constraintBits) != 0)
        return nullptr;
    return reinterpret_cast<NSLayoutConstraint*>(static_cast<std::uintptr_t>(tag));
}

// Of a variable's tag or an own row's.
inline NSView& view(std::uint64_t tag)
{
    return *reinterpret_cast<NSView*>(static_cast<std::uintptr_t>(tag & ~kindBits));
}

// Of an own row's tag.
inline ViewLayoutState::OwnRow kind(std::uint64_t tag)
{
    const std::uint64_t code = tag & kindBits;
    return static_cast<ViewLayoutState::OwnRow>(code <= constraintBits ? code - 1 : code - 2);
}

} // namespace RVCore::LayoutTag
