#include <cstdio>
#include <streambuf>
#include <string>

#include "pgn/game_result.h"
#include "pgn/pgn_parser.h"

namespace tarnfold::PGN {

namespace {

inline bool isSpace(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

// Runs under the lock that all workers share, so it reads each character once,
// straight from the stream buffer, and builds no token. It keeps no position:
// the text is parsed again by a worker's own parser, which counts for itself.
bool PGNParser::readGameText(std::string& text) {
    text.clear();
    if (!buffer_) return false;
    std::streambuf& in = *buffer_;
    const auto next = [&in, &text]() {
        const int c = in.sbumpc();
        if (c != EOF) text.push_back(static_cast<char>(c));
        return c;
    };

    int state = 0;
    bool inTagBrackets = false;
    bool seenMoveText = false;
    bool nonSpace = false;
    for (;;) {
        const int c = next();
        if (c == EOF) return nonSpace;
        const bool space = isSpace(c);
        if (state == 6 && space) return true;
        state = nextResultState(state, char(c));
        if (space) continue;
        nonSpace = true;
        switch (c) {
            case '"': {
                int s = next();
                while (s != EOF && s != '\n') {
                    if (s == '\\') {
                        // An escaped newline does not end the string.
                        if (next() == EOF) break;
                    } else if (s == '"') {
                        if (!inTagBrackets) break;
                        // The tokenizer's rule for quotes in tag values: only a
                        // ']' after optional blanks, or the line's end, closes.
                        do s = next();
                        while (s != EOF && s != '\n' && isSpace(s));
                        if (s == EOF || s == '\n') break;
                        if (s == ']') {
                            inTagBrackets = false;
                            break;
                        }
                        continue;
                    }
                    s = next();
                }
                break;
            }
            case '%':
            case ';': {
                int s;
                do s = next();
                while (s != EOF && s != '\n');
                break;
            }
            case '<': {
                int s;
                do s = in.sbumpc();
                while (s != EOF && s != '>');
                break;
            }
            case '[':
                if (!inTagBrackets && seenMoveText) {
                    text.pop_back();
                    in.sputbackc('[');
                    return true;
                }
                inTagBrackets = true;
                break;
            case ']': inTagBrackets = false; break;
            case '{': {
                int depth = 1;
                for (int s = next(); s != EOF; s = next()) {
                    if (s == '}') {
                        if (--depth == 0 || !nestedComments_) break;
                    } else if (s == '{') {
                        ++depth;
                    }
                }
                break;
            }
            default:
                if (!inTagBrackets) seenMoveText = true;
                break;
        }
    }
}

}  // namespace tarnfold::PGN
