#include "query/nodes/fen_node.h"

#include "chess/bitboard.h"
#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

// The letter's colour and type, for a letter the handler has let through.
std::optional<std::pair<Color, PieceType>> pieceOfLetter(char letter) {
    static constexpr std::string_view letters = "pnbrqk";
    const char lower = char(letter | 0x20);
    const std::size_t type = letters.find(lower);
    if (type == std::string_view::npos) return std::nullopt;
    return std::pair(letter == lower ? Black : White, PieceType(type));
}

}  // namespace

// The handler has checked the placement; a pocket after it and a promotion
// mark ask nothing of the board.
FenNode::FenNode(OptionalOffset location, std::string fen)
    : ZMFNode(kind, ValueType::Boolean, location), fen(std::move(fen)) {
    const std::string_view text = this->fen;
    const std::size_t end = text.find_first_of(" [");
    int rank = 7, file = 0;
    for (char c : text.substr(0, end)) {
        if (c == '/') {
            if (--rank < 0) break;
            file = 0;
        } else if (c >= '1' && c <= '8') {
            for (int run = c - '0'; run > 0 && file < 8; --run) emptySquares |= squareBit(makeSquare(file++, rank));
        } else if (const auto piece = pieceOfLetter(c); piece && file < 8) {
            pieces[piece->first][piece->second] |= squareBit(makeSquare(file++, rank));
        }
    }
    if (end == std::string_view::npos) return;
    const std::size_t side = text.find_first_not_of(" ", text.find(' ', end));
    if (side == std::string_view::npos) return;
    if (text[side] == 'w') sideToMove = White;
    if (text[side] == 'b') sideToMove = Black;
}

void FenNode::print(PrintTarget& target) const { target << "fen \"" << fen << "\""; }

void FenNode::dump(DumpTarget& target, bool isLast) const {
    dumpNode(*this, target, isLast, "Fen (\"" + fen + "\")");
}

}  // namespace tarnfold::zmf
