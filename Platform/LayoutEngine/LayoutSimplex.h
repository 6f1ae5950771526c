#pragma once

#include "LayoutFactor.h"

#include <span>
#include <unordered_map>
#include <vector>

namespace RVCore::LayoutInternal {

// Counters of one optimisation.
struct Effort {
    std::uint64_t pivots = 0;
    std::uint64_t kinkMoves = 0;
    std::uint64_t factorisations = 0;
    std::uint64_t limitsReached = 0;
};

// What a run writes and leaves empty, so that all parts share one. It is as large as the largest of them needs it.
struct SimplexWork {
    struct Candidate {
        Index position = none;
        int direction = 0;
        Index level = 0;
        double gain = 0.0;
    };
    struct Event {
        double distance;
        double rate;
        Index row;
        Index kink;
    };

    // Before anything is done on a system of this size.
    void fit(const System&);
    // A build leaves it as large as few later edits need it; the next one makes it anew.
    void release() { *this = {}; }

    SparseVector upSums, downSums; // by level
    SparseVector byPosition, byColumn, direction, alpha;
    SparseVector rates;                           // by row
    std::vector<Candidate> candidates;            // that gained when they were first looked at, or still do
    std::vector<Index> candidateOf;               // by position: place among the candidates, none for others
    IndexSet banned;                              // positions whose exchange was unsafe in this run
    std::vector<Event> events, passed;            // a heap of the kinks ahead, and those behind
    std::vector<Index> open;                      // columns for which a row is sought
    std::vector<Index> openPosition;              // by column, none for others
    std::vector<std::pair<Index, Index>> waiting; // a heap of strengths and rows with one open column

private:
    Index m_columns = 0, m_rows = 0, m_levels = 0;
};

// Minimises the costs of a System's rows, level after level.
//
// A basis is one row for each column, each held at one of its kinks; that gives the values. The price of a
// basic row at a level is what the rows outside the basis charge there for moving it up by one. A solution is
// best when no basic row can be moved either way at a gain on the highest level on which it costs anything.
// Every set of values is admissible, since every cost is finite; so a solution can be improved from wherever
// a change of the costs left it.
//
// Passes of run():
//  0. find rows for the positions that have lost theirs (LayoutFirstBasis.cpp);
//  1. derive the values from the kinks that moved;
//  2. find the segments of the rows that were touched;
//  3. bring the prices up to date with the slopes that changed;
//  4. exchange basic rows until none can gain (LayoutPivot.cpp);
//  5. after exchanges, factor the new basis, derive everything from it once and make sure of 4.
//
// Limits: at most iterationLimit() exchanges; the result is then valid but not best, and counted. While steps
// have no length, single steps under a least-index rule in both choices keep it from cycling.
// Sources: the simplex method for piecewise-linear costs with long steps (Fourer, Mathematical Programming 33,
// 1985); least index rule (Bland, Mathematics of Operations Research 2, 1977); lexicographic goals (Ignizio,
// Goal Programming and Extensions, 1976); product form of the inverse (Dantzig and Orchard-Hays, 1954).
class Simplex : private Factor::Targets {
public:
    explicit Simplex(SimplexWork& work) : m_work(&work) {}
    // Starts from the greedy basis of the system, which must outlive this.
    void start(System&);
    // Goes on with a copy of its system.
    void moveTo(System&);
    // Exchanges the cost of a row.
    void setPieces(Index row, std::span<const Piece>);
    // The system has got a column or a row with its costs, or is going to lose a row: after the next run().
    void columnAdded(Index column);
    void rowAdded(Index row);
    void rowWillBeRemoved(Index row);
    // False when the iteration limit ended it.
    bool run(Effort&);
    // After the run that follows start(): lists as long as it needed them are not needed again soon.
    void releaseBuffers();

    double value(Index column) const { return m_values[column]; }
    // Columns whose value may have changed since the last forgetMoves().
    const std::vector<Index>& movedColumns() const { return m_moved.indices(); }
    void forgetMoves() { m_moved.clear(); }
    void noteMove(Index column) { m_moved.insert(column); } // stands for another variable from now on

    // Rows whose cost on a level the last run left above zero by more than rounding, looked for among the rows
    // that may have come to charge on level 0 since the last forgetSuspects().
    std::vector<Index> violatedRows(Index level) const;
    void forgetSuspects() { m_suspects.clear(); }
    // Rows that take part in the prices of a level, the ones outside the basis that charge included.
    std::vector<Index> pricedRows(Index level) const;
    double price(Index position, Index level) const;

