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
    std::optional<ShortName> identifier = std::nullopt; // that of the block around this one when absent
};

// Runs the closure as a block. `operation` is for the message when there is none; `created` gets what was created in
// it, when somebody wants to know.
void runConstraintBlock(const char* operation, const ConstraintBlockOptions& options,
                        const std::function<void()>& closure, LayoutConstraints* created = nullptr);

// The priority of the innermost priority block; absent outside all of them.
std::optional<NSLayoutPriority> constraintBlockPriority();

struct ConstraintParts {
    NSLayoutAttribute attribute = NSLayoutAttribute::notAnAttribute;
    NSLayoutRelation relation = NSLayoutRelation::equal;
    NSView* otherView = nullptr;
    NSLayoutAttribute otherAttribute = NSLayoutAttribute::notAnAttribute;
    double constant = 0;
};

// Makes a constraint on the view as the open blocks say, and marks the view as laid out by constraints. `role`
// is its identifier where no block has one. When this raises, nothing has changed.
std::shared_ptr<NSLayoutConstraint> createConstraint(NSView& view, ShortName role, const ConstraintParts& parts);

} // namespace RVCore
