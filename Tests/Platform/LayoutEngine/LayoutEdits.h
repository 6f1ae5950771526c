#pragma once

#include "LayoutSystems.h"

#include <cstdint>

namespace RVCore {

// One change of a system. It fits every system: what it names is taken modulo what there is, and where there is
// nothing to change it does nothing. So any selection from a sequence is a sequence, and a failing one can be shrunk.
struct TestEdit {
    enum class Kind : std::uint8_t {
        add,
        remove,
        putBackEqual,
        setConstant, // the one of the edit's constraint
        setPriority, // likewise
        addVariable,
        removeVariable, // with all constraints that it is in
        solve
    };
    Kind kind = Kind::solve;
    unsigned which = 0; // constraint or variable
    TestConstraint constraint;
};

// Edits that build the system up, and any further ones.
std::vector<TestEdit> asEdits(const TestSystem&);
std::vector<TestEdit> makeRandomEdits(std::mt19937& random, int count);
// The edits as C++, ready to be pasted.
std::string text(const std::vector<TestEdit>&);

// An engine together with the system that its edits should have led to.
class EditedEngine {
public:
    void apply(const TestEdit&);

    // What differs from an engine that is given the whole system at once, a line each: sums of violations, left-out
    // constraints, ambiguous variables, and values of the others. Empty when nothing does. What earlier solves said
    // to have changed and had not, or the other way round, is told as well.
    std::string differenceFromFresh();
    // The values of all variables, to the bit.
    std::vector<std::uint64_t> bits();

private:
    void add(TestConstraint);
    void remove(std::size_t constraint);
    void removeVariable(int variable);
    void solve();

    TestSystem m_system;
    TestEngine m_test{m_system};
    std::map<LayoutVariable, double> m_values; // after the last solve
    std::string m_wrongChanges;
};

// Applies the edits one after another and compares with a fresh engine whenever one solves and at the end; the first
// difference, or nothing.
std::string firstDifference(const std::vector<TestEdit>&);

} // namespace RVCore
