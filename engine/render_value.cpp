#include "chess/names.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

std::string pieceText(uint16_t id, const Board& board) {
    for (Bitboard rest = board.occupied; rest;) {
        const Square square = popLowest(rest);
        if (board.pieceIds[square] != id) continue;
        std::string text(1, pieceLetters[board.squares[square]]);
        text += squareName(square);
        return text;
    }
    return "[absent]";
}

std::string dictionaryText(const ZmfDictionary& entries) {
    std::string text = "Dictionary with " + std::to_string(entries.size());
    text += entries.size() == 1 ? " entry" : " entries";
    if (entries.empty()) return text;
    text += ':';
    for (const auto& [key, value] : entries) {
        text += '\n';
        text += key;
        text += ": ";
        text += value;
    }
    return text;
}

}  // namespace

std::string renderValue(const Value& value, const Board* board) {
    switch (value.type()) {
        case ValueType::Empty: return "<None>";
        case ValueType::Boolean: return value.asBoolean() ? "true" : "false";
        case ValueType::Numeric: return std::to_string(value.asNumeric());
        case ValueType::Set: {
            const Bitboard squares = value.asSet();
            const std::string list = squareListText(squares, false);
            return popCount(squares) == 1 ? list : "[" + list + "]";
        }
        case ValueType::Position: {
            if (!board) return std::to_string(value.asPosition().id);
            std::string text = "move " + std::to_string(board->fullmoveNumber);
            text += board->sideToMove == White ? "(wtm)" : "(btm)";
            return text;
        }
        case ValueType::Piece:
            return board ? pieceText(value.asPieceId(), *board) : std::to_string(value.asPieceId());
        case ValueType::String: return value.asString()->toUtf8();
        case ValueType::Dictionary: return dictionaryText(*value.asDictionary());
    }
    return "<None>";
}

}  // namespace tarnfold::zmf
