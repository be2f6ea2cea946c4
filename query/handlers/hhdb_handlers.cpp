// The study-database filter: hhdb and one command from a fixed table. A
// command such as <main> or (c) is several tokens to the scanner; written
// without blanks between them they are read back as one word.
#include <map>
#include <string>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/handlers/sort_slot.h"
#include "query/nodes/control_nodes.h"
#include "query/nodes/hhdb_nodes.h"

namespace tarnfold::zmf {

namespace {

struct HHDBCommand {
    std::uint32_t code;
    ValueType kind;
    // Markers and status codes may also be written as string literals; the
    // command words may not.
    bool quotable;
};

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
        add(15, text, false, {"gbr"});
        add(20, text, false, {"composer"});
        add(21, text, false, {"search"});
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

// The sections of the gbr field that may follow "gbr".
std::uint32_t gbrSectionCode(std::string_view word) {
    if (word == "kings") return 16;
    if (word == "pieces") return 17;
    if (word == "material") return 18;
    if (word == "pawns") return 19;
    return 0;
}

// A word of the command: the text of the tokens that follow one another
// without a blank, and how many tokens it took.
struct CommandWord {
    std::string text;
    std::size_t tokens = 0;
    bool quoted = false;
};

bool adjacent(const Token& before, const Token& after) {
    return before.end && after.begin && *after.begin == *before.end + 1;
}

// The longest run of touching tokens that spells a command; when none
// does, the run up to a closing bracket that it did not open, for the
// message.
CommandWord readCommandWord(Parser& parser) {
    CommandWord word;
    Token first = parser.peekToken();
    if (first.kind == TokenKind::StringLiteral) {
        word.text = first.text.substr(1, first.text.size() - 2);
        word.tokens = 1;
        word.quoted = true;
        return word;
    }
    constexpr std::size_t longestCommand = 8;
    std::string run;
    std::string unknown;
    int open = 0;
    bool closed = false;
    Token previous;
    for (std::size_t i = 0; i < longestCommand; ++i) {
        Token token = parser.peekToken(i);
        if (token.kind == TokenKind::EndOfFile || token.kind == TokenKind::StringLiteral) break;
        if (i > 0 && !adjacent(previous, token)) break;
        run.append(token.text);
        if (token.kind == TokenKind::LeftParen) ++open;
        if (token.kind == TokenKind::RightParen || token.kind == TokenKind::RightBrace ||
            token.kind == TokenKind::RightBracket) {
            if (open == 0) closed = true;
            --open;
        }
        if (!closed) unknown = run;
        if (hhdbCommands().count(run) != 0) {
            word.text = run;
            word.tokens = i + 1;
        }
        previous = token;
    }
    if (word.tokens == 0) word.text = unknown;
    return word;
}

void consume(Parser& parser, std::size_t tokens) {
    for (std::size_t i = 0; i < tokens; ++i) parser.nextToken();
}

bool isAwardWord(std::string_view word) {
    auto found = hhdbCommands().find(word);
    return found != hhdbCommands().end() && found->second.code == hhdbAwardCode;
}

// hhdb command, where a command is a word of the table, "gbr" with a
// section, or a sequence of award words
class HHDBHandler : public PrefixHandler {
public:
    HHDBHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwHhdb) {}

