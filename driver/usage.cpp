#include "driver/usage.h"

#include <algorithm>
#include <iostream>
#include <vector>

namespace tarnfold::zmf {

// The version is the project's, given by the build.
std::string versionText() { return "ZMFi version " ZMFI_VERSION " - query interpreter for chess games"; }

const std::vector<HelpSection>& helpSections() {
    static const std::vector<HelpSection> sections = {
        {"General Options",
         {
             {"--append/-a FILE", "Append matching games to FILE"},
             {"--zmf TEXT", "Add TEXT, in braces, to the query"},
             {"--gamenumber/-g FIRST [LAST]", "Only games FIRST to LAST (from 1)"},
             {"--help/-h", "Print this text"},
             {"--input/-i FILE", "Read games from FILE (PGN, or gz, bz2, xz, zst, zip; stdin)"},
             {"--license", "Print the licence"},
             {"--limit N", "Stop after N matching games (0: no limit)"},
             {"--lineincrement N", "Print a progress mark every N games (0: none)"},
             {"--mainline", "Walk only the main line of each game"},
             {"--matchcount MIN [MAX]", "Keep games with MIN to MAX matching positions"},
             {"--matchstring TEXT", "Comment marking a match (default ZMF)"},
             {"--nestedcomments", "Read nested braces in PGN comments"},
             {"--output/-o FILE", "Write matching games to FILE, or \"stdout\""},
             {"--showmatches", "Print the number of each matching game"},
             {"--singlethreaded/-s", "Run on one thread"},
             {"--skipunknownvariants", "Leave out games of variants not understood"},
             {"--threads N", "Run N worker threads (0: one per hardware thread)"},
             {"--variantalias NAME ALIAS", "Read the Variant tag ALIAS as the variant NAME"},
             {"--variations", "Walk variations as well as the main line"},
             {"--version/-v", "Print the version and stop"},
             {"--warnlevel/-w N", "Errors (1), and warnings (2), and remarks (3)"},
         }},
        {"Feature Options",
         {
             {"--alwayscomment", "Keep comments of filters that did not match"},
             {"--keepallbest", "Keep every game with the best sort value"},
             {"--noasyncmessages", "Hold messages of a game until it is finished"},
             {"--nocommitlog", "Apply side effects at once, without rollback"},
             {"--noremovecomment", "Ignore the query's requests to remove comments"},
             {"--noremovetag", "Ignore the query's requests to remove tags"},
             {"--nosettag", "Ignore the query's requests to set tags"},
             {"--nosmartcomments", "Same as --alwayscomment"},
             {"--pipetimeout FIRST [LATER]", "Milliseconds to wait for a command pipe's replies"},
             {"--secure", "Refuse filters that run programs or touch files"},
             {"--showdictionaries", "Print persistent dictionaries at the end"},
         }},
        {"PGN Output Options",
         {
             {"--coalescecomments", "Join adjacent comments into one"},
             {"--nocoalescecomments", "Write adjacent comments separately"},
             {"--compactcomments", "Write comments without extra blanks"},
             {"--nocompactcomments", "Write comments with blanks inside the braces"},
             {"--compactmoves", "Write move numbers joined to their moves"},
             {"--nocompactmoves", "Write a blank between move number and move"},
             {"--compactvariations", "Write variations without extra blanks"},
             {"--nocompactvariations", "Write blanks inside variation parentheses"},
             {"--elidecomments", "Leave comments out of the output"},
             {"--elidenags", "Leave NAGs out of the output"},
             {"--elidevariations", "Leave variations out of the output"},
             {"--movenumberaftercomment", "Repeat the move number after a comment"},
             {"--nomovenumberaftercomment", "Do not repeat the move number after a comment"},
             {"--movenumberafternag", "Repeat the move number after a NAG"},
             {"--nomovenumberafternag", "Do not repeat the move number after a NAG"},
             {"--movenumbers", "Write move numbers"},
             {"--nomovenumbers", "Leave move numbers out"},
             {"--pgnlinewidth N", "Break output lines at N columns (0: never)"},
             {"--splitmoves", "Allow a break between number and move"},
             {"--nosplitmoves", "Keep a move number and its move on one line"},
             {"--uniquecomments", "Write a repeated comment only once"},
             {"--nouniquecomments", "Write every comment, repeated or not"},
         }},
        {"Comment Options",
         {
             {"--noheader", "Do not add the \"Game number\" comment"},
             {"--quiet", "Do not mark matching positions"},
             {"--silent", "Add no comments at all"},
         }},
        {"Filter Injection Options",
         {
             {"--assign NAME VALUE", "Add the assignment NAME = VALUE to the query"},
             {"--black NAME", "Keep games with NAME as Black"},
             {"--btm", "Match only positions with Black to move"},
             {"--event NAME", "Keep games of the event NAME"},
             {"--fen FEN", "Match only the position FEN"},
             {"--flip", "Wrap the query in flip"},
             {"--flipcolor", "Wrap the query in flipcolor"},
             {"--fliphorizontal", "Wrap the query in fliphorizontal"},
             {"--flipvertical", "Wrap the query in flipvertical"},
             {"--hhdb WORD...", "Add the study-database filter hhdb WORD..."},
             {"--player NAME", "Keep games with the player NAME"},
             {"--reversecolor", "Wrap the query in reversecolor"},
             {"--result RESULT", "Keep games with the result RESULT"},
             {"--rotate45", "Wrap the query in rotate45"},
             {"--rotate90", "Wrap the query in rotate90"},
             {"--shift", "Wrap the query in shift"},
             {"--shifthorizontal", "Wrap the query in shifthorizontal"},
             {"--shiftvertical", "Wrap the query in shiftvertical"},
             {"--site NAME", "Keep games played at the site NAME"},
             {"--virtualmainline", "Walk the virtual main line of variations"},
             {"--white NAME", "Keep games with NAME as White"},
             {"--wtm", "Match only positions with White to move"},
             {"--year FIRST [LAST]", "Keep games of the year FIRST, or FIRST to LAST"},
         }},
        {"Debugging Options",
         {
             {"--ansicolors", "Colour the --parse tree dump"},
             {"--consoleunicode", "Draw the --parse tree with Unicode lines"},
             {"--parse", "Print the parsed query and its tree, then stop"},
             {"--noansicolors", "Do not colour the --parse tree dump"},
             {"--noconsoleunicode", "Draw the --parse tree with plain characters"},
         }},
    };
    return sections;
}

const std::vector<HelpEntry>& unlistedOptions() {
    static const std::vector<HelpEntry> entries = {
        {"--noasyncerrors", "Hold run-time errors of a game until the game is finished."},
        {"--noskipunknownvariants", "Read games of variants that are not understood (the default)."},
        {"--noelidecomments", "Write comments (the default)."},
        {"--noelidenags", "Write NAGs (the default)."},
        {"--noelidevariations", "Write variations (the default)."},
        {"--nonestedcomments", "Read a closing brace as the end of a PGN comment (the default)."},
        {"--dump-nfa-diagrams",
         "Print the automaton of each line filter, as text on standard output and in the DOT language on "
         "standard error, and stop."},
        {"--expandtransforms", "With --parse: show every copy a transform filter makes."},
        {"--expandfunctions", "With --parse: show the body of each function call."},
        {"--expandfuncargs", "With --parse: show the bodies and the bound arguments of function calls."},
        {"--omit-elided-parens", "With --parse: leave parentheses that change nothing out of the tree."},
        {"--omit-elided-braces", "With --parse: leave braces around a single filter out of the tree."},
        {"--omit-elided-aux-nodes",
         "With --parse: leave function definitions and the header, which do their work while the query is "
         "read, "
         "out of the tree."},
        {"--omit-elided-nodes", "With --parse: all three of the above."},
    };
    return entries;
}

std::vector<std::string> optionNames(std::string_view option) {
    std::vector<std::string> names;
    option = option.substr(0, option.find(' '));
    for (std::size_t start = 0; start < option.size();) {
        std::size_t slash = option.find('/', start);
        if (slash == std::string_view::npos) slash = option.size();
        std::string_view name = option.substr(start, slash - start);
        while (!name.empty() && name.front() == '-') name.remove_prefix(1);
        names.emplace_back(name);
        start = slash + 1;
    }
    return names;
}

std::string usageText() {
    std::string text =
        "Usage: zmfi [options] [file.zmf]\n"
        "\n"
        "Runs a ZMF query over the games of a PGN file and writes the games that match,\n"
        "with the matching positions marked by comments. Without a query file the query\n"
        "is \"true\", narrowed by any filters that options inject.\n";
    // Option column, then the description; the columns are aligned here so
    // that entries stay easy to edit.
    for (const HelpSection& section : helpSections()) {
        text += "\n----- " + std::string(section.heading) + " -----\n";
        for (const HelpEntry& entry : section.entries) {
            std::string option = entry.option;
            option.resize(std::max<std::size_t>(option.size() + 1, 30), ' ');
            text += option + entry.description + "\n";
        }
    }
    text.pop_back();  // the caller ends the text
    return text;
}

std::string licenseText() {
    return R"(zmfi is free software, released under the MIT licence:

Copyright (c) 2026 the zmfi developers

Permission is hereby granted, free of charge, to any person obtaining a copy
of this software and associated documentation files (the "Software"), to deal
in the Software without restriction, including without limitation the rights
to use, copy, modify, merge, publish, distribute, sublicense, and/or sell
copies of the Software, and to permit persons to whom the Software is
furnished to do so, subject to the following conditions:

The above copyright notice and this permission notice shall be included in all
copies or substantial portions of the Software.

THE SOFTWARE IS PROVIDED "AS IS", WITHOUT WARRANTY OF ANY KIND, EXPRESS OR
IMPLIED, INCLUDING BUT NOT LIMITED TO THE WARRANTIES OF MERCHANTABILITY,
FITNESS FOR A PARTICULAR PURPOSE AND NONINFRINGEMENT. IN NO EVENT SHALL THE
AUTHORS OR COPYRIGHT HOLDERS BE LIABLE FOR ANY CLAIM, DAMAGES OR OTHER
LIABILITY, WHETHER IN AN ACTION OF CONTRACT, TORT OR OTHERWISE, ARISING FROM,
OUT OF OR IN CONNECTION WITH THE SOFTWARE OR THE USE OR OTHER DEALINGS IN THE
SOFTWARE.)";
}

void printVersion() { std::cout << versionText() << "\n" << std::flush; }
void printUsage() { std::cout << usageText() << std::flush; }
void printLicense() { std::cout << licenseText() << std::flush; }

}  // namespace tarnfold::zmf
