#include <RVCore.h>

#include <iostream>

using namespace RVCore;

// Two gaps of fixed size beside each other, in a group of their own size: one frame says whether the framework, the
// platform and the layout engine have found each other.
int main()
{
    const auto left = make<RVSpacerView>(CGSize{30, 20});
    const auto right = make<RVSpacerView>(CGSize{50, 10});
    const auto group = makeGroupView({left, right}, {.spacing = 8});
    group->setFrameSize(group->fittingSize());
    group->layoutSubtreeIfNeeded();

    std::cout << describeViewTree(*group);
    std::cout << describe(group->frame()) << ' ' << describe(right->frame()) << '\n';
    const bool isRight = group->frame() == CGRect{0, 0, 88, 20} && right->frame() == CGRect{38, 5, 50, 10};
    return isRight ? 0 : 1;
}
