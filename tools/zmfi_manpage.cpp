// Writes the manual page zmfi.1 and the bash completion of the options at
// build time. Both are made from the very table that --help prints, so that
// none of them can drift from the others; the other sections of the page
// are written here.
//
//   zmfi_manpage MANPAGE COMPLETION

#include <cctype>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>

#include "driver/usage.h"

namespace {

using tarnfold::zmf::HelpEntry;
using tarnfold::zmf::HelpSection;

// Text safe in roff: backslashes doubled, dashes made plain minus signs,
// and a line never starting with a control character.
std::string roff(std::string_view text) {
    std::string out;
    for (char c : text) {
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    if (!out.empty() && (out[0] == '.' || out[0] == '\'')) out.insert(0, "\\&");
    return out;
}

// "--append/-a FILE": the names bold, the argument words italic.
std::string optionText(std::string_view option) {
    const std::size_t blank = option.find(' ');
    const std::string_view names = option.substr(0, blank);
    std::string text = "\\fB";
    std::size_t start = 0;
    for (std::size_t slash; (slash = names.find('/', start)) != std::string_view::npos; start = slash + 1) {
        text += roff(names.substr(start, slash - start));
        text += "\\fR, \\fB";
    }
    text += roff(names.substr(start));
    text += "\\fR";
    if (blank != std::string_view::npos) {
        text += " \\fI";
        text += roff(option.substr(blank + 1));
        text += "\\fR";
    }
    return text;
}

void entry(std::ostream& out, const std::string& term, std::string_view description) {
    out << ".TP\n" << term << "\n" << roff(description) << "\n";
}

void writePage(std::ostream& out) {
    out << ".TH ZMFI 1 \"\" \"zmfi " << ZMFI_VERSION << "\" \"User Commands\"\n"
        << ".SH NAME\nzmfi \\- run a ZMF query over the games of a PGN file\n"
        << ".SH SYNOPSIS\n.B zmfi\n[\\fIoptions\\fR] [\\fIfile.zmf\\fR]\n"
        << ".SH DESCRIPTION\n"
        << "zmfi runs a query written in ZMF, a query language over chess games, over the games of a PGN "
           "file, and writes the games that match, with the matching positions marked by comments. "
           "Without a query file the query is \\fBtrue\\fR, narrowed by any filters that options inject.\n"
        << ".PP\nOptions take one or two dashes and any letter case (\\fB\\-help\\fR, \\fB\\-\\-HELP\\fR). "
           "The query file comes last on the command line.\n";
    for (const HelpSection& section : tarnfold::zmf::helpSections()) {
        std::string heading = roff(section.heading);
        for (char& c : heading) c = char(std::toupper(static_cast<unsigned char>(c)));
        out << ".SH " << heading << "\n";
        for (const HelpEntry& help : section.entries) entry(out, optionText(help.option), help.description);
    }
    out << ".SH FURTHER OPTIONS\nThese work without being listed by \\fB\\-\\-help\\fR.\n";
    for (const HelpEntry& help : tarnfold::zmf::unlistedOptions())
        entry(out, optionText(help.option), help.description);
    out << ".SH THE QUERY FILE\n"
        << "A query is a sequence of filters, evaluated at every position of every game; a game matches "
           "when some position satisfies all of them. A query file usually starts with a header "
           "\\fBzmf(\\fR ... \\fB)\\fR that may name the input and output files and limits on matching; "
           "options given on the command line take precedence over it. "
           "\\fB\\-\\-parse\\fR prints the query as it was understood, without reading any game.\n"
        << ".PP\nThe input may be plain PGN, or compressed with gzip, bzip2, xz or zstd, or a zip archive; "
           "the kind is told by the content. \\fB\\-i stdin\\fR reads standard input.\n"
        << ".SH ENVIRONMENT\n.TP\n.B TF_PATH\n"
        << "Directories, separated by \\fB;\\fR, in which the query file and the input file are looked "
           "for when they are not found in the current directory.\n"
        << ".SH EXIT STATUS\n"
        << ".TP\n.B 0\nThe run finished (whether or not any game matched), or --help, --license or "
           "--version.\n"
        << ".TP\n.B 1\nAny failure: a bad option, a query that does not parse, an input or output file "
           "that cannot be opened or read, a damaged archive, or a run-time error of the query. Nothing is "
           "written then.\n"
        << ".SH EXAMPLES\n"
        << "Find the checkmates among the games of a file:\n"
        << ".PP\n.nf\n.RS\nzmfi \\-\\-zmf mate \\-i games.pgn \\-o mates.pgn\n.RE\n.fi\n"
        << ".PP\nRun a query file over a compressed database with two threads:\n"
        << ".PP\n.nf\n.RS\nzmfi \\-\\-threads 2 \\-i lichess.pgn.zst \\-o found.pgn query.zmf\n.RE\n.fi\n"
        << ".PP\nA pattern for either colour, anywhere on the board:\n"
        << ".PP\n.nf\n.RS\nzmfi \\-\\-zmf 'flipcolor shift {Pb2 Pc3 Pd4}' \\-i games.pgn \\-o chains.pgn\n"
           ".RE\n.fi\n"
        << ".PP\nCount games per opening in a persistent dictionary:\n"
        << ".PP\n.nf\n.RS\nzmfi \\-\\-showdictionaries \\-i games.pgn \\-o /dev/null openings_tally.zmf\n"
           ".RE\n.fi\n"
        << ".PP\nExample queries and sample games are installed in \\fI/usr/share/doc/zmfi/examples\\fR.\n"
        << ".SH SEE ALSO\n\\fBzmfi \\-\\-help\\fR, \\fBzmfi \\-\\-license\\fR\n";
}

// Options complete after a dash; anything else completes as a file name,
// with the arguments of the options that take a file or a number left to
// bash's defaults.
void writeCompletion(std::ostream& out) {
    std::string words;
    auto add = [&](std::string_view option) {
        for (const std::string& name : tarnfold::zmf::optionNames(option)) {
            if (!words.empty()) words += ' ';
            words += "--";
            words += name;
        }
    };
    for (const HelpSection& section : tarnfold::zmf::helpSections())
        for (const HelpEntry& help : section.entries) add(help.option);
    for (const HelpEntry& help : tarnfold::zmf::unlistedOptions()) add(help.option);
    out << "# bash completion for zmfi -*- shell-script -*-\n"
        << "_zmfi()\n{\n"
        << "    local cur=${COMP_WORDS[COMP_CWORD]}\n"
        << "    if [[ $cur == -* ]]; then\n"
        << "        COMPREPLY=($(compgen -W '" << words << "' -- \"$cur\"))\n"
        << "        return\n"
        << "    fi\n"
        << "    COMPREPLY=($(compgen -f -- \"$cur\"))\n"
        << "} &&\n"
        << "    complete -o filenames -F _zmfi zmfi\n";
}

bool writeFile(const char* path, void (*write)(std::ostream&)) {
    std::ofstream out(path, std::ios::binary);
    write(out);
    out.close();
    if (!out) std::cerr << "zmfi_manpage: cannot write " << path << "\n";
    return bool(out);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: zmfi_manpage MANPAGE COMPLETION\n";
        return 2;
    }
    return writeFile(argv[1], writePage) && writeFile(argv[2], writeCompletion) ? 0 : 1;
}
