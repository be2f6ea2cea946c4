#include "driver/command_line.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <span>
#include <thread>

#include "driver/path_search.h"
#include "query/hhdb_commands.h"

namespace tarnfold::zmf {

std::map<std::size_t, InjectedText> injectedTextMap;

bool matchOption(std::string_view argument, std::string_view name) {
    if (argument.size() < 2 || argument[0] != '-') return false;
    argument.remove_prefix(argument[1] == '-' ? 2 : 1);
    if (argument.size() != name.size()) return false;
    for (std::size_t i = 0; i < name.size(); ++i) {
        auto folded = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
        if (folded(argument[i]) != folded(name[i])) return false;
    }
    return true;
}

namespace {

// What strtol makes of an argument. `whole` says that the text is a number
// and nothing else; `value` is meaningful only when `inRange` is set too.
struct Number {
    bool whole = false;
    bool inRange = false;
    long long value = 0;

    bool isNonNegative() const { return whole && inRange && value >= 0; }
};

Number readNumber(const std::string& text) {
    Number number;
    errno = 0;
    char* end = nullptr;
    number.value = std::strtoll(text.c_str(), &end, 10);
    number.whole = !text.empty() && end != text.c_str() && *end == '\0';
    // Every numeric setting is an unsigned 32-bit field.
    number.inRange = errno != ERANGE && number.value >= std::numeric_limits<std::int32_t>::min() &&
                     number.value <= std::numeric_limits<std::uint32_t>::max();
    return number;
}

bool isNameCharacter(char c, bool first) {
    bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    bool digit = c >= '0' && c <= '9';
    return letter || c == '_' || c == '$' || (digit && !first);
}

struct FlagOption {
    const char* name;
    bool ZMFDriverOptions::*field;
    bool value;
};

constexpr FlagOption flagOptions[] = {
    {"ansicolors", &ZMFDriverOptions::ansiColors, true},
    {"noansicolors", &ZMFDriverOptions::ansiColors, false},
    {"coalescecomments", &ZMFDriverOptions::coalesceComments, true},
    {"nocoalescecomments", &ZMFDriverOptions::coalesceComments, false},
    {"compactcomments", &ZMFDriverOptions::compactComments, true},
    {"nocompactcomments", &ZMFDriverOptions::compactComments, false},
    {"compactmoves", &ZMFDriverOptions::compactMoves, true},
    {"nocompactmoves", &ZMFDriverOptions::compactMoves, false},
    {"compactvariations", &ZMFDriverOptions::compactVariations, true},
    {"nocompactvariations", &ZMFDriverOptions::compactVariations, false},
    {"dump-nfa-diagrams", &ZMFDriverOptions::dumpNfaDiagrams, true},
    {"elidecomments", &ZMFDriverOptions::emitComments, false},
    {"noelidecomments", &ZMFDriverOptions::emitComments, true},
    {"elidenags", &ZMFDriverOptions::emitNags, false},
    {"noelidenags", &ZMFDriverOptions::emitNags, true},
    {"elidevariations", &ZMFDriverOptions::emitVariations, false},
    {"noelidevariations", &ZMFDriverOptions::emitVariations, true},
    {"expandfuncargs", &ZMFDriverOptions::expandFuncArgs, true},
    {"expandfunctions", &ZMFDriverOptions::expandFunctions, true},
    {"expandtransforms", &ZMFDriverOptions::expandTransforms, true},
    {"help", &ZMFDriverOptions::showHelp, true},
    {"h", &ZMFDriverOptions::showHelp, true},
    {"keepallbest", &ZMFDriverOptions::keepAllBest, true},
    {"license", &ZMFDriverOptions::showLicense, true},
    {"movenumberaftercomment", &ZMFDriverOptions::moveNumberAfterComment, true},
    {"nomovenumberaftercomment", &ZMFDriverOptions::moveNumberAfterComment, false},
    {"movenumberafternag", &ZMFDriverOptions::moveNumberAfterNag, true},
    {"nomovenumberafternag", &ZMFDriverOptions::moveNumberAfterNag, false},
    {"movenumbers", &ZMFDriverOptions::moveNumbers, true},
    {"nomovenumbers", &ZMFDriverOptions::moveNumbers, false},
    {"nestedcomments", &ZMFDriverOptions::nestedComments, true},
    {"nonestedcomments", &ZMFDriverOptions::nestedComments, false},
    {"noasyncerrors", &ZMFDriverOptions::asyncErrors, false},
    {"noasyncmessages", &ZMFDriverOptions::asyncMessages, false},
    {"noheader", &ZMFDriverOptions::noHeader, true},
    {"nocommitlog", &ZMFDriverOptions::commitLog, false},
    {"noremovecomment", &ZMFDriverOptions::removeCommentAllowed, false},
    {"noremovetag", &ZMFDriverOptions::removeTagAllowed, false},
    {"nosettag", &ZMFDriverOptions::setTagAllowed, false},
    {"omit-elided-aux-nodes", &ZMFDriverOptions::omitElidedAuxNodes, true},
    {"omit-elided-braces", &ZMFDriverOptions::omitElidedBraces, true},
    {"omit-elided-parens", &ZMFDriverOptions::omitElidedParens, true},
    {"parse", &ZMFDriverOptions::parseOnly, true},
    {"quiet", &ZMFDriverOptions::quiet, true},
    {"secure", &ZMFDriverOptions::secure, true},
    {"showdictionaries", &ZMFDriverOptions::showDictionaries, true},
    {"showmatches", &ZMFDriverOptions::showMatches, true},
    {"skipunknownvariants", &ZMFDriverOptions::skipUnknownVariants, true},
    {"noskipunknownvariants", &ZMFDriverOptions::skipUnknownVariants, false},
    {"splitmoves", &ZMFDriverOptions::splitMoves, true},
    {"nosplitmoves", &ZMFDriverOptions::splitMoves, false},
    {"consoleunicode", &ZMFDriverOptions::consoleUnicode, true},
    {"noconsoleunicode", &ZMFDriverOptions::consoleUnicode, false},
    {"uniquecomments", &ZMFDriverOptions::uniqueComments, true},
    {"nouniquecomments", &ZMFDriverOptions::uniqueComments, false},
    {"version", &ZMFDriverOptions::showVersion, true},
    {"v", &ZMFDriverOptions::showVersion, true},
};

// Transforms wrap the rest of the query: their closing brace comes last.
constexpr const char* transformOptions[] = {
    "flip",     "flipcolor", "fliphorizontal", "flipvertical",    "reversecolor",
    "rotate45", "rotate90",  "shift",          "shifthorizontal", "shiftvertical",
};

struct TagOption {
    const char* name;
    const char* filter;
};

constexpr TagOption tagOptions[] = {
    {"black", "player black"}, {"white", "player white"}, {"player", "player"}, {"event", "event"},
    {"site", "site"},          {"result", "result"},      {"fen", "fen"},
};

class CommandLineParser {
public:
    CommandLineParser(const std::vector<std::string>& arguments, ZMFDriverOptions& options,
                      std::string& error)
        : args_(arguments), options_(options), error_(error) {}

