#pragma once

#include <memory>
#include <vector>

namespace RVCore {

class NSView;

// Brings a subtree up to date, in rounds: constraints from the leaves up, one solve, then frames and `layout` from
// the top down, until a round leaves nothing marked. An override that raises leaves its view marked, so that the next
// pass calls it again; one that takes the subtree out of its tree ends the pass.
class LayoutPass {
public:
    static void run(NSView& subtree);
    static void updateConstraints(NSView& view);

private:
    static bool runRound(NSView& subtree);
    static void layOut(NSView& view);
    static bool isMarked(const NSView& view);
    static NSView* firstMarked(NSView& view);
    static void clearMarks(NSView& view);
    static void reportUnsettled(NSView& subtree);
};

} // namespace RVCore
