#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "analysis/analysis_finding.h"
#include "analysis/message_table.h"
#include "analysis/message_template.h"
#include "chess/bitboard.h"

namespace tarnfold {
namespace {

// Counts, bitboards and file sets are integers: a bare int must not turn
// into some other kind of argument by overload resolution.
template <typename T>
concept HasArgMaker = requires(T value) { arg(value); };
static_assert(HasArgMaker<Color> && HasArgMaker<Piece> && HasArgMaker<bool> && HasArgMaker<Lateral>);
static_assert(!HasArgMaker<int> && !HasArgMaker<Bitboard> && !HasArgMaker<unsigned>);

Bitboard squares(std::initializer_list<Square> list) {
    Bitboard set = 0;
    for (Square square : list) set |= squareBit(square);
    return set;
}

struct Row {
    uint32_t id;
    std::vector<AnalysisArgument> arguments;
    const char* text;
};

TEST(AnalysisMessages, EveryMessageWithValues) {
    const std::vector<Row> rows = {
        {0, {}, "Valid board"},
        {1, {}, "White King not present on board"},
        {2, {}, "Black King not present on board"},
        {3, {bitboardArg(squares({G3, E1}))}, "Multiple White Kings on board (squares e1, g3)"},
        {4, {bitboardArg(squares({H8, A8, D4}))}, "Multiple Black Kings on board (squares d4, a8, h8)"},
        {5, {arg(Black)}, "Opposite side (Black) is in check"},
        {6, {}, "Both sides are in check"},
        {7, {countArg(1), bitboardArg(squares({A1}))}, "Pawn present on Rank 1 (square a1)"},
        {8, {countArg(2), bitboardArg(squares({F8, C8}))}, "Pawns present on Rank 8 (squares c8, f8)"},
        {9,
         {arg(White), arg(E1), countArg(3), bitboardArg(squares({E8, A5, H4}))},
         "White King on square e1 is attacked by 3 pieces (squares h4, a5, e8)"},
        {10,
         {arg(Black), countArg(9), bitboardArg(rankMask[6] | squareBit(E5))},
         "Too many Black Pawns (9) on board (squares e5, a7, b7, c7, d7, e7, f7, g7, h7)"},
        {11, {arg(White), countArg(17)}, "Too many White pieces (17) on board"},
        {12, {}, "Black to move in starting position"},
        {13, {arg(White)}, "White King and Queen are swapped"},
        {14, {arg(Black)}, "Impossible check of Black King"},
        {15,
         {arg(White), countArg(3), arg(Black), countArg(2), arg(true)},
         "White Pawn structure implies 3 captures but Black is only missing 2 pieces"},
        {15,
         {arg(Black), countArg(1), arg(White), countArg(0), arg(false)},
         "Black Pawn structure implies 1 capture but White is not missing any pieces"},
        {15,
         {arg(White), countArg(2), arg(Black), countArg(1), arg(true)},
         "White Pawn structure implies 2 captures but Black is only missing 1 piece"},
        {16, {arg(Black), bitboardArg(squares({B7, B6}))}, "Impossible Black Pawn structure (squares b6, b7)"},
        {17,
         {arg(WhiteBishop), bitboardArg(squares({B1}))},
         "Impossible position for White Bishop on square b1 who has no legal path to this square"},
        {18, {arg(Black), arg(Rook), arg(H8)}, "Impossibly trapped Black Rook on square h8"},
        {19,
         {arg(White), arg(Bishop), countArg(2), bitboardArg(squares({F1, C1}))},
         "Impossible escaped/entrenched White Bishops (squares c1, f1)"},
        {20,
         {countArg(2), arg(White), countArg(0), arg(false), arg(true)},
         "Position implies 2 White Pawn promotions but no promotions are possible"},
        {20,
         {countArg(3), arg(Black), countArg(1), arg(true), arg(false)},
         "Position implies 3 Black Pawn promotions but only 1 promotion is possible"},
        {21,
         {countArg(1), arg(Black)},
         "Position implies 1 Black promotion but promoting this many pawns would require too many captures"},
        {22,
         {countArg(3), arg(WhiteKnight), bitboardArg(squares({C3, G1, B1})), countArg(1)},
         "Presence of 3 White Knights (squares b1, g1, c3) implies at least 1 promotion"},
        {23,
         {countArg(2), arg(light), arg(WhiteBishop), bitboardArg(squares({D3, F1})), countArg(1), arg(false)},
         "Presence of 2 light-square White Bishops (squares f1, d3) implies at least 1 promotion"},
        {23,
         {countArg(1), arg(dark), arg(BlackBishop), bitboardArg(squares({C1})), countArg(1), arg(true)},
         "Presence of 1 dark-square Black Bishop on trapped promotion square (square c1) implies at least 1 "
         "promotion"},
        {24,
         {countArg(3), arg(BlackRook), bitboardArg(squares({H8, A8, D5})), countArg(1)},
         "Presence of 3 Black Rooks (squares d5, a8, h8) implies at least 1 promotion"},
        {25,
         {countArg(3), arg(WhiteQueen), bitboardArg(squares({H5, D4, D1})), countArg(2)},
         "Presence of 3 White Queens (squares d1, d4, h5) implies at least 2 promotions"},
        {26, {arg(WhiteRook), arg(H1)}, "Missing White Rook could not have escaped starting square (h1)"},
        {27,
         {arg(Lateral::Kingside), arg(BlackRook), bitboardArg(squares({H8, G8}))},
         "Missing Kingside Black Rook could not have escaped confined area (squares g8, h8)"},
        {27,
         {arg(Lateral::Queenside), arg(WhiteRook), bitboardArg(squares({A1}))},
         "Missing Queenside White Rook could not have escaped confined area (square a1)"},
        {28,
         {arg(dark), arg(WhiteBishop), arg(C1)},
         "Missing dark-square White Bishop could not have escaped starting square (c1)"},
        {29, {arg(White), arg(Black)}, "Promotion of White Pawns blocked by Black Pawn blockade on starting rank"},
        {30, {arg(Black), countArg(0), arg(false)}, "Black is not missing any Pawns"},
        {30, {arg(White), countArg(1), arg(true)}, "White is only missing 1 Pawn"},
        {31, {arg(White), countArg(4), arg(true)}, "White is only missing 4 pieces"},
        {32, {arg(Black), countArg(1)}, "Existing Black pawn structure already implies 1 capture"},
        {33,
         {countArg(2), arg(White), countArg(3)},
         "Promotion of 2 White pawns requires at least 3 additional captures"},
        {34,
         {bitboardArg(squares({C2, A2})), fileSetArg(0b101)},
         "Promotion cost calculated using pawn start squares a2, c2 and promotion files a, c"},
        {34,
         {bitboardArg(squares({H7})), fileSetArg(0x80)},
         "Promotion cost calculated using pawn start square h7 and promotion file h"},
        {34, {bitboardArg(0), fileSetArg(0)}, "Promotion cost calculated using pawn start  and promotion "},
        {35,
         {arg(White), arg(Black), arg(A1), arg(Rook)},
         "All of White's missing pieces were captured by Black Pawns currently on the board but missing trapped "
         "a1 Rook could not have been captured by one of these Pawns"},
        {36, {arg(Black)}, "Inconsistent color symmetry for Black to move"},
        {37,
         {arg(White), arg(light), arg(Black), arg(dark), bitboardArg(squares({D6, B4}))},
         "White is missing light-square Bishop but all Black captures occurred on dark squares (squares b4, d6)"},
    };
    std::set<uint32_t> covered;
    for (const Row& row : rows) {
        EXPECT_EQ(renderAnalysisFinding({row.id, row.arguments}, true), row.text) << "id " << row.id;
        covered.insert(row.id);
    }
    EXPECT_EQ(covered.size(), analysisMessageCount);
    EXPECT_EQ(*covered.rbegin(), analysisMessageCount - 1);
}

TEST(AnalysisMessages, WithoutValuesEachPlaceholderNamesItsType) {
    const std::vector<std::pair<uint32_t, const char*>> rows = {
        {0, "Valid board"},
        {9, "'Color' King on square 'Square' is attacked by 'Count' pieces ('Bitboard')"},
        {15,
         "'Color' Pawn structure implies 'Count' capture(s) but 'Color' is 'not missing any pieces/only missing "
         "'Count' piece(s)'"},
        {23,
         "Presence of 'Count' 'SquareColor'-square 'Piece'(s) '/on trapped promotion square(s) '('Bitboard') "
         "implies at least 'Count' promotion(s)"},
        {27, "Missing 'Lateral' 'Piece' could not have escaped confined area ('Bitboard')"},
        {34, "Promotion cost calculated using pawn start 'Bitboard' and promotion 'Files'"},
        {35,
         "All of 'Color''s missing pieces were captured by 'Color' Pawns currently on the board but missing "
         "trapped 'Square' 'PieceType' could not have been captured by one of these Pawns"},
        {99, "Uknown message"},
    };
    for (const auto& [id, text] : rows) EXPECT_EQ(renderAnalysisFinding({id, {}}, false), text) << "id " << id;

    // Listing the whole table reads no argument and meets no unknown word.
    for (uint32_t id = 0; id < analysisMessageCount; ++id)
        EXPECT_EQ(renderAnalysisFinding({id, {}}, false).find("???"), std::string::npos) << "id " << id;
}

TEST(AnalysisMessages, TableLookup) {
    EXPECT_EQ(analysisMessageTemplate(99), "Uknown message");
    EXPECT_EQ(analysisMessageTemplate(analysisMessageCount), "Uknown message");
    EXPECT_EQ(renderAnalysisFinding({99, {countArg(1)}}, true), "Uknown message");
    EXPECT_EQ(analysisMessageTemplate(20),
              "Position implies %count0 %color1 Pawn promotion%s0 but %choose{no|only %count2}3 promotion%s2 "
              "%choose{is|are}4 possible");
    EXPECT_EQ(analysisMessageTemplate(24), analysisMessageTemplate(22));
    EXPECT_EQ(analysisMessageTemplate(25), analysisMessageTemplate(22));
}

TEST(AnalysisMessages, TemplateLanguage) {
    const std::vector<AnalysisArgument> arguments = {arg(Black), countArg(-2), arg(true), fileSetArg(0xFF),
                                                       arg(Lateral::Queenside)};
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"no placeholders at all", "no placeholders at all"},
        {"100%% of %color0", "100% of Black"},
        {"%%color0", "%color0"},
        {"[%color] [%s] [%]", "[] [] []"},
        {"%colour0 and %Color0", "??? and ???"},
        {"%count1 pawn%s1", "-2 pawns"},
        {"%color7 is missing", "??? is missing"},
        {"%fileset3", "files a, b, c, d, e, f, g, h"},
        {"%choose{a|b%choose{c|d}2|e}2.", "bd."},
        {"%choose{a|b}1.", "."},
        {"%lateral2 %lateral4", "Kingside Queenside"},
    };
    for (const auto& [text, expected] : rows) EXPECT_EQ(renderAnalysisTemplate(text, arguments, true), expected);

    EXPECT_EQ(renderAnalysisTemplate("%choose{a|%squarecolor0}0 and %choose{}1%piecetype", {}, false),
              "'a/'SquareColor'' and ''");
}

}  // namespace
}  // namespace tarnfold
