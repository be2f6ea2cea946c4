// libFuzzer target: parseMove on arbitrary text in positions of every rule
// set returns a code and leaves the board as it was; a move it accepts is
// legal there, and its SAN reads back to the same move.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "chess/notation.h"

namespace {

using namespace tarnfold;

struct Setup {
    Variant variant;
    const char* fen;
};

// Positions with castling both ways, en passant, promotions, pockets,
// reverse-move material and variant quirks.
constexpr Setup setups[] = {
    {Standard, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"},
    {Standard, "rnbqkbnr/pp1ppppp/8/2pP4/8/8/PPP1PPPP/RNBQKBNR w KQkq c6 0 2"},
    {Standard, "r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 b kq - 0 1"},
    {Chess960, "rk5r/8/8/8/8/8/8/R5KR w HAha - 0 1"},
    {Crazyhouse, "r1bqk2r/pppp1ppp/2n2n2/2b1p3/2B1P3/5N2/PPPP1PPP/RNBQK2R[NPbp] w KQkq - 0 5"},
    {Giveaway, "8/1P6/8/8/8/8/6p1/8 w - - 0 1"},
    {Atomic, "rn2k1nr/1p2pp1p/2p2bp1/p2p4/8/1PNP2PB/PBP4P/R2QK2R b KQkq - 2 15"},
    {RacingKings, "8/8/8/8/8/8/krbnNBRK/qrbnNBRQ w - - 0 1"},
    {Horde, "rnbqkbnr/pppppppp/8/1PP2PP1/PPPPPPPP/PPPPPPPP/PPPPPPPP/PPPPPPPP w kq - 0 1"},
};

void check(bool condition) {
    if (!condition) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const Setup& setup = setups[data[0] % std::size(setups)];
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    Board board(setup.variant);
    check(board.setFen(setup.fen));
    const Board before = board;
    MoveList legal, reverses;
    board.generateLegalMoves(legal);
    board.generateLegalReverseMoves(reverses);
    for (Notation notation : {Notation::SAN, Notation::EDN}) {
        for (size_t start = 0; start <= text.size(); ++start) {
            Move move;
            size_t position = start;
            const MoveError error = parseMove(board, notation, text, move, position);
            check(error <= MoveAmbiguous);
            check(position <= text.size());
            check(board == before);
            if (error != MoveSuccess || move.isNull()) continue;
            const MoveList& list = move.isReverse() ? reverses : legal;
            check(std::find(list.begin(), list.end(), move) != list.end());
            const std::string written = moveToText(board, move);
            Move again;
            size_t writtenPosition = 0;
            check(parseSan(board, written, again, writtenPosition) == MoveSuccess && again == move);
        }
    }
    return 0;
}
