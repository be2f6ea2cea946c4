#pragma once

// The tokens of PGN text and the fixed table of move annotations ("!", "?!",
// "+-" and the like) with their NAG codes.

#include <cstdint>
#include <string>
#include <string_view>

#include "pgn/pgn_position.h"

namespace tarnfold::PGN {

// EOF is a C macro, hence the CamelCase names.
enum class PGNTokenType : uint32_t {
    Invalid = 0,
    Integer,
    Symbol,
    String,
    Period,
    LBracket,
    RBracket,
    LParen,
    RParen,
    LAngle,
    RAngle,
    Nag,
    Comment,
    BrComment,
    Annotation,
    EndGame,
    EscLine,
    Eof
};

struct PGNToken {
    PGNTokenType type = PGNTokenType::Invalid;
    PGNPosition start;
    PGNPosition end;
    std::string text;
    // The number of an INTEGER or NAG, the NAG code of an ANNOTATION.
    uint64_t value = 0;
};

// "SYMBOL (e4)(line 1, col 4)": for diagnostics of the tokenizer only. The
// line is printed counted from 1, as in every message.
std::string tokenDebugForm(const PGNToken& token);

// The NAG of an annotation text, or -1 when the text is not in the table.
int annotationNag(std::string_view text);

}  // namespace tarnfold::PGN
