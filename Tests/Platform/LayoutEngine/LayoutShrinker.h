#pragma once

#include "LayoutSystems.h"

#include <functional>

namespace RVCore {

// Leaves out of the list whatever the fault does not need: halves first, then ever smaller pieces, down to single
// elements (delta debugging; Zeller, Hildebrandt, IEEE Transactions on Software Engineering 28, 2002).
template <class Element, class Fails> std::vector<Element> withoutNeedless(std::vector<Element> list, Fails fails)
{
    for (std::size_t length = (list.size() + 1) / 2; length > 0; length /= 2) {
        for (std::size_t start = 0; start < list.size();) {
            std::vector<Element> shorter = list;
            const auto first = shorter.begin() + std::ptrdiff_t(start);
            shorter.erase(first, first + std::ptrdiff_t(std::min(length, list.size() - start)));
            if (fails(shorter))
                list = std::move(shorter);
            else
                start += length;
        }
    }
    return list;
}

// The smallest and roundest system found that still fails: constraints and terms are dropped, variables renumbered,
// constants, coefficients and priorities made simpler, until nothing of that keeps the fault. The given one fails.
TestSystem shrunk(TestSystem, const std::function<bool(const TestSystem&)>& fails);

// A constraint and a system as C++; the second one as a whole test of what the check finds, ready to be pasted.
std::string asInitializer(const TestConstraint&);
std::string asTest(const TestSystem&, const std::string& check = "faultsOf");

} // namespace RVCore
