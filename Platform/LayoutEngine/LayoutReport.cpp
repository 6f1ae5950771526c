#include "LayoutSolver.h"

#include <cmath>
#include <cstdio>

namespace RVCore::LayoutInternal {

namespace {

// Ten digits: what rounding may do to the last ones is no part of a stable text.
std::string number(double value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.10g", std::abs(value) < 1e-9 ? 0.0 : value);
    return text;
}

std::string nameOf(const std::function<std::string(std::uint64_t)>& name, char kind, std::uint64_t owner)
{
    return name ? name(owner) : kind + std::to_string(owner);
}

const char* symbol(LayoutRelation relation)
{
    switch (relation) {
    case LayoutRelation::lessThanOrEqual:
        return " <= ";
    case LayoutRelation::greaterThanOrEqual:
        return " >= ";
    case LayoutRelation::equal:
        break;
    }
    return " = ";
}

bool isViolated(const Constraint& constraint, double violation)
{
    return violation > 1e-7 * std::max(1.0, std::abs(constraint.constant));
}

} // namespace

LayoutExplanation Solver::explain(Index index)
{
    LayoutExplanation result;
    const std::vector<Index>& ambiguous = ambiguousVariables();
    result.isAmbiguous = std::binary_search(ambiguous.begin(), ambiguous.end(), index);
    const Variable& variable = m_model.variables()[index];
    if (variable.part == none)
        return result;
    Part& part = *m_parts[variable.part];
    for (const Index row : part.simplex().holdingRows(variable.column)) {
        if (part.classOf(row) == none)
            continue;
        const double position = part.simplex().rowValue(row);
        for (const Index member : m_model.constraintsOf(part.classOf(row))) {
            const Constraint& constraint = m_model.constraints()[member];
            const double at = constraint.constant / m_model.scale(member);
            if (!constraint.isLeftOut && std::abs(at - position) <= 1e-9 * std::max(1.0, std::abs(position)))
                result.holding.push_back({constraint.owner, handle(member), constraint.relation});
        }
    }
    std::vector<Index> touching;
    m_model.visitClasses(index, [&](Index formClass) {
        for (const Index member : m_model.constraintsOf(formClass)) {
            if (isViolated(m_model.constraints()[member], m_model.violation(member)))
                touching.push_back(member);
        }
    });
    std::sort(touching.begin(), touching.end(), [&](Index a, Index b) {
        return m_model.constraints()[a].sequence < m_model.constraints()[b].sequence;
    });
    for (const Index member : touching) {
        result.violated.push_back({m_model.constraints()[member].owner, handle(member), m_model.violation(member)});
    }
    return result;
}

std::string Solver::description(const LayoutNaming& naming)
{
    const std::vector<Index>& ambiguous = ambiguousVariables();
    std::string text = "variables\n";
    const auto variableName = [&](Index index) {
        return nameOf(naming.variable, 'v', m_model.variables()[index].owner);
    };
    for (Index index = 0; index < m_model.variables().size(); ++index) {
        if (!m_model.isAlive(index))
            continue;
        text += "  " + variableName(index) + " = " + number(m_model.variables()[index].value);
        text += std::binary_search(ambiguous.begin(), ambiguous.end(), index) ? " ambiguous\n" : "\n";
    }
    std::vector<Index> order;
    for (Index index = 0; index < m_model.constraints().size(); ++index) {
        if (m_model.constraints()[index].isAlive)
            order.push_back(index);
    }
    std::sort(order.begin(), order.end(), [&](Index a, Index b) {
        return m_model.constraints()[a].sequence < m_model.constraints()[b].sequence;
    });
    text += "constraints\n";
    for (const Index index : order) {
        const Constraint& constraint = m_model.constraints()[index];
        text += "  " + nameOf(naming.constraint, 'c', constraint.owner) + ": ";
        bool isFirst = true;
        if (constraint.formClass != none) {
            for (const Term& term : m_model.terms(constraint.formClass)) {
                const double coefficient = term.coefficient * m_model.scale(index);
                text += coefficient < 0.0 ? (isFirst ? "-" : " - ") : (isFirst ? "" : " + ");
                if (std::abs(coefficient) != 1.0)
                    text += number(std::abs(coefficient)) + " ";
                text += variableName(term.column);
                isFirst = false;
            }
        }
        if (isFirst)
            text += "0";
        text += symbol(constraint.relation) + number(constraint.constant) + " @" + number(constraint.priority);
        if (constraint.isLeftOut)
            text += " left out";
        else if (const double violation = m_model.violation(index); isViolated(constraint, violation))
            text += " violated by " + number(violation);
        text += "\n";
    }
    return text;
}

} // namespace RVCore::LayoutInternal
