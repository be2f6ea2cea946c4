#include "case_file.h"

#include <gtest/gtest.h>

namespace golden {
namespace {

using Words = std::vector<std::string>;

TEST(CaseFile, SplitsWordsWithQuotesAndEscapes) {
    EXPECT_EQ(split_words(R"(  --white '' "q x" --zmf "a\x80b" file.zmf  )"),
              (Words{"--white", "", "q x", "--zmf",
                     "a\x80"
                     "b",
                     "file.zmf"}));
    EXPECT_EQ(split_words(R"(a'b c'"d e"f '\n' "\\\"\'\n\t" \x41\t)"),
              (Words{"ab cd ef", "\\n", "\\\"'\n\t", "A\t"}));
    EXPECT_EQ(split_words(""), Words{});
    EXPECT_THROW(split_words("'open"), std::invalid_argument);
    EXPECT_THROW(split_words("\"open\\\""), std::invalid_argument);
    EXPECT_THROW(split_words("\\q"), std::invalid_argument);
    EXPECT_THROW(split_words("\\x4"), std::invalid_argument);
    EXPECT_THROW(split_words("end\\"), std::invalid_argument);
}

constexpr std::string_view example =
    "# a comment\n"
    "args: --white '' q.zmf\n"
    "env: TF_PATH=lib;other/\n"
    "env: TF_PATH=second\n"
    "\n"
    "exit: 1\n"
    "timeout: 5\n"
    "--- file sub/q.zmf noeol\n"
    "\\--- not a marker\n"
    "\\\\--- one backslash kept\n"
    "last\n"
    "--- dir empty\n"
    "--- stdin\n"
    "--- stdout\n"
    "line\n"
    "\n"
    "--- stderr noeol\n"
    "--- output 'out file.pgn'\n"
    "x\n"
    "--- absent gone.pgn\n"
    "--- fixture sub/games.pgn\n";

TEST(CaseFile, ParsesEveryDirectiveAndSection) {
    CaseFile c = parse_case(example);
    EXPECT_EQ(c.args, (Words{"--white", "", "q.zmf"}));
    EXPECT_EQ(c.env, Words{"TF_PATH=second"});
    EXPECT_EQ(c.exit_status, 1);
    EXPECT_EQ(example.substr(c.exit_begin, c.exit_end - c.exit_begin), "1");
    EXPECT_EQ(c.timeout_seconds, 5);
    ASSERT_EQ(c.sections.size(), 8u);
    EXPECT_EQ(c.sections[0].kind, "file");
    EXPECT_EQ(c.sections[0].path, "sub/q.zmf");
    EXPECT_EQ(c.sections[0].content, "--- not a marker\n\\--- one backslash kept\nlast");
    EXPECT_EQ(c.sections[0].head, "--- file sub/q.zmf");
    EXPECT_EQ(c.sections[0].line, 8);
    EXPECT_EQ(c.sections[1].path, "empty");
    EXPECT_EQ(c.sections[2].content, "");
    EXPECT_EQ(c.sections[3].content, "line\n\n");
    EXPECT_EQ(example.substr(c.sections[3].begin, c.sections[3].end - c.sections[3].begin),
              "--- stdout\nline\n\n");
    EXPECT_EQ(c.sections[4].content, "");
    EXPECT_EQ(c.sections[5].path, "out file.pgn");
    EXPECT_EQ(c.sections[5].content, "x\n");
    EXPECT_EQ(c.sections[6].kind, "absent");
    EXPECT_EQ(c.sections[7].kind, "fixture");
    EXPECT_EQ(c.sections[7].path, "sub/games.pgn");
    EXPECT_EQ(c.sections[7].end, example.size());
}

TEST(CaseFile, LastSectionMayLackFinalNewline) {
    CaseFile c = parse_case("args:\nexit: 0\n--- stdout\nabc");
    EXPECT_TRUE(c.args.empty());
    EXPECT_EQ(c.find("stdout")->content, "abc");
    EXPECT_EQ(parse_case("args:\nexit: 0\n--- stdout").find("stdout")->content, "");
}

TEST(CaseFile, GenerateSectionsRepeatTheirWords) {
    CaseFile c = parse_case(
        "args:\nexit: 0\n--- generate big.pgn\n1 \"{\"\n3 'ab '\n\n2 \"\\x00\\n\"\n--- stdout\n");
    EXPECT_EQ(c.sections[0].kind, "generate");
    EXPECT_EQ(c.sections[0].path, "big.pgn");
    EXPECT_EQ(c.sections[0].content, std::string("{ab ab ab \0\n\0\n", 14));
}

int error_line(std::string_view text, std::string_view message_part) {
    try {
        parse_case(text);
    } catch (const ParseError& e) {
        EXPECT_NE(std::string(e.what()).find(message_part), std::string::npos) << e.what();
        return e.line;
    }
    ADD_FAILURE() << "no error for: " << text;
    return 0;
}

TEST(CaseFile, ReportsErrorsWithLineNumbers) {
    EXPECT_EQ(error_line("args:\nexpect: 0\n--- stdout\n", "unknown directive"), 2);
    EXPECT_EQ(error_line("# c\nargs: 'x\nexit: 0\n--- stdout\n", "unterminated"), 2);
    EXPECT_EQ(error_line("args:\n\n--- stdout\n", "missing 'exit:'"), 3);
    EXPECT_EQ(error_line("exit: 0\n--- stdout\n", "missing 'args:'"), 2);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stderr\n", "missing '--- stdout'"), 4);
    EXPECT_EQ(error_line("args:\nexit: 256\n--- stdout\n", "0 to 255"), 2);
    EXPECT_EQ(error_line("args:\nargs:\nexit: 0\n--- stdout\n", "second 'args:'"), 2);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- stdout\n", "second 'stdout'"), 4);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- outptu x\n", "unknown section"), 4);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- file a/../../x\n", "'..'"), 4);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- output /tmp/x\n", "relative"), 4);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- file\n", "one path"), 4);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout x\n", "no path"), 3);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- dir d\ntext\n", "no content"), 5);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- fixture f noeol\n", "one path"), 4);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- fixture f\ntext\n", "no content"), 5);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- generate g\n1 \"a\"\nx \"b\"\n", "0 to"), 6);
    EXPECT_EQ(error_line("args:\nexit: 0\n--- stdout\n--- generate g\n2 a b\n", "COUNT"), 5);
}

TEST(CaseFile, RenderedSectionReadsBackUnchanged) {
    const Section stdout_section = parse_case("args:\nexit: 0\n--- stdout\n").sections[0];
    EXPECT_EQ(render_section(stdout_section, "--- a\n\\--- b\nend"),
              "--- stdout noeol\n\\--- a\n\\\\--- b\nend\n");
    for (std::string_view content : {"", "\n", "x", "a\n--- b\n", "\\--- \n\\\\\\--- c", "--- "}) {
        std::string text = "args:\nexit: 0\n" + render_section(stdout_section, content) + "--- stderr\n";
        EXPECT_EQ(parse_case(text).find("stdout")->content, content) << text;
    }
}

}  // namespace
}  // namespace golden
