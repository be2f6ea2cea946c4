#include "pgn/game_result.h"

namespace tarnfold::PGN {

GameResult resultFromText(std::string_view text) {
    if (text == "1-0") return WhiteWins;
    if (text == "0-1") return BlackWins;
    if (text == "1/2-1/2" || text == "1/2") return Draw;
    if (text == "*") return UnknownResult;
    return NoResult;
}

std::string_view resultText(uint32_t result) {
    switch (result) {
        case WhiteWins: return "1-0";
        case BlackWins: return "0-1";
        case Draw: return "1/2-1/2";
        default: return "*";
    }
}

}  // namespace tarnfold::PGN
