// fen "placement ...": the placement is checked while parsing, so that a
// mistyped position is an error and not a filter that never matches.
#include <optional>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/fen_node.h"

namespace tarnfold::zmf {

namespace {

bool isPieceLetter(char c) {
    switch (c) {
        case 'p':
        case 'n':
        case 'b':
        case 'r':
        case 'q':
        case 'k':
        case 'P':
        case 'N':
        case 'B':
        case 'R':
        case 'Q':
        case 'K': return true;
        default: return false;
    }
}

// What is wrong with the placement field, if anything. It ends at a blank or
// at a crazyhouse pocket in brackets; a ninth group after a slash is a
// pocket too, and a `~` marks a promoted piece.
std::optional<std::string> placementError(std::string_view fen) {
    std::size_t end = fen.find_first_of(" [");
    std::string_view placement = fen.substr(0, end);
    int rank = 8;
    int squares = 0;
    bool lastWasNumber = false;
    auto rankError = [&]() -> std::optional<std::string> {
        std::string text = squares > 8 ? "too many pieces in rank " : "too few pieces in rank ";
        text.append(std::to_string(rank));
        return text;
    };
    for (std::size_t i = 0; i < placement.size(); ++i) {
        char c = placement[i];
        if (rank == 0) {  // the pocket group
            if (!isPieceLetter(c)) return "invalid character";
            continue;
        }
        if (c == '/') {
            if (squares != 8) return rankError();
            --rank;
            squares = 0;
            lastWasNumber = false;
        } else if (c >= '1' && c <= '8') {
            if (lastWasNumber) return "consecutive numbers in fen string";
            squares += c - '0';
            lastWasNumber = true;
        } else if (isPieceLetter(c)) {
            ++squares;
            lastWasNumber = false;
        } else if (c == '~' && i > 0 && isPieceLetter(placement[i - 1])) {
            lastWasNumber = false;
        } else {
            return "invalid character";
        }
        if (rank > 0 && squares > 8) return rankError();
    }
    if (rank >= 1 && squares != 8) return rankError();
    if (rank > 1) {  // the ranks below are missing altogether
        --rank;
        squares = 0;
        return rankError();
    }
    return std::nullopt;
}

// fen "text"
class FenHandler : public PrefixHandler {
public:
    FenHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwFen) {}

    NodePtr parse(const Token& token) override {
        Token literal = parser.expectToken(TokenKind::StringLiteral);
        if (literal.kind != TokenKind::StringLiteral) return nullptr;
        std::string fen = literal.text.substr(1, literal.text.size() - 2);
        if (fen.empty()) {
            parser.report(token.begin, MessageLevel::Error, "Empty string argument for 'fen' filter");
            return nullptr;
        }
        if (std::optional<std::string> error = placementError(fen)) {
            std::string text = "Malformed FEN string: ";
            text.append(*error);
            parser.report(literal.begin, MessageLevel::Error, text, {{literal.begin, literal.end}});
            return nullptr;
        }
        return makeNode<FenNode>(parser, token, std::move(fen));
    }
};

}  // namespace

void registerFenHandler(Parser& parser) { parser.registerPrefix(std::make_unique<FenHandler>(parser)); }

}  // namespace tarnfold::zmf
