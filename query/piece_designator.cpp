#include "query/piece_designator.h"

#include <utility>
#include <vector>

#include "chess/bitboard.h"

namespace tarnfold::zmf {
namespace {

// Reading past the end gives NUL, which no rule accepts, so the scan needs no
// bounds checks of its own.
class Bytes {
public:
    explicit Bytes(std::string_view text) : text_(text) {}
    char operator[](std::size_t index) const { return index < text_.size() ? text_[index] : '\0'; }

private:
    std::string_view text_;
};

bool isFileLetter(char c) { return c >= 'a' && c <= 'h'; }
bool isRankDigit(char c) { return c >= '1' && c <= '8'; }

bool isIdentifierByte(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '$';
}

Bitboard filesBetween(int first, int second) {
    if (first > second) std::swap(first, second);
    Bitboard files = 0;
    for (int file = first; file <= second; ++file) files |= fileMask[file];
    return files;
}

Bitboard ranksBetween(int first, int second) {
    if (first > second) std::swap(first, second);
    Bitboard ranks = 0;
    for (int rank = first; rank <= second; ++rank) ranks |= rankMask[rank];
    return ranks;
}

// One range such as e4, a-h1, a1-8 or h-a8-1; its squares are added. Gives
// the length read, 0 when there is no range here.
std::size_t scanRange(const Bytes& at, std::size_t position, Bitboard& squares) {
    std::size_t p = position;
    if (!isFileLetter(at[p])) return 0;
    int firstFile = at[p] - 'a';
    int lastFile = firstFile;
    ++p;
    if (at[p] == '-') {
        if (!isFileLetter(at[p + 1])) return 0;
        lastFile = at[p + 1] - 'a';
        p += 2;
    }
    if (!isRankDigit(at[p])) return 0;
    int firstRank = at[p] - '1';
    int lastRank = firstRank;
    ++p;
    // A dash without a rank behind it is left for the minus operator: a1-x.
    if (at[p] == '-' && isRankDigit(at[p + 1])) {
        lastRank = at[p + 1] - '1';
        p += 2;
    }
    if (isIdentifierByte(at[p])) return 0;
    squares |= filesBetween(firstFile, lastFile) & ranksBetween(firstRank, lastRank);
    return p - position;
}

// A range, or ranges in brackets separated by commas.
std::size_t scanSquarePart(const Bytes& at, std::size_t position, Bitboard& squares) {
    squares = 0;
    if (at[position] != '[') return scanRange(at, position, squares);
    std::size_t p = position + 1;
    while (true) {
        std::size_t length = scanRange(at, p, squares);
        if (length == 0) return 0;
        p += length;
        if (at[p] == ']') return p + 1 - position;
        if (at[p] != ',') return 0;
        ++p;
    }
}

int pieceLetterBit(char c) {
    if (c == '\0') return -1;
    std::size_t index = pieceMaskLetters.find(c);
    return index == std::string_view::npos ? -1 : static_cast<int>(index);
}

// One piece letter, or letters in brackets; [] is a valid, empty piece part.
std::size_t scanPiecePart(const Bytes& at, std::size_t position, std::uint16_t& mask) {
    mask = 0;
    if (at[position] != '[') {
        int bit = pieceLetterBit(at[position]);
        if (bit < 0) return 0;
        mask = static_cast<std::uint16_t>(1u << bit);
        return 1;
    }
    std::size_t p = position + 1;
    for (; at[p] != ']'; ++p) {
        int bit = pieceLetterBit(at[p]);
        if (bit < 0) return 0;
        mask |= static_cast<std::uint16_t>(1u << bit);
    }
    return p + 1 - position;
}

}  // namespace

DesignatorScan scanPieceDesignator(std::string_view text, std::size_t position) {
    Bytes at(text);
    DesignatorScan scan;
    if (at[position] == '.') {
        scan.length = 1;
        return scan;
    }

    Bitboard squares = 0;
    std::uint16_t mask = 0;
    std::size_t pieceLength = 0;
    std::size_t squareLength = scanSquarePart(at, position, squares);
    if (squareLength == 0) {
        pieceLength = scanPiecePart(at, position, mask);
        squareLength = scanSquarePart(at, position + pieceLength, squares);
        if (pieceLength == 0 && squareLength == 0) return scan;
    }

    // Letters that run on into an identifier belong to that identifier: Rook,
    // Ab, _x. A bracket can never be part of one, so bracket forms pass.
    std::size_t length = pieceLength + squareLength;
    bool identifierLike = true;
    for (std::size_t i = position; i < position + length; ++i) identifierLike &= isIdentifierByte(at[i]);
    if (identifierLike && isIdentifierByte(at[position + length])) return scan;

    scan.length = length;
    if (squareLength > 0) scan.squares = squares;
    if (pieceLength > 0) scan.pieceMask = mask;
    return scan;
}

std::string pieceMaskText(std::uint16_t mask) {
    std::string letters;
    for (std::size_t bit = 0; bit < pieceMaskLetters.size(); ++bit)
        if (mask >> bit & 1) letters += pieceMaskLetters[bit];
    return letters;
}

namespace {

std::string spanText(char first, char last) {
    std::string text(1, first);
    if (last != first) text.append(1, '-').append(1, last);
    return text;
}

// The squares as ranges of whole rectangles, taken greedily from a1: each
// run of files on its lowest rank, extended upwards while the same run
// stands on the rank above.
std::string squaresText(Bitboard squares) {
    std::vector<std::string> ranges;
    while (squares != 0) {
        Square corner = lowestSquare(squares);
        int rank = rankOf(corner), firstFile = fileOf(corner), lastFile = firstFile;
        while (lastFile < 7 && contains(squares, makeSquare(lastFile + 1, rank))) ++lastFile;
        Bitboard run = 0;
        for (int file = firstFile; file <= lastFile; ++file) run |= squareBit(makeSquare(file, rank));
        int lastRank = rank;
        while (lastRank < 7 && (squares & (run << (8 * (lastRank + 1 - rank)))) == run << (8 * (lastRank + 1 - rank)))
            ++lastRank;
        for (int r = rank; r <= lastRank; ++r) squares &= ~(run << (8 * (r - rank)));
        ranges.push_back(spanText(char('a' + firstFile), char('a' + lastFile)) +
                         spanText(char('1' + rank), char('1' + lastRank)));
    }
    if (ranges.size() == 1) return ranges.front();
    std::string text("[");
    for (std::size_t i = 0; i < ranges.size(); ++i) text.append(i ? "," : "").append(ranges[i]);
    return text.append("]");
}

}  // namespace

std::string designatorText(std::optional<Bitboard> squares, std::optional<std::uint16_t> pieceMask) {
    if (!squares && !pieceMask) return ".";
    std::string text;
    if (pieceMask) {
        std::string letters = pieceMaskText(*pieceMask);
        text = letters.size() == 1 ? letters : "[" + letters + "]";
    }
    // An empty square part cannot be written; the copy holding it is void.
    if (squares && *squares != 0) text.append(squaresText(*squares));
    return text;
}

}  // namespace tarnfold::zmf
