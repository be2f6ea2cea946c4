// The study-database filter: hhdb and one command from a fixed table. A
// command such as <main> or (c) is several tokens to the scanner; written
// without blanks between them they are read back as one word.
#include <string>
#include <vector>

#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/handlers/sort_slot.h"
#include "query/hhdb_commands.h"
#include "query/nodes/control_nodes.h"
#include "query/nodes/hhdb_nodes.h"

namespace tarnfold::zmf {

namespace {

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
        if (findHHDBCommand(run)) {
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
    const HHDBCommand* command = findHHDBCommand(word);
    return command && command->code == hhdbAwardCode;
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
        const HHDBCommand* found = findHHDBCommand(word.text);
        if (word.tokens == 0 || !found) {
            parser.report(first.begin, MessageLevel::Error,
                          joinPieces({"Command '", word.text, "' is not a valid hhdb command"}));
            return nullptr;
        }
        if (word.quoted && !found->quotable) {
            parser.report(
                first.begin, MessageLevel::Error,
                joinPieces({"Command '", word.text, "' for 'hhdb' filter must not be enclosed with quotes"}));
            return nullptr;
        }
        consume(parser, word.tokens);
        const HHDBCommand& command = *found;
        if (command.code == hhdbAwardCode) return parseAward(token, first, word.text);
        std::uint32_t code = command.code;
        std::string text = word.text;
        if (code == hhdbGbrCode) {
            Token section = parser.peekToken();
            if (std::uint32_t sectionCode = hhdbGbrSectionCode(section.text); sectionCode != 0) {
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
