#include "LayoutSystems.h"

#include <cmath>
#include <cstdlib>
#include <sstream>

namespace RVCore {

std::string text(const TestSystem& system)
{
    std::ostringstream out;
    out << system.kind << ", " << system.variables << " variables\n";
    for (const TestConstraint& one : system.constraints) {
        for (const auto& [variable, coefficient] : one.terms)
            out << (coefficient < 0 ? " - " : " + ") << std::abs(coefficient) << " x" << variable;
        out << (one.relation == LayoutRelation::equal ? " = "
                : int(one.relation) < 0               ? " <= "
                                                      : " >= ")
            << one.constant << " @" << one.priority << "\n";
    }
    return out.str();
}

unsigned numberFromEnvironment(const char* name, unsigned standard)
{
    const char* text = std::getenv(name);
    return text ? unsigned(std::strtoul(text, nullptr, 10)) : standard;
}

TestEngine::TestEngine(const TestSystem& system)
{
    for (int i = 0; i < system.variables; ++i)
        variables.push_back(engine.addVariable(std::uint64_t(i)));
    for (const TestConstraint& one : system.constraints)
        handles.push_back(add(one));
}

LayoutConstraintHandle TestEngine::add(const TestConstraint& one)
{
    std::vector<LayoutTerm> terms;
    for (const auto& [variable, coefficient] : one.terms)
        terms.push_back({variables[std::size_t(variable)], coefficient});
    return engine.addConstraint(terms, one.relation, one.constant, one.priority, handles.size());
}

} // namespace RVCore
