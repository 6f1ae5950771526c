#include "LayoutModel.h"

#include "LayoutCheck.h"

#include <cmath>
#include <utility>

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

} // namespace

Index Model::addVariable(std::uint64_t owner)
{
    const Index index = take(m_freeVariables, m_variables.size());
    if (index == m_variables.size())
        m_variables.addOne();
    m_variables[index].owner = owner;
    m_variables[index].value = 0.0;
    m_areAlive.resize(m_variables.size(), false);
    m_areAlive[index] = true;
    return index;
}

void Model::removeVariable(Index index)
{
    visitClasses(index, [](Index) { check(false, "a variable was removed that an installed constraint uses"); });
    m_areAlive[index] = false;
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
    // By insertion, since forms are short; long ones are rare enough to be sorted first.
    m_form.clear();
    for (const LayoutTerm& term : terms)
        m_form.push_back({term.variable.index, term.coefficient});
    if (m_form.size() > 16)
        std::stable_sort(m_form.begin(), m_form.end(),
                         [](const Term& a, const Term& b) { return a.column < b.column; });
    bool isPlain = true; // each variable once, none of them for nothing
    for (std::size_t end = 0; end < m_form.size(); ++end) {
        const Term term = m_form[end];
        std::size_t place = end;
        for (; place > 0 && term.column < m_form[place - 1].column; --place)
            m_form[place] = m_form[place - 1];
        m_form[place] = term;
        isPlain = isPlain && term.coefficient != 0.0 && (place == 0 || m_form[place - 1].column != term.column);
    }
    if (!isPlain)
        sumRepeated();
    m_formScale = 0.0;
    for (const Term& term : m_form) {
        if (std::abs(term.coefficient) > std::abs(m_formScale))
            m_formScale = term.coefficient;
    }
    m_words.clear();
    for (Term& term : m_form) {
        if (m_formScale != 1.0)
            term.coefficient /= m_formScale;
        appendPacked(term, m_words);
    }
}

void Model::sumRepeated()
{
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
}

// Who rebuilds constraints wholesale puts most of them back in the order in which they were taken out. Looking there
// first spares the search. Gives the place among what was taken out.
Index Model::takenOutBefore()
{
    constexpr std::size_t farthest = 8; // so many may be left out in between
    const std::size_t end = std::min(m_nextPutBack + farthest, m_takenOut.size());
    for (std::size_t place = m_nextPutBack; place < end; ++place) {
        if (m_takenOut[place] == none)
            continue;
        if (isOfForm(m_constraints[m_takenOut[place]].formClass)) {
            m_nextPutBack = place + 1;
            return Index(place);
        }
    }
    return none;
}

bool Model::isOfForm(Index formClass) const
{
    if (isOwnForm(formClass))
        return m_form.size() == 1 && m_form.front().column == variableOf(formClass);
    const auto& words = m_classes[formClass].words;
    return std::equal(words.begin(), words.end(), m_words.begin(), m_words.end());
}

Index Model::partOf(Index formClass) const
{
    if (!notes(formClass).isInPart)
        return none;
    return isOwnForm(formClass) ? m_variables[variableOf(formClass)].part : m_classes[formClass].part;
}

void Model::setPart(Index formClass, Index part)
{
    notes(formClass).isInPart = part != none;
    if (!isOwnForm(formClass))
        m_classes[formClass].part = part;
}

double Model::scale(Index index) const
{
    const Constraint& constraint = m_constraints[index];
    if (constraint.isScaled)
        return m_scales.at(index);
    return constraint.isNegated ? -1.0 : 1.0;
}

void Model::setScale(Index index, double scale)
{
    Constraint& constraint = m_constraints[index];
    if (constraint.isScaled)
        m_scales.erase(index);
    constraint.isNegated = scale == -1.0;
    constraint.isScaled = scale != 1.0 && scale != -1.0;
    if (constraint.isScaled)
        m_scales[index] = scale;
}

bool Model::saysTheSame(Index index, LayoutRelation relation, double constant, float priority) const
{
    const Constraint& gone = m_constraints[index];
    return gone.relation == relation && gone.constant == constant && gone.priority == priority &&
           scale(index) == m_formScale && !gone.isLeftOut;
}

Index Model::makeConstraint()
{
    const Index index = take(m_freeConstraints, m_constraints.size());
    if (index == m_constraints.size())
        m_constraints.addOne();
    return index;
}

// Classes whose edits have cancelled each other are none any more.
void Model::takeNotedClasses(std::vector<Index>& taken)
{
    for (const Index index : m_takenOut) {
        if (index != none)
            m_freeConstraints.push_back(index);
    }
    m_takenOut.clear();
    m_nextPutBack = 0;
    std::erase_if(m_notedClasses, [&](Index index) {
        FormNotes& noted = notes(index);
        const bool isAsBefore = noted.edits == 0;
        noted.isNoted = false;
        noted.edits = 0;
        return isAsBefore;
    });
    taken.clear();
    taken.swap(m_notedClasses);
}

