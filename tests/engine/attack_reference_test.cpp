// attacks and attackedby against a slow reference: a square-by-square walk
// of every piece's moves, over the positions of real games of every rule
// set in the corpus sample.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "chess/names.h"
#include "engine/zmf_engine.h"
#include "query/parser.h"
#include "read_games.h"

namespace tarnfold::zmf {
namespace {

using Game = TestGame;

// Whether the piece on `from` attacks `to`: pawns by their colour's capture
// pattern, sliders along an open line, on the board as it stands.
bool attacksSlowly(const Board& board, Square from, Square to) {
    const Piece piece = board.pieceOn(from);
    if (piece == NoPiece || from == to) return false;
    const int df = fileOf(to) - fileOf(from), dr = rankOf(to) - rankOf(from);
    const int adf = std::abs(df), adr = std::abs(dr);
    switch (pieceType(piece)) {
        case Pawn: return adf == 1 && dr == (pieceColor(piece) == White ? 1 : -1);
        case Knight: return (adf == 1 && adr == 2) || (adf == 2 && adr == 1);
        case King: return adf <= 1 && adr <= 1;
        case Bishop:
        case Rook:
        case Queen: break;
        case NoPieceType: return false;
    }
    const bool straight = df == 0 || dr == 0, diagonal = adf == adr;
    const PieceType type = pieceType(piece);
    if (!(straight && type != Bishop) && !(diagonal && type != Rook)) return false;
    const int sf = (df > 0) - (df < 0), sr = (dr > 0) - (dr < 0);
    for (int f = fileOf(from) + sf, r = rankOf(from) + sr; makeSquare(f, r) != to; f += sf, r += sr)
        if (board.pieceOn(makeSquare(f, r)) != NoPiece) return false;
    return true;
}

ParsedQuery parse(Parser& parser, const std::string& text) {
    QuerySource source;
    source.add("query", text);
    return parser.parseQuery(source);
}

// For each target square t: '[a-h1-8] attacks t' must be the attackers of t,
// and 't attackedby S' must hold exactly when some square of S attacks t,
// with S the pieces of one colour.
TEST(AttackReference, AttacksAndAttackedByAgreeWithASlowWalk) {
    const auto games = sampleGames(4);
    ASSERT_GE(games.size(), 40u);
    Parser parser;
    size_t positions = 0;
    for (Square target = Square(0); target < 64; ++target) {
        const std::string name(squareName(target));
        ParsedQuery attackers = parse(parser, "[a-h1-8] attacks " + name);
        ParsedQuery byWhite = parse(parser, name + " attackedby A");
        ASSERT_TRUE(attackers.root && byWhite.root) << name;
        ZMFEngine engine, second;
        for (const auto& game : games) {
            std::vector<PositionMatch> found, hit;
            engine.runGame(*game, attackers, found);
            second.runGame(*game, byWhite, hit);
            std::vector<Bitboard> got(engine.positionCount(), 0);
            for (const PositionMatch& match : found) got[match.node->mark] = match.value.asSet();
            std::vector<bool> gotHit(engine.positionCount(), false);
            for (const PositionMatch& match : hit) gotHit[match.node->mark] = true;
            for (uint32_t id = 0; id < engine.positionCount(); ++id) {
                const Board& board = engine.boards[id];
                Bitboard expected = 0;
                bool whiteAttacks = false;
                for (Square from = Square(0); from < 64; ++from) {
                    if (!attacksSlowly(board, from, target)) continue;
                    expected |= squareBit(from);
                    whiteAttacks |= pieceColor(board.pieceOn(from)) == White;
                }
                ASSERT_EQ(got[id], expected) << board.toFen() << " attacks " << name;
                ASSERT_EQ(gotHit[id], whiteAttacks) << board.toFen() << " attackedby " << name;
                ++positions;
            }
        }
    }
    EXPECT_GT(positions, 64u * 1000u);
}

}  // namespace
}  // namespace tarnfold::zmf
