#include "Benchmarks.h"
#include "Stacks.h"

#include <RVCore.h>

#include <algorithm>
#include <cmath>
#include <malloc.h>

namespace RVCore {

namespace {

using MakeStack = std::unique_ptr<Stack> (*)(const StackShape&);

std::unique_ptr<Stack> makeGroupStack(const StackShape& shape)
{
    return std::make_unique<GroupStack>(shape);
}

double nanosecondsOfBuild(MakeStack make, const StackShape& shape, int rounds)
{
    std::unique_ptr<Stack> stack;
    const double taken = nanoseconds(
        rounds, [&] { stack.reset(); }, [&] { stack = make(shape); });
    stack->check(100);
    return taken;
}

double nanosecondsOfResize(Stack& stack, int rounds)
{
    CGFloat spare = 100;
    const double taken = nanoseconds(
        rounds, [] {}, [&] { stack.resize(spare = spare == 100 ? 164 : 100); });
    stack.check(spare);
    stack.resize(100);
    stack.check(100);
    return taken;
}

// Of hiding and of showing one member, on average.
double nanosecondsOfToggle(GroupStack& stack, int rounds)
{
    const double hide = nanoseconds(
        rounds, [&] { stack.setVisible(true); }, [&] { stack.setVisible(false); });
    const double show = nanoseconds(
        rounds, [&] { stack.setVisible(false); }, [&] { stack.setVisible(true); });
    stack.check(100);
    return (hide + show) / 2;
}

struct Figures {
    double build = 0;
    double resize = 0;
    double toggle = 0;
};

Figures figuresOfGroup(const StackShape& shape, int rounds)
{
    Figures result;
    result.build = nanosecondsOfBuild(&makeGroupStack, shape, rounds);
    GroupStack stack(shape);
    result.resize = nanosecondsOfResize(stack, 4 * rounds);
    result.toggle = nanosecondsOfToggle(stack, rounds);
    return result;
}

void reportFigures(const std::string& suffix, const Figures& figures)
{
    report("group.build_ms." + suffix, figures.build / 1e6);
    report("group.resize_ms." + suffix, figures.resize / 1e6);
    report("group.toggle_ms." + suffix, figures.toggle / 1e6);
}

// How the time grows with the number of members: t ~ n^exponent.
double growth(double small, double large)
{
    return std::log10(large / small);
}

std::size_t bytesInUse()
{
    return mallinfo2().uordblks + mallinfo2().hblkhd;
}

// Comes first, while no memory waits to be used again.
void reportBytes()
{
    constexpr std::size_t count = 1000;
    std::size_t before = bytesInUse();
    const GroupStack stack({.count = count});
    report("layout.bytes_per_member", static_cast<double>(bytesInUse() - before) / count);
    std::vector<std::shared_ptr<NSView>> views(count);
    before = bytesInUse();
    for (auto& view : views)
        view = make<NSView>();
    report("view.bytes", static_cast<double>(bytesInUse() - before) / count);
}

} // namespace

void benchmarkGroupLayout()
{
    reportBytes();
    const StackShape thousand{.count = 1000};
    const Figures small = figuresOfGroup(thousand, 15);
    reportFigures("100", figuresOfGroup({.count = 100}, 40));
    reportFigures("1000", small);

    // Peers, each beside a fresh measurement of the group.
    const double boxBuild = nanosecondsOfBuild(&makeBoxLayoutStack, thousand, 15);
    const double groupBuild = nanosecondsOfBuild(&makeGroupStack, thousand, 15);
    report("qboxlayout.build_ms.1000", boxBuild / 1e6);
    report("layout.build.1000.vs_qhboxlayout", groupBuild / boxBuild);
    report("layout.toggle.1000.vs_build", small.toggle / groupBuild);
    for (const bool allMove : {false, true}) {
        const StackShape shape{.count = 1000, .leadingStretches = allMove};
        const std::string suffix = allMove ? ".all_move" : "";
        GroupStack group(shape);
        const double resize = nanosecondsOfResize(group, 60);
        report("group.resize_ms.1000" + suffix, resize / 1e6);
        const double box = nanosecondsOfResize(*makeBoxLayoutStack(shape), 60);
        report("qboxlayout.resize_ms.1000" + suffix, box / 1e6);
        report("layout.resize.1000.vs_qhboxlayout" + suffix, resize / box);
        report("layout.resize.1000.vs_frame_loop" + suffix,
               resize / nanosecondsOfResize(*makeFrameLoopStack(shape), 60));
    }
    report("layout.build.1000.vs_frame_loop", groupBuild / nanosecondsOfBuild(&makeFrameLoopStack, thousand, 15));
    const StackShape hundred{.count = 100};
    report("layout.build.100.vs_qgraphicsanchorlayout",
           nanosecondsOfBuild(&makeGroupStack, hundred, 15) / nanosecondsOfBuild(&makeAnchorLayoutStack, hundred, 1));

    // The exponents are the worst of both orientations.
    Figures worst;
    double worstOfAllMove = 0;
    for (const bool isVertical : {false, true}) {
        const std::string suffix = isVertical ? ".vertical" : "";
        const Figures few = figuresOfGroup({.count = 1000, .isVertical = isVertical}, 15);
        const Figures many = figuresOfGroup({.count = 10000, .isVertical = isVertical}, 5);
        reportFigures("10000" + suffix, many);
        worst.build = std::max(worst.build, growth(few.build, many.build));
        worst.resize = std::max(worst.resize, growth(few.resize, many.resize));
        worst.toggle = std::max(worst.toggle, growth(few.toggle, many.toggle));
        GroupStack fewMoving({.count = 1000, .isVertical = isVertical, .leadingStretches = true});
        GroupStack manyMoving({.count = 10000, .isVertical = isVertical, .leadingStretches = true});
        worstOfAllMove =
            std::max(worstOfAllMove, growth(nanosecondsOfResize(fewMoving, 60), nanosecondsOfResize(manyMoving, 20)));
    }
    report("layout.growth.build", worst.build);
    report("layout.growth.resize", worst.resize);
    report("layout.growth.resize.all_move", worstOfAllMove);
    report("layout.growth.toggle", worst.toggle);
}

} // namespace RVCore
