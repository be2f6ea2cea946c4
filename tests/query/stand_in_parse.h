#pragma once
// A test fixture for parse rules: identifiers named "zpos", "zpiece",
// "zset", "zstr", "znum", "zbool", "zdict" and "zempty" stand for operands
// of those types, including types that no filter of the grammar gives yet.
// It reads the tree and the messages of a text, and checks that a printed
// tree parses again to the same tree.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "query/dump_target.h"
#include "query/handlers/handler_support.h"
#include "query/parser.h"
#include "query/print_target.h"

namespace tarnfold::zmf {

// Its node kind is the one of a variable use, which is what it stands for.
class StandInNode : public ZMFNode {
public:
    StandInNode(OptionalOffset location, std::string name, ValueType type)
        : ZMFNode(NodeKind::Identifier, type, location), name(std::move(name)) {}
    void print(PrintTarget& target) const override { target << name; }
    void dump(DumpTarget& target, bool isLast) const override {
        target.writeLine(*this, isLast, "StandIn (" + name + ")");
    }
    std::string name;
};

class StandInHandler : public PrefixHandler {
public:
    StandInHandler(Parser& parser) : PrefixHandler(parser, TokenKind::Identifier) {}
    NodePtr parse(const Token& token) override {
        static const std::vector<std::pair<std::string, ValueType>> types = {
            {"zpos", ValueType::Position},    {"zpiece", ValueType::Piece}, {"zset", ValueType::Set},
            {"zstr", ValueType::String},      {"znum", ValueType::Numeric}, {"zbool", ValueType::Boolean},
            {"zdict", ValueType::Dictionary}, {"zempty", ValueType::Empty}};
        for (const auto& [name, type] : types) {
            if (token.text != name) continue;
            auto node = std::make_unique<StandInNode>(token.begin, name, type);
            parser.finish(*node);
            return node;
        }
        parser.report(token.begin, MessageLevel::Error, "no stand-in named " + token.text);
        return nullptr;
    }
};

class StandInParse : public ::testing::Test {
protected:
    StandInParse() {
        for (Parser* p : {&parser, &reparser}) {
            p->registerPrefix(std::make_unique<StandInHandler>(*p));
            p->keepParens = false;
        }
    }

    // The tree of the only filter, without locations.
    std::string tree(const std::string& text) {
        query = parser.parseQuery(source(text));
        if (!query.root) return "no tree: " + messages();
        EXPECT_EQ(query.root->children.size(), 1u) << text;
        DumpTarget dump(nullptr, false, false);
        query.root->children.front()->dump(dump, true);
        return stripLocations(dump.take());
    }

    const ZMFNode& only() const { return *query.root->children.front(); }

    // Every message: level, byte offset of the caret, spans, text; one per line.
    std::string messages() const {
        std::string all;
        for (const Message& message : parser.messages().messages()) {
            all += messageLevelWord(message.level);
            all += message.location ? " @" + std::to_string(*message.location) : " @-";
            for (const SourceSpan& span : message.spans)
                all += " [" + std::to_string(span.begin.value_or(999)) + "-" +
                       std::to_string(span.end.value_or(999)) + "]";
            all += ": " + messageText(message) + "\n";
        }
        return all;
    }

    // The messages of a text that must not parse.
    std::string failure(const std::string& text) {
        query = parser.parseQuery(source(text));
        EXPECT_EQ(query.root, nullptr) << text;
        return messages();
    }

    // The text printed from a parse, which must parse again to the same tree.
    std::string printed(const std::string& text) {
        std::string shape = tree(text);
        if (!query.root) return shape;
        PrintTarget target;
        query.root->children.front()->print(target);
        std::string again = target.take();
        ParsedQuery reparsed = reparser.parseQuery(source(again));
        if (!reparsed.root) return "does not parse again: " + again;
        DumpTarget dump(nullptr, false, false);
        reparsed.root->children.front()->dump(dump, true);
        EXPECT_EQ(stripLocations(dump.take()), shape) << text << " printed as " << again;
        return again;
    }

    static QuerySource source(const std::string& text) {
        QuerySource source;
        source.add("q.zmf", text);
        return source;
    }

    // Without a source every location reads " <???:0:0...>"; an implicit
    // node keeps its " <Invalid location>".
    static std::string stripLocations(std::string text) {
        for (std::size_t at; (at = text.find(" <???:0:0")) != std::string::npos;)
            text.erase(at, text.find('>', at) + 1 - at);
        return text;
    }

    Parser parser;
    Parser reparser;
    ParsedQuery query;
};

}  // namespace tarnfold::zmf
