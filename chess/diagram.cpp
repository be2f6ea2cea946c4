#include "chess/board.h"
#include "chess/names.h"

namespace tarnfold {

namespace {

// Half blocks that close a cell: the right half on the left edge, the left
// half between squares and on the right edge.
constexpr std::string_view rightHalfBlock = "\u2590";
constexpr std::string_view leftHalfBlock = "\u258C";

void appendColored(std::string& out, std::string_view background, std::string_view foreground,
                   std::string_view text) {
    if (!background.empty()) {
        out.append("\033[48;5;");
        out.append(background);
        out.push_back('m');
    }
    out.append("\033[38;5;");
    out.append(foreground);
    out.push_back('m');
    out.append(text);
    out.append("\033[m");
}

}  // namespace

std::string Board::boardDiagram(bool glyphs) const {
    std::string out;
    for (int rank = 7; rank >= 0; --rank) {
        out.push_back(char('1' + rank));
        out.push_back(' ');
        for (int file = 0; file < 8; ++file) {
            const Piece piece = squares[makeSquare(file, rank)];
            if (glyphs)
                out.append(pieceSymbol(piece));
            else
                out.push_back(pieceChar(piece));
            out.push_back(' ');
        }
        out.push_back('\n');
    }
    out.append("  a b c d e f g h\n");
    return out;
}

std::string Board::boardDiagramColored(const ColoredDiagramOptions& options) const {
    auto background = [&](Square square) -> const std::string& {
        int bits = 0;
        for (int set = 0; set < 3; ++set)
            if (contains(options.highlights[set], square)) bits |= 1 << set;
        return options.background[contains(darkSquares, square) ? 1 : 0][bits];
    };
    // Each square is two columns wide with a one-column cell on either side.
    std::string letters;
    if (options.fileLetters) {
        if (options.rankLeft) letters.append("  ");
        letters.push_back(' ');
        for (int file = 0; file < 8; ++file) {
            letters.push_back(char('a' + file));
            letters.append(file < 7 ? "  " : " ");
        }
        letters.push_back('\n');
    }
    std::string out = letters;
    for (int rank = 7; rank >= 0; --rank) {
        if (options.rankLeft) {
            out.push_back(char('1' + rank));
            out.push_back(' ');
        }
        for (int file = 0; file < 8; ++file) {
            const Square square = makeSquare(file, rank);
            const std::string& here = background(square);
            // The closing cell takes the colour of the square on its left as
            // foreground and of the square on its right as background.
            if (file == 0) appendColored(out, "", here, rightHalfBlock);
            const Piece piece = squares[square];
            std::string text;
            if (piece == NoPiece)
                text = " ";
            else if (options.glyphs)
                text = pieceSymbol(piece);
            else
                text = pieceChar(piece);
            text.push_back(' ');
            appendColored(out, here, pieceColor(piece) == White || piece == NoPiece ? "255" : "232", text);
            const std::string_view next =
                file < 7 ? std::string_view(background(makeSquare(file + 1, rank))) : std::string_view();
            appendColored(out, next, here, leftHalfBlock);
        }
        if (options.rankRight) {
            out.push_back(' ');
            out.push_back(char('1' + rank));
        }
        out.push_back('\n');
    }
    out.append(letters);
    return out;
}

}  // namespace tarnfold
