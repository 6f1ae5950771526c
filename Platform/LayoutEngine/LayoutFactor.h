#pragma once

#include "LayoutSystem.h"

#include <span>
#include <vector>

namespace RVCore::LayoutInternal {

// As many rows as there are columns, one at each position.
struct Basis {
    std::vector<Index> rows;   // by position
    std::vector<Index> places; // by row: its position; none outside the basis
};

// A factored square matrix of rows of a System, one row for each position.
//
// factor() puts each row at the position of the column that it is derived for, and orders rows and columns so that
// the matrix is lower triangular but for one block in the middle (the bump), which is empty for chains and trees and
// is kept dense. The steps of that order are the order in which values are derived. An exchange of a row is added as
// one elementary factor until the next factor(). Limit: a bump of b rows costs b^2 memory and b^3 time.
class Factor {
public:
    struct Repair {
        Index row;    // that depends on others
        Index column; // whose own row stands in for it
    };

    // Factors the rows of a basis and puts them into the order of their positions. Rows that depend on others are
    // replaced, and what was replaced is listed. The basis is looked at until the next factor(): in between it
    // changes only as canReplace() allows and exchange() says.
    void factor(const System&, Basis&, std::vector<Repair>&);
    // The vectors that are consumed come back empty; results are added to an empty vector.
    void solve(SparseVector& positions, SparseVector& columns);
    void solveTransposed(SparseVector& columns, SparseVector& positions);
    // Whether another row can be put in place of the one at a position, to be derived for the same column: where the
    // order allows that, and there are no exchanges.
    bool canReplace(Index position, Index row) const;
    bool isInBump(Index step) const { return step >= m_bumpBegin && step < m_bumpEnd; }
    // Before the exchange of the row at a position; alpha is the new row in terms of the present ones.
    void exchange(Index position, const SparseVector& alpha);
    std::size_t exchangeCount() const { return m_exchanges.size(); }
    bool hasLongExchanges() const { return m_exchangeTerms.size() > 8 * std::size_t(m_size) + 1000; }

    // Where the rows of a basis are held.
    class Targets {
    public:
        virtual double at(Index position) const = 0;

    protected:
        ~Targets() = default;
    };
    // Derives the values again from the targets of the positions in `affected` onward, and lists each
    // column whose value is another one than before. Needs a matrix without exchanges. The result has no memory: it
    // is to the bit what deriving everything gives.
    void derive(const Targets& targets, std::span<const Index> affected, std::vector<double>& values,
                std::vector<Index>& changed);

    // The place of a position, or of its column, in the order of derivation.
    Index step(Index position) const { return m_stepOf[position]; }

private:
    struct Exchange {
        Index position;
        double pivot;
        std::size_t firstTerm, lastTerm;
    };

    // While rows still are where the caller had them.
    struct Matching {
        std::vector<Index> positionOfStep, stepOfPosition;
    };

    // The basis that the order is of.
    const Basis& factored() const { return m_exchanges.empty() ? *m_basis : m_before; }
    // Calls visit(position, coefficient) for every row of the matrix that a column is in.
    template <typename Visit> void visitColumn(Index column, Visit visit) const
    {
        for (const Cell& cell : m_system->entries(column)) {
            if (const Index position = factored().places[cell.row]; position != none)
                visit(position, cell.coefficient);
        }
    }
    void takeRowSingletons(Matching&);
    void takeColumnSingletons(Matching&);
    void assign(Index step, Index position, Index column, Matching&);
    void takeBump(Matching&);
    void order(const Matching&, Basis&);
    bool factorBump(const Matching&, std::vector<Repair>&);
    double pivot(Index column) const { return m_system->coefficient(factored().rows[column], column); }
    void solveBump(std::vector<double>&);
    void solveBumpTransposed(std::vector<double>&);
    void deriveBump(const Targets& targets, std::vector<double>& values, std::vector<Index>& changed);
    void deriveStep(Index step, const Targets& targets, std::vector<double>& values, std::vector<Index>& changed);
    void setDerived(Index column, double value, std::vector<double>& values, std::vector<Index>& changed);

    const System* m_system = nullptr;
    Index m_size = 0;
    const Basis* m_basis = nullptr;
    Basis m_before;                              // the exchanges, while there are some
    std::vector<Index> m_columnOfStep, m_stepOf; // by step, and by column, which is by position
    Index m_bumpBegin = 0, m_bumpEnd = 0;
    std::vector<double> m_bump;     // L and U, row by row
    std::vector<Index> m_bumpOrder; // bump row that was taken as i-th pivot row
    std::vector<double> m_bumpWork, m_bumpSwap;
    std::vector<Exchange> m_exchanges;
    std::vector<Term> m_exchangeTerms;
    StepQueue m_queue;
};

} // namespace RVCore::LayoutInternal
