#include "Benchmarks.h"

#include <LayoutEngine/LayoutEngine.h>

#include <string>
#include <utility>
#include <vector>

namespace RVCore {

namespace {

constexpr auto equal = LayoutRelation::equal;
constexpr auto atLeast = LayoutRelation::greaterThanOrEqual;
constexpr auto atMost = LayoutRelation::lessThanOrEqual;

// The constraints of a horizontal group of members of 50 x 20 with spacers of 8 around them, one member
// stretching, as the group view makes them: all of them anew for every change.
class GroupOfMembers {
public:
    GroupOfMembers(int members, int stretching) : m_elements(std::size_t(2 * members + 1))
    {
        m_width = m_engine.addVariable(0);
        m_height = m_engine.addVariable(0);
        m_hostWidth = add({{{m_width, 1}}}, equal, 100.0 * members, 1000);
        add({{{m_height, 1}}}, equal, 100, 1000);
        for (std::size_t i = 0; i < m_elements.size(); ++i) {
            Element& element = m_elements[i];
            for (LayoutVariable* variable : {&element.x, &element.y, &element.width, &element.height})
                *variable = m_engine.addVariable(i);
            const bool isMember = i % 2 == 1;
            const bool isStretching = i == 2 * std::size_t(stretching) + 1;
            for (const auto& [size, hint] : {std::pair{element.width, isMember ? 50.0 : 8.0},
                                             std::pair{element.height, isMember ? 20.0 : 0.0}}) {
                add({{{size, 1}}}, atLeast, 0, 1000);
                add({{{size, 1}}}, atLeast, hint, 750);
                add({{{size, 1}}}, atLeast, hint, 700);
                add({{{size, 1}}}, atMost, hint, isStretching ? 250.0f : 251.0f);
            }
        }
        install(m_elements.size());
    }

    // Takes all constraints of the group out and puts them in again, without one element when it is given.
    void rebuild(std::size_t hidden)
    {
        for (const LayoutConstraintHandle handle : m_installed)
            m_engine.removeConstraint(handle);
        m_installed.clear();
        install(hidden);
    }
    std::size_t elementCount() const { return m_elements.size(); }
    void resize(double width) { m_engine.setConstant(m_hostWidth, width); }
    LayoutEngine& engine() { return m_engine; }
    double end() { return m_engine.value(m_elements.back().x); }

private:
    struct Element {
        LayoutVariable x, y, width, height;
    };

    LayoutConstraintHandle add(const std::vector<LayoutTerm>& terms, LayoutRelation relation, double constant,
                               float priority)
    {
        return m_engine.addConstraint(terms, relation, constant, priority, 0);
    }
    void install(std::size_t hidden)
    {
        const Element* previous = nullptr;
        for (std::size_t i = 0; i < m_elements.size(); ++i) {
            const Element& one = m_elements[i];
            if (i == hidden || i == hidden + 1)
                continue;
            if (previous)
                m_installed.push_back(add({{one.x, 1}, {previous->x, -1}, {previous->width, -1}}, equal, 0, 749));
            else
                m_installed.push_back(add({{one.x, 1}}, equal, 0, 748));
            m_installed.push_back(add({{one.y, 1}, {one.height, 0.5}, {m_height, -0.5}}, equal, 0, 749));
            m_installed.push_back(add({{one.y, 1}}, atLeast, 4, 748));
            m_installed.push_back(add({{m_height, 1}, {one.height, -1}, {one.y, -1}}, atLeast, 4, 748));
            previous = &one;
        }
        m_installed.push_back(add({{previous->x, 1}, {previous->width, 1}, {m_width, -1}}, equal, 0, 748));
    }

    LayoutEngine m_engine;
    LayoutVariable m_width, m_height;
    LayoutConstraintHandle m_hostWidth;
    std::vector<Element> m_elements;
    std::vector<LayoutConstraintHandle> m_installed;
};

void measure(int members)
{
    const std::string prefix = "layoutengine." + std::to_string(members) + ".";
    const int rounds = members > 1000 ? 5 : 20;
    const auto print = [&](const char* what, double nanosecondsTaken) {
        report(prefix + what + "_ms", nanosecondsTaken / 1e6);
    };
    std::vector<GroupOfMembers> made;
    print("install", nanoseconds(rounds, [&] { made.emplace_back(members, members - 1); }));
    std::size_t next = 0;
    print("first_solve", nanoseconds(rounds, [&] { made[next++].engine().solve(); }));
    GroupOfMembers& group = made.front();
    report(prefix + "first_pivots", double(group.engine().statistics().pivots));

    double width = 100.0 * members;
    const auto resize = [&](double step) {
        group.resize(width += step);
        group.engine().solve();
    };
    print("resize", nanoseconds(10 * rounds, [&] { resize(1); }));
    report(prefix + "resize_changed", double(group.engine().changedVariables().size()));
    print("put_back", nanoseconds(rounds, [&] {
              group.rebuild(group.elementCount());
              group.engine().solve();
          }));
    bool isHidden = false;
    print("toggle", nanoseconds(2 * rounds, [&] {
              isHidden = !isHidden;
              group.rebuild(isHidden ? std::size_t(members) | 1u : group.elementCount());
              group.engine().solve();
          }));
    width = 20.0 * members;
    resize(0);
    print("resize_overflowing", nanoseconds(10 * rounds, [&] { resize(1); }));
    print("shrink_and_grow", nanoseconds(rounds, [&] {
              resize(80.0 * members);
              resize(-80.0 * members);
          }));
    report(prefix + "pivots", double(group.engine().statistics().pivots));
    report(prefix + "builds", double(group.engine().statistics().builds));

    width = 100.0 * members;
    GroupOfMembers moving(members, 0);
    moving.engine().solve();
    print("resize_all_move", nanoseconds(10 * rounds, [&] {
              moving.resize(width += 1);
              moving.engine().solve();
          }));
    report(prefix + "resize_all_move_changed", double(moving.engine().changedVariables().size()));
    keep(group.end() + moving.end());
}

} // namespace

void benchmarkLayoutEngine()
{
    for (const int members : {100, 1000, 10000})
        measure(members);
}

} // namespace RVCore
