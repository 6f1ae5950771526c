#pragma once

namespace RVCore {

class NSView;

// Brings a subtree up to date, in rounds: constraints from the leaves up, one solve, then frames and `layout` from
// the top down, until a round leaves nothing marked.
class LayoutPass {
public:
    static void run(NSView& subtree);
    static void updateConstraints(NSView& view);

private:
    static void layOut(NSView& view);
    static void takeRootSize(NSView& root);
    static bool isMarked(const NSView& view);
    static NSView* firstMarked(NSView& view);
    static void clearMarks(NSView& view);
    static void giveUp(NSView& subtree);
};

} // namespace RVCore
