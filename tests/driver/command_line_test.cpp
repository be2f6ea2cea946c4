#include "driver/command_line.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

namespace tarnfold::zmf {
namespace {

namespace fs = std::filesystem;

struct Parsed {
    bool ok = false;
    std::string error;
    ZMFDriverOptions options;
};

Parsed parse(std::vector<std::string> arguments) {
    injectedTextMap.clear();
    Parsed parsed;
    parsed.ok = parseCommandLine(arguments, parsed.options, parsed.error);
    return parsed;
}

std::string errorOf(std::vector<std::string> arguments) {
    Parsed parsed = parse(std::move(arguments));
    EXPECT_FALSE(parsed.ok);
    return parsed.error;
}

std::string textOf(std::vector<std::string> arguments) {
    Parsed parsed = parse(std::move(arguments));
    EXPECT_TRUE(parsed.ok) << parsed.error;
    return parsed.options.querySource.text();
}

TEST(MatchOption, DashesAndCaseAreFoldedButNothingElse) {
    EXPECT_TRUE(matchOption("-help", "help"));
    EXPECT_TRUE(matchOption("--help", "help"));
    EXPECT_TRUE(matchOption("--HELP", "help"));
    EXPECT_TRUE(matchOption("--g", "g"));
    EXPECT_FALSE(matchOption("---help", "help"));
    EXPECT_FALSE(matchOption("--hel", "help"));
    EXPECT_FALSE(matchOption("help", "help"));
    EXPECT_FALSE(matchOption("-", ""));
    EXPECT_FALSE(matchOption("--help\xC3\xA9", "help"));
}

class WithQueryFile : public ::testing::Test {
protected:
    void SetUp() override {
        path_ = (fs::temp_directory_path() / ("zmfi-cl-" + std::to_string(::getpid()) + ".zmf")).string();
        std::ofstream(path_, std::ios::binary) << "check\nmate";
    }
    void TearDown() override { fs::remove(path_); }
    std::string path_;
};

TEST_F(WithQueryFile, InjectedPiecesComeFirstThenTheFileThenClosingBraces) {
    Parsed parsed = parse({"--flip", "--White", "Anna", "--rotate90", path_});
    ASSERT_TRUE(parsed.ok) << parsed.error;
    const QuerySource& source = parsed.options.querySource;
    EXPECT_EQ(source.text(), "flip{ player white \"Anna\" rotate90{\ncheck\nmate}}");
    EXPECT_EQ(parsed.options.queryFile, path_);

    std::vector<std::string> names;
    for (const SourceEntry& entry : source.sources()) names.push_back(entry.name);
    EXPECT_EQ(names, (std::vector<std::string>{"<injected-text>", "<padding>", "<injected-text>", "<padding>",
                                               "<injected-text>", "<padding>", path_, "<injected-text>",
                                               "<injected-text>"}));

    ASSERT_EQ(injectedTextMap.size(), 5u);
    auto record = [](std::size_t segment) {
        const InjectedText& text = injectedTextMap.at(segment);
        std::string out = std::to_string(text.argumentIndex) + " " + text.option;
        for (const std::string& argument : text.arguments) out += " [" + argument + "]";
        return out;
    };
    EXPECT_EQ(record(0), "0 --flip");
    EXPECT_EQ(record(2), "1 --White [Anna]");
    EXPECT_EQ(record(4), "3 --rotate90");
    // Closing braces, innermost first, point back at the transform they close.
    EXPECT_EQ(record(7), "3 --rotate90");
    EXPECT_EQ(record(8), "0 --flip");
}

TEST_F(WithQueryFile, TheQueryFileEndsTheCommandLine) {
    Parsed parsed = parse({"--gamenumber", "5", path_});
    ASSERT_TRUE(parsed.ok) << parsed.error;
    EXPECT_EQ(parsed.options.gameNumberFirst, 5u);
    EXPECT_EQ(parsed.options.gameNumberLast, 5u);
    EXPECT_EQ(parsed.options.queryFile, path_);
    EXPECT_EQ(parsed.options.querySource.text(), "check\nmate");
}

TEST(CommandLine, WithoutAFileTheQueryIsTrue) {
    EXPECT_EQ(textOf({}), "true");
    EXPECT_EQ(textOf({"--zmf", "check"}), "{check}\ntrue");
    EXPECT_EQ(textOf({"--wtm", "--btm", "--virtualmainline"}), "wtm btm virtualmainline\ntrue");
    EXPECT_EQ(textOf({"--flipcolor", "--zmf", "x"}), "flipcolor{ {x}\ntrue}");
    EXPECT_EQ(injectedTextMap.at(2).arguments, (std::vector<std::string>{"x"}));
}

TEST(CommandLine, AssignInjectsNumbersBareAndEverythingElseQuoted) {
    EXPECT_EQ(textOf({"--assign", "x", "12"}), "x = 12\ntrue");
    EXPECT_EQ(injectedTextMap.at(0).arguments, (std::vector<std::string>{"x", "12"}));
    EXPECT_EQ(textOf({"--assign", "$a_1", "-7"}), "$a_1 = -7\ntrue");
    EXPECT_EQ(textOf({"--assign", "x", "12a"}), "x = \"12a\"\ntrue");
    EXPECT_EQ(textOf({"--assign", "x", ""}), "x = \"\"\ntrue");
    EXPECT_EQ(textOf({"--assign", "x", "say \"hi\""}), "x = \"say \"hi\"\"\ntrue");
    EXPECT_EQ(errorOf({"--assign", "a-b", "2"}), "invalid variable name 'a-b' for '--assign' option");
    EXPECT_EQ(errorOf({"-Assign", "x", "99999999999999999999"}),
              "numeric variable value '99999999999999999999' for '-Assign' option is out of range");
}

TEST(CommandLine, HhdbTakesTheWordsOfOneCommand) {
    // Markers and status codes go in as strings, which the scanner would
    // otherwise cut into pieces.
    EXPECT_EQ(textOf({"--hhdb", "<cook>"}), "hhdb \"<cook>\"\ntrue");
    EXPECT_EQ(textOf({"--hhdb", "(c)", "--wtm"}), "hhdb \"(c)\" wtm\ntrue");
    EXPECT_EQ(textOf({"--hhdb", "sound"}), "hhdb sound\ntrue");
    // Award words combine; anything else ends the list.
    EXPECT_EQ(textOf({"--hhdb", "prize", "special", "max", "--btm"}), "hhdb prize special max btm\ntrue");
    EXPECT_EQ(injectedTextMap.at(0).arguments, (std::vector<std::string>{"prize", "special", "max"}));
    // gbr takes a section; search the text to search for, whatever it is.
    EXPECT_EQ(textOf({"--hhdb", "gbr", "pawns"}), "hhdb gbr pawns\ntrue");
    EXPECT_EQ(textOf({"--hhdb", "search", "KRB"}), "hhdb search \"KRB\"\ntrue");
    EXPECT_EQ(injectedTextMap.at(0).arguments, (std::vector<std::string>{"search", "KRB"}));
    EXPECT_EQ(errorOf({"--HHDB", "search"}),
              "missing required search parameter for '--HHDB' option with 'search' command");
    EXPECT_EQ(errorOf({"--hhdb", "cooked?"}), "'cooked?' is not a valid hhdb command");
    EXPECT_EQ(errorOf({"--hhdb"}), "missing argument for '--hhdb' option");
}

TEST(CommandLine, RangesTakeASecondNumberOnlyWhenItIsWhollyANumber) {
    Parsed games = parse({"-g", "5", "7"});
    EXPECT_EQ(games.options.gameNumberFirst, 5u);
    EXPECT_EQ(games.options.gameNumberLast, 7u);
    EXPECT_TRUE(games.options.gameNumberGiven);
    EXPECT_EQ(errorOf({"--gamenumber", "5", "-3"}),
              "second argument to '--gamenumber' option must be an integer greater than 0");
    EXPECT_EQ(
        errorOf({"--gamenumber", "0"}),
        "argument to '--gamenumber' option must be an integer greater than 0 (game numbers start at 1)");
    games = parse({"--gamenumber", "5", "--quiet"});
    EXPECT_EQ(games.options.gameNumberLast, 5u);
    EXPECT_TRUE(games.options.quiet);

    Parsed counts = parse({"--matchcount", "2", "--quiet"});
    EXPECT_TRUE(counts.options.hasMatchCount);
    EXPECT_EQ(counts.options.matchCountMin, 2u);
    EXPECT_EQ(counts.options.matchCountMax, 2u);
    EXPECT_TRUE(counts.options.quiet);
    counts = parse({"--matchcount", "0", "9"});
    EXPECT_EQ(counts.options.matchCountMax, 9u);
    EXPECT_EQ(errorOf({"--matchcount", "-1"}),
              "argument to '--matchcount' option must be a non-negative integer");

    EXPECT_EQ(textOf({"--year", "1990"}), "{year == 1990}\ntrue");
    EXPECT_EQ(textOf({"--year", "1990", "2000"}), "{1990 <= year <= 2000}\ntrue");
    EXPECT_EQ(injectedTextMap.at(0).arguments, (std::vector<std::string>{"1990", "2000"}));
    EXPECT_EQ(textOf({"--year", "+1990", "--wtm"}), "{year == +1990} wtm\ntrue");
    EXPECT_EQ(errorOf({"--year", "x"}), "argument to '--year' option must be a non-negative integer");
    EXPECT_EQ(errorOf({"--year"}), "missing argument for '--year' option");
}

TEST(CommandLine, PipeTimeoutLaterMayNotExceedTheFirst) {
    auto timeouts = [](std::vector<std::string> arguments) {
        Parsed parsed = parse(std::move(arguments));
        EXPECT_TRUE(parsed.ok) << parsed.error;
        return std::to_string(parsed.options.pipeTimeoutFirst) + "/" +
               std::to_string(parsed.options.pipeTimeoutLater);
    };
    EXPECT_EQ(timeouts({"--pipetimeout", "100"}), "100/100");
    EXPECT_EQ(timeouts({"--pipetimeout", "100", "50"}), "100/50");
    EXPECT_EQ(timeouts({"--pipetimeout", "0", "200"}), "0/200");
    EXPECT_EQ(timeouts({"--pipetimeout", "0", "0"}), "0/0");
    EXPECT_EQ(errorOf({"--pipetimeout", "100", "-5"}),
              "second argument to '--pipetimeout' option must be a non-negative integer");
}

TEST(CommandLine, NumericOptionsRejectAnythingButAWholeNumberInRange) {
    EXPECT_EQ(parse({"--limit", "3"}).options.limit, 3u);
    EXPECT_EQ(errorOf({"--limit"}), "missing argument for '--limit' option");
    for (const char* bad : {"", "3x", "-1", "4294967296", "99999999999999999999999", "0x10"})
        EXPECT_EQ(errorOf({"--limit", bad}), "argument to '--limit' option must be a non-negative integer")
            << bad;
    EXPECT_EQ(parse({"--limit", "4294967295"}).options.limit, 4294967295u);
    EXPECT_EQ(errorOf({"--LineIncrement"}), "missing argument for '-lineincrement' option");
    EXPECT_EQ(errorOf({"--lineincrement", "a"}),
              "argument to '-lineincrement' option must be a non-negative integer");
    EXPECT_EQ(errorOf({"--threads", "-2"}), "argument to '-threads' option must be a non-negative integer");
    EXPECT_EQ(errorOf({"-w", "4"}), "argument to '-w' option must be an integer between 1 and 3");
    EXPECT_EQ(errorOf({"-w", "0"}), "argument to '-w' option must be an integer between 1 and 3");
    EXPECT_EQ(errorOf({"--pgnlinewidth", "wide"}),
              "argument to '--pgnlinewidth' option must be a non-negative integer");
    EXPECT_EQ(parse({"--warnlevel", "3"}).options.warnLevel, 3u);
    EXPECT_EQ(parse({"--threads", "0"}).options.threads, std::thread::hardware_concurrency());
    EXPECT_EQ(parse({"--threads", "3", "-s"}).options.threads, 0u);
}

TEST(CommandLine, TagOptionsCheckTheirArgument) {
    EXPECT_EQ(textOf({"--black", "Carl", "--event", "Open 2020"}),
              "player black \"Carl\" event \"Open 2020\"\ntrue");
    EXPECT_EQ(errorOf({"--Site"}), "missing argument for '--Site' option");
    EXPECT_EQ(errorOf({"--fen", "8/8 \"x\""}), "argument for '--fen' option should not contain quotes");
}

TEST(CommandLine, SwitchesSetTheirFields) {
    ZMFDriverOptions o =
        parse({"--nosmartcomments", "--silent", "--mainline", "--elidenags", "--noansicolors",
               "--omit-elided-nodes", "--append", "a.pgn", "--noskipunknownvariants"})
            .options;
    EXPECT_FALSE(o.smartComments);
    EXPECT_FALSE(o.commitLog);
    EXPECT_TRUE(o.silent && o.quiet);
    EXPECT_FALSE(o.processVariations);
    EXPECT_TRUE(o.variationsGiven);
    EXPECT_FALSE(o.emitNags);
    EXPECT_FALSE(o.ansiColors);
    EXPECT_TRUE(o.omitElidedAuxNodes && o.omitElidedBraces && o.omitElidedParens);
    EXPECT_EQ(o.outputFile, "a.pgn");
    EXPECT_TRUE(o.appendOutput);
    EXPECT_FALSE(o.skipUnknownVariants);

    o = parse({"--append", "a.pgn", "-o", "b.pgn", "--alwayscomment", "--virtualmainline"}).options;
    EXPECT_EQ(o.outputFile, "b.pgn");
    EXPECT_FALSE(o.appendOutput);
    EXPECT_FALSE(o.smartComments);
    EXPECT_TRUE(o.processVariations);
    EXPECT_EQ(o.querySource.text(), "virtualmainline\ntrue");
}

TEST(CommandLine, VariantAliasesNameAKnownVariant) {
    ZMFDriverOptions o = parse({"--variantalias", "Crazy House", "zhouse", "--variantalias", "atomic",
                                "zhouse", "--variantalias", "koth", "hill"})
                             .options;
    ASSERT_EQ(o.variantAliases.size(), 2u);
    EXPECT_EQ(o.variantAliases.at("zhouse"), Variant::Atomic);
    EXPECT_EQ(o.variantAliases.at("hill"), Variant::KingOfTheHill);
}

TEST(CommandLine, UnknownOptionsAndUnreadableFiles) {
    EXPECT_EQ(errorOf({"--helpme"}), "unknown option '--helpme'");
    EXPECT_EQ(errorOf({"--\xff"}), "unknown option '--\xff'");
    testing::internal::CaptureStdout();
    EXPECT_EQ(errorOf({"/nonexistent/q.zmf"}), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Failed to open ZMF file '/nonexistent/q.zmf': No such file or directory\n");
}

}  // namespace
}  // namespace tarnfold::zmf

namespace tarnfold::zmf {
namespace {

// Random argument vectors drawn from option names, numbers of every shape,
// empty and non-UTF-8 words: every outcome must be a success with a
// well-formed query text, or a message of one line.
TEST(CommandLine, AnyArgumentVectorGivesAQueryOrAOneLineMessage) {
    const std::vector<std::string> words = {"--flip",
                                            "--ROTATE90",
                                            "-shift",
                                            "--white",
                                            "--Black",
                                            "--fen",
                                            "--append",
                                            "-o",
                                            "--assign",
                                            "--zmf",
                                            "-g",
                                            "--gamenumber",
                                            "--limit",
                                            "--lineincrement",
                                            "--matchcount",
                                            "--matchstring",
                                            "--pipetimeout",
                                            "--threads",
                                            "--variantalias",
                                            "--warnlevel",
                                            "--year",
                                            "--wtm",
                                            "--btm",
                                            "--virtualmainline",
                                            "--silent",
                                            "--help",
                                            "--parse",
                                            "--hhdb",
                                            "--",
                                            "-",
                                            "---x",
                                            "0",
                                            "1",
                                            "3",
                                            "5",
                                            "-3",
                                            "+7",
                                            "4294967296",
                                            "99999999999999999999",
                                            "12abc",
                                            "",
                                            "x",
                                            "$v",
                                            "1x",
                                            "a b",
                                            "\"q\"",
                                            "\xff\xfe",
                                            "Crazy House",
                                            "atomic",
                                            "wild"};
    std::mt19937 random(20261121);
    for (int round = 0; round < 3000; ++round) {
        std::vector<std::string> arguments(random() % 6);
        for (std::string& argument : arguments) argument = words[random() % words.size()];
        testing::internal::CaptureStdout();
        Parsed parsed = parse(arguments);
        std::string printed = testing::internal::GetCapturedStdout();

        std::string shown;
        for (const std::string& argument : arguments) shown += "[" + argument + "] ";
        if (parsed.ok) {
            // Without a readable query file: injected text, "true", then one
            // closing brace per transform.
            const std::string& text = parsed.options.querySource.text();
            std::size_t opened = 0;
            for (char c : text) opened += c == '{';
            std::size_t closed = 0;
            for (char c : text) closed += c == '}';
            EXPECT_EQ(opened, closed) << shown;
            EXPECT_NE(text.find("true"), std::string::npos) << shown;
            EXPECT_EQ(printed, "") << shown;
        } else if (parsed.error.empty()) {
            EXPECT_TRUE(printed.starts_with("Failed to open ZMF file '")) << shown;
        } else {
            // One line, printed by the caller under the version line.
            EXPECT_EQ(parsed.error.find('\n'), std::string::npos) << shown << "gave: " << parsed.error;
            EXPECT_EQ(printed, "") << shown;
        }
    }
}

}  // namespace
}  // namespace tarnfold::zmf
