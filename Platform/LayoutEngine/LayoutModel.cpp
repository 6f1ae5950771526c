#include "LayoutModel.h"

#include "LayoutCheck.h"

#include <bit>
#include <cmath>

namespace RVCore::LayoutInternal {

namespace {

Index take(std::vector<Index>& freeOnes, std::size_t size)
{
    if (freeOnes.empty())
        return Index(size);
    const Index index = freeOnes.back();
    freeOnes.pop_back();
    return index;
}

// Mixes as in the finaliser of SplitMix64 (Steele, Lea, Flood, OOPSLA 2014).
std::uint64_t mixed(std::uint64_t hash, std::uint64_t value)
{
    hash = (hash ^ value) + 0x9e3779b97f4a7c15u;
    hash = (hash ^ (hash >> 30)) * 0xbf58476d1ce4e5b9u;
    hash = (hash ^ (hash >> 27)) * 0x94d049bb133111ebu;
    return hash ^ (hash >> 31);
}

} // namespace

Index Model::addVariable(std::uint64_t owner)
{
    const Index index = take(m_freeVariables, m_variables.size());
    if (index == m_variables.size())
        m_variables.emplace_back();
    m_variables[index].owner = owner;
    m_variables[index].value = 0.0;
    m_variables[index].isAlive = true;
    return index;
}

void Model::removeVariable(Index index)
{
    for (const ClassUse& use : m_variables[index].classes)
        check(m_classes[use.formClass].constraints.empty(),
              "a variable was removed that an installed constraint uses");
    m_variables[index].isAlive = false;
    // Until the solver has let go of it, the number cannot stand for another variable.
    (m_variables[index].part == none ? m_freeVariables : m_removedVariables).push_back(index);
}

void Model::recycleVariables()
{
    const auto isFree = [&](Index index) { return m_variables[index].part == none; };
    for (const Index index : m_removedVariables) {
        if (isFree(index))
            m_freeVariables.push_back(index);
    }
    std::erase_if(m_removedVariables, isFree);
}

// Sums repeated variables, drops zeros, and scales so that the first of the largest coefficients becomes 1.
void Model::normalise(std::span<const LayoutTerm> terms)
{
    m_form.clear();
    for (const LayoutTerm& term : terms) {
        // By insertion, since forms are short; long ones are rare enough to be sorted below.
        m_form.push_back({term.variable.index, term.coefficient});
        for (std::size_t i = m_form.size() - 1; i > 0 && i < 16 && m_form[i].column < m_form[i - 1].column; --i)
            std::swap(m_form[i], m_form[i - 1]);
    }
    if (m_form.size() > 16)
        std::stable_sort(m_form.begin(), m_form.end(),
                         [](const Term& a, const Term& b) { return a.column < b.column; });
    std::size_t kept = 0;
    for (std::size_t first = 0; first < m_form.size();) {
        const Index variable = m_form[first].column;
        double sum = 0.0;
        double largest = 0.0;
        for (; first < m_form.size() && m_form[first].column == variable; ++first) {
            sum += m_form[first].coefficient;
            largest = std::max(largest, std::abs(m_form[first].coefficient));
        }
        // What cancels to less than this is rounding of the summands.
        if (std::abs(sum) > 1e-13 * largest)
            m_form[kept++] = {variable, sum};
    }
    m_form.resize(kept);
    m_formScale = 0.0;
    for (const Term& term : m_form) {
        if (std::abs(term.coefficient) > std::abs(m_formScale))
            m_formScale = term.coefficient;
    }
    for (Term& term : m_form)
        term.coefficient /= m_formScale;
}

Index Model::classOfForm()
{
    std::uint64_t hash = 0;
    for (const Term& term : m_form)
        hash = mixed(mixed(hash, term.column), std::bit_cast<std::uint64_t>(term.coefficient));
    if (const Index found = findClass(hash); found != none)
        return found;
    const Index index = take(m_freeClasses, m_classes.size());
    if (index == m_classes.size())
        m_classes.emplace_back();
    FormClass& made = m_classes[index];
    made.terms.assign(m_form);
    made.hash = hash;
    for (const Term& term : m_form)
        m_variables[term.column].classes.append({index, std::uint32_t(hash)});
    return index;
}

// Looks where the rarest of the form's variables occurs. Nearly every form has one that occurs a few times only, and
// that place is about to be needed anyhow, which cannot be said of a table.
Index Model::findClass(std::uint64_t hash) const
{
    const Variable* rarest = &m_variables[m_form.front().column];
    for (const Term& term : m_form) {
        if (m_variables[term.column].classes.size() < rarest->classes.size())
            rarest = &m_variables[term.column];
    }
    for (const ClassUse& use : rarest->classes) {
        if (use.hash != std::uint32_t(hash))
            continue;
        const auto& terms = m_classes[use.formClass].terms;
        if (std::equal(terms.begin(), terms.end(), m_form.begin(), m_form.end()))
            return use.formClass;
    }
    return none;
}

void Model::removeClasses(std::span<const Index> gone)
{
    std::vector<Index> variables;
    for (const Index index : gone) {
        FormClass& formClass = m_classes[index];
        for (const Term& term : formClass.terms)
            variables.push_back(term.column);
        formClass.terms.clear();
        m_freeClasses.push_back(index);
    }
    std::sort(variables.begin(), variables.end());
    variables.erase(std::unique(variables.begin(), variables.end()), variables.end());
    for (const Index variable : variables)
        m_variables[variable].classes.eraseIf(
            [&](const ClassUse& use) { return m_classes[use.formClass].terms.empty(); });
}

bool Model::holdsByItself(const Constraint& constraint)
{
    switch (constraint.relation) {
    case LayoutRelation::lessThanOrEqual:
        return 0.0 <= constraint.constant;
    case LayoutRelation::greaterThanOrEqual:
        return 0.0 >= constraint.constant;
    case LayoutRelation::equal:
        break;
    }
    return constraint.constant == 0.0;
}

Index Model::addConstraint(std::span<const LayoutTerm> terms, LayoutRelation relation, double constant,
                           float priority, std::uint64_t owner)
{
    const Index index = take(m_freeConstraints, m_constraints.size());
    if (index == m_constraints.size())
        m_constraints.emplace_back();
    normalise(terms);
    Constraint& made = m_constraints[index];
    made.owner = owner;
    made.sequence = m_sequence++;
    made.constant = constant;
    made.priority = priority;
    made.relation = relation;
    made.isAlive = true;
    made.isLeftOut = false;
    made.isInConflict = false;
    made.scale = m_form.empty() ? 1.0 : m_formScale;
    made.formClass = m_form.empty() ? none : classOfForm();
    if (made.formClass != none)
        m_classes[made.formClass].constraints.append(index);
    noteChange(index);
    return index;
}

void Model::removeConstraint(Index index)
{
    Constraint& gone = m_constraints[index];
    gone.isAlive = false;
    if (gone.formClass != none) {
        auto& installed = m_classes[gone.formClass].constraints;
        installed.erase(std::find(installed.begin(), installed.end(), index));
        noteClass(gone.formClass);
    } else {
        std::erase(m_conflictsByThemselves, index);
    }
    if (gone.isInConflict)
        m_changedConflictMembers.push_back(index);
    ++gone.generation;
    m_freeConstraints.push_back(index);
}

void Model::noteChange(Index index)
{
    const Constraint& changed = m_constraints[index];
    if (changed.formClass != none)
        noteClass(changed.formClass);
    else if (std::find(m_conflictsByThemselves.begin(), m_conflictsByThemselves.end(), index) ==
             m_conflictsByThemselves.end())
        m_conflictsByThemselves.push_back(index);
    if (changed.isInConflict)
        m_changedConflictMembers.push_back(index);
}

void Model::noteClass(Index index)
{
    if (m_classes[index].isNoted)
        return;
    m_classes[index].isNoted = true;
    m_notedClasses.push_back(index);
}

double Model::violation(Index index) const
{
    const Constraint& constraint = m_constraints[index];
    double sum = 0.0;
    if (constraint.formClass != none) {
        for (const Term& term : m_classes[constraint.formClass].terms)
            sum += term.coefficient * m_variables[term.column].value;
    }
    const double excess = sum * constraint.scale - constraint.constant;
    switch (constraint.relation) {
    case LayoutRelation::lessThanOrEqual:
        return std::max(0.0, excess);
    case LayoutRelation::greaterThanOrEqual:
        return std::max(0.0, -excess);
    case LayoutRelation::equal:
        break;
    }
    return std::abs(excess);
}

} // namespace RVCore::LayoutInternal
