#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/Forward.h>

#include <functional>
#include <optional>

namespace RVCore {

// What the library shares among its operations and nobody else needs: the blocks that are open on this thread.

struct ConstraintBlockOptions {
    bool withoutInstalling = false;
    std::optional<NSLayoutPriority> priority = std::nullopt;
};

// Runs the closure as a block and returns what was created in it. `operation` is for the message when there is none.
LayoutConstraints runConstraintBlock(const char* operation, const ConstraintBlockOptions& options,
                                     const std::function<void()>& closure);

// The priority of the innermost priority block; absent outside all of them.
std::optional<NSLayoutPriority> constraintBlockPriority();

struct ConstraintParts {
    NSLayoutAttribute attribute = NSLayoutAttribute::notAnAttribute;
    NSLayoutRelation relation = NSLayoutRelation::equal;
    NSView* otherView = nullptr;
    NSLayoutAttribute otherAttribute = NSLayoutAttribute::notAnAttribute;
    double constant = 0;
};

// Makes a constraint on the view as the open blocks say, and marks the view as laid out by constraints. When this
// raises, nothing has changed.
std::shared_ptr<NSLayoutConstraint> createConstraint(NSView& view, const ConstraintParts& parts);

} // namespace RVCore