Index Model::classOfForm()
{
    if (m_form.size() == 1)
        return ownForm(m_form.front().column);
    if (const Index found = findClass(); found != none)
        return found;
    const Index index = take(m_freeClasses, m_classes.size());
    if (index == m_classes.size())
        m_classes.addOne();
    FormClass& made = m_classes[index];
    made.words.assign(m_words);
    for (const Term& term : m_form)
        m_variables[term.column].classes.append(index);
    return index;
}

// Looks where the rarest of the form's variables occurs. Nearly every form has one that occurs a few times only, and
// that place is about to be needed anyhow, which cannot be said of a table.
Index Model::findClass() const
{
    const Variable* rarest = &m_variables[m_form.front().column];
    for (const Term& term : m_form) {
        if (m_variables[term.column].classes.size() < rarest->classes.size())
            rarest = &m_variables[term.column];
    }
    for (const Index use : rarest->classes) {
        if (isOfForm(use))
            return use;
    }
    return none;
}

void Model::removeClasses(std::span<const Index> gone)
{
    std::vector<Index> variables;
    for (const Index index : gone) {
        if (isOwnForm(index))
            continue;
        for (const Term& term : terms(index))
            variables.push_back(term.column);
        m_classes[index].words.clear();
        m_freeClasses.push_back(index);
    }
    std::sort(variables.begin(), variables.end());
    variables.erase(std::unique(variables.begin(), variables.end()), variables.end());
    for (const Index variable : variables)
        m_variables[variable].classes.eraseIf([&](Index use) { return m_classes[use].words.empty(); });
}

void Model::enter(Index index, FormNotes& formClass)
{
    Constraint& entered = m_constraints[index];
    if (formClass.last == none) {
        entered.next = index;
    } else {
        Constraint& last = m_constraints[formClass.last];
        entered.next = last.next;
        last.next = index;
    }
    formClass.last = index;
}

// Looks for the one before from the oldest on, which mostly goes first.
void Model::takeOut(Index index, FormNotes& formClass)
{
    Index before = formClass.last;
    while (m_constraints[before].next != index)
        before = m_constraints[before].next;
    m_constraints[before].next = m_constraints[index].next;
    if (formClass.last == index)
        formClass.last = before == index ? none : before;
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
    normalise(terms);
    const Index place = m_form.empty() ? none : takenOutBefore();
    const bool isPutBack = place != none && saysTheSame(m_takenOut[place], relation, constant, priority);
    const Index formClass = m_form.empty()  ? none
                            : place != none ? m_constraints[m_takenOut[place]].formClass
                                            : classOfForm();
    const Index index = isPutBack ? std::exchange(m_takenOut[place], none) : makeConstraint();
    Constraint& made = m_constraints[index];
    made.owner = owner;
    made.sequence = m_sequence++ & 0xffff'ffff'ffff; // as many bits as it has, never used up
    made.constant = constant;
    made.priority = priority;
    made.relation = relation;
    made.isAlive = true;
    made.isLeftOut = false;
    made.isInConflict = false;
    setScale(index, m_form.empty() ? 1.0 : m_formScale);
    made.formClass = formClass;
    if (formClass == none) {
        m_conflictsByThemselves.push_back(index);
        return index;
    }
    enter(index, notes(formClass));
    noteEdit(formClass, isPutBack ? -1 : 1);
    return index;
}

void Model::removeConstraint(Index index)
{
    Constraint& gone = m_constraints[index];
    gone.isAlive = false;
    if (gone.isInConflict)
        m_changedConflictMembers.push_back(index);
    if (gone.formClass == none) {
        std::erase(m_conflictsByThemselves, index);
        m_freeConstraints.push_back(index);
        return;
    }
    takeOut(index, notes(gone.formClass));
    m_takenOut.push_back(index);
    noteEdit(gone.formClass, 1);
}

void Model::noteChange(Index index)
{
    const Constraint& changed = m_constraints[index];
    if (changed.formClass != none)
        noteEdit(changed.formClass, 1);
    else if (std::find(m_conflictsByThemselves.begin(), m_conflictsByThemselves.end(), index) ==
             m_conflictsByThemselves.end())
        m_conflictsByThemselves.push_back(index);
    if (changed.isInConflict)
        m_changedConflictMembers.push_back(index);
}

void Model::noteEdit(Index index, int edits)
{
    FormNotes& formClass = notes(index);
    formClass.edits = (formClass.edits + std::uint32_t(edits)) & 0x3fffffff;
    if (formClass.isNoted)
        return;
    formClass.isNoted = true;
    m_notedClasses.push_back(index);
}

double Model::violation(Index index) const
{
    const Constraint& constraint = m_constraints[index];
    double sum = 0.0;
    if (constraint.formClass != none) {
        for (const Term& term : terms(constraint.formClass))
            sum += term.coefficient * m_variables[term.column].value;
    }
    const double excess = sum * scale(index) - constraint.constant;
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
