#include "LayoutComparison.h"

#include <algorithm>
#include <cmath>
#include <sstream>

namespace RVCore {

namespace {

constexpr double tolerance = 1e-6;
constexpr double rounding = 1e-12;

bool isContradictory(const TestSystem& system, const std::vector<std::uint64_t>& tags, std::size_t without)
{
    TestSystem part{system.kind, system.variables, {}};
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (i != without)
            part.constraints.push_back(system.constraints[std::size_t(tags[i])]);
    }
    const std::vector<bool> leftOut = askOracle(part).leftOut;
    return std::find(leftOut.begin(), leftOut.end(), true) != leftOut.end();
}

// The whole set contradicts itself, without any one of its members it does not, and the newest is left out.
std::string faultsOf(const LayoutConflict& conflict, const TestSystem& system)
{
    std::ostringstream out;
    if (conflict.leftOut != conflict.constraints.back())
        out << "conflict: not the newest is left out but " << conflict.leftOut << "\n";
    if (!isContradictory(system, conflict.constraints, conflict.constraints.size()))
        out << "conflict that leaves out " << conflict.leftOut << ": the others do not contradict it\n";
    for (std::size_t i = 0; i < conflict.constraints.size(); ++i) {
        if (isContradictory(system, conflict.constraints, i))
            out << "conflict that leaves out " << conflict.leftOut << ": " << conflict.constraints[i]
                << " is not needed\n";
    }
    return out.str();
}

} // namespace

OracleAnswer answerOf(TestEngine& test, const TestSystem& system)
{
    OracleAnswer answer;
    for (std::size_t i = 0; i < system.constraints.size(); ++i) {
        const TestConstraint& one = system.constraints[i];
        answer.leftOut.push_back(test.engine.isLeftOut(test.handles[i]));
        double excess = -one.constant;
        for (const auto& [variable, coefficient] : one.terms) {
            excess += coefficient * test.value(variable);
            answer.largest = std::max(
                {answer.largest, std::abs(coefficient * test.value(variable)), std::abs(test.value(variable))});
        }
        const double violation = one.relation == LayoutRelation::equal             ? std::abs(excess)
                                 : one.relation == LayoutRelation::lessThanOrEqual ? std::max(0.0, excess)
                                                                                   : std::max(0.0, -excess);
        if (!answer.leftOut.back())
            answer.violations[one.priority] += violation;
    }
    return answer;
}

std::string difference(const OracleAnswer& engine, const OracleAnswer& oracle)
{
    std::ostringstream out;
    for (std::size_t i = 0; i < oracle.leftOut.size(); ++i) {
        if (engine.leftOut[i] != oracle.leftOut[i])
            out << "constraint " << i << " is left out by the " << (oracle.leftOut[i] ? "oracle" : "engine")
                << " only\n";
    }
    for (const auto& [priority, violation] : engine.violations) {
        const auto found = oracle.violations.find(priority);
        const double least = found == oracle.violations.end() ? 0.0 : found->second;
        const double allowed = tolerance * std::max({1.0, violation, least}) + rounding * engine.largest;
        if (!(std::abs(violation - least) <= allowed))
            out << "violation " << violation << " at priority " << priority << ", least " << least << "\n";
    }
    return out.str();
}

std::string ambiguityFaultsOf(const TestSystem& system)
{
    TestEngine test(system);
    std::ostringstream out;
    const std::vector<bool> ambiguous = askOracleForAmbiguity(system);
    for (std::size_t i = 0; i < ambiguous.size(); ++i) {
        if (test.engine.isAmbiguous(test.variables[i]) != ambiguous[i])
            out << "x" << i << " is ambiguous for the " << (ambiguous[i] ? "oracle" : "engine") << " only\n";
    }
    return out.str();
}

std::string faultsOf(const TestSystem& system)
{
    TestEngine test(system);
    std::string faults = difference(answerOf(test, system), askOracle(system));
    for (const LayoutConflict& conflict : test.engine.takeConflicts())
        faults += faultsOf(conflict, system);
    if (test.engine.statistics().limitsReached > 0)
        faults += "an iteration limit was reached\n";
    return faults;
}

} // namespace RVCore
