#pragma once

// Token kinds and the token record of the query language. The operator and
// keyword spellings are listed once, below, in the order the scanner tries
// them; the enumeration, the scanner's tables and the kind names are all
// expanded from these two lists.

#include <cstdint>
#include <string>
#include <string_view>

#include "query/query_source.h"

// Rows X(Kind, "text") in matching order: the first row whose text stands at
// the cursor wins, so a longer spelling must precede its prefixes. A kind
// spelled several ways has its further rows under ALIAS, which the
// single-argument forms map to X as well.
#define ZMF_OPERATOR_TOKENS_WITH(X, ALIAS) \
    X(Comma, ",")                          \
    X(LeftBrace, "{")                      \
    X(RightBrace, "}")                     \
    X(LeftBracket, "[")                    \
    X(RightBracket, "]")                   \
    X(LeftParen, "(")                      \
    X(RightParen, ")")                     \
    X(Question, "?")                       \
    X(Hash, "#")                           \
    X(Colon, ":")                          \
    X(DivideAssign, "/=")                  \
    X(Divide, "/")                         \
    X(ModulusAssign, "%=")                 \
    X(Modulus, "%")                        \
    X(AddAssign, "+=")                     \
    X(Plus, "+")                           \
    X(MultiplyAssign, "*=")                \
    X(OrAssign, "|=")                      \
    X(AndAssign, "&=")                     \
    X(BitOr, "|")                          \
    X(BitAnd, "&")                         \
    X(Star, "*")                           \
    X(ForwardArrow, "-->")                 \
    X(SubtractAssign, "-=")                \
    X(Minus, "-")                          \
    X(Equal, "==")                         \
    X(ConditionalAssign, "=?")             \
    X(Assign, "=")                         \
    X(NotEqual, "!=")                      \
    X(BackwardArrow, "<--")                \
    X(LessEqual, "<=")                     \
    X(Less, "<")                           \
    X(GreaterEqual, ">=")                  \
    X(Greater, ">")                        \
    X(PatternMatch, "~~")                  \
    X(Tilde, "~")                          \
    X(Backquote, "`")                      \
    X(BackslashLiteral, "\\n")             \
    ALIAS(BackslashLiteral, "\\r")         \
    ALIAS(BackslashLiteral, "\\t")         \
    ALIAS(BackslashLiteral, "\\\"")        \
    ALIAS(BackslashLiteral, "\\\\")        \
    X(LongCastle, "o-o-o")                 \
    X(ShortCastle, "o-o")

#define ZMF_OPERATOR_TOKENS(X) ZMF_OPERATOR_TOKENS_WITH(X, X)

