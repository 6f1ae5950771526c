#include <Platform/ConstraintLibrary/ConstraintText.h>
#include <Sources/Views/TestViews.h>

#include <gtest/gtest.h>

#include <fstream>
#include <map>

namespace RVCore::RVGroupViewGoldenTests {

namespace {

using Edge = RVGroupView::Edge;
using Orientation = RVGroupView::Orientation;
using ResizePolicy = RVGroupView::ResizePolicy;

// A golden file: sections under "[names]", blank lines and lines after # left out.
std::map<std::string, std::string> goldenSections(const std::string& name)
{
    std::ifstream file(std::string(RVCORE_GOLDENS) + "/" + name);
    EXPECT_TRUE(file.is_open()) << name;
    std::map<std::string, std::string> sections;
    std::string section, line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#')
            continue;
        if (line[0] == '[')
            section = line.substr(1, line.size() - 2);
        else
            sections[section] += line + "\n";
    }
    return sections;
}

class RVGroupViewGolden : public testing::TestWithParam<Orientation> {
protected:
    void SetUp() override
    {
        sections =
            goldenSections(GetParam() == Orientation::horizontal ? "HorizontalGroup.txt" : "VerticalGroup.txt");
        created = autoCreateConstraints([this] {
            group = makeGroupView({a, b, c}, {.orientation = GetParam(), .spacing = 8});
        });
        group->setIdentifier("g");
        nameSpacers(*group);
        host->addSubview(group);
        other->setIdentifier("o");
        host->addSubview(other);
    }

    // The sections one after the other; a name that the file does not have fails the test.
    std::string golden(const std::vector<std::string>& names) const
    {
        std::string text;
        for (const std::string& name : names) {
            EXPECT_TRUE(sections.contains(name)) << name;
            text += sections.contains(name) ? sections.at(name) : "";
        }
        return text;
    }

    static std::string texts(const LayoutConstraints& constraints)
    {
        std::string text;
        for (const auto& constraint : constraints)
            text += constraintText(*constraint) + (constraint->isActive() ? "" : " not installed") + "\n";
        return text;
    }

    // What the operation creates, in order, after the padding has been set.
    template <class Operation> std::string rebuilt(const Operation& operation)
    {
        group->setPadding({2, 4, 6, 10});
        const std::string text = texts(autoCreateConstraints(operation));
        const auto kept = group->constraints();
        const auto outside = host->constraints();
        LayoutConstraints all(kept);
        all.insert(all.end(), outside.begin(), outside.end());
        EXPECT_EQ(static_cast<long>(all.size()), std::ranges::count(text, '\n')) << "the earlier ones are gone";
        return text;
    }

    std::string hugging() const
    {
        std::string text;
        for (const auto& view : group->subviews()) {
            text += view->identifier();
            for (const auto orientation :
                 {NSLayoutConstraintOrientation::horizontal, NSLayoutConstraintOrientation::vertical})
                text.append(" ").append(numberText(static_cast<double>(view->contentHuggingPriority(orientation))));
            text += "\n";
        }
        return text;
    }

    std::shared_ptr<SizedView> a = sized(30, 20, "a"), b = sized(50, 40, "b"), c = sized(20, 10, "c");
    std::shared_ptr<NSView> host = make<RVBaseView>(CGRect(0, 0, 400, 400));
    std::shared_ptr<NSView> other = make<NSView>();
    std::shared_ptr<RVGroupView> group;
    LayoutConstraints created;
    std::map<std::string, std::string> sections;
};

TEST_P(RVGroupViewGolden, creation)
{
    EXPECT_EQ(texts(created), golden({"before the members", "sizes", "chain", "ends", "center", "no padding"}));
}

// Every run of equal identifiers with its length.
TEST_P(RVGroupViewGolden, everyConstraintIsNamedByItsRole)
{
    std::vector<std::pair<std::string, int>> runs;
    for (const auto& constraint : created) {
        if (runs.empty() || runs.back().first != constraint->identifier())
            runs.emplace_back(constraint->identifier(), 0);
        ++runs.back().second;
    }
    const std::vector<std::pair<std::string, int>> expected{
        {"dimension", 2}, {"member size", 6}, {"chain", 6}, {"ends", 2}, {"alignment", 7}, {"inside padding", 14}};
    EXPECT_EQ(runs, expected);
}

TEST_P(RVGroupViewGolden, everyAlignmentWithTheGroup)
{
    const std::pair<const char*, Edge> alignments[] = {{"center", Edge::centerParent()},
                                                       {"leading", Edge::leadingParent()},
                                                       {"trailing", Edge::trailingParent()},
                                                       {"fill", Edge::fillParent()}};
    for (const auto& [name, alignment] : alignments) {
        EXPECT_EQ(rebuilt([&, &edge = alignment] { group->setAlignment(edge); }),
                  golden({"chain", "ends", name, "padding"}));
    }
}

TEST_P(RVGroupViewGolden, everyAlignmentWithAnotherView)
{
    const std::pair<const char*, Edge> alignments[] = {{"center with o", Edge::center(other)},
                                                       {"leading with o", Edge::leading(other)},
                                                       {"trailing with o", Edge::trailing(other)},
                                                       {"fill with o", Edge::fill(other)}};
    for (const auto& [name, alignment] : alignments) {
        EXPECT_EQ(rebuilt([&, &edge = alignment] { group->setAlignment(edge); }),
                  golden({"chain", "ends", name, "padding"}));
    }
}

TEST_P(RVGroupViewGolden, everyResizePolicy)
{
    EXPECT_EQ(hugging(), golden({"hugging trailingView"})) << "the default";
    const std::pair<const char*, ResizePolicy> policies[] = {{"hugging leadingView", ResizePolicy::leadingView},
                                                             {"hugging leadingEdge", ResizePolicy::leadingEdge},
                                                             {"hugging trailingEdge", ResizePolicy::trailingEdge},
                                                             {"hugging trailingView", ResizePolicy::trailingView}};
    for (const auto& [name, policy] : policies) {
        EXPECT_EQ(rebuilt([&, value = policy] { group->setResizePolicy(value); }),
                  golden({"chain", "ends", "center", "padding"}));
        EXPECT_EQ(hugging(), golden({name}));
    }
}

TEST_P(RVGroupViewGolden, aHiddenMemberAndOffsets)
{
    group->alignViews([this] {
        return RVGroupView::PerView<Edge>{{a, Edge::fill(other)}, {c, Edge::trailingParent()}};
    });
    group->offsetViews([this] { return RVGroupView::PerView<RVGroupView::Offset>{{a, {5, 3}}, {c, {-2, 4}}}; });
    EXPECT_EQ(rebuilt([this] { group->setVisibility(b, false); }), golden({"hidden and displaced"}));
}

TEST_P(RVGroupViewGolden, theLastMemberHidden)
{
    EXPECT_EQ(rebuilt([this] { group->setVisibility(c, false); }), golden({"last hidden"}));
}

INSTANTIATE_TEST_SUITE_P(Orientations, RVGroupViewGolden,
                         testing::Values(Orientation::horizontal, Orientation::vertical), [](const auto& each) {
                             return each.param == Orientation::horizontal ? "horizontal" : "vertical";
                         });

} // namespace

} // namespace RVCore::RVGroupViewGoldenTests
