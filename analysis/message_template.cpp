#include "analysis/message_template.h"

#include <array>
#include <bit>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "chess/bitboard.h"
#include "chess/names.h"

namespace tarnfold {

namespace {

constexpr std::string_view unknownWord = "???";

constexpr bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

struct WordNames {
    std::string_view word;
    std::string_view withoutValue;
};

constexpr std::array<WordNames, 10> wordNames = {{
    {"color", "'Color'"},
    {"squarecolor", "'SquareColor'"},
    {"count", "'Count'"},
    {"square", "'Square'"},
    {"fileset", "'Files'"},
    {"bitboard", "'Bitboard'"},
    {"piece", "'Piece'"},
    {"piecetype", "'PieceType'"},
    {"lateral", "'Lateral'"},
    {"s", "(s)"},
}};

std::string_view typeNameOfWord(std::string_view word) {
    for (const WordNames& names : wordNames)
        if (names.word == word) return names.withoutValue;
    return unknownWord;
}

// "file a", "files a, c"; nothing for no file.
std::string fileSetText(uint64_t value) {
    const FileSet files = FileSet(value);
    if (files == 0) return {};
    std::string text = std::has_single_bit(files) ? "file " : "files ";
    bool first = true;
    for (int file = 0; file < 8; ++file) {
        if (!((files >> file) & 1)) continue;
        if (!first) text += ", ";
        text += char('a' + file);
        first = false;
    }
    return text;
}

// "square a1", "squares a2, b2"; nothing for no square.
std::string bitboardText(Bitboard squares) {
    if (squares == 0) return {};
    return (moreThanOne(squares) ? "squares " : "square ") + squareListText(squares, true);
}

// The word, not the argument's type tag, decides how the value reads. A
// square off the board has no name to give and shows as an unknown word.
std::string valueText(std::string_view word, uint64_t value) {
    if (word == "color") return std::string(colorName(Color(value)));
    if (word == "squarecolor") return std::string(squareColorName(SquareColor(value)));
    if (word == "count") return std::to_string(int64_t(value));
    if (word == "square") return value < 64 ? std::string(squareName(Square(value))) : std::string(unknownWord);
    if (word == "fileset") return fileSetText(value);
    if (word == "bitboard") return bitboardText(value);
    if (word == "piece") return std::string(pieceName(Piece(value)));
    if (word == "piecetype") return std::string(pieceTypeName(PieceType(value)));
    if (word == "lateral") return value != 0 ? "Kingside" : "Queenside";
    if (word == "s") return value == 1 ? "" : "s";
    return std::string(unknownWord);
}

class TemplateRenderer {
public:
    TemplateRenderer(std::string_view text, std::span<const AnalysisArgument> arguments, bool withValues)
        : text(text), arguments(arguments), withValues(withValues) {}

    std::string render() {
        while (position < text.size()) {
            const char c = text[position++];
            if (c != '%')
                output += c;
            else if (position < text.size() && text[position] == '%')
                output += text[position++];
            else
                placeholder();
        }
        return std::move(output);
    }

private:
    std::string_view text;
    std::span<const AnalysisArgument> arguments;
    bool withValues;
    size_t position = 0;
    std::string output;

    void placeholder() {
        const std::string_view word = readWord();
        if (word == "choose") {
            choice(readAlternatives());
            return;
        }
        const std::optional<size_t> index = readDigit();
        if (!index) return;
        if (!withValues)
            output += typeNameOfWord(word);
        else if (*index < arguments.size())
            output += valueText(word, arguments[*index].value);
        else
            output += unknownWord;
    }

    // The choice's argument picks the alternative, which is rendered with
    // the same arguments, so alternatives may hold placeholders of their own.
    void choice(const std::vector<std::string_view>& alternatives) {
        const std::optional<size_t> index = readDigit();
        if (!withValues) {
            quote(alternatives);
            return;
        }
        if (!index) return;
        if (*index >= arguments.size()) {
            output += unknownWord;
            return;
        }
        const uint64_t picked = arguments[*index].value;
        if (picked < alternatives.size()) output += renderAnalysisTemplate(alternatives[picked], arguments, true);
    }

    void quote(const std::vector<std::string_view>& alternatives) {
        output += '\'';
        for (size_t i = 0; i < alternatives.size(); ++i) {
            if (i > 0) output += '/';
            output += renderAnalysisTemplate(alternatives[i], arguments, false);
        }
        output += '\'';
    }

    std::string_view readWord() {
        const size_t start = position;
        while (position < text.size() && isLetter(text[position])) ++position;
        return text.substr(start, position - start);
    }

    std::optional<size_t> readDigit() {
        if (position >= text.size() || !isDigit(text[position])) return std::nullopt;
        return size_t(text[position++] - '0');
    }

    // The text between braces split at '|'. Braces inside an alternative
    // (a nested choice) are kept whole; a text that ends before the closing
    // brace ends the last alternative.
    std::vector<std::string_view> readAlternatives() {
        std::vector<std::string_view> alternatives;
        if (position >= text.size() || text[position] != '{') return alternatives;
        size_t start = ++position;
        int depth = 0;
        for (; position < text.size(); ++position) {
            const char c = text[position];
            if (c == '{') {
                ++depth;
            } else if (c == '}' && depth > 0) {
                --depth;
            } else if ((c == '|' || c == '}') && depth == 0) {
                alternatives.push_back(text.substr(start, position - start));
                start = position + 1;
                if (c == '}') {
                    ++position;
                    return alternatives;
                }
            }
        }
        alternatives.push_back(text.substr(start));
        return alternatives;
    }
};

}  // namespace

std::string renderAnalysisTemplate(std::string_view text, std::span<const AnalysisArgument> arguments,
                                   bool withValues) {
    return TemplateRenderer(text, arguments, withValues).render();
}

}  // namespace tarnfold
