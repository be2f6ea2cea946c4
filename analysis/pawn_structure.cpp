// What a pawn structure tells about the past: the captures its pawns made,
// whether each can have a start file of its own, and what promotions cost in
// further captures.

#include <algorithm>
#include <array>
#include <bit>

#include "analysis/position_analysis.h"
#include "chess/bitboard.h"

namespace tarnfold {

namespace {

using FileCounts = std::array<uint8_t, 8>;

FileCounts countByFile(Bitboard pawns) {
    FileCounts counts{};
    for (int file = 0; file < 8; ++file) counts[file] = uint8_t(popCount(pawns & fileMask[file]));
    return counts;
}

// One extra pawn of the first crowded file goes to the nearest empty file on
// the left or on the right, whichever leads to fewer captures in the end.
unsigned capturesToSpread(FileCounts counts) {
    int crowded = 0;
    while (crowded < 8 && counts[crowded] <= 1) ++crowded;
    if (crowded == 8) return 0;
    --counts[crowded];
    int left = crowded - 1, right = crowded + 1;
    while (left >= 0 && counts[left] != 0) --left;
    while (right < 8 && counts[right] != 0) ++right;
    unsigned best = 0;
    bool found = false;
    if (left >= 0) {
        FileCounts next = counts;
        next[left] = 1;
        best = unsigned(crowded - left) + capturesToSpread(next);
        found = true;
    }
    if (right < 8) {
        FileCounts next = counts;
        next[right] = 1;
        const unsigned value = unsigned(right - crowded) + capturesToSpread(next);
        best = found ? std::min(best, value) : value;
    }
    return best;
}

// Whether two of the pawns share a file: without that, every pawn keeps its
// own file and there is nothing to search.
bool shareAFile(Bitboard pawns) {
    // Every square below a pawn on its file, against the pawns.
    Bitboard below = pawns >> 8;
    below |= below >> 8;
    below |= below >> 16;
    below |= below >> 32;
    return (pawns & below) != 0;
}

// Ranks 2 to 7, where a pawn can stand.
constexpr Bitboard pawnRanks = 0x00FFFFFFFFFFFF00ULL;

// Start files are handed out to the pawns in the order of the last file
// each can have come from (its file plus the ranks it advanced), so that
// taking the lowest free file every time never leaves a later pawn without
// one. Between pawns of the same last file White takes the one nearer its
// start rank first and Black the farther one: the order of the 48 squares
// is White's a2 b2 a3 c2 b3 a4 ..., going up each diagonal from the start
// rank, and Black's a7 a6 b7 a5 b6 c7 ..., coming down each.
bool assignStartFiles(Bitboard pawns, Color color, Bitboard& offenders) {
    struct Entry {
        int order;
        Square square;
        int low, high;
    };
    std::array<Entry, 48> entries;
    int count = 0;
    for (Bitboard rest = pawns; rest;) {
        const Square square = popLowest(rest);
        const int advanced = color == White ? rankOf(square) - 1 : 6 - rankOf(square);
        const int last = fileOf(square) + advanced;
        const Entry entry = {last * 8 + (color == White ? advanced : 7 - advanced), square,
                             std::max(0, fileOf(square) - advanced), std::min(7, last)};
        int at = count++;
        for (; at > 0 && entries[at - 1].order > entry.order; --at) entries[at] = entries[at - 1];
        entries[at] = entry;
    }
    unsigned usedFiles = 0;
    for (int i = 0; i < count; ++i) {
        const Entry& entry = entries[i];
        const unsigned reach = ((2u << entry.high) - 1) & ~((1u << entry.low) - 1);
        offenders |= squareBit(entry.square);
        const unsigned free = reach & ~usedFiles;
        if (!free) return false;
        usedFiles |= free & (0u - free);
    }
    offenders = 0;
    return true;
}

}  // namespace

unsigned minimalPawnCaptures(Bitboard pawns) {
    // Most structures have no doubled pawns and need no search, and the
    // pawns move seldom: from one position of a game to the next the
    // structure is mostly the one just counted.
    // Two are kept, for the two sides' pawns.
    if (!shareAFile(pawns)) return 0;
    struct Counted {
        Bitboard pawns = 0;
        unsigned captures = 0;
    };
    thread_local std::array<Counted, 2> last;
    thread_local unsigned older = 0;
    for (const Counted& counted : last)
        if (counted.pawns == pawns) return counted.captures;
    Counted& replaced = last[older];
    older ^= 1;
    replaced = {pawns, capturesToSpread(countByFile(pawns))};
    return replaced.captures;
}

bool pawnStructureFeasible(Bitboard pawns, Color color, Bitboard& offenders) {
    offenders = 0;
    pawns &= pawnRanks;
    // Pawns each on a file of their own can all have started there.
    if (!shareAFile(pawns)) return true;
    // The structure just judged for this colour, as in minimalPawnCaptures.
    struct Judged {
        Bitboard pawns = 0, offenders = 0;
        bool feasible = true;
    };
    thread_local std::array<Judged, 2> last;
    Judged& judged = last[color];
    if (judged.pawns != pawns) {
        judged.feasible = assignStartFiles(pawns, color, judged.offenders);
        judged.pawns = pawns;
    }
    offenders = judged.offenders;
    return judged.feasible;
}

unsigned promotionDistance(int file, FileSet promotionFiles, FileSet blockedFiles) {
    unsigned best = 10;
    for (int target = 0; target < 8; ++target) {
        if (!(promotionFiles >> target & 1)) continue;
        const unsigned distance = unsigned(std::abs(file - target)) + (blockedFiles >> target & 1);
        best = std::min(best, distance);
    }
    return best;
}

bool promotionCaptureCost(const Board& board, Color color, unsigned count, unsigned& cost, FileSet& openFiles,
                          Bitboard& pawnStarts) {
    const Color other = otherColor(color);
    const Bitboard ownPawns = board.pieces[color][Pawn], otherPawns = board.pieces[other][Pawn];
    const int ownStartRank = color == White ? 1 : 6, otherStartRank = color == White ? 6 : 1;
    const int otherFirstRank = color == White ? 7 : 0;

    // A pawn reaches the last rank through a file whose start-rank square the
    // other side's pawn has left: one still there never moved.
    openFiles = 0;
    for (int file = 0; file < 8; ++file)
        if (!contains(otherPawns, makeSquare(file, otherStartRank))) openFiles |= FileSet(1 << file);

    // An unmoved bishop at home between unmoved pawns holds its square for
    // good: a pawn promoting on that file must capture beside it instead.
    FileSet blocked = 0;
    for (int file = 0; file < 8; ++file) {
        if (!contains(board.pieces[other][Bishop], makeSquare(file, otherFirstRank))) continue;
        bool hemmed = true;
        for (const int side : {file - 1, file + 1})
            if (side >= 0 && side < 8 && !contains(otherPawns, makeSquare(side, otherStartRank)))
                hemmed = false;
        if (hemmed) blocked |= FileSet(1 << file);
    }

    pawnStarts = rankMask[ownStartRank] & ~ownPawns;
    cost = 0;
    if (!pawnStarts || !openFiles) return false;

    // The promoted pawns started on files whose start square is empty now.
    // Which ones is chosen for the fewest captures: their own way to a
    // promotion file, and what the pawns still on the board need more once
    // those files are taken. The order of choosing does not change a sum, so
    // every set of count files is tried once.
    const unsigned base = minimalPawnCaptures(ownPawns);
    const unsigned candidates = unsigned(pawnStarts >> (8 * ownStartRank)) & 0xFF;
    unsigned best = 99;
    for (unsigned chosen = candidates;; chosen = (chosen - 1) & candidates) {
        if (unsigned(std::popcount(chosen)) == count) {
            Bitboard placed = ownPawns;
            unsigned distance = 0;
            for (unsigned rest = chosen; rest; rest &= rest - 1) {
                const int file = std::countr_zero(rest);
                placed |= squareBit(makeSquare(file, ownStartRank));
                distance += promotionDistance(file, openFiles, blocked);
            }
            Bitboard offenders;
            if (pawnStructureFeasible(placed, color, offenders))
                best = std::min(best, distance + minimalPawnCaptures(placed) - base);
        }
        if (chosen == 0) break;
    }
    cost = best;
    return true;
}

}  // namespace tarnfold
