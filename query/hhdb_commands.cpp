#include "query/hhdb_commands.h"

#include <initializer_list>
#include <map>
#include <string>

namespace tarnfold::zmf {

namespace {

const std::map<std::string, HHDBCommand, std::less<>>& hhdbCommands() {
    static const std::map<std::string, HHDBCommand, std::less<>> table = [] {
        std::map<std::string, HHDBCommand, std::less<>> commands;
        auto add = [&](std::uint32_t code, ValueType kind, bool quotable,
                       std::initializer_list<const char*> words) {
            for (const char* word : words) commands.emplace(word, HHDBCommand{code, kind, quotable});
        };
        constexpr ValueType boolean = ValueType::Boolean, numeric = ValueType::Numeric,
                            text = ValueType::String;
        add(0, boolean, true, {"<cook>"});
        add(1, boolean, true, {"<eg>"});
        add(2, boolean, true, {"<main>"});
        add(3, boolean, true, {"<or>"});
        add(4, boolean, true, {"<minor_dual>"});
        add(5, boolean, false, {"mainline"});
        add(6, boolean, false, {"variation"});
        add(7, boolean, false, {"cooked"});
        add(8, boolean, false, {"sound"});
        add(9, boolean, false, {"unsound"});
        add(10, boolean, false, {"dual"});
        add(hhdbAwardCode, numeric, false,
            {"award", "special", "nonspecial", "hm", "commendation", "prize", "max", "sort", "sortable"});
        add(12, text, false, {"firstcomment"});
        add(13, text, false, {"diagram"});
        add(14, numeric, false, {"egdiagram"});
        add(hhdbGbrCode, text, false, {"gbr"});
        add(20, text, false, {"composer"});
        add(hhdbSearchCode, text, false, {"search"});
        add(22, text, false, {"stipulation"});
        add(23, boolean, true, {"(c)"});
        add(23, boolean, false, {"correction"});
        add(24, boolean, true, {"(m)"});
        add(24, boolean, false, {"modification"});
        add(25, boolean, true, {"(v)"});
        add(25, boolean, false, {"version"});
        add(26, boolean, true, {"(s)"});
        add(26, boolean, false, {"corrected_solution"});
        add(27, boolean, true, {"AN"});
        add(27, boolean, false, {"anticipation"});
        add(28, boolean, true, {"CR"});
        add(28, boolean, false, {"colors_reversed"});
        add(29, boolean, true, {"MC"});
        add(29, boolean, false, {"too_many_composers"});
        add(30, boolean, true, {"PH"});
        add(30, boolean, false, {"posthumous"});
        add(31, boolean, true, {"TE"});
        add(31, boolean, false, {"theoretical_ending"});
        add(32, boolean, true, {"TT"});
        add(32, boolean, false, {"theme_tourney", "theme_tournament"});
        add(33, boolean, true, {"TW"});
        add(33, boolean, false, {"twin"});
        add(34, boolean, true, {"U1"});
        add(34, boolean, false, {"dual_at_move_1"});
        add(35, boolean, true, {"U2"});
        add(35, boolean, false, {"dual_after_move_1"});
        add(36, boolean, true, {"U3"});
        add(36, boolean, false, {"white_fails"});
        add(37, boolean, true, {"U4"});
        add(37, boolean, false, {"white_wins_in_draw"});
        add(38, boolean, true, {"U5"});
        add(38, boolean, false, {"unreachable"});
        return commands;
    }();
    return table;
}

}  // namespace

const HHDBCommand* findHHDBCommand(std::string_view word) {
    auto found = hhdbCommands().find(word);
    return found == hhdbCommands().end() ? nullptr : &found->second;
}

std::uint32_t hhdbGbrSectionCode(std::string_view word) {
    if (word == "kings") return 16;
    if (word == "pieces") return 17;
    if (word == "material") return 18;
    if (word == "pawns") return 19;
    return 0;
}

}  // namespace tarnfold::zmf
