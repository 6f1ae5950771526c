#include <AppKit/CoveredViews.h>
#include <AppKit/KeyViewLoop.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewExtras.h>

#include <algorithm>

namespace RVCore {

namespace {

// Every view that can be seen and is not covered, a view before what is in it.
void appendInKeyOrder(NSView& view, std::vector<NSView*>& order)
{
    if (view.isInvisible())
        return;
    if (!isCovered(view))
        order.push_back(&view);
    for (NSView* subview : uncoveredSubviewsInKeyOrder(view))
        appendInKeyOrder(*subview, order);
}

// The loop as Tab goes through it from the first view on. A view whose next one is set goes there, unless that one
// has had its turn.
std::vector<NSView*> keyViewLoop(const std::vector<std::shared_ptr<NSView>>& roots)
{
    std::vector<NSView*> order;
    for (const auto& root : roots)
        appendInKeyOrder(*root, order);
    std::erase_if(order, [](const NSView* view) { return !view->canBecomeKeyView(); });
    for (std::size_t i = 0; i + 1 < order.size(); ++i) {
        const auto next = order[i]->nextKeyView();
        const auto rest = order.begin() + static_cast<std::ptrdiff_t>(i) + 1;
        const auto place = std::find(rest, order.end(), next.get());
        if (place != order.end())
            std::rotate(rest, place, place + 1);
    }
    return order;
}

} // namespace

NSView* keyViewAfter(const std::vector<std::shared_ptr<NSView>>& roots, NSView* view)
{
    const auto loop = keyViewLoop(roots);
    if (loop.empty())
        return nullptr;
    const auto place = std::ranges::find(loop, view);
    return place == loop.end() || place + 1 == loop.end() ? loop.front() : *(place + 1);
}

NSView* keyViewBefore(const std::vector<std::shared_ptr<NSView>>& roots, NSView* view)
{
    const auto loop = keyViewLoop(roots);
    if (loop.empty())
        return nullptr;
    const auto place = std::ranges::find(loop, view);
    return place == loop.end() || place == loop.begin() ? loop.back() : *(place - 1);
}

bool ViewInput::canBecomeKeyView() const
{
    return acceptsFirstResponder() && self().canBeSeen();
}

std::shared_ptr<NSView> ViewInput::nextKeyView() const
{
    return m_extras ? m_extras->nextKeyView.lock() : nullptr;
}

void ViewInput::setNextKeyView(const std::shared_ptr<NSView>& view)
{
    if (m_extras || view)
        extras().nextKeyView = view;
}

// Lines: the topmost view left starts one, and those join it whose middle lies within its height.
std::vector<NSView*> ViewInput::subviewsInKeyOrder() const
{
    std::vector<NSView*> order;
    const NSView& superview = self();
    order.reserve(superview.subviews().size());
    for (const auto& subview : superview.subviews())
        order.push_back(subview.get());
    const auto top = [&](const NSView* view) {
        return superview.isFlipped() ? view->frame().minY() : superview.frame().size.height - view->frame().maxY();
    };
    const auto isLeftOf = [](const NSView* a, const NSView* b) { return a->frame().minX() < b->frame().minX(); };
    std::ranges::stable_sort(order, {}, top);
    for (auto line = order.begin(); line != order.end();) {
        const NSView* first = *line;
        const CGFloat lineBottom = top(first) + first->frame().size.height;
        const auto lineEnd = std::stable_partition(line, order.end(), [&](const NSView* view) {
            return view == first || top(view) + view->frame().size.height / 2 < lineBottom;
        });
        std::stable_sort(line, lineEnd, isLeftOf);
        line = lineEnd;
    }
    return order;
}

} // namespace RVCore
