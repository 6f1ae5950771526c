#include "Benchmarks.h"

#include <Foundation/Stop.h>
#include <RVCore.h>

#include <algorithm>
#include <string>
#include <vector>

namespace RVCore {

namespace {

constexpr CGFloat spacing = 8;
constexpr CGSize memberSize{50, 20};

// A host with one group of members in it, the last one stretching.
class Stack {
public:
    Stack(std::size_t count, RVGroupView::Orientation orientation)
        : m_isHorizontal(orientation == RVGroupView::Orientation::horizontal),
          m_host(make<NSView>(CGRect({}, hostSize(count))))
    {
        RVGroupView::Views members;
        for (std::size_t i = 0; i < count; ++i)
            members.push_back(make<RVSpacerView>(memberSize));
        m_group = makeGroupView(members, {.orientation = orientation, .spacing = spacing});
        m_host->addSubview(m_group);
        autoPinEdgesToSuperviewEdges(*m_group);
        m_host->layoutSubtreeIfNeeded();
    }

    void resize(CGFloat length)
    {
        CGSize size = m_host->frame().size;
        (m_isHorizontal ? size.width : size.height) = length;
        m_host->setFrameSize(size);
        m_host->layoutSubtreeIfNeeded();
    }

    // Hides a member in the middle and shows it again.
    void toggle()
    {
        const auto& member = m_group->views()[m_group->views().size() / 2];
        for (const bool visible : {false, true}) {
            m_group->setVisibility(member, visible);
            m_host->layoutSubtreeIfNeeded();
        }
    }

    // A figure counts only for a layout that came out right.
    void check() const
    {
        const auto& members = m_group->views();
        const CGFloat step = (m_isHorizontal ? memberSize.width : memberSize.height) + spacing;
        for (std::size_t i = 0; i < members.size(); ++i) {
            const CGPoint origin = members[i]->frame().origin;
            if ((m_isHorizontal ? origin.x : origin.y) != static_cast<CGFloat>(i) * step)
                fatalError("member " + std::to_string(i) + " is in the wrong place");
        }
        const CGRect last = members.back()->frame();
        const CGSize host = m_host->frame().size;
        if (m_isHorizontal ? last.maxX() != host.width : last.maxY() != host.height)
            fatalError("the last member does not reach the end");
    }

    CGFloat length() const { return m_isHorizontal ? m_host->frame().size.width : m_host->frame().size.height; }

private:
    CGSize hostSize(std::size_t count) const
    {
        const auto n = static_cast<CGFloat>(count);
        return m_isHorizontal ? CGSize{n * (memberSize.width + spacing) + 100, 100}
                              : CGSize{100, n * (memberSize.height + spacing) + 100};
    }

    bool m_isHorizontal;
    std::shared_ptr<NSView> m_host;
    std::shared_ptr<RVGroupView> m_group;
};

void reportStack(const std::string& suffix, std::size_t count, RVGroupView::Orientation orientation, int rounds)
{
    const double build = nanoseconds(rounds, [&] { Stack(count, orientation).check(); });
    Stack stack(count, orientation);
    const CGFloat length = stack.length();
    bool isWide = false;
    const double resize = nanoseconds(rounds * 4, [&] {
        isWide = !isWide;
        stack.resize(isWide ? length + 64 : length);
    });
    stack.check();
    const double toggle = nanoseconds(rounds, [&] { stack.toggle(); });
    stack.check();
    report(("group.build_ms." + suffix).c_str(), build / 1e6);
    report(("group.resize_ms." + suffix).c_str(), resize / 1e6);
    report(("group.toggle_ms." + suffix).c_str(), toggle / 1e6);
}

} // namespace

void benchmarkGroupLayout()
{
    using Orientation = RVGroupView::Orientation;
    reportStack("100", 100, Orientation::horizontal, 20);
    reportStack("1000", 1000, Orientation::horizontal, 10);
    reportStack("1000.vertical", 1000, Orientation::vertical, 10);
    reportStack("10000", 10000, Orientation::horizontal, 2);
}

} // namespace RVCore
