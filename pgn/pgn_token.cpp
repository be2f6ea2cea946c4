#include "pgn/pgn_token.h"

#include <array>
#include <utility>

namespace tarnfold::PGN {

namespace {

constexpr std::array<std::pair<std::string_view, int>, 13> kAnnotations{{
    {"!", 1},
    {"?", 2},
    {"!!", 3},
    {"??", 4},
    {"!?", 5},
    {"?!", 6},
    {"=", 10},
    {"+/=", 14},
    {"=/+", 15},
    {"+/-", 16},
    {"-/+", 17},
    {"+-", 18},
    {"-+", 19},
}};

}  // namespace

int annotationNag(std::string_view text) {
    for (const auto& [annotation, nag] : kAnnotations) {
        if (annotation == text) return nag;
    }
    return -1;
}

std::string tokenDebugForm(const PGNToken& token) {
    std::string out;
    switch (token.type) {
        case PGNTokenType::Invalid: out = "INVALID (" + token.text + ")"; break;
        case PGNTokenType::Integer: out = "INTEGER (" + std::to_string(token.value) + ")"; break;
        case PGNTokenType::Symbol: out = "SYMBOL (" + token.text + ")"; break;
        case PGNTokenType::String: out = "STRING (" + token.text + ")"; break;
        case PGNTokenType::Period: out = "PERIOD"; break;
        case PGNTokenType::LBracket: out = "LBRACKET"; break;
        case PGNTokenType::RBracket: out = "RBRACKET"; break;
        case PGNTokenType::LParen: out = "LPAREN"; break;
        case PGNTokenType::RParen: out = "RPAREN"; break;
        case PGNTokenType::LAngle: out = "LANGLE"; break;
        case PGNTokenType::RAngle: out = "RANGLE"; break;
        case PGNTokenType::Nag: out = "NAG (" + std::to_string(token.value) + ")"; break;
        case PGNTokenType::Comment: out = "COMMENT (" + token.text + ")"; break;
        case PGNTokenType::BrComment: out = "BRCOMMENT (" + token.text + ")"; break;
        case PGNTokenType::Annotation: out = "ANNOTATION (" + token.text + ")"; break;
        case PGNTokenType::EndGame: out = "ENDGAME"; break;
        case PGNTokenType::EscLine: out = "ESCLINE (" + token.text + ")"; break;
        case PGNTokenType::Eof: out = "EOF"; break;
    }
    out +=
        "(line " + std::to_string(token.start.line + 1) + ", col " + std::to_string(token.start.column) + ")";
    return out;
}

}  // namespace tarnfold::PGN
