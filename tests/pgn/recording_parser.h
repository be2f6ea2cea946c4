#pragma once

// A parser that writes down every callback as a short line of text, so that
// tests can compare whole runs of the parser at once.

#include <cstdint>
#include <istream>
#include <string>
#include <vector>

#include "pgn/pgn_parser.h"

namespace tarnfold::PGN::testing {

struct Event {
    std::string what;
    // The position the callback was given.
    PGNPosition where;
    // The parser's own position when the callback came.
    uint64_t offset = 0;
};

inline std::string positionText(const PGNPosition& p) {
    return std::to_string(p.line) + ":" + std::to_string(p.column) + ":" + std::to_string(p.offset);
}

// The debug form of a token without its "(line L, col C)".
inline std::string tokenText(const PGNToken& token) {
    std::string form = tokenDebugForm(token);
    return form.substr(0, form.rfind("(line "));
}

class RecordingParser : public PGNParser {
public:
    using PGNParser::PGNParser;

    std::vector<Event> events;
    // onMove refuses this move text.
    std::string failingMove;
    // onMove accepts this move text but records an error, as a reader would.
    std::string errorMove;
    bool refuseVariations = false;

    bool note(std::string what, const PGNPosition& where) {
        events.push_back({std::move(what), where, position().offset});
        return true;
    }

    // Every parseGame call up to the first 2, each followed by "=> result".
    void parseAll() {
        for (int guard = 0; guard < 1000; ++guard) {
            errors.clear();
            const int result = parseGame();
            note("=> " + std::to_string(result), position());
            if (result == 2) return;
        }
        note("no end", position());
    }

    // The events joined by " | ", each optionally with "@line:column:offset".
    static std::string join(const std::vector<Event>& events, bool withPositions = false) {
        std::string out;
        for (const Event& event : events) {
            if (!out.empty()) out += event.what.starts_with("=>") ? " " : " | ";
            out += event.what;
            if (withPositions && !event.what.starts_with("=>")) {
                out += '@';
                out += positionText(event.where);
            }
        }
        return out;
    }
    std::string log(bool withPositions = false) const { return join(events, withPositions); }

    bool onTag(const PGNTag& tag) override { return note("tag " + tag.name + "=" + tag.value, tag.start); }
    bool onEmptyTag(const PGNPosition& position) override { return note("emptytag", position); }
    bool onTagWithoutValue(const PGNTag& tag) override { return note("tagnovalue " + tag.name, tag.start); }
    bool onComment(const PGNComment& comment) override {
        return note(comment.kind == PGNComment::Line ? ";" + comment.text : "{" + comment.text + "}",
                    comment.start);
    }
    bool onNag(const PGNToken& token) override {
        return note("nag " + token.text + "=" + std::to_string(token.value), token.start);
    }
    bool onAnnotation(const PGNToken& token) override {
        return note("ann " + token.text + "=" + std::to_string(token.value), token.start);
    }
    bool onEndOfStream(const PGNPosition& position) override { return note("eos", position); }
    bool onGameEnd(uint32_t result, const PGNPosition& position, bool missingTerminator) override {
        return note("end " + std::to_string(result) + (missingTerminator ? " missing" : ""), position);
    }
    bool onVariationBegin(const PGNPosition& position) override {
        note(refuseVariations ? "( no" : "(", position);
        return !refuseVariations;
    }
    bool onVariationEnd(const PGNPosition& position) override { return note(")", position); }
    bool onMove(const std::string& moveText, const PGNToken& token, const PGNPosition& position) override {
        note("move " + moveText + (moveText == token.text ? "" : " token " + token.text), position);
        if (moveText == errorMove) errors.push_back({position, "bad move"});
        return moveText != failingMove;
    }
    bool onEscapeLine(const std::string& text, const PGNPosition& start, const PGNPosition&) override {
        return note("%" + text, start);
    }
    bool onInvalidToken(const PGNToken& token) override {
        return note("invalid " + tokenText(token), token.start);
    }
    bool onUnterminatedString(const std::string& text, const PGNPosition& position) override {
        return note("unterminated " + text, position);
    }
    bool onUnescapedQuote(const std::string& text, const PGNPosition& position) override {
        return note("quote " + text, position);
    }
    bool onInvalidEscape(const std::string& text, const PGNPosition& position, char character) override {
        return note("escape " + text + " " + character, position);
    }
    bool onGameStart(const PGNPosition& position) override { return note("start", position); }
};

}  // namespace tarnfold::PGN::testing
