#include "analysis/message_table.h"

#include <array>
#include <unordered_map>
#include <utility>

namespace tarnfold {

namespace {

// The id, not the place in this list, is what the analysis and its callers
// hold on to; ids 22, 24 and 25 share their text because they count the
// same thing for three different reasons.
constexpr std::array<std::pair<uint32_t, std::string_view>, analysisMessageCount> messageEntries = {{
    {0, "Valid board"},
    {1, "White King not present on board"},
    {2, "Black King not present on board"},
    {3, "Multiple White Kings on board (%bitboard0)"},
    {4, "Multiple Black Kings on board (%bitboard0)"},
    {5, "Opposite side (%color0) is in check"},
    {6, "Both sides are in check"},
    {7, "Pawn%s0 present on Rank 1 (%bitboard1)"},
    {8, "Pawn%s0 present on Rank 8 (%bitboard1)"},
    {9, "%color0 King on square %square1 is attacked by %count2 pieces (%bitboard3)"},
    {10, "Too many %color0 Pawns (%count1) on board (%bitboard2)"},
    {11, "Too many %color0 pieces (%count1) on board"},
    {12, "Black to move in starting position"},
    {13, "%color0 King and Queen are swapped"},
    {14, "Impossible check of %color0 King"},
    {15,
     "%color0 Pawn structure implies %count1 capture%s1 but %color2 is "
     "%choose{not missing any pieces|only missing %count3 piece%s3}4"},
    {16, "Impossible %color0 Pawn structure (%bitboard1)"},
    {17, "Impossible position for %piece0 on %bitboard1 who has no legal path to this square"},
    {18, "Impossibly trapped %color0 %piecetype1 on square %square2"},
    {19, "Impossible escaped/entrenched %color0 %piecetype1%s2 (%bitboard3)"},
    {20,
     "Position implies %count0 %color1 Pawn promotion%s0 but %choose{no|only %count2}3 promotion%s2 "
     "%choose{is|are}4 possible"},
    {21, "Position implies %count0 %color1 promotion%s0 but promoting this many pawns would require too many captures"},
    {22, "Presence of %count0 %piece1%s0 (%bitboard2) implies at least %count3 promotion%s3"},
    {23,
     "Presence of %count0 %squarecolor1-square %piece2%s0 %choose{|on trapped promotion square%s0 }5(%bitboard3) "
     "implies at least %count4 promotion%s4"},
    {24, "Presence of %count0 %piece1%s0 (%bitboard2) implies at least %count3 promotion%s3"},
    {25, "Presence of %count0 %piece1%s0 (%bitboard2) implies at least %count3 promotion%s3"},
    {26, "Missing %piece0 could not have escaped starting square (%square1)"},
    {27, "Missing %lateral0 %piece1 could not have escaped confined area (%bitboard2)"},
    {28, "Missing %squarecolor0-square %piece1 could not have escaped starting square (%square2)"},
    {29, "Promotion of %color0 Pawns blocked by %color1 Pawn blockade on starting rank"},
    {30, "%color0 is %choose{not missing any Pawns|only missing %count1 Pawn%s1}2"},
    {31, "%color0 is %choose{not missing any pieces|only missing %count1 piece%s1}2"},
    {32, "Existing %color0 pawn structure already implies %count1 capture%s1"},
    {33, "Promotion of %count0 %color1 pawn%s0 requires at least %count2 additional capture%s2"},
    {34, "Promotion cost calculated using pawn start %bitboard0 and promotion %fileset1"},
    {35,
     "All of %color0's missing pieces were captured by %color1 Pawns currently on the board but missing trapped "
     "%square2 %piecetype3 could not have been captured by one of these Pawns"},
    {36, "Inconsistent color symmetry for %color0 to move"},
    {37,
     "%color0 is missing %squarecolor1-square Bishop but all %color2 captures occurred on %squarecolor3 squares "
     "(%bitboard4)"},
}};

using MessageTable = std::unordered_map<uint32_t, std::string_view>;

// Built on first use and never changed after, so worker threads share it.
const MessageTable& messageTable() {
    static const MessageTable table(messageEntries.begin(), messageEntries.end());
    return table;
}

}  // namespace

std::string_view analysisMessageTemplate(uint32_t id) {
    const MessageTable& table = messageTable();
    const auto entry = table.find(id);
    return entry == table.end() ? "Uknown message" : entry->second;
}

}  // namespace tarnfold
