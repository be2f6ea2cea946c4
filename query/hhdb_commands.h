#pragma once
// The command words of the study-database filter hhdb, which the parser
// reads after the keyword and the --hhdb option takes from the command line.

#include <cstdint>
#include <string_view>

#include "query/value_type.h"

namespace tarnfold::zmf {

struct HHDBCommand {
    std::uint32_t code;
    ValueType kind;
    // Markers and status codes may also be written as string literals; the
    // command words may not.
    bool quotable;
};

// The code of the award form, whose words combine.
inline constexpr std::uint32_t hhdbAwardCode = 11;
// The code of gbr alone; a section word after it gives one of the next four.
inline constexpr std::uint32_t hhdbGbrCode = 15;
// The code of search, whose --hhdb form takes the text to search for.
inline constexpr std::uint32_t hhdbSearchCode = 21;

// The command, or null when the word is none.
const HHDBCommand* findHHDBCommand(std::string_view word);

// The code of a section of the gbr field that may follow "gbr", or 0.
std::uint32_t hhdbGbrSectionCode(std::string_view word);

}  // namespace tarnfold::zmf