    NodePtr parse(const Token& token) override {
        Token first = parser.peekToken();
        if (first.kind == TokenKind::EndOfFile || first.kind == TokenKind::RightParen ||
            first.kind == TokenKind::RightBrace || first.kind == TokenKind::RightBracket) {
            parser.report(token.begin, MessageLevel::Error, "Missing command following 'hhdb' filter");
            return nullptr;
        }
        CommandWord word = readCommandWord(parser);
        auto found = hhdbCommands().find(word.text);
        if (word.tokens == 0 || found == hhdbCommands().end()) {
            parser.report(first.begin, MessageLevel::Error,
                          joinPieces({"Command '", word.text, "' is not a valid hhdb command"}));
            return nullptr;
        }
        if (word.quoted && !found->second.quotable) {
            parser.report(
                first.begin, MessageLevel::Error,
                joinPieces({"Command '", word.text, "' for 'hhdb' filter must not be enclosed with quotes"}));
            return nullptr;
        }
        consume(parser, word.tokens);
        const HHDBCommand& command = found->second;
        if (command.code == hhdbAwardCode) return parseAward(token, first, word.text);
        std::uint32_t code = command.code;
        std::string text = word.text;
        if (code == 15) {
            Token section = parser.peekToken();
            if (std::uint32_t sectionCode = gbrSectionCode(section.text); sectionCode != 0) {
                parser.nextToken();
                code = sectionCode;
                text.push_back(' ');
                text.append(section.text);
            }
        }
        return makeNode<HHDBNode>(parser, token, code, command.kind, std::move(text));
    }

private:
    // The award form: any of its words, each group at most once. A `sort`
    // belongs to the form only right behind the keyword; later it is the
    // sort filter that follows, which is worth a warning.
    NodePtr parseAward(const Token& token, const Token& firstToken, std::string firstWord) {
        auto node = std::make_unique<HHDBNode>(token.begin, hhdbAwardCode, ValueType::Numeric, std::string());
        bool kindGiven = false, sort = false;
        std::string text;
        Token wordToken = firstToken;
        std::string word = std::move(firstWord);
        while (true) {
            const char* conflict = nullptr;
            if (word == "award" || word == "prize" || word == "hm" || word == "commendation") {
                if (kindGiven)
                    conflict =
                        "Command for 'hhdb' filter may contain at most one 'award', 'prize', 'hm', or "
                        "'commendation' parameter";
                kindGiven = true;
                node->awardKind = word == "prize"          ? HHDBAwardKind::Prize
                                  : word == "hm"           ? HHDBAwardKind::HonourableMention
                                  : word == "commendation" ? HHDBAwardKind::Commendation
                                                           : HHDBAwardKind::Any;
            } else if (word == "special") {
                if (node->special)
                    conflict = "Command for 'hhdb' filter may contain at most one 'special' parameter";
                else if (node->nonspecial)
                    conflict =
                        "Command for 'hhdb' filter may not contain both a 'special' and a 'nonspecial' "
                        "parameter";
                node->special = 1;
            } else if (word == "nonspecial") {
                if (node->nonspecial)
                    conflict = "Command for 'hhdb' filter may contain at most one 'nonspecial' parameter";
                else if (node->special)
                    conflict =
                        "Command for 'hhdb' filter may not contain both a 'special' and a 'nonspecial' "
                        "parameter";
                node->nonspecial = 1;
            } else if (word == "sortable") {
                if (node->sortable && !sort)
                    conflict = "Command for 'hhdb' filter may contain at most one 'sortable' parameter";
                else if (node->max)
                    conflict =
                        "Command for 'hhdb' filter may not contain both a 'max' and a 'sortable' parameter";
                else if (sort)
                    conflict =
                        "Command for 'hhdb' filter may not contain both a 'sort' and a 'sortable' parameter";
                node->sortable = 1;
            } else if (word == "max") {
                if (node->max)
                    conflict = "Command for 'hhdb' filter may contain at most one 'max' parameter";
                else if (node->sortable && !sort)
                    conflict =
                        "Command for 'hhdb' filter may not contain both a 'max' and a 'sortable' parameter";
                else if (sort)
                    conflict =
                        "Command for 'hhdb' filter may not contain both a 'max' and a 'sort' parameter";
                node->max = 1;
            } else {  // sort, only ever the first word
                sort = true;
                node->sortable = 1;
            }
            if (conflict) {
                parser.report(wordToken.begin, MessageLevel::Error, conflict);
                return nullptr;
            }
            if (!text.empty()) text.push_back(' ');
            text.append(word);
            Token next = parser.peekToken();
            if (next.kind == TokenKind::KwSort) {
                parser.report(
                    next.begin, MessageLevel::Warning,
                    "'sort' keyword following 'hhdb' award filter is suspicious, parenthesize the "
                    "preceding 'hhdb' filter or place 'sort' after 'hhdb' to suppress this warning");
                break;
            }
            if (next.kind == TokenKind::StringLiteral || !isAwardWord(next.text)) break;
            wordToken = parser.nextToken();
            word = wordToken.text;
        }
        node->command = std::move(text);
        parser.finish(*node);
        if (!sort) return node;
        // `hhdb sort award ...` sorts the games by the award, best first.
        std::optional<std::uint32_t> slot =
            claimSortSlot(parser, token, std::nullopt, SortDirection::Maximum, ValueType::Numeric);
        if (!slot) return nullptr;
        NodePtr award = std::move(node);
        auto wrapper = makeNode<SortNode>(parser, token, *slot, SortDirection::Maximum, std::nullopt, false,
                                          std::move(award));
        wrapper->implicit = 1;
        return wrapper;
    }
};

}  // namespace

void registerHHDBHandlers(Parser& parser) { parser.registerPrefix(std::make_unique<HHDBHandler>(parser)); }

}  // namespace tarnfold::zmf
