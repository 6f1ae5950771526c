#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace RVCore {

// Names a variable of one engine. A default-made one is invalid. The index of a removed variable is used again.
struct LayoutVariable {
    std::uint32_t index = std::numeric_limits<std::uint32_t>::max();

    bool isValid() const { return index != std::numeric_limits<std::uint32_t>::max(); }
    friend auto operator<=>(LayoutVariable, LayoutVariable) = default;
};

// One summand of a linear form: coefficient * variable. The coefficient is finite.
struct LayoutTerm {
    LayoutVariable variable;
    double coefficient = 1.0;
};

enum class LayoutRelation : std::int8_t { lessThanOrEqual = -1, equal = 0, greaterThanOrEqual = 1 };

// Names an installed constraint. A default-made one is invalid, and so is one whose constraint was removed.
struct LayoutConstraintHandle {
    std::uint32_t index = std::numeric_limits<std::uint32_t>::max();
    std::uint32_t generation = 0;

    bool isValid() const { return index != std::numeric_limits<std::uint32_t>::max(); }
    friend auto operator<=>(LayoutConstraintHandle, LayoutConstraintHandle) = default;
};

// Constraints of this priority hold exactly; all lower ones may give way.
constexpr float layoutPriorityRequired = 1000.0f;

// Required constraints that contradict each other. Owner tags are the caller's.
struct LayoutConflict {
    std::vector<std::uint64_t> constraints; // the whole minimal set, in order of installation, leftOut among them
    std::uint64_t leftOut = 0;              // the one installed last
};

// A constraint that takes part in holding a variable where it is.
struct LayoutHolding {
    std::uint64_t constraint = 0; // owner tag
    LayoutConstraintHandle handle;
    LayoutRelation side = LayoutRelation::equal; // the constraint's own relation, met with equality
};

// A constraint that touches a variable and gave way.
struct LayoutViolation {
    std::uint64_t constraint = 0; // owner tag
    LayoutConstraintHandle handle;
    double amount = 0.0; // in the constraint's own units, above 0
};

struct LayoutExplanation {
    std::vector<LayoutHolding> holding;    // in the order in which the value is derived
    std::vector<LayoutViolation> violated; // in order of installation; left-out constraints among them
    bool isAmbiguous = false;
};

// What the caller calls things, for printing. An absent function prints the tag's number.
struct LayoutNaming {
    std::function<std::string(std::uint64_t)> variable;   // by owner tag
    std::function<std::string(std::uint64_t)> constraint; // by owner tag
};

// Work done since the engine was made, for tests and measurements.
struct LayoutStatistics {
    std::uint64_t solves = 0;         // calls of solve() that found something noted
    std::uint64_t builds = 0;         // parts that were set up from nothing
    std::uint64_t pivots = 0;         // exchanges of a row of a basis
    std::uint64_t kinkMoves = 0;      // steps of a basic row to another of its own kinks
    std::uint64_t factorisations = 0; // of a basis
    std::uint64_t limitsReached =
        0;                   // solves that were ended by an iteration limit; the values are then usable, not best
    std::uint32_t parts = 0; // independent parts at present
};

// Solves linear constraints with priorities over free variables.
//
// Required constraints hold. The others are met in strict order of priority: the sum of violations (in each
// constraint's own units) at the highest priority is made as small as it can be, then, without giving any of
// that up, the next one's, and so on. What is still free after that is ambiguous; it stays above 0 as far as it
// can, then goes towards 0. When required constraints contradict each other, the one of them that was installed
// last is left out until another member of that set is removed or changed.
//
// Installing, removing and changing only notes the change; solve() does the work, and every question about a
// result solves first. Parts that share no variable are solved apart. The same calls in the same order give
// the same values, to the bit. A value that is not finite, a priority outside (0, 1000] and a handle that is
// not of this engine are programming errors and stop the program.
class LayoutEngine {
public:
    LayoutEngine();
    ~LayoutEngine();
    LayoutEngine(LayoutEngine&&) noexcept;
    LayoutEngine& operator=(LayoutEngine&&) noexcept;

    // Variables. A new one is 0 until a solve says otherwise.
    LayoutVariable addVariable(std::uint64_t owner);
    void removeVariable(LayoutVariable); // must be in no installed constraint
    std::uint64_t owner(LayoutVariable) const;

    // Installs sum(coefficient * variable) relation constant. Repeated variables are summed, zero coefficients
    // dropped; a form without variables is legal and either holds by itself or is a conflict by itself.
    LayoutConstraintHandle addConstraint(std::span<const LayoutTerm>, LayoutRelation, double constant, float priority,
                                         std::uint64_t owner);
    void removeConstraint(LayoutConstraintHandle);
    bool contains(LayoutConstraintHandle) const;
    // Of the constraint that is installed now under the index of a handle: who keeps many may keep their indices
    // only.
    LayoutConstraintHandle handle(std::uint32_t index) const;
    std::uint64_t owner(LayoutConstraintHandle) const;
    double constant(LayoutConstraintHandle) const;
    void setConstant(LayoutConstraintHandle, double);
    float priority(LayoutConstraintHandle) const;
    void setPriority(LayoutConstraintHandle, float); // keeps its place in the order of installation

    // Catches up with everything noted. Without notes it returns at once.
    void solve();
    bool needsSolve() const;
    double value(LayoutVariable);
    // By how much the constraint is violated now, in its own units; 0 when it holds.
    double violation(LayoutConstraintHandle);
    // The variables whose value the last solve that had work changed, each once, in ascending order. A variable
    // that is new and 0 has not changed.
    std::span<const LayoutVariable> changedVariables() const;
    // For who has seen them: after a first solve the list is as long as that of all variables.
    void forgetChangedVariables();

    // Contradictions found since the last call, each cause once: it is told again only after it was gone.
    std::vector<LayoutConflict> takeConflicts();
    bool isLeftOut(LayoutConstraintHandle);

    // Variables whose value the constraints do not settle, in ascending order.
    std::vector<LayoutVariable> ambiguousVariables();
    bool isAmbiguous(LayoutVariable);

    LayoutExplanation explain(LayoutVariable);
    // All variables with values and all constraints with their state, in a stable text form.
    std::string description(const LayoutNaming& = {});

    const LayoutStatistics& statistics() const;

private:
    struct Implementation;
    std::unique_ptr<Implementation> m_implementation;
};

} // namespace RVCore
