#include "LayoutPart.h"

#include "LayoutProfile.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace RVCore::LayoutInternal {

namespace {

// What moving a variable away from 0 costs at the two lowest levels. The weights are scattered over [1, 2), so that
// no two ways to bring variables towards 0 tie. (The finaliser of SplitMix64; Steele, Lea, Flood, OOPSLA 2014.)
double weightOf(Index variable)
{
    std::uint64_t bits = (variable + 1u) * 0x9e3779b97f4a7c15u;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9u;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebu;
    return 1.0 + double((bits ^ (bits >> 31)) >> 32) * 0x1p-32;
}

} // namespace

void Part::build(Model& model, Index number, const std::vector<Index>& variables)
{
    clear();
    m_number = number;
    m_variables = variables;
    const auto columns = Index(m_variables.size());
    m_classes.assign(columns, none);
    m_priorities.assign(1, layoutPriorityRequired);
    std::size_t terms = 0;
    // 1. Number the columns and rows.
    for (Index column = 0; column < columns; ++column) {
        Variable& variable = model.variables()[m_variables[column]];
        variable.part = number;
        variable.column = column;
        model.visitClasses(m_variables[column], [&](Index formClass) {
            const FormTerms its = model.terms(formClass);
            if (its.front().column != m_variables[column])
                return;
            model.setPart(formClass, number);
            ++m_classCount;
            if (isOwnForm(formClass)) {
                m_classes[column] = formClass;
            } else {
                m_classes.push_back(formClass);
                terms += std::size_t(std::distance(its.begin(), its.end()));
            }
            for (const Index constraint : model.constraintsOf(formClass))
                addPriority(model.constraints()[constraint].priority);
        });
    }
    std::stable_sort(m_classes.begin() + columns, m_classes.end()); // by merging, for they mostly are in order
    // 2. The forms.
    m_system.clear(Index(m_priorities.size()) + 2, 2);
    m_system.reserve(columns, m_classes.size(), terms);
    for (Index column = 0; column < columns; ++column)
        m_system.addColumn();
    for (Index row = columns; row < m_classes.size(); ++row)
        model.setRow(m_classes[row], addForm(model, m_classes[row]));
    m_system.finish();
    // 3. The costs.
    for (Index row = 0; row < m_classes.size(); ++row) {
        collectCosts(model, row);
        m_system.setPieces(row, m_costs);
    }
    m_simplex.start(m_system);
    m_needsRun = true;
    m_isNew = true;
}

Index Part::addForm(const Model& model, Index formClass)
{
    m_form.clear();
    for (const Term& term : model.terms(formClass))
        m_form.push_back({model.variables()[term.column].column, term.coefficient});
    return m_system.addRow(m_form);
}

void Part::clear()
{
    m_variables.clear();
    m_freeColumns.clear();
    m_goneRows.clear();
    m_classCount = 0;
    m_wear = 0;
}

void Part::addVariable(Model& model, Index variable)
{
    ++m_wear;
    Index column = none;
    if (m_freeColumns.empty()) {
        column = m_system.addColumn();
        m_variables.push_back(variable);
        m_classes.resize(m_system.rowCount(), none);
        collectCosts(model, m_system.ownRow(column));
        m_system.setPieces(m_system.ownRow(column), m_costs);
        m_simplex.columnAdded(column);
    } else {
        column = m_freeColumns.back();
        m_freeColumns.pop_back();
        m_variables[column] = variable;
        updateRow(model, m_system.ownRow(column));
        m_simplex.noteMove(column);
    }
    model.variables()[variable].part = m_number;
    model.variables()[variable].column = column;
    m_needsRun = true;
}

void Part::removeVariable(Model& model, Index variable)
{
    const Index column = model.variables()[variable].column;
    m_variables[column] = none;
    m_freeColumns.push_back(column);
    model.variables()[variable].part = none;
}

Index Part::rowOf(const Model& model, Index formClass) const
{
    return isOwnForm(formClass) ? m_system.ownRow(model.variables()[variableOf(formClass)].column)
                                : model.rowOf(formClass);
}

void Part::addClass(Model& model, Index formClass)
{
    model.setPart(formClass, m_number);
    ++m_classCount;
    if (isOwnForm(formClass))
        return update(model, formClass);
    ++m_wear;
    const Index row = addForm(model, formClass);
    model.setRow(formClass, row);
    m_classes.resize(m_system.rowCount(), none);
    m_classes[row] = formClass;
    collectCosts(model, row);
    m_system.setPieces(row, m_costs);
    m_simplex.rowAdded(row);
    m_needsRun = true;
}

void Part::removeClass(const Model& model, Index formClass)
{
    const Index row = rowOf(model, formClass);
    m_classes[row] = none;
    --m_classCount;
    if (m_system.isOwnRow(row))
        return updateRow(model, row);
    m_simplex.rowWillBeRemoved(row);
    m_goneRows.push_back(row);
    m_needsRun = true;
}

// There are few different priorities, however many constraints.
void Part::addPriority(float priority)
{
    const auto place = std::lower_bound(m_priorities.begin(), m_priorities.end(), priority, std::greater<>{});
    if (place == m_priorities.end() || *place != priority)
        m_priorities.insert(place, priority);
}

Index Part::levelOf(float priority) const
{
    const auto found = std::lower_bound(m_priorities.begin(), m_priorities.end(), priority, std::greater<>{});
    return found == m_priorities.end() || *found != priority ? none : Index(found - m_priorities.begin());
}

bool Part::coversPriorities(const Model& model, Index formClass) const
{
    for (const Index constraint : model.constraintsOf(formClass)) {
        if (levelOf(model.constraints()[constraint].priority) == none)
            return false;
    }
    return true;
}

void Part::collectCosts(const Model& model, Index row)
{
    m_costs.clear();
    if (m_classes[row] != none) {
        for (const Index index : model.constraintsOf(m_classes[row])) {
            const Constraint& constraint = model.constraints()[index];
            if (!constraint.isLeftOut)
                m_costs.push_back(costOf(constraint, model.scale(index), levelOf(constraint.priority)));
        }
    }
    if (m_system.isOwnRow(row)) {
        const double weight = weightOf(m_variables[m_system.terms(row).front().column]);
        // First not below 0, then towards 0: where two equally strong constraints cannot both hold, as at the ends of
        // a row that is too long, the one at the near end does.
        const auto lowest = Index(m_priorities.size());
        m_costs.push_back({0.0, -weight, 0.0, 0, lowest});
        m_costs.push_back({0.0, -weight, weight, 0, lowest + 1});
    }
    makeProfile(m_costs);
}

void Part::update(const Model& model, Index formClass)
{
    const Index row = rowOf(model, formClass);
    m_classes[row] = formClass;
    updateRow(model, row);
}

void Part::updateRow(const Model& model, Index row)
{
    collectCosts(model, row);
    if (m_system.hasPieces(row, m_costs))
        return;
    m_simplex.setPieces(row, m_costs);
    m_needsRun = true;
}

bool Part::run(Effort& effort)
{
    m_needsRun = false;
    m_isNew = false;
    const bool isBest = m_simplex.run(effort);
    for (const Index row : m_goneRows)
        m_system.removeRow(row);
    m_goneRows.clear();
    return isBest;
}

} // namespace RVCore::LayoutInternal