// Keywords in matching order. A keyword only matches when the byte behind it
// cannot continue an identifier, so the order carries no prefix rule.
#define ZMF_KEYWORD_TOKENS_WITH(X, ALIAS)       \
    X(KwAbs, "abs")                             \
    X(KwAll, "all")                             \
    X(KwAncestor, "ancestor")                   \
    X(KwAnd, "and")                             \
    X(KwAnydirection, "anydirection")           \
    X(KwAscii, "ascii")                         \
    X(KwAssert, "assert")                       \
    X(KwAttacked, "attacked")                   \
    X(KwAttackedby, "attackedby")               \
    X(KwAttacks, "attacks")                     \
    X(KwBetween, "between")                     \
    X(KwBlack, "black")                         \
    X(KwBtm, "btm")                             \
    X(KwBy, "by")                               \
    X(KwCapture, "capture")                     \
    X(KwCastle, "castle")                       \
    X(KwCheck, "check")                         \
    X(KwChild, "child")                         \
    X(KwColortype, "colortype")                 \
    X(KwCommandpipe, "commandpipe")             \
    X(KwComment, "comment")                     \
    X(KwConnectedpawns, "connectedpawns")       \
    X(KwConsecutivemoves, "consecutivemoves")   \
    X(KwCount, "count")                         \
    X(KwZmf, "zmf")                             \
    X(KwCurrentfen, "currentfen")               \
    X(KwCurrentmutation, "currentmutation")     \
    X(KwCurrentposition, "currentposition")     \
    X(KwCurrenttransform, "currenttransform")   \
    X(KwDark, "dark")                           \
    X(KwDate, "date")                           \
    X(KwDepth, "depth")                         \
    X(KwDescendant, "descendant")               \
    X(KwDiagonal, "diagonal")                   \
    X(KwDictionary, "dictionary")               \
    X(KwDistance, "distance")                   \
    X(KwDoubledpawns, "doubledpawns")           \
    X(KwDown, "down")                           \
    X(KwDrop, "drop")                           \
    X(KwEcho, "echo")                           \
    X(KwEco, "eco")                             \
    X(KwElo, "elo")                             \
    X(KwElse, "else")                           \
    X(KwEnpassant, "enpassant")                 \
    X(KwEnpassantsquare, "enpassantsquare")     \
    X(KwEvent, "event")                         \
    X(KwEventdate, "eventdate")                 \
    X(KwFalse, "false")                         \
    X(KwFen, "fen")                             \
    X(KwFile, "file")                           \
    X(KwFind, "find")                           \
    X(KwFirstmatch, "firstmatch")               \
    X(KwFlip, "flip")                           \
    X(KwFlipcolor, "flipcolor")                 \
    X(KwFliphorizontal, "fliphorizontal")       \
    X(KwFlipvertical, "flipvertical")           \
    X(KwFrom, "from")                           \
    X(KwFunction, "function")                   \
    X(KwGamenumber, "gamenumber")               \
    X(KwHalfmoveclock, "halfmoveclock")         \
    ALIAS(KwOriginalcomment, "hascomment")      \
    X(KwHhdb, "hhdb")                           \
    X(KwHorizontal, "horizontal")               \
    X(KwIf, "if")                               \
    X(KwImagine, "imagine")                     \
    X(KwIn, "in")                               \
    X(KwIndexof, "indexof")                     \
    X(KwInitial, "initial")                     \
    X(KwInitialposition, "initialposition")     \
    X(KwInput, "input")                         \
    X(KwInt, "int")                             \
    X(KwIsbound, "isbound")                     \
    X(KwIsolatedpawns, "isolatedpawns")         \
    X(KwIsunbound, "isunbound")                 \
    X(KwLastposition, "lastposition")           \
    X(KwLca, "lca")                             \
    X(KwLeft, "left")                           \
    X(KwLegal, "legal")                         \
    X(KwLegalposition, "legalposition")         \
    X(KwLight, "light")                         \
    X(KwLine, "line")                           \
    X(KwLoop, "loop")                           \
    X(KwLowercase, "lowercase")                 \
    X(KwMaindiagonal, "maindiagonal")           \
    X(KwMainline, "mainline")                   \
    X(KwMakesquare, "makesquare")               \
    X(KwMatchcount, "matchcount")               \
    X(KwMatchstring, "matchstring")             \
    X(KwMate, "mate")                           \
    X(KwMax, "max")                             \
    X(KwMessage, "message")                     \
    X(KwMin, "min")                             \
    X(KwMove, "move")                           \
    X(KwMovenumber, "movenumber")               \
    X(KwNestban, "nestban")                     \
    X(KwNoclobber, "noclobber")                 \
    X(KwNolinearize, "nolinearize")             \
    X(KwNonatomic, "nonatomic")                 \
    X(KwNortheast, "northeast")                 \
    X(KwNorthwest, "northwest")                 \
    X(KwNot, "not")                             \
    X(KwNotransform, "notransform")             \
    X(KwNull, "null")                           \
    X(KwOffdiagonal, "offdiagonal")             \
    X(KwOr, "or")                               \
    X(KwOriginalcomment, "originalcomment")     \
    X(KwOrthogonal, "orthogonal")               \
    X(KwOutput, "output")                       \
    X(KwParent, "parent")                       \
    X(KwPassedpawns, "passedpawns")             \
    X(KwPersistent, "persistent")               \
    X(KwPiece, "piece")                         \
    X(KwPieceid, "pieceid")                     \
    X(KwPin, "pin")                             \
    X(KwPlace, "place")                         \
    X(KwPlayer, "player")                       \
    X(KwPly, "ply")                             \
    X(KwPosition, "position")                   \
    X(KwPositionid, "positionid")               \
    X(KwPower, "power")                         \
    X(KwPrevious, "previous")                   \
    X(KwPrimary, "primary")                     \
    X(KwPromote, "promote")                     \
    X(KwPromotedpieces, "promotedpieces")       \
    X(KwPseudolegal, "pseudolegal")             \
    X(KwQuiet, "quiet")                         \
    X(KwRank, "rank")                           \
    X(KwRay, "ray")                             \
    X(KwReachableposition, "reachableposition") \
    X(KwReadfile, "readfile")                   \
    X(KwRemovecomment, "removecomment")         \
    X(KwRemovetag, "removetag")                 \
    X(KwRestrict, "restrict")                   \
    X(KwResult, "result")                       \
    X(KwReverse, "reverse")                     \
    X(KwReversecolor, "reversecolor")           \
    X(KwRight, "right")                         \
    X(KwRotate45, "rotate45")                   \
    X(KwRotate90, "rotate90")                   \
    X(KwSaveposition, "saveposition")           \
    X(KwSecondary, "secondary")                 \
    X(KwSettag, "settag")                       \
    X(KwShift, "shift")                         \
    X(KwShifthorizontal, "shifthorizontal")     \
    X(KwShiftvertical, "shiftvertical")         \
    X(KwSidetomove, "sidetomove")               \
    X(KwSilent, "silent")                       \
    X(KwSinglecolor, "singlecolor")             \
    X(KwSite, "site")                           \
    X(KwSort, "sort")                           \
    X(KwSoutheast, "southeast")                 \
    X(KwSouthwest, "southwest")                 \
    X(KwSqrt, "sqrt")                           \
    X(KwSquare, "square")                       \
    X(KwStalemate, "stalemate")                 \
    X(KwStandardfen, "standardfen")             \
    X(KwStr, "str")                             \
    X(KwString, "string")                       \
    X(KwSum, "sum")                             \
    X(KwSwap, "swap")                           \
    X(KwTag, "tag")                             \
    X(KwTerminal, "terminal")                   \
    X(KwThen, "then")                           \
    X(KwThrough, "through")                     \
    X(KwTo, "to")                               \
    X(KwTrue, "true")                           \
    X(KwType, "type")                           \
    X(KwUnbind, "unbind")                       \
    X(KwUp, "up")                               \
    X(KwUppercase, "uppercase")                 \
    X(KwVariant, "variant")                     \
    X(KwVariantdraw, "variantdraw")             \
    X(KwVariantend, "variantend")               \
    X(KwVariantloss, "variantloss")             \
    X(KwVariantwin, "variantwin")               \
    X(KwVariation, "variation")                 \
    X(KwVariations, "variations")               \
    X(KwVertical, "vertical")                   \
    X(KwVirtualmainline, "virtualmainline")     \
    X(KwWhile, "while")                         \
    X(KwWhite, "white")                         \
    X(KwWritefile, "writefile")                 \
    X(KwWtm, "wtm")                             \
    X(KwXray, "xray")                           \
    X(KwYear, "year")                           \
    X(KwZobristkey, "zobristkey")