    bool isBasic(Index row) const { return m_basis.places[row] != none; }
    Index positionOf(Index row) const { return m_basis.places[row]; }
    // The kink that a basic row is held at, the segment of another row.
    Index spot(Index row) const { return m_spot[row]; }
    // Of a basic row, the position of its kink.
    double rowValue(Index row) const { return isBasic(row) ? at(m_basis.places[row]) : evaluateRow(row); }
    double tolerance() const { return 1e-13 * m_scale + 1e-10; }
    // Basic rows that a column's value depends on, in order of derivation.
    std::vector<Index> holdingRows(Index column);
    // Columns that move with a basic row that by itself can be moved without a loss above the free levels. No others
    // can be moved without one; whether these can depends on the rows that stand at a kink as well.
    std::vector<Index> movableColumns();

private:
    using Candidate = SimplexWork::Candidate;
    using Event = SimplexWork::Event;

    // LayoutFirstBasis.cpp
    void chooseFirstBasis();
    void fillVacancies();
    void open(Index column, Index position);
    void openWeakColumnsOf(Index row);
    void fillOpenColumns();
    void takePlace(Index row, Index position);
    void growRows();
    Index bestKink(Index row, Index& strength) const;

    // LayoutSimplex.cpp
    void moveBasis();
    void widenScale(Index column);
    void measureScale();
    bool isScaleOutdated() const;
    void touchRowsOf(std::span<const Index> columns);
    void relocate(Index row);
    Index segmentAt(Index row, double value, Index present) const;
    Index quieterSide(Index row, Index kink) const;
    void refresh(Effort&);
    void takeOver(std::span<const Factor::Repair>);
    double at(Index position) const override;
    void keepTarget(Index row, std::span<const Piece> next);
    double evaluateRow(Index row) const;
    std::size_t iterationLimit() const { return 200 + 20 * std::size_t(m_system->rowCount()); }

    // LayoutPricing.cpp
    void noteSlopes(Index row, Index segment, double factor);
    void noteSlopeChange(Index level, Index row, double change);
    void applySlopeChanges();
    void addToPrice(Index level, Index position, double amount);
    std::vector<double>& pricesOf(Index level);
    double priceTolerance(Index level) const { return 1e-13 * std::max(m_priceScale[level], m_slopeScale[level]); }
    void addFreePrices(SparseVector& sums);
    void addFreePricesOf(Index position);
    void findFreePrices();
    void evaluateTouched();
    void evaluateFree();
    Candidate evaluate(Index position);
    Index firstLevel(const SparseVector& sums) const;
    void noteCandidate(const Candidate&);
    void forgetCandidates();
    const Candidate* choose() const;
    void resetPrices();

    // LayoutPivot.cpp
    bool optimise(Effort&);
    bool step(const Candidate&, Effort&);
    void findRates(Index position, int direction);
    void collectEvents(Index leaving);
    void pushNextEvent(Index row, Index spot, bool isBasicRow);
    bool findEntering(const Candidate&, Event& entering);
    void advance(double distance);
    void holdAt(Index position, Index kink);
    bool exchange(const Candidate&, const Event&, Effort&);

    SimplexWork* m_work;
    System* m_system = nullptr;
    Factor m_factor;
    Basis m_basis;
    std::vector<Index> m_spot;                // by row: kink of a basic row, segment of another
    std::vector<double> m_values;             // by column
    std::unordered_map<Index, double> m_kept; // basic rows that have come to cost nothing, and where they were held
    double m_scale = 1.0;                     // largest magnitude of a value since the last refresh()
    Index m_scaleColumn = none;               // that had it

    std::vector<std::vector<double>> m_prices; // by level, by position; empty while all are zero
    std::vector<double> m_slopeScale;          // largest slope by level
    std::vector<double> m_priceScale;          // largest price or slope by level, since the last refresh()
    std::vector<Index> m_pricedLevels;
    std::vector<std::vector<double>> m_freePrices; // by free level, by position; while many are asked for
    int m_freePricesAsked = 0;
    std::vector<std::vector<Term>> m_slopeChanges; // by level: row and change of its slope
    std::vector<Index> m_changedLevels;
    std::size_t m_priceUpdates = 0;

    IndexSet m_freePositions; // those that can move without a loss above the free levels
    IndexSet m_touchedPositions;
    std::vector<Index> m_affected; // positions whose target moved
    std::vector<Index> m_changed;
    IndexSet m_moved, m_touchedRows, m_suspects;
    std::vector<Index> m_vacant, m_newRows; // since the last run: positions whose row is going, rows that came
    bool m_isDirty = false;

    double m_smallestRate = 0.0;
    bool m_takesLeastIndex = false;
    std::size_t m_stalled = 0;
};

} // namespace RVCore::LayoutInternal
