#pragma once
// How tightly the operators and filters of the query language hold their
// operands. The handlers read operands with these powers and the printers
// put back the parentheses that the same powers make necessary, so that a
// printed tree reads back as the tree it came from; both take them from
// here and nowhere else.

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <cstdlib>

#include "query/token.h"

namespace tarnfold::zmf {

using BindingPower = std::uint64_t;

struct InfixOperator {
    TokenKind kind;
    // The minimum with which the right operand is read.
    BindingPower precedence;
    // Binds one above its precedence, so that an operator of its own level
    // standing on its right goes into the right operand.
    bool rightAssociative;
};

// Every infix operator, loosest first. A token kind not listed has no infix
// reading.
inline constexpr InfixOperator infixOperators[] = {
    {TokenKind::Assign, 15, false},
    {TokenKind::KwOr, 20, false},
    {TokenKind::KwAnd, 25, false},
    {TokenKind::KwIn, 35, false},
    {TokenKind::Equal, 40, true},
    {TokenKind::NotEqual, 40, true},
    {TokenKind::Less, 40, true},
    {TokenKind::LessEqual, 40, true},
    {TokenKind::Greater, 40, true},
    {TokenKind::GreaterEqual, 40, true},
    {TokenKind::ConditionalAssign, 45, false},
    {TokenKind::DivideAssign, 45, false},
    {TokenKind::SubtractAssign, 45, false},
    {TokenKind::ModulusAssign, 45, false},
    {TokenKind::AddAssign, 45, false},
    {TokenKind::MultiplyAssign, 45, false},
    {TokenKind::OrAssign, 45, false},
    {TokenKind::AndAssign, 45, false},
    {TokenKind::Plus, 50, false},
    {TokenKind::Minus, 50, false},
    {TokenKind::Star, 55, false},
    {TokenKind::Divide, 55, false},
    {TokenKind::Modulus, 55, false},
    {TokenKind::BitOr, 65, false},
    {TokenKind::BitAnd, 70, false},
    {TokenKind::KwAttacks, 80, false},
    {TokenKind::KwAttackedby, 80, false},
    {TokenKind::KwAttacked, 80, false},
    {TokenKind::PatternMatch, 95, false},
    {TokenKind::LeftBracket, 100, false},
    {TokenKind::Colon, 105, true},
};

// The row of an infix operator. A kind without one is a fault of the
// caller: at compile time it does not compile, at run time it aborts.
constexpr const InfixOperator& infixOperator(TokenKind kind) {
    for (const InfixOperator& row : infixOperators)
        if (row.kind == kind) return row;
    std::abort();
}

// The lookup takes the first row of a kind, so a second one would go unread.
constexpr bool eachKindHasOneRow() {
    for (std::size_t i = 0; i < std::size(infixOperators); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (infixOperators[j].kind == infixOperators[i].kind) return false;
    return true;
}
static_assert(eachKindHasOneRow(), "a token kind has two rows in the infix table");

constexpr bool isInfixOperator(TokenKind kind) {
    for (const InfixOperator& row : infixOperators)
        if (row.kind == kind) return true;
    return false;
}

constexpr BindingPower infixPrecedence(TokenKind kind) { return infixOperator(kind).precedence; }

// What the parser compares with the minimum of the operand being read: an
// operator of higher binding power continues that operand.
constexpr BindingPower bindingPower(TokenKind kind) {
    const InfixOperator& row = infixOperator(kind);
    return row.precedence + (row.rightAssociative ? 1 : 0);
}

// The minimums with which prefix filters read their operands. A filter not
// named here takes no operand, or reads it from 0, taking every operator
// behind it: within its own parentheses or braces, or as far as the text
// goes, as assert, loop and the direction filters do.

// The body of find, and of each transform.
inline constexpr BindingPower findBody = 15;
inline constexpr BindingPower transformBody = 15;
inline constexpr BindingPower notOperand = 30;
// abs, ascii, position, sqrt, and makesquare without parentheses.
inline constexpr BindingPower absOperand = 45;
// The value of an `=` behind a subscript, which binds like the compound
// assignments rather than like a plain `=`.
inline constexpr BindingPower subscriptValue = 45;
// #, int, readfile.
inline constexpr BindingPower cardinalityOperand = 48;
// between, colortype, file, rank, type, power, pieceid, lowercase,
// uppercase, and the source of `piece x in`, `square x in` and the `x in`
// of a dictionary.
inline constexpr BindingPower squareOperand = 60;
// The complement ~.
inline constexpr BindingPower complementOperand = 75;
// The parameters of pin, and so the set parameters of move and the body of
// a speculative move: above the attack operators, which stay outside them.
inline constexpr BindingPower pinParameter = 85;
// dark and light.
inline constexpr BindingPower colourOperand = 90;
// The backquote, unary minus, tag and removetag.
inline constexpr BindingPower backquoteOperand = 110;
// The piece designators of move and imagine: above every infix operator,
// so that nothing continues them.
inline constexpr BindingPower pieceParameter = 120;

constexpr bool readAboveEveryInfixOperator(BindingPower power) {
    for (const InfixOperator& row : infixOperators)
        if (bindingPower(row.kind) > power) return false;
    return true;
}
static_assert(readAboveEveryInfixOperator(pieceParameter), "an operator would continue a piece parameter");

}  // namespace tarnfold::zmf