#define ZMF_KEYWORD_TOKENS(X) ZMF_KEYWORD_TOKENS_WITH(X, X)

namespace tarnfold::zmf {

// clang-format off
#define ZMF_TOKEN_ENUMERATOR(kind, text) kind,
#define ZMF_TOKEN_SKIP(kind, text)

enum class TokenKind : std::uint32_t {
    EndOfFile,
    Identifier,
    IntegerLiteral,
    StringLiteral,
    Invalid,
    PieceDesignator,
    CapturedGroupString,
    CapturedGroupIndex,
    ZMF_OPERATOR_TOKENS_WITH(ZMF_TOKEN_ENUMERATOR, ZMF_TOKEN_SKIP)
    ZMF_KEYWORD_TOKENS_WITH(ZMF_TOKEN_ENUMERATOR, ZMF_TOKEN_SKIP)
    Count
};

#undef ZMF_TOKEN_ENUMERATOR
#undef ZMF_TOKEN_SKIP
// clang-format on

inline constexpr std::size_t tokenKindCount = static_cast<std::size_t>(TokenKind::Count);

struct Token {
    TokenKind kind = TokenKind::EndOfFile;
    OptionalOffset begin;
    OptionalOffset end;  // the last byte of the token, not one past it
    std::string text;
};

// clang-format off
#define ZMF_TOKEN_NAME_CASE(kind, text) case TokenKind::kind: return #kind;
#define ZMF_TOKEN_NO_CASE(kind, text)
// clang-format on

// The enumerator's own name ("Identifier", "KwAbs", "Plus"), for dumps and
// test output; "?" for a value outside the enumeration.
constexpr std::string_view tokenKindName(TokenKind kind) {
    // clang-format off
    switch (kind) {
        case TokenKind::EndOfFile: return "EndOfFile";
        case TokenKind::Identifier: return "Identifier";
        case TokenKind::IntegerLiteral: return "IntegerLiteral";
        case TokenKind::StringLiteral: return "StringLiteral";
        case TokenKind::Invalid: return "Invalid";
        case TokenKind::PieceDesignator: return "PieceDesignator";
        case TokenKind::CapturedGroupString: return "CapturedGroupString";
        case TokenKind::CapturedGroupIndex: return "CapturedGroupIndex";
        ZMF_OPERATOR_TOKENS_WITH(ZMF_TOKEN_NAME_CASE, ZMF_TOKEN_NO_CASE)
        ZMF_KEYWORD_TOKENS_WITH(ZMF_TOKEN_NAME_CASE, ZMF_TOKEN_NO_CASE)
        case TokenKind::Count: break;
    }
    // clang-format on
    return "?";
}

#undef ZMF_TOKEN_NAME_CASE
#undef ZMF_TOKEN_NO_CASE

}  // namespace tarnfold::zmf
