#include "LayoutSystem.h"

namespace RVCore::LayoutInternal {

void System::clear(Index columns, Index levels)
{
    m_columns = columns;
    m_levels = levels;
    m_rows.clear();
    m_terms.clear();
    m_entries.clear();
    m_pieces.clear();
    m_unusedPieces = 0;
}

void System::reserve(std::size_t rows, std::size_t terms, std::size_t pieces)
{
    m_rows.reserve(rows);
    m_terms.reserve(terms);
    m_pieces.reserve(pieces);
}

Index System::addRow(std::span<const Term> terms)
{
    m_rows.push_back({Index(m_terms.size()), Index(terms.size()), 0, 0, 0, 0});
    m_terms.insert(m_terms.end(), terms.begin(), terms.end());
    return Index(m_rows.size() - 1);
}

void System::finish()
{
    m_entryStart.assign(m_columns + 1, 0);
    for (const Term& term : m_terms)
        ++m_entryStart[term.column + 1];
    for (Index column = 0; column < m_columns; ++column)
        m_entryStart[column + 1] += m_entryStart[column];
    m_entries.resize(m_terms.size());
    std::vector<Index> next(m_entryStart.begin(), m_entryStart.end());
    for (Index row = 0; row < rowCount(); ++row) {
        for (const Term& term : terms(row))
            m_entries[next[term.column]++] = {row, term.coefficient};
    }
}

std::span<const Piece> System::piecesOfKink(Index row, Index kink) const
{
    const std::span<const Piece> all = pieces(row);
    const auto first = std::lower_bound(all.begin(), all.end(), kink,
                                        [](const Piece& piece, Index number) { return piece.kink < number; });
    auto last = first;
    while (last != all.end() && last->kink == kink)
        ++last;
    return {first, last};
}

void System::setPieces(Index row, std::span<const Piece> pieces)
{
    Row& record = m_rows[row];
    if (pieces.size() > record.pieceCapacity) {
        m_unusedPieces += record.pieceCapacity;
        record.firstPiece = Index(m_pieces.size());
        record.pieceCapacity = Index(pieces.size());
        m_pieces.resize(m_pieces.size() + pieces.size());
    }
    std::copy(pieces.begin(), pieces.end(), m_pieces.begin() + record.firstPiece);
    record.pieceCount = Index(pieces.size());
    record.kinkCount = pieces.empty() ? 0 : pieces.back().kink + 1;
    if (m_unusedPieces > 1000 && m_unusedPieces > m_pieces.size() / 2)
        compactPieces();
}

void System::compactPieces()
{
    std::vector<Piece> compact;
    compact.reserve(m_pieces.size() - m_unusedPieces);
    for (Row& row : m_rows) {
        const auto first = m_pieces.begin() + row.firstPiece;
        row.firstPiece = Index(compact.size());
        compact.insert(compact.end(), first, first + row.pieceCapacity);
    }
    m_pieces = std::move(compact);
    m_unusedPieces = 0;
}

} // namespace RVCore::LayoutInternal
