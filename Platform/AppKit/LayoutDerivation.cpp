#include <AppKit/LayoutDerivation.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace RVCore {

namespace {

using Form = std::map<LayoutVariable, double>;

constexpr double nothing = 1e-9;

// Adds factor × the other form and drops what cancels out.
void add(Form& form, const Form& other, double factor)
{
    for (const auto& [variable, coefficient] : other) {
        double& sum = form[variable];
        sum += factor * coefficient;
        if (std::abs(sum) < nothing)
            form.erase(variable);
    }
}

struct Step {
    std::size_t row;
    LayoutVariable settled; // by this row, from those that earlier steps have settled
};

// Every row that settles one more variable, in an order in which it is the only one left; empty when there is none.
std::vector<Step> stepsThrough(const std::vector<Form>& forms)
{
    std::vector<Step> steps;
    Form settled;
    std::vector<std::size_t> waiting(forms.size());
    for (std::size_t row = 0; row < forms.size(); ++row)
        waiting[row] = row;
    while (!waiting.empty()) {
        std::vector<std::size_t> left;
        for (const std::size_t row : waiting) {
            std::vector<LayoutVariable> open;
            for (const auto& [variable, coefficient] : forms[row]) {
                if (!settled.contains(variable))
                    open.push_back(variable);
            }
            if (open.size() > 1)
                left.push_back(row);
            if (open.size() != 1)
                continue;
            settled.emplace(open.front(), 1);
            steps.push_back({row, open.front()});
        }
        if (left.size() == waiting.size())
            return {};
        waiting = std::move(left);
    }
    return steps;
}

bool saySame(const Form& first, const Form& second)
{
    if (first.size() != second.size() || first.begin()->first != second.begin()->first)
        return false;
    Form difference = first;
    add(difference, second, -first.begin()->second / second.begin()->second);
    return difference.empty();
}

} // namespace

std::vector<bool> rowsThatSettle(const std::vector<LayoutVariable>& sum, const std::vector<LayoutRow>& rows)
{
    std::vector<Form> forms(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (const LayoutTerm& term : rows[row].terms)
            add(forms[row], {{term.variable, term.coefficient}}, 1);
    }
    // 1. In which order the rows settle their variables.
    const std::vector<Step> steps = stepsThrough(forms);
    // 2. Backwards, every variable that is still in question is replaced by what its row says.
    Form question;
    for (const LayoutVariable variable : sum)
        add(question, {{variable, 1}}, 1);
    std::vector<bool> result(rows.size(), false);
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) {
        const auto asked = question.find(step->settled);
        if (asked == question.end())
            continue;
        result[step->row] = true;
        const double factor = asked->second / forms[step->row].at(step->settled);
        add(question, forms[step->row], -factor);
    }
    if (!question.empty())
        return std::vector<bool>(rows.size(), true);
    // 3. The rows that say it again.
    for (std::size_t row = 0; row < rows.size(); ++row) {
        for (std::size_t other = 0; other < rows.size() && !result[row]; ++other)
            result[row] = result[other] && saySame(forms[row], forms[other]);
    }
    return result;
}

} // namespace RVCore
