#include "chess/attacks.h"

namespace tarnfold {

namespace {

constexpr std::array<std::array<Bitboard, 64>, 64> buildBetweenInclusive() {
    std::array<std::array<Bitboard, 64>, 64> table{};
    for (int a = 0; a < 64; ++a) {
        table[a][a] = squareBit(Square(a));
        for (int ray = 0; ray < rayDirectionCount; ++ray) {
            Bitboard fromA = rayAttacks[ray][a];
            for (Bitboard targets = fromA; targets;) {
                Square b = popLowest(targets);
                // The part of a's ray that does not go on past b.
                table[a][b] = (fromA & ~rayAttacks[ray][b]) | squareBit(Square(a));
            }
        }
    }
    return table;
}

// The two opposite steps that make up each line kind.
constexpr int lineFileStep[lineKindCount] = {0, 1, 1, -1};
constexpr int lineRankStep[lineKindCount] = {1, 0, 1, 1};

// Squares of the line before its edge square, in one direction.
constexpr Bitboard innerSquares(int file, int rank, int fileStep, int rankStep) {
    Bitboard inner = 0;
    for (file += fileStep, rank += rankStep; onBoard(file + fileStep, rank + rankStep);
         file += fileStep, rank += rankStep)
        inner |= squareBit(makeSquare(file, rank));
    return inner;
}

// xorshift64*: the multipliers only need to be deterministic, not good.
struct Random {
    uint64_t state;
    uint64_t next() {
        state ^= state >> 12;
        state ^= state << 25;
        state ^= state >> 27;
        return state * 0x2545F4914F6CDD1DULL;
    }
    // Few set bits spread the mask's bits into the top six with fewer clashes.
    uint64_t sparse() { return next() & next() & next(); }
};

void buildLine(int square, int kind, Random& random, LineLookup& line) {
    const int file = fileOf(Square(square)), rank = rankOf(Square(square));
    const int fileStep = lineFileStep[kind], rankStep = lineRankStep[kind];
    line.mask = innerSquares(file, rank, fileStep, rankStep) | innerSquares(file, rank, -fileStep, -rankStep);

    Bitboard subsets[64];
    Bitboard reach[64];
    int count = 0;
    Bitboard subset = 0;
    do {
        subsets[count] = subset;
        reach[count] = detail::slide(file, rank, fileStep, rankStep, subset) |
                       detail::slide(file, rank, -fileStep, -rankStep, subset);
        ++count;
        subset = (subset - line.mask) & line.mask;
    } while (subset != 0);

    // An entry counts as filled when its stamp is the current attempt's, which
    // spares clearing the table before every attempt; most attempts fail early.
    uint32_t stamp[64] = {};
    for (uint32_t attempt = 1;; ++attempt) {
        const uint64_t multiplier = random.sparse();
        bool clash = false;
        for (int i = 0; i < count && !clash; ++i) {
            const unsigned index = (subsets[i] * multiplier) >> 58;
            if (stamp[index] != attempt) {
                stamp[index] = attempt;
                line.attacks[index] = reach[i];
            } else {
                clash = line.attacks[index] != reach[i];
            }
        }
        if (clash) continue;
        for (unsigned index = 0; index < 64; ++index)
            if (stamp[index] != attempt) line.attacks[index] = 0;
        line.multiplier = multiplier;
        return;
    }
}

std::array<std::array<LineLookup, lineKindCount>, 64> buildLineLookups() {
    std::array<std::array<LineLookup, lineKindCount>, 64> table;
    Random random{0x7A3F19C2E45B6D81ULL};
    for (int square = 0; square < 64; ++square)
        for (int kind = 0; kind < lineKindCount; ++kind) buildLine(square, kind, random, table[square][kind]);
    return table;
}

}  // namespace

constinit const std::array<std::array<Bitboard, 64>, 64> betweenInclusive = buildBetweenInclusive();

// Dynamic initialisation, scheduled ahead of every default-priority static
// initializer of the program so that those may already use slider lookups.
__attribute__((init_priority(101))) const std::array<std::array<LineLookup, lineKindCount>, 64> lineLookups =
    buildLineLookups();

}  // namespace tarnfold