    bool run();

    using Handler = bool (CommandLineParser::*)();
    struct ValueOption {
        const char* name;
        const char* alias;
        Handler handler;
    };
    static std::span<const ValueOption> optionTable();

private:
    static const ValueOption valueOptions[];

    bool step();
    bool tryTransform();
    bool tryTag(bool& matched);
    bool tryFlag();
    bool tryValueOption(bool& matched);
    bool queryFileArgument();
    void finish();

    void injectText(std::string text, bool openBrace, std::size_t argumentCount);
    bool fail(std::string text) {
        error_ = std::move(text);
        return false;
    }
    // The option being handled, and the arguments that follow it.
    const std::string& current() const { return args_[optionIndex_]; }
    bool hasArgument(std::size_t ahead) const { return optionIndex_ + ahead < args_.size(); }
    const std::string& argument(std::size_t ahead) const { return args_[optionIndex_ + ahead]; }
    std::string quoted() const { return "'" + current() + "'"; }
    std::string missing() const { return "missing argument for " + quoted() + " option"; }
    std::string notNonNegative() const {
        return "argument to " + quoted() + " option must be a non-negative integer";
    }
    std::string secondNotNonNegative() const {
        return "second argument to " + quoted() + " option must be a non-negative integer";
    }
    std::string secondSmaller() const {
        return "second argument to " + quoted() + " option cannot be smaller than first argument";
    }
    // Reads the option's one unsigned argument; `missingText` and `badText`
    // default to the usual wording.
    bool readUnsigned(std::uint32_t& field, const std::string& missingText, const std::string& badText);

