#include "query/transform.h"

#include "chess/bitboard.h"

namespace tarnfold::zmf {

namespace {

TransformEntry flips(bool ranks, bool files, bool transpose) {
    TransformEntry entry;
    entry.mirrorRanks = ranks;
    entry.mirrorFiles = files;
    entry.transpose = transpose;
    return entry;
}

TransformEntry shifted(int files, int ranks) {
    TransformEntry entry;
    entry.fileShift = files;
    entry.rankShift = ranks;
    return entry;
}

// The identity, then every shift of the ranges but no shift at all.
std::vector<TransformEntry> shifts(int fileReach, int rankReach) {
    std::vector<TransformEntry> entries{TransformEntry{}};
    for (int files = -fileReach; files <= fileReach; ++files)
        for (int ranks = -rankReach; ranks <= rankReach; ++ranks)
            if (files != 0 || ranks != 0) entries.push_back(shifted(files, ranks));
    return entries;
}

// One entry's mapping of a square; NoSquare when it leaves the board.
// `whole` is the entry's input set, whose full files do not move up or down
// and whose full ranks do not move sideways.
Square mapSquare(const TransformEntry& entry, Square square, Bitboard whole) {
    int file = fileOf(square), rank = rankOf(square);
    if (entry.mirrorRanks) rank = 7 - rank;
    if (entry.mirrorFiles) file = 7 - file;
    if (entry.transpose) std::swap(file, rank);
    if (entry.rankShift != 0 && (whole & fileMask[fileOf(square)]) != fileMask[fileOf(square)])
        rank += entry.rankShift;
    if (entry.fileShift != 0 && (whole & rankMask[rankOf(square)]) != rankMask[rankOf(square)])
        file += entry.fileShift;
    if (file < 0 || file > 7 || rank < 0 || rank > 7) return NoSquare;
    return makeSquare(file, rank);
}

Bitboard mapSquares(const TransformEntry& entry, Bitboard squares, bool& voided) {
    if (entry.rotate45 != 0) return squares;
    Bitboard mapped = 0;
    for (Bitboard rest = squares; rest != 0;) {
        Square target = mapSquare(entry, popLowest(rest), squares);
        if (target != NoSquare)
            mapped |= squareBit(target);
        else if (entry.restrict)
            voided = true;
    }
    if (squares != 0 && mapped == 0) voided = true;
    return mapped;
}

int sign(int value) { return (value > 0) - (value < 0); }

// File and rank steps of the eight rays, indexed by Direction.
constexpr int rayFileStep[rayDirectionCount] = {1, 0, 1, -1, -1, 0, -1, 1};
constexpr int rayRankStep[rayDirectionCount] = {0, 1, 1, 1, 0, -1, -1, -1};

Direction rayOfSteps(int file, int rank) {
    for (int ray = 0; ray < rayDirectionCount; ++ray)
        if (rayFileStep[ray] == file && rayRankStep[ray] == rank) return Direction(ray);
    return Right;
}

// Turns and flips of a single ray, as the entry maps the board.
Direction mapRay(const TransformEntry& entry, Direction ray) {
    int file = rayFileStep[ray], rank = rayRankStep[ray];
    if (entry.mirrorRanks) rank = -rank;
    if (entry.mirrorFiles) file = -file;
    if (entry.transpose) std::swap(file, rank);
    for (std::uint32_t turn = 0; turn < entry.rotate45 % 8; ++turn) {
        int turnedFile = sign(file - rank), turnedRank = sign(file + rank);
        file = turnedFile;
        rank = turnedRank;
    }
    return rayOfSteps(file, rank);
}

}  // namespace

bool isShiftKind(TransformKind kind) {
    return kind == TransformKind::Shift || kind == TransformKind::ShiftHorizontal ||
           kind == TransformKind::ShiftVertical;
}

std::vector<TransformEntry> transformFamily(TransformKind kind) {
    switch (kind) {
        case TransformKind::NoTransform: {
            TransformEntry stop;
            stop.stop = 1;
            return {stop};
        }
        case TransformKind::ReverseColor: {
            TransformEntry swapped = flips(true, false, false);
            swapped.colorSwap = 1;
            return {swapped};
        }
        case TransformKind::FlipColor: {
            TransformEntry swapped = flips(true, false, false);
            swapped.colorSwap = 1;
            return {TransformEntry{}, swapped};
        }
        case TransformKind::FlipHorizontal: return {TransformEntry{}, flips(true, false, false)};
        case TransformKind::FlipVertical: return {TransformEntry{}, flips(false, true, false)};
        case TransformKind::Rotate90:
            return {TransformEntry{}, flips(false, true, true), flips(true, true, false), flips(true, false, true)};
        case TransformKind::Rotate45: {
            std::vector<TransformEntry> entries(8);
            for (std::uint32_t turns = 0; turns < 8; ++turns) entries[turns].rotate45 = turns;
            return entries;
        }
        case TransformKind::Flip: {
            std::vector<TransformEntry> entries;
            for (int bits = 0; bits < 8; ++bits) entries.push_back(flips(bits & 1, bits & 2, bits & 4));
            return entries;
        }
        case TransformKind::Shift: return shifts(7, 7);
        case TransformKind::ShiftHorizontal: return shifts(7, 0);
        case TransformKind::ShiftVertical: return shifts(0, 7);
    }
    return {};
}

std::span<const TransformEntry> activeEntries(std::span<const TransformEntry> stack) {
    std::size_t first = stack.size();
    while (first > 0) {
        --first;
        if (stack[first].stop) break;
    }
    return stack.subspan(first);
}

Bitboard applyTransformSquares(std::span<const TransformEntry> stack, Bitboard squares, bool& voided) {
    std::span<const TransformEntry> active = activeEntries(stack);
    for (std::size_t i = active.size(); i-- > 0;) squares = mapSquares(active[i], squares, voided);
    return squares;
}

std::uint16_t applyTransformPieces(std::span<const TransformEntry> stack, std::uint16_t mask) {
    if (!coloursSwapped(stack)) return mask;
    constexpr std::uint16_t white = 0x003F, black = 0x0FC0, anyWhite = 1u << 12, anyBlack = 1u << 13;
    std::uint16_t swapped = mask & ~(white | black | anyWhite | anyBlack);
    swapped |= std::uint16_t((mask & white) << 6) | std::uint16_t((mask & black) >> 6);
    if (mask & anyWhite) swapped |= anyBlack;
    if (mask & anyBlack) swapped |= anyWhite;
    return swapped;
}

bool coloursSwapped(std::span<const TransformEntry> stack) {
    bool swapped = false;
    for (const TransformEntry& entry : activeEntries(stack)) swapped ^= entry.colorSwap != 0;
    return swapped;
}

bool squareColoursSwapped(std::span<const TransformEntry> stack) {
    bool swapped = false;
    for (const TransformEntry& entry : activeEntries(stack)) {
        bool flipsColour = entry.mirrorRanks != entry.mirrorFiles;
        bool oddShift = ((entry.fileShift + entry.rankShift) & 1) != 0;
        swapped ^= flipsColour != oddShift;
    }
    return swapped;
}

std::array<bool, rayDirectionCount> directionRays(Direction direction) {
    std::array<bool, rayDirectionCount> rays{};
    auto set = [&rays](std::initializer_list<Direction> list) {
        for (Direction ray : list) rays[ray] = true;
    };
    switch (direction) {
        case Diagonal: set({NorthEast, SouthWest, NorthWest, SouthEast}); break;
        case MainDiagonal: set({NorthEast, SouthWest}); break;
        case OffDiagonal: set({NorthWest, SouthEast}); break;
        case Orthogonal: set({Up, Down, Right, Left}); break;
        case Vertical: set({Up, Down}); break;
        case Horizontal: set({Right, Left}); break;
        case AnyDirection: set({Right, Up, NorthEast, NorthWest, Left, Down, SouthWest, SouthEast}); break;
        default: rays[direction] = true; break;
    }
    return rays;
}

std::array<bool, rayDirectionCount> applyTransformRays(std::span<const TransformEntry> stack,
                                                       std::array<bool, rayDirectionCount> rays) {
    std::span<const TransformEntry> active = activeEntries(stack);
    for (std::size_t i = active.size(); i-- > 0;) {
        std::array<bool, rayDirectionCount> mapped{};
        for (int ray = 0; ray < rayDirectionCount; ++ray)
            if (rays[ray]) mapped[mapRay(active[i], Direction(ray))] = true;
        rays = mapped;
    }
    return rays;
}

Direction applyTransformDirection(std::span<const TransformEntry> stack, Direction direction) {
    std::array<bool, rayDirectionCount> rays = applyTransformRays(stack, directionRays(direction));
    // The symmetries of the board carry every keyword's rays onto another
    // keyword's, so this search always finds one.
    for (int candidate = 0; candidate < directionCount; ++candidate)
        if (directionRays(Direction(candidate)) == rays) return Direction(candidate);
    return direction;
}

std::string transformName(const TransformEntry& entry) {
    std::string name;
    auto add = [&name](std::string_view word) {
        if (!name.empty()) name.push_back(' ');
        name.append(word);
    };
    auto amount = [](std::string_view word, int value) {
        std::string text(word);
        text.push_back('^');
        text.append(std::to_string(value < 0 ? -value : value));
        return text;
    };
    if (entry.fileShift != 0) add(amount(entry.fileShift < 0 ? "left" : "right", entry.fileShift));
    if (entry.rankShift != 0) add(amount(entry.rankShift < 0 ? "down" : "up", entry.rankShift));
    static constexpr const char* flipNames[8] = {
        nullptr,        "reflect_h",   "reflect_v",          "rotate180",
        "reflect_a1h8", "counterclockwise90", "clockwise90", "reflect_a8h1",
    };
    int flipIndex = (entry.mirrorRanks ? 1 : 0) | (entry.mirrorFiles ? 2 : 0) | (entry.transpose ? 4 : 0);
    if (flipIndex != 0) name = flipNames[flipIndex];
    if (entry.rotate45 != 0) add(amount("rotate45", int(entry.rotate45)));
    if (entry.colorSwap) add("invertcolor");
    if (name.empty()) name = "identity";
    return name;
}

}  // namespace tarnfold::zmf
