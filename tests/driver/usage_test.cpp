// Every option the command line accepts is documented: listed by --help, or
// among the options the manual page adds; and nothing is documented that
// the command line would refuse.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "driver/command_line.h"
#include "driver/usage.h"

namespace tarnfold::zmf {
namespace {

void addNames(std::string_view option, std::set<std::string>& names) {
    for (std::string& name : optionNames(option)) names.insert(std::move(name));
}

TEST(Usage, EveryAcceptedOptionIsDocumentedAndNoOther) {
    std::set<std::string> documented;
    for (const HelpSection& section : helpSections())
        for (const HelpEntry& entry : section.entries) addNames(entry.option, documented);
    for (const HelpEntry& entry : unlistedOptions()) addNames(entry.option, documented);
    const std::vector<std::string> known = knownOptionNames();
    const std::set<std::string> accepted(known.begin(), known.end());
    for (const std::string& name : accepted) EXPECT_TRUE(documented.count(name)) << "undocumented: --" << name;
    for (const std::string& name : documented) EXPECT_TRUE(accepted.count(name)) << "not accepted: --" << name;
    // The help text is made from the same table.
    EXPECT_EQ(optionNames("--gamenumber/-g FIRST [LAST]"), (std::vector<std::string>{"gamenumber", "g"}));
    const std::string text = usageText();
    EXPECT_NE(text.find("\n--append/-a FILE              Append matching games to FILE\n"), std::string::npos);
    EXPECT_EQ(text.find("--dump-nfa-diagrams"), std::string::npos);
}

}  // namespace
}  // namespace tarnfold::zmf
