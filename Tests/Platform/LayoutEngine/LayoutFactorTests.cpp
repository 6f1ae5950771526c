#include <LayoutEngine/LayoutFactor.h>

#include <gtest/gtest.h>

#include <random>

namespace RVCore::LayoutInternal {
namespace {

struct GivenTargets : Factor::Targets {
    std::vector<double> values;
    double at(Index position) const override { return values[position]; }
};

Basis makeBasis(const System& system, const std::vector<Index>& rows)
{
    Basis result{rows, std::vector<Index>(system.rowCount(), none)};
    for (Index position = 0; position < rows.size(); ++position)
        result.places[rows[position]] = position;
    return result;
}

// Row i of the result of matrix * x, or of its transpose.
double product(const System& system, const Basis& basis, const std::vector<double>& x, Index row)
{
    double sum = 0;
    for (const Term& cell : system.terms(basis.rows[row]))
        sum += cell.coefficient * x[cell.column];
    return sum;
}

System makeSystem(Index columns, const std::vector<std::vector<Term>>& forms)
{
    System system;
    system.clear(1, 1);
    for (Index column = 0; column < columns; ++column)
        system.addColumn();
    for (const std::vector<Term>& form : forms)
        system.addRow(form);
    system.finish();
    return system;
}

// A random system with enough forms for a basis of the rows from `size` on, and a bump in it.
System makeRandom(std::mt19937& random, Index size)
{
    std::vector<std::vector<Term>> forms;
    for (Index i = 0; i < 2 * size; ++i) {
        std::vector<Term> form{{i % size, 1.0}};
        for (std::uint32_t k = std::uint32_t(random() % 4); k > 0; --k) {
            const Index column = Index(random() % size);
            if (column != i % size && form.size() < 4 &&
                std::none_of(form.begin(), form.end(), [&](const Term& term) { return term.column == column; }))
                form.push_back({column, double(int(random() % 5)) / 4 - 0.6});
        }
        forms.push_back(form);
    }
    return makeSystem(size, forms);
}

std::vector<double> solved(Factor& factor, const std::vector<double>& targets)
{
    SparseVector positions, columns;
    positions.resize(targets.size());
    columns.resize(targets.size());
    for (Index i = 0; i < targets.size(); ++i)
        positions.add(i, targets[i]);
    factor.solve(positions, columns);
    std::vector<double> result;
    for (Index i = 0; i < targets.size(); ++i)
        result.push_back(columns[i]);
    return result;
}

TEST(LayoutFactor, solvesBothWaysAndAfterExchanges)
{
    std::mt19937 random(1);
    for (int round = 0; round < 100; ++round) {
        const Index size = 1 + Index(random() % 30);
        const System system = makeRandom(random, size);
        std::vector<Index> rows;
        for (Index i = 0; i < size; ++i)
            rows.push_back(size + i);
        Basis basis = makeBasis(system, rows);
        Factor factor;
        std::vector<Factor::Repair> repairs;
        factor.factor(system, basis, repairs);
        std::vector<double> targets;
        for (Index i = 0; i < size; ++i)
            targets.push_back(double(random() % 100));
        for (Index exchanges = 0; exchanges < 6; ++exchanges) {
            SCOPED_TRACE("round " + std::to_string(round) + ", exchanges " + std::to_string(exchanges));
            const std::vector<double> x = solved(factor, targets);
            for (Index i = 0; i < size; ++i)
                ASSERT_NEAR(product(system, basis, x, i), targets[i], 1e-6);

            // Another row in terms of the basis, and back again.
            const Index entering = 2 * size + Index(random() % size);
            SparseVector columns, alpha;
            columns.resize(size);
            alpha.resize(size);
            for (const Term& cell : system.terms(entering))
                columns.add(cell.column, cell.coefficient);
            factor.solveTransposed(columns, alpha);
            std::vector<double> sums(size, 0.0);
            for (const Index position : alpha.indices()) {
                for (const Term& cell : system.terms(basis.rows[position]))
                    sums[cell.column] += alpha[position] * cell.coefficient;
            }
            for (const Term& cell : system.terms(entering))
                sums[cell.column] -= cell.coefficient;
            for (const double difference : sums)
                ASSERT_NEAR(difference, 0.0, 1e-6);
            Index position = 0;
            for (const Index other : alpha.indices()) {
                if (std::abs(alpha[other]) > std::abs(alpha[position]))
                    position = other;
            }
            factor.exchange(position, alpha);
            basis.places[basis.rows[position]] = none;
            basis.places[entering] = position;
            basis.rows[position] = entering;
        }
    }
}

TEST(LayoutFactor, replacesDependentRowsByOwnRows)
{
    const System system = makeSystem(3, {{{0, 1}, {1, -1}}, {{0, 0.5}, {1, -0.5}}, {{1, 1}, {2, 1}}});
    Factor factor;
    std::vector<Factor::Repair> repairs;
    Basis basis = makeBasis(system, {3, 4, 5});
    factor.factor(system, basis, repairs);
    ASSERT_EQ(repairs.size(), 1u);
    EXPECT_LE(repairs[0].row, 4u);
    std::vector<double> targets;
    for (const Index row : basis.rows)
        targets.push_back(row < 3 ? 7 : row < 5 ? 2 : 10); // 7 of the own row
    const std::vector<double> x = solved(factor, targets);
    EXPECT_EQ(x[repairs[0].column], 7.0);
    EXPECT_EQ(x[1] + x[2], 10.0);
}

TEST(LayoutFactor, derivingAPartGivesTheBitsOfDerivingAll)
{
    std::mt19937 random(5);
    for (int round = 0; round < 100; ++round) {
        const Index size = 2 + Index(random() % 40);
        const System system = makeRandom(random, size);
        std::vector<Index> rows, all;
        GivenTargets targets;
        for (Index i = 0; i < size; ++i) {
            rows.push_back(size + i);
            all.push_back(i);
            targets.values.push_back(double(random() % 1000) / 7);
        }
        Basis basis = makeBasis(system, rows);
        Factor factor;
        std::vector<Factor::Repair> repairs;
        factor.factor(system, basis, repairs);
        std::vector<double> values(size, 0.0);
        std::vector<Index> changed;
        factor.derive(targets, all, values, changed);
        const Index moved = Index(random() % size);
        targets.values[moved] += 1.0 / 3;
        const std::vector<double> before = values;
        changed.clear();
        factor.derive(targets, std::vector<Index>{moved}, values, changed);
        std::vector<double> anew(size, 0.0);
        std::vector<Index> ignored;
        factor.derive(targets, all, anew, ignored);
        EXPECT_EQ(values, anew);
        for (Index column = 0; column < size; ++column) {
            EXPECT_EQ(values[column] != before[column],
                      std::find(changed.begin(), changed.end(), column) != changed.end());
        }
    }
}

TEST(LayoutSystem, aColumnIsInItsOwnRowFirstThenInTheOthers)
{
    const auto cells = [](const System& system, Index column) {
        std::vector<std::pair<Index, double>> result;
        for (const Cell& cell : system.entries(column))
            result.emplace_back(cell.row, cell.coefficient);
        return result;
    };
    using Cells = std::vector<std::pair<Index, double>>;
    EXPECT_EQ(cells(makeSystem(1, {}), 0), (Cells{{0, 1.0}}));
    System system = makeSystem(2, {{{0, 1}, {1, -0.3}}});
    EXPECT_EQ(cells(system, 1), (Cells{{1, 1.0}, {2, -0.3}}));
    const Index column = system.addColumn();
    const Index row = system.addRow(std::vector<Term>{{1, 0.5}, {column, 1.0}});
    EXPECT_EQ(cells(system, 1), (Cells{{1, 1.0}, {2, -0.3}, {row, 0.5}}));
    EXPECT_EQ(cells(system, column), (Cells{{system.ownRow(column), 1.0}, {row, 1.0}}));
    system.removeRow(2);
    EXPECT_EQ(cells(system, 1), (Cells{{1, 1.0}, {row, 0.5}}));
    EXPECT_EQ(system.addRow(std::vector<Term>{{0, 1.0}, {1, 1.0}}), 2u);
    EXPECT_EQ(cells(system, 0), (Cells{{0, 1.0}, {2, 1.0}}));
}

TEST(LayoutFactor, aChainIsDerivedInItsOrder)
{
    // Given from the end to the start; the order is the chain's all the same.
    const System system = makeSystem(4, {{{3, 1}, {2, -1}}, {{2, 1}, {1, -1}}, {{1, 1}, {0, -1}}});
    Factor factor;
    std::vector<Factor::Repair> repairs;
    Basis basis = makeBasis(system, {4, 5, 6, 0});
    factor.factor(system, basis, repairs);
    EXPECT_TRUE(repairs.empty());
    // Column 0 is held by its own row, column 1 by the chain's last one, and so on.
    EXPECT_EQ(basis.rows, (std::vector<Index>{0, 6, 5, 4}));
    EXPECT_LT(factor.step(0), factor.step(1));
    EXPECT_LT(factor.step(1), factor.step(2));
    EXPECT_LT(factor.step(2), factor.step(3));
}

} // namespace
} // namespace RVCore::LayoutInternal
