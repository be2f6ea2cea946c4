#pragma once
// The fixed texts of the program: version line, usage, licence.

#include <string>
#include <string_view>
#include <vector>

namespace tarnfold::zmf {

// The options --help lists, by section, each with a one-line description.
// The manual page is made from the same table.
struct HelpEntry {
    const char* option;
    const char* description;
};
struct HelpSection {
    const char* heading;
    std::vector<HelpEntry> entries;
};
const std::vector<HelpSection>& helpSections();
// Options that work without --help listing them; the manual page has them.
const std::vector<HelpEntry>& unlistedOptions();
// The names an entry gives, without dashes: "--append/-a FILE" gives
// "append" and "a".
std::vector<std::string> optionNames(std::string_view option);

std::string versionText();
std::string usageText();
std::string licenseText();

// Each prints its text on standard output and flushes.
void printVersion();
void printUsage();
void printLicense();

}  // namespace tarnfold::zmf
