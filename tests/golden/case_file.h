// Parsing of golden case files (see README.md in this folder for the format).
// Kept apart from the runner so the parser can be unit-tested on its own.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace golden {

struct ParseError : std::runtime_error {
    ParseError(int line_number, const std::string& message)
        : std::runtime_error(message), line(line_number) {}
    int line;
};

struct Section {
    std::string kind;     // file, fixture, dir, stdin, stdout, stderr, output, absent
    std::string path;     // relative path for file, fixture, dir, output, absent
    std::string content;  // unescaped, with noeol already applied
    int line = 0;         // line number of the marker
    // Byte range from the marker line to the end of the content, and the
    // marker line minus its newline and noeol word: update mode rewrites the
    // range and must not disturb anything else in the file.
    std::size_t begin = 0, end = 0;
    std::string head;
};

struct CaseFile {
    std::vector<std::string> args;
    std::vector<std::string> env;  // NAME=VALUE, in file order
    int exit_status = 0;
    std::size_t exit_begin = 0, exit_end = 0;  // byte range of the exit value
    int timeout_seconds = 60;
    std::vector<Section> sections;

    const Section* find(std::string_view kind) const;
};

// Splits shell-like words: '...' literal, "..." and bare text take the
// escapes \\ \" \' \n \t \xNN. Throws std::invalid_argument.
std::vector<std::string> split_words(std::string_view text);

// Throws ParseError naming the offending line.
CaseFile parse_case(std::string_view text);

// The text that replaces [section.begin, section.end) so that the section
// reads back as `content`.
std::string render_section(const Section& section, std::string_view content);

}  // namespace golden
