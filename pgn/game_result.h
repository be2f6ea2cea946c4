#pragma once

// Game results as codes: 0 White wins, 1 Black wins, 2 draw, 3 unknown ("*"),
// 4 no result token at all.

#include <cstdint>
#include <string_view>

namespace tarnfold::PGN {

enum GameResult : uint32_t { WhiteWins = 0, BlackWins = 1, Draw = 2, UnknownResult = 3, NoResult = 4 };

// "1-0", "0-1", "1/2-1/2" or "1/2", "*"; anything else NoResult.
GameResult resultFromText(std::string_view text);
// "1-0", "0-1", "1/2-1/2", and "*" for every other code.
std::string_view resultText(uint32_t result);

// How the scan for the end of a game's text recognises a result, one
// character at a time: 0 nothing, 1 "0", 2 "1", 3 "1-", 4 "1/", 5 "0-", and 6
// a complete result (which white space after it turns into the game's end).
constexpr int nextResultState(int state, char c) {
    switch (state) {
        case 0: return c == '*' ? 6 : c == '1' ? 2 : c == '0' ? 1 : 0;
        case 1: return c == '-' ? 5 : 0;
        case 2: return c == '-' ? 3 : c == '/' ? 4 : 0;
        case 3: return c == '0' ? 6 : 0;
        case 4: return c == '2' ? 6 : 0;
        case 5: return c == '1' ? 6 : 0;
        default: return 0;
    }
}

}  // namespace tarnfold::PGN
