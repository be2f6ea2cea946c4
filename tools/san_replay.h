#pragma once

// Replays the movetext of PGN games through the SAN reader and writer: each
// move, main line and variations, is read, written back, read again to the
// same move, and made. A deliberately small walker (tags, comments, NAGs,
// numbers, variations, results) for checking notation against real files;
// the PGN subsystem proper is elsewhere.

#include <cctype>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "chess/board.h"
#include "chess/notation.h"

namespace tarnfold::replay {

struct ReplayResult {
    int games = 0;
    uint64_t moves = 0;
    int failedGames = 0;
    std::vector<std::string> failures;  // the first few, with game and move
};

class Replayer {
public:
    // onPosition, if given, sees every position reached, the start included.
    explicit Replayer(ReplayResult& result, std::function<void(const Board&)> onPosition = {})
        : result_(result), onPosition_(std::move(onPosition)) {}

    void run(std::string_view pgn) {
        size_t i = 0;
        while (i < pgn.size()) {
            const char c = pgn[i];
            const bool lineStart = i == 0 || pgn[i - 1] == '\n';
            if (lineStart && (c == '[' || c == '%')) {
                const size_t end = lineEnd(pgn, i);
                if (c == '[') tagLine(pgn.substr(i, end - i));
                i = end;
            } else if (c == '{') {
                i = closing(pgn, i, '}');
            } else if (c == ';') {
                i = lineEnd(pgn, i);
            } else if (c == '(') {
                stack_.push_back({current_, previous_});
                current_ = previous_;
                ++i;
            } else if (c == ')') {
                if (!stack_.empty()) {
                    current_ = stack_.back().first;
                    previous_ = stack_.back().second;
                    stack_.pop_back();
                }
                ++i;
            } else if (std::isspace(static_cast<unsigned char>(c))) {
                ++i;
            } else {
                size_t end = i;
                while (end < pgn.size() && !std::isspace(static_cast<unsigned char>(pgn[end])) &&
                       std::string_view("{}();").find(pgn[end]) == std::string_view::npos)
                    ++end;
                word(pgn.substr(i, end - i));
                i = end;
            }
        }
    }

private:
    static size_t lineEnd(std::string_view text, size_t i) {
        const size_t end = text.find('\n', i);
        return end == std::string_view::npos ? text.size() : end + 1;
    }

    static size_t closing(std::string_view text, size_t i, char mark) {
        const size_t end = text.find(mark, i);
        return end == std::string_view::npos ? text.size() : end + 1;
    }

    void tagLine(std::string_view line) {
        if (inMovetext_) inMovetext_ = false;
        const size_t space = line.find(' ');
        const size_t open = line.find('"'), close = line.rfind('"');
        if (space == std::string_view::npos || open == std::string_view::npos || close <= open) return;
        const std::string_view name = line.substr(1, space - 1),
                               value = line.substr(open + 1, close - open - 1);
        if (name == "Event") {
            variant_ = Standard;
            fen_.clear();
        } else if (name == "Variant") {
            variant_ = variantFromName(std::string(value));
        } else if (name == "FEN") {
            fen_ = value;
        }
    }

    void startGame() {
        inMovetext_ = true;
        ++result_.games;
        moveNumber_ = 0;
        broken_ = false;
        stack_.clear();
        current_ = Board(variant_);
        if (fen_.empty()) {
            current_.setStartPosition();
        } else if (!current_.setFen(fen_)) {
            fail("bad FEN " + fen_);
        }
        previous_ = current_;
        if (onPosition_) onPosition_(current_);
    }

    void word(std::string_view text) {
        if (!inMovetext_) startGame();
        if (text == "1-0" || text == "0-1" || text == "1/2-1/2" || text == "*") {
            inMovetext_ = false;
            return;
        }
        if (text[0] == '$' || std::isdigit(static_cast<unsigned char>(text[0]))) {
            if (text.find_first_not_of("0123456789.$") == std::string_view::npos) return;
        }
        // Numbers glued to the move: "12.e4", "12...e5".
        const size_t dots = text.find_last_of('.');
        if (dots != std::string_view::npos &&
            text.substr(0, dots + 1).find_first_not_of("0123456789.") == std::string_view::npos)
            text.remove_prefix(dots + 1);
        if (text.empty() || broken_) return;
        playMove(text);
    }

    void playMove(std::string_view text) {
        ++moveNumber_;
        Move move;
        size_t position = 0;
        const MoveError error = parseSan(current_, text, move, position);
        if (error != MoveSuccess) {
            fail(std::string(text) + ": " + std::string(moveErrorText(error)));
            return;
        }
        if (text.substr(position).find_first_not_of("!?") != std::string_view::npos) {
            fail(std::string(text) + ": text left after the move");
            return;
        }
        const std::string written = moveToText(current_, move);
        Move again;
        size_t writtenPosition = 0;
        if (parseSan(current_, written, again, writtenPosition) != MoveSuccess || again != move ||
            writtenPosition != written.size()) {
            fail(std::string(text) + ": written as " + written + ", which does not read back");
        }
        ++result_.moves;
        previous_ = current_;
        current_.makeMove(move);
        if (onPosition_) onPosition_(current_);
    }

    // The rest of a game after a failure says nothing: its board is lost.
    void fail(std::string message) {
        if (!broken_) ++result_.failedGames;
        broken_ = true;
        if (result_.failures.size() < 20)
            result_.failures.push_back("game " + std::to_string(result_.games) + " move " +
                                       std::to_string(moveNumber_) + " (" + current_.toFen() +
                                       "): " + message);
        else if (result_.failures.size() == 20)
            result_.failures.push_back("...");
    }

    ReplayResult& result_;
    std::function<void(const Board&)> onPosition_;
    Variant variant_ = Standard;
    std::string fen_;
    bool inMovetext_ = false;
    int moveNumber_ = 0;
    bool broken_ = false;
    Board current_, previous_;
    std::vector<std::pair<Board, Board>> stack_;
};

inline ReplayResult replayPgn(std::string_view pgn) {
    ReplayResult result;
    Replayer(result).run(pgn);
    return result;
}

}  // namespace tarnfold::replay