    bool append();
    bool assign();
    bool btm();
    bool wtm();
    bool zmf();
    bool gameNumber();
    bool hhdb();
    bool input();
    bool limit();
    bool lineIncrement();
    bool mainline();
    bool matchCount();
    bool matchString();
    bool noSmartComments();
    bool omitElidedNodes();
    bool output();
    bool pgnLineWidth();
    bool pipeTimeout();
    bool singleThreaded();
    bool silent();
    bool threads();
    bool variantAlias();
    bool variations();
    bool virtualMainline();
    bool warnLevel();
    bool year();

    const std::vector<std::string>& args_;
    ZMFDriverOptions& options_;
    std::string& error_;
    std::size_t index_ = 0;                // the last argument taken
    std::size_t optionIndex_ = 0;          // the option that took it
    std::vector<std::size_t> openBraces_;  // segment indices of transforms, in opening order
    bool queryRead_ = false;
};

const CommandLineParser::ValueOption CommandLineParser::valueOptions[] = {
    {"append", "a", &CommandLineParser::append},
    {"assign", nullptr, &CommandLineParser::assign},
    {"btm", nullptr, &CommandLineParser::btm},
    {"zmf", nullptr, &CommandLineParser::zmf},
    {"gamenumber", "g", &CommandLineParser::gameNumber},
    {"hhdb", nullptr, &CommandLineParser::hhdb},
    {"input", "i", &CommandLineParser::input},
    {"limit", nullptr, &CommandLineParser::limit},
    {"lineincrement", nullptr, &CommandLineParser::lineIncrement},
    {"mainline", nullptr, &CommandLineParser::mainline},
    {"matchcount", nullptr, &CommandLineParser::matchCount},
    {"matchstring", nullptr, &CommandLineParser::matchString},
    {"nosmartcomments", "alwayscomment", &CommandLineParser::noSmartComments},
    {"omit-elided-nodes", nullptr, &CommandLineParser::omitElidedNodes},
    {"output", "o", &CommandLineParser::output},
    {"pgnlinewidth", nullptr, &CommandLineParser::pgnLineWidth},
    {"pipetimeout", nullptr, &CommandLineParser::pipeTimeout},
    {"singlethreaded", "s", &CommandLineParser::singleThreaded},
    {"silent", nullptr, &CommandLineParser::silent},
    {"threads", nullptr, &CommandLineParser::threads},
    {"variantalias", nullptr, &CommandLineParser::variantAlias},
    {"variations", nullptr, &CommandLineParser::variations},
    {"virtualmainline", nullptr, &CommandLineParser::virtualMainline},
    {"warnlevel", "w", &CommandLineParser::warnLevel},
    {"wtm", nullptr, &CommandLineParser::wtm},
    {"year", nullptr, &CommandLineParser::year},
};

std::span<const CommandLineParser::ValueOption> CommandLineParser::optionTable() { return valueOptions; }

bool CommandLineParser::run() {
    for (index_ = 0; index_ < args_.size(); ++index_)
        if (!step()) return false;
    finish();
    return true;
}

bool CommandLineParser::step() {
    optionIndex_ = index_;
    if (!options_.queryFile.empty()) return fail("zmf filename must be the last argument");
    if (tryTransform() || tryFlag()) return true;
    bool matched = false;
    bool ok = tryTag(matched);
    if (matched || !ok) return ok;
    ok = tryValueOption(matched);
    if (matched || !ok) return ok;
    if (!current().empty() && current()[0] == '-') return fail("unknown option " + quoted());
    return queryFileArgument();
}

bool CommandLineParser::tryTransform() {
    for (const char* name : transformOptions) {
        if (!matchOption(current(), name)) continue;
        injectText(std::string(name) + "{", true, 0);
        return true;
    }
    return false;
}

bool CommandLineParser::tryTag(bool& matched) {
    for (const TagOption& tag : tagOptions) {
        if (!matchOption(current(), tag.name)) continue;
        matched = true;
        if (!hasArgument(1)) return fail(missing());
        const std::string& value = argument(1);
        if (value.empty()) return fail("empty argument for " + quoted() + " option");
        if (value.find('"') != std::string::npos)
            return fail("argument for " + quoted() + " option should not contain quotes");
        injectText(std::string(tag.filter) + " \"" + value + "\"", false, 1);
        ++index_;
        return true;
    }
    return true;
}

bool CommandLineParser::tryFlag() {
    for (const FlagOption& flag : flagOptions) {
        if (!matchOption(current(), flag.name)) continue;
        options_.*flag.field = flag.value;
        return true;
    }
    return false;
}

bool CommandLineParser::tryValueOption(bool& matched) {
    for (const ValueOption& option : valueOptions) {
        if (!matchOption(current(), option.name) && !(option.alias && matchOption(current(), option.alias)))
            continue;
        matched = true;
        return (this->*option.handler)();
    }
    return true;
}

bool CommandLineParser::queryFileArgument() {
    options_.queryFile = current();
    std::string text = readQueryFile(current());
    if (text.empty()) {
        error_.clear();
        return false;
    }
    options_.querySource.pad("\n");
    options_.querySource.add(current(), text);
    queryRead_ = true;
    return true;
}

void CommandLineParser::finish() {
    QuerySource& source = options_.querySource;
    // The default query stands on a line of its own like a query file
    // would: glued to an injected `wtm` it would read as "wtmtrue".
    if (!queryRead_) {
        source.pad("\n");
        source.add("<default query>", "true");
    }
    for (auto opener = openBraces_.rbegin(); opener != openBraces_.rend(); ++opener) {
        source.add("<injected-text>", "}");
        injectedTextMap[source.sources().size() - 1] = injectedTextMap[*opener];
    }
}

void CommandLineParser::injectText(std::string text, bool openBrace, std::size_t argumentCount) {
    QuerySource& source = options_.querySource;
    source.pad(" ");
    source.add("<injected-text>", text);
    std::size_t segment = source.sources().size() - 1;
    InjectedText& record = injectedTextMap[segment];
    record.argumentIndex = optionIndex_;
    record.option = current();
    auto first = args_.begin() + static_cast<std::ptrdiff_t>(optionIndex_ + 1);
    record.arguments.assign(first, first + static_cast<std::ptrdiff_t>(argumentCount));
    if (openBrace) openBraces_.push_back(segment);
}

bool CommandLineParser::readUnsigned(std::uint32_t& field, const std::string& missingText,
                                     const std::string& badText) {
    if (!hasArgument(1)) return fail(missingText);
    Number number = readNumber(argument(1));
    if (!number.isNonNegative()) return fail(badText);
    field = static_cast<std::uint32_t>(number.value);
    ++index_;
    return true;
}

bool CommandLineParser::append() {
    if (!hasArgument(1)) return fail(missing());
    options_.outputFile = argument(1);
    options_.appendOutput = true;
    ++index_;
    return true;
}

bool CommandLineParser::output() {
    if (!hasArgument(1)) return fail(missing());
    options_.outputFile = argument(1);
    options_.appendOutput = false;
    ++index_;
    return true;
}

bool CommandLineParser::input() {
    if (!hasArgument(1)) return fail(missing());
    options_.inputFile = argument(1);
    ++index_;
    return true;
}

bool CommandLineParser::assign() {
    if (!hasArgument(1)) return fail("missing required variable name argument for " + quoted() + " option");
    if (!hasArgument(2)) return fail("missing required variable value argument for " + quoted() + " option");
    const std::string& name = argument(1);
    const std::string& value = argument(2);
    if (name.empty()) return fail("variable name argument to " + quoted() + " must not be empty");
    for (std::size_t i = 0; i < name.size(); ++i)
        if (!isNameCharacter(name[i], i == 0))
            return fail("invalid variable name '" + name + "' for " + quoted() + " option");
    std::string text;
    errno = 0;
    char* end = nullptr;
    std::strtoll(value.c_str(), &end, 10);
    if (!value.empty() && end != value.c_str() && *end == '\0') {
        if (errno == ERANGE)
            return fail("numeric variable value '" + value + "' for " + quoted() + " option is out of range");
        text = name + " = " + value;
    } else {
        text = name + " = \"" + value + "\"";
    }
    injectText(text, false, 2);
    index_ += 2;
    return true;
}

bool CommandLineParser::btm() {
    injectText("btm", false, 0);
    return true;
}

bool CommandLineParser::wtm() {
    injectText("wtm", false, 0);
    return true;
}

bool CommandLineParser::zmf() {
    if (!hasArgument(1)) return fail(missing());
    injectText("{" + argument(1) + "}", false, 1);
    ++index_;
    return true;
}

bool CommandLineParser::gameNumber() {
    if (!hasArgument(1)) return fail(missing());
    Number first = readNumber(argument(1));
    if (!first.whole || !first.inRange || first.value < 1)
        return fail("argument to " + quoted() +
                    " option must be an integer greater than 0 (game numbers start at 1)");
    options_.gameNumberFirst = options_.gameNumberLast = static_cast<std::uint32_t>(first.value);
    options_.gameNumberGiven = true;
    if (hasArgument(2)) {
        Number last = readNumber(argument(2));
        if (last.whole) {
            if (!last.inRange || last.value < 1)
                return fail("second argument to " + quoted() + " option must be an integer greater than 0");
            if (last.value < first.value) return fail(secondSmaller());
            options_.gameNumberLast = static_cast<std::uint32_t>(last.value);
            ++index_;
        }
    }
    ++index_;
    return true;
}

// --hhdb WORD...: an hhdb filter from the words that follow, as far as they
// make one command. The list ends at an argument that is no command word,
// or repeats one, or cannot follow the last; that argument is left for the
// next turn of the loop. Only award words combine; gbr may take a section,
// and search takes the text to search for.
bool CommandLineParser::hhdb() {
    std::vector<std::string> words{"hhdb"};
    std::vector<std::string> commands;
    std::size_t consumed = 0;
    const HHDBCommand* last = nullptr;
    while (hasArgument(consumed + 1)) {
        const std::string& word = argument(consumed + 1);
        const HHDBCommand* command = findHHDBCommand(word);
        if (!command) {
            if (!last) return fail("'" + word + "' is not a valid hhdb command");
            break;
        }
        if (std::find(commands.begin(), commands.end(), word) != commands.end()) break;
        if (last && (last->code != hhdbAwardCode || command->code != hhdbAwardCode)) break;
        commands.push_back(word);
        // Markers and status codes, which the scanner would cut into pieces,
        // go in as strings.
        words.push_back(command->quotable ? "\"" + word + "\"" : word);
        ++consumed;
        last = command;
        if (command->code == hhdbGbrCode && hasArgument(consumed + 1) &&
            hhdbGbrSectionCode(argument(consumed + 1)) != 0) {
            words.push_back(argument(consumed + 1));
            ++consumed;
        }
    }
    if (!last) return fail(missing());
    if (last->code == hhdbSearchCode) {
        if (!hasArgument(consumed + 1))
            return fail("missing required search parameter for " + quoted() + " option with '" + commands.back() +
                        "' command");
        words.push_back("\"" + argument(consumed + 1) + "\"");
        ++consumed;
    }
    std::string text;
    for (const std::string& word : words) {
        if (!text.empty()) text.push_back(' ');
        text.append(word);
    }
    injectText(text, false, consumed);
    index_ += consumed;
    return true;
}

bool CommandLineParser::limit() { return readUnsigned(options_.limit, missing(), notNonNegative()); }

bool CommandLineParser::lineIncrement() {
    return readUnsigned(options_.lineIncrement, "missing argument for '-lineincrement' option",
                        "argument to '-lineincrement' option must be a non-negative integer");
}

bool CommandLineParser::pgnLineWidth() {
    return readUnsigned(options_.pgnLineWidth, missing(), notNonNegative());
}

bool CommandLineParser::mainline() {
    options_.processVariations = false;
    options_.variationsGiven = true;
    return true;
}

bool CommandLineParser::variations() {
    options_.processVariations = true;
    options_.variationsGiven = true;
    return true;
}

bool CommandLineParser::virtualMainline() {
    variations();
    injectText("virtualmainline", false, 0);
    return true;
}

bool CommandLineParser::matchCount() {
    if (!readUnsigned(options_.matchCountMin, missing(), notNonNegative())) return false;
    options_.matchCountMax = options_.matchCountMin;
    options_.hasMatchCount = true;
    if (hasArgument(2)) {
        Number last = readNumber(argument(2));
        if (last.whole) {
            if (!last.isNonNegative()) return fail(secondNotNonNegative());
            if (last.value < options_.matchCountMin) return fail(secondSmaller());
            options_.matchCountMax = static_cast<std::uint32_t>(last.value);
            ++index_;
        }
    }
    return true;
}

bool CommandLineParser::matchString() {
    if (!hasArgument(1)) return fail("missing argument for '-matchstring' option");
    options_.matchString = argument(1);
    options_.matchStringGiven = true;
    ++index_;
    return true;
}

bool CommandLineParser::noSmartComments() {
    options_.smartComments = false;
    options_.commitLog = false;
    return true;
}

bool CommandLineParser::omitElidedNodes() {
    options_.omitElidedAuxNodes = options_.omitElidedBraces = options_.omitElidedParens = true;
    return true;
}

bool CommandLineParser::pipeTimeout() {
    if (!readUnsigned(options_.pipeTimeoutFirst, missing(), notNonNegative())) return false;
    options_.pipeTimeoutLater = options_.pipeTimeoutFirst;
    if (hasArgument(2)) {
        Number later = readNumber(argument(2));
        if (later.whole) {
            if (!later.isNonNegative()) return fail(secondNotNonNegative());
            std::uint32_t first = options_.pipeTimeoutFirst;
            if (first != 0 && (later.value == 0 || later.value > first))
                return fail("second argument to " + quoted() +
                            " option cannot specify a larger timeout than the first argument");
            options_.pipeTimeoutLater = static_cast<std::uint32_t>(later.value);
            ++index_;
        }
    }
    return true;
}

bool CommandLineParser::singleThreaded() {
    options_.threads = 0;
    return true;
}

bool CommandLineParser::silent() {
    options_.silent = options_.quiet = true;
    return true;
}

bool CommandLineParser::threads() {
    if (!readUnsigned(options_.threads, "missing argument for '-threads' option",
                      "argument to '-threads' option must be a non-negative integer"))
        return false;
    if (options_.threads == 0) options_.threads = std::thread::hardware_concurrency();
    return true;
}

bool CommandLineParser::variantAlias() {
    if (!hasArgument(1)) return fail("missing variant name argument for " + quoted() + " option");
    if (!hasArgument(2)) return fail("missing variant alias argument for " + quoted() + " option");
    const std::string& name = argument(1);
    Variant variant = variantFromName(name);
    if (variant == Variant::Unknown) return fail("unknown variant name '" + name + "'");
    options_.variantAliases[argument(2)] = variant;
    index_ += 2;
    return true;
}

bool CommandLineParser::warnLevel() {
    std::string bad = "argument to " + quoted() + " option must be an integer between 1 and 3";
    if (!readUnsigned(options_.warnLevel, missing(), bad)) return false;
    if (options_.warnLevel < 1 || options_.warnLevel > 3) return fail(bad);
    return true;
}

bool CommandLineParser::year() {
    if (!hasArgument(1)) return fail(missing());
    const std::string& firstText = argument(1);
    Number first = readNumber(firstText);
    if (!first.isNonNegative()) return fail(notNonNegative());
    if (hasArgument(2)) {
        Number last = readNumber(argument(2));
        if (last.whole) {
            if (!last.isNonNegative()) return fail(secondNotNonNegative());
            if (last.value < first.value) return fail(secondSmaller());
            injectText("{" + firstText + " <= year <= " + argument(2) + "}", false, 2);
            index_ += 2;
            return true;
        }
    }
    injectText("{year == " + firstText + "}", false, 1);
    ++index_;
    return true;
}

}  // namespace

std::vector<std::string> knownOptionNames() {
    std::vector<std::string> names;
    for (const FlagOption& option : flagOptions) names.emplace_back(option.name);
    for (const char* name : transformOptions) names.emplace_back(name);
    for (const TagOption& option : tagOptions) names.emplace_back(option.name);
    for (const auto& option : CommandLineParser::optionTable()) {
        names.emplace_back(option.name);
        if (option.alias) names.emplace_back(option.alias);
    }
    return names;
}

bool parseCommandLine(const std::vector<std::string>& arguments, ZMFDriverOptions& options,
                      std::string& error) {
    return CommandLineParser(arguments, options, error).run();
}

}  // namespace tarnfold::zmf
