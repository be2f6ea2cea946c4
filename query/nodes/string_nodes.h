#pragma once
// String literals, the capture groups of the last pattern match, and the
// pattern match itself.

#include <cstdint>
#include <memory>
#include <string>

#include <unicode/regex.h>

#include "query/node.h"
#include "query/zmf_string.h"

namespace tarnfold::zmf {

// "...": the text between the quotes, made once and shared by every value
// taken from it.
class StringNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::String;

    StringNode(OptionalOffset location, ZmfString value);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    ZmfString value;
};

// \n \t \r \" \\: the only way to write these characters, since a string
// literal has no escapes.
class BackslashLiteralNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::BackslashLiteral;

    // `character` is one of '\n', '\t', '\r', '"' and '\\'.
    BackslashLiteralNode(OptionalOffset location, char character);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    char character;
    ZmfString value;
};

// \N: the text of group N of the last match.
class CapturedGroupStringNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::CapturedGroupString;

    CapturedGroupStringNode(OptionalOffset location, std::uint32_t group);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::uint32_t group;
};

// \-N: where group N of the last match starts, in code points.
class CapturedGroupIndexNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::CapturedGroupIndex;

    CapturedGroupIndexNode(OptionalOffset location, std::uint32_t group);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::uint32_t group;
};

// T ~~ "pattern": the pattern is compiled once while parsing; a compiled
// pattern is only read afterwards, so every worker may make matchers from it.
class PatternMatchNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::PatternMatch;

    PatternMatchNode(OptionalOffset location, NodePtr left, std::string patternText,
                     std::shared_ptr<const icu::RegexPattern> pattern);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    std::string patternText;  // UTF-8, as written between the quotes
    std::shared_ptr<const icu::RegexPattern> pattern;
};

}  // namespace tarnfold::zmf
