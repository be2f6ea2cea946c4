// Filters that follow lines across the row's board: shifts along a
// direction by a range of distances, rays through a list of target sets,
// x-rays along the lines of sliders, and pins.

#include <algorithm>

#include "chess/attacks.h"
#include "chess/bitboard.h"
#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

constexpr Bitboard notFileA = ~fileMask[0];
constexpr Bitboard notFileH = ~fileMask[7];

// One step along a ray; a square that would leave the board over the side
// edge is dropped rather than wrapped to the other side.
Bitboard stepOnce(Bitboard set, Direction ray) {
    switch (ray) {
        case Right: return (set & notFileH) << 1;
        case Up: return set << 8;
        case NorthEast: return (set & notFileH) << 9;
        case NorthWest: return (set & notFileA) << 7;
        case Left: return (set & notFileA) >> 1;
        case Down: return set >> 8;
        case SouthWest: return (set & notFileA) >> 9;
        case SouthEast: return (set & notFileH) >> 7;
        case Diagonal:
        case MainDiagonal:
        case OffDiagonal:
        case Orthogonal:
        case Vertical:
        case Horizontal:
        case AnyDirection: return 0;
    }
    return 0;
}

// The two halves of each named group of directions.
struct DirectionParts {
    Direction first;
    Direction second;
};

DirectionParts partsOf(Direction group) {
    switch (group) {
        case Diagonal: return {MainDiagonal, OffDiagonal};
        case MainDiagonal: return {NorthEast, SouthWest};
        case OffDiagonal: return {NorthWest, SouthEast};
        case Orthogonal: return {Vertical, Horizontal};
        case Vertical: return {Up, Down};
        case Horizontal: return {Right, Left};
        case AnyDirection: return {Orthogonal, Diagonal};
        case Right:
        case Up:
        case NorthEast:
        case NorthWest:
        case Left:
        case Down:
        case SouthWest:
        case SouthEast: return {group, group};
    }
    return {group, group};
}

// The union of the set's shifts by every distance from low to high, where
// distance 0 is the set itself and a negative distance runs the other way.
Bitboard shift(Bitboard set, Direction direction, int low, int high) {
    if (low > high) return 0;
    if (!isRay(direction)) {
        const DirectionParts parts = partsOf(direction);
        return shift(set, parts.first, low, high) | shift(set, parts.second, low, high);
    }
    Bitboard result = high < 0 ? 0 : set;
    for (int distance = 0; distance < high; ++distance) {
        // Below the low end only the furthest shift so far is kept.
        const Bitboard stepped = stepOnce(result, direction);
        if (distance < low) result = 0;
        result |= stepped;
    }
    if (low < 0) result |= shift(set, oppositeDirection(direction), high < 0 ? -high : 0, -low);
    return result;
}

// The next square from `from` along the ray; the ray must not be empty.
Square nextAlong(Direction ray, Square from) {
    const Bitboard line = rayAttacks[ray][from];
    return runsUpward(ray) ? lowestSquare(line) : highestSquare(line);
}

// Whether a line from `from` along the ray meets targets[index], then each
// later target in turn, with only empty squares between them. A piece on the
// way must be the next target; an empty target may also be passed over, so
// only there is a second way tried.
bool walkRay(const Board& board, Direction ray, Square from, const Bitboard* targets, size_t count,
             size_t index) {
    while (index < count) {
        if (size_t(popCount(rayAttacks[ray][from])) < count - index) return false;
        const Square next = nextAlong(ray, from);
        const bool isTarget = contains(targets[index], next);
        if (contains(board.occupied, next)) {
            if (!isTarget) return false;
            ++index;
        } else if (isTarget && walkRay(board, ray, next, targets, count, index + 1)) {
            return true;
        }
        from = next;
    }
    return true;
}

// The squares of targets[0] from which one of the directions, in order,
// reaches the rest of the list.
template <size_t N>
Bitboard walkFromHead(const Board& board, Bitboard heads, const Direction (&directions)[N],
                      const Bitboard* targets, size_t count) {
    Bitboard result = 0;
    for (Bitboard squares = heads; squares;) {
        const Square square = popLowest(squares);
        for (const Direction ray : directions) {
            if (walkRay(board, ray, square, targets, count, 1)) {
                result |= squareBit(square);
                break;
            }
        }
    }
    return result;
}

}  // namespace

Value ZMFEngine::eval(const DirectionNode& node) {
    const Value operand = evaluate(*node.operand);
    const RangeNode& range = as<RangeNode>(*node.range);
    const Value lower = evaluate(*range.lower);
    if (!lower.is(ValueType::Numeric)) return Value();
    int64_t low = lower.asNumeric(), high = low;
    if (range.upper) {
        const Value upper = evaluate(*range.upper);
        if (!upper.is(ValueType::Numeric)) return Value();
        high = upper.asNumeric();
    }
    if (!operand.is(ValueType::Set)) return Value();
    low = std::max<int64_t>(low, -7);
    high = std::min<int64_t>(high, 7);
    if (low > high) return Value::set(0);
    return Value::set(shift(operand.asSet(), node.direction, int(low), int(high)));
}

