#include <AppKit/LayoutContext.h>
#include <AppKit/LayoutDerivation.h>
#include <AppKit/LayoutTag.h>
#include <AppKit/LayoutWords.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewExplanation.h>
#include <Foundation/NSException.h>

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace RVCore {

namespace {

// One axis of a view, its near edge and its extent; a root has no position.
struct Axis {
    const char* nearEdge;
    const char* farEdge;
    const char* extent;
    LayoutVariable position;
    LayoutVariable length;
};

class Explanation {
public:
    Explanation(const NSView& view, const NSView& root, LayoutEngine& engine)
        : m_view(view), m_engine(engine), m_words(root, engine)
    {
        const ViewVariables& variables = ViewLayoutState::of(view)->variables;
        const Axis axes[] = {{"left edge", "right edge", "width", variables.x, variables.width},
                             {"top edge", "bottom edge", "height", variables.y, variables.height}};
        writeHeading(variables);
        for (const Axis& axis : axes)
            writeEdges(axis);
        for (const Axis& axis : axes)
            writeExtent(axis);
    }

    std::string text;

private:
    double value(LayoutVariable variable) const { return variable.isValid() ? m_engine.value(variable) : 0; }

    void writeHeading(const ViewVariables& variables)
    {
        text += m_words.names().nameOf(m_view);
        if (m_view.superview())
            text += " in " + m_words.names().nameOf(*m_view.superview());
        text += ": (" + pointsText(value(variables.x)) + ", " + pointsText(value(variables.y)) + ") " +
                pointsText(value(variables.width)) + " × " + pointsText(value(variables.height));
        if (m_view.isHidden() || m_view.alphaValue() == 0)
            text += m_view.isHidden() ? ", hidden" : ", transparent";
        text += "\n";
    }

    void writeEdges(const Axis& axis)
    {
        text += std::string(axis.nearEdge) + " at " + pointsText(value(axis.position)) +
                (axis.position.isValid() ? "" : ", where a root begins");
        writeRows({axis.position});
        text += std::string(axis.farEdge) + " at " + pointsText(value(axis.position) + value(axis.length));
        writeRows({axis.position, axis.length});
    }

    void writeExtent(const Axis& axis)
    {
        text += axis.extent + (" " + pointsText(value(axis.length)));
        writeRows({axis.length});
    }

    // What is left of a line about the sum of the variables, then what holds it and what gave way, each once.
    void writeRows(std::vector<LayoutVariable> sum)
    {
        std::erase_if(sum, [](LayoutVariable variable) { return !variable.isValid(); });
        std::vector<LayoutHolding> holding;
        std::vector<LayoutViolation> violated;
        std::unordered_set<std::uint64_t> known;
        for (const LayoutVariable variable : sum) {
            const LayoutExplanation explanation = m_engine.explain(variable);
            std::copy_if(explanation.holding.begin(), explanation.holding.end(), std::back_inserter(holding),
                         [&](const LayoutHolding& row) { return known.insert(row.constraint).second; });
            std::copy_if(explanation.violated.begin(), explanation.violated.end(), std::back_inserter(violated),
                         [&](const LayoutViolation& row) { return known.insert(row.constraint).second; });
        }
        if (sum.size() > 1)
            keepWhatSettles(sum, holding);
        text += isAmbiguous(sum, holding) ? ", ambiguous\n" : "\n";
        for (const LayoutHolding& row : holding)
            writeRow("", row.constraint);
        for (const LayoutViolation& row : violated)
            writeRow((m_engine.isLeftOut(row.handle) ? "left out of a conflict, short by " : "gave way by ") +
                         pointsText(row.amount) + ": ",
                     row.constraint);
    }

    void keepWhatSettles(const std::vector<LayoutVariable>& sum, std::vector<LayoutHolding>& holding) const
    {
        std::vector<LayoutRow> rows;
        rows.reserve(holding.size());
        for (const LayoutHolding& row : holding)
            rows.push_back(rowOf(row.constraint));
        const std::vector<bool> settles = rowsThatSettle(sum, rows);
        std::vector<LayoutHolding> kept;
        for (std::size_t row = 0; row < holding.size(); ++row) {
            if (settles[row])
                kept.push_back(holding[row]);
        }
        holding = std::move(kept);
    }

    // The terms of a row; an own row's numbers do not matter here.
    static LayoutRow rowOf(std::uint64_t tag)
    {
        const auto variables = [](const NSView& view) -> const ViewVariables& {
            return ViewLayoutState::of(view)->variables;
        };
        LayoutRow row;
        if (const NSLayoutConstraint* constraint = LayoutTag::constraint(tag)) {
            makeConstraintRow(*constraint, *constraint->holder(), variables, row);
        } else {
            const NSView& view = LayoutTag::view(tag);
            makeOwnRow(view, LayoutTag::kind(tag), {}, view.superview() == nullptr, variables, row);
        }
        return row;
    }

    // Where one part of a sum is, the sum itself is not if required equations settle it: an edge that is pinned.
    bool isAmbiguous(const std::vector<LayoutVariable>& sum, const std::vector<LayoutHolding>& holding) const
    {
        if (std::none_of(sum.begin(), sum.end(), [&](LayoutVariable part) { return m_engine.isAmbiguous(part); }))
            return false;
        return sum.size() == 1 || holding.empty() ||
               !std::all_of(holding.begin(), holding.end(), [&](const LayoutHolding& row) {
                   return row.side == LayoutRelation::equal &&
                          m_engine.priority(row.handle) == layoutPriorityRequired;
               });
    }

    void writeRow(const std::string& prefix, std::uint64_t tag)
    {
        text += "    " + prefix + m_words.role(tag) + ", " + numberText(static_cast<double>(m_words.priority(tag))) +
                ": " + m_words.law(tag) + "\n";
    }

    const NSView& m_view;
    LayoutEngine& m_engine;
    LayoutWords m_words;
};

// The context of the view's tree with its constraints and values up to date. Null when an override that ran meanwhile
// took the view into another tree.
std::shared_ptr<LayoutContext> solvedContextOf(NSView& view)
{
    shared(view.rootView())->updateConstraintsForSubtreeIfNeeded();
    auto context = LayoutContext::ofTree(view).shared_from_this();
    context->solve();
    return LayoutContext::of(view) == context.get() ? context : nullptr;
}

void addAmbiguous(const std::shared_ptr<NSView>& view, const std::unordered_set<const NSView*>& ambiguous,
                  std::vector<std::shared_ptr<NSView>>& result)
{
    if (ambiguous.contains(view.get()))
        result.push_back(view);
    for (const auto& subview : view->subviews())
        addAmbiguous(subview, ambiguous, result);
}

} // namespace

std::string explainLayout(NSView& view)
{
    const auto alive = shared(view);
    const auto context = solvedContextOf(view);
    if (!context)
        return view.classObject().name() + " moved to another tree when constraints were brought up to date\n";
    return Explanation(view, view.rootView(), context->solvedEngine()).text;
}

std::vector<std::shared_ptr<NSView>> ambiguousViews(NSView& root)
{
    const auto alive = shared(root);
    const auto context = solvedContextOf(root);
    if (!context)
        return {};
    LayoutEngine& engine = context->solvedEngine();
    std::unordered_set<const NSView*> ambiguous;
    for (const LayoutVariable variable : engine.ambiguousVariables())
        ambiguous.insert(&LayoutTag::view(engine.owner(variable)));
    std::vector<std::shared_ptr<NSView>> result;
    addAmbiguous(alive, ambiguous, result);
    return result;
}

} // namespace RVCore