// The operands go on the engine's target stack, last one first, so that the
// walk reads them in the order it meets them; a ray inside an operand stacks
// its own list above and takes it off again.
bool ZMFEngine::stackRayTargets(const std::vector<NodePtr>& arguments) {
    for (const NodePtr& argument : arguments) {
        const Value value = evaluate(*argument);
        if (!value.is(ValueType::Set) || value.asSet() == 0) return false;
        rayTargets_.push_back(value.asSet());
    }
    std::reverse(rayTargets_.end() - std::ptrdiff_t(arguments.size()), rayTargets_.end());
    return true;
}

Value ZMFEngine::eval(const RayNode& node) {
    const size_t base = rayTargets_.size();
    Bitboard result = 0;
    if (stackRayTargets(node.arguments)) {
        const Bitboard* targets = rayTargets_.data() + base;
        const size_t count = node.arguments.size();
        for (Bitboard squares = targets[0]; squares;) {
            const Square square = popLowest(squares);
            for (int flag = 0; flag < rayDirectionCount; ++flag) {
                if (!node.directions[flag]) continue;
                // The list runs from the first operand to the last; walking
                // from the last goes against the flag's direction.
                if (walkRay(board(), oppositeDirection(Direction(flag)), square, targets, count, 1)) {
                    result |= squareBit(square);
                    break;
                }
            }
        }
    }
    rayTargets_.resize(base);
    return Value::set(result);
}

Value ZMFEngine::eval(const XRayNode& node) {
    const size_t base = rayTargets_.size();
    Bitboard result = 0;
    if (stackRayTargets(node.arguments)) {
        Bitboard* targets = rayTargets_.data() + base;
        const size_t count = node.arguments.size();
        const Board& position = board();
        const Bitboard sliders = targets[count - 1];
        const Bitboard queens = position.byType[Queen];
        const Bitboard orthogonal = sliders & (position.byType[Rook] | queens);
        const Bitboard diagonal = sliders & (position.byType[Bishop] | queens);

        static constexpr Direction orthogonalRays[] = {Up, Down, Left, Right};
        static constexpr Direction diagonalRays[] = {NorthEast, SouthWest, NorthWest, SouthEast};
        Bitboard onLine = 0;
        for (Bitboard pieces = orthogonal; pieces;) onLine |= rookAttacks(popLowest(pieces), 0);
        targets[count - 1] = orthogonal;
        result = walkFromHead(position, targets[0] & onLine, orthogonalRays, targets, count);

        onLine = 0;
        for (Bitboard pieces = diagonal; pieces;) onLine |= bishopAttacks(popLowest(pieces), 0);
        targets[count - 1] = diagonal;
        result |= walkFromHead(position, targets[0] & onLine & ~result, diagonalRays, targets, count);
    }
    rayTargets_.resize(base);
    return Value::set(result);
}

Value ZMFEngine::eval(const PinNode& node) {
    const auto setOrEmpty = [](const Value& value) { return value.is(ValueType::Set) ? value.asSet() : 0; };
    const Bitboard from = setOrEmpty(evaluate(*node.from));
    const Bitboard through = setOrEmpty(evaluate(*node.through));
    const Bitboard to = setOrEmpty(evaluate(*node.to));
    const Board& position = board();
    const Bitboard queens = position.byType[Queen];
    Bitboard pinners = 0, pinned = 0, targets = 0;
    for (Bitboard candidates = from & (position.byType[Bishop] | position.byType[Rook] | queens);
         candidates;) {
        const Square square = popLowest(candidates);
        const PieceType type = pieceType(position.squares[square]);
        const Color color = pieceColor(position.squares[square]);
        for (int flag = 0; flag < rayDirectionCount; ++flag) {
            const Direction ray = Direction(flag);
            // Rays 0, 1, 4 and 5 are orthogonal, the rest diagonal.
            const bool orthogonal = (flag & 2) == 0;
            if (type != Queen && (type == Rook) != orthogonal) continue;
            const Bitboard blockers = rayAttacks[ray][square] & position.occupied;
            if (!blockers) continue;
            const Square first = runsUpward(ray) ? lowestSquare(blockers) : highestSquare(blockers);
            if (!contains(through, first) || !contains(position.byColor[otherColor(color)], first)) continue;
            // Beyond the pinned piece up to and including the next piece.
            const Bitboard beyond = rayAttacks[ray][first];
            const Bitboard further = beyond & position.occupied;
            Bitboard stretch = beyond;
            if (further) {
                const Square second = runsUpward(ray) ? lowestSquare(further) : highestSquare(further);
                stretch &= ~rayAttacks[ray][second];
            }
            const Bitboard hit = stretch & to & ~position.byColor[otherColor(color)];
            if (!hit) continue;
            pinners |= squareBit(square);
            pinned |= squareBit(first);
            targets |= hit;
        }
    }
    switch (node.mode) {
        case PinNode::Pinners: return Value::set(pinners);
        case PinNode::Targets: return Value::set(targets);
        case PinNode::Pinned: return Value::set(pinned);
    }
    return Value();
}

}  // namespace tarnfold::zmf
