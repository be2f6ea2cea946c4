#pragma once
// String functions and the filters that put text into the game or out to
// the console: comment, message, str, case mapping, ascii, int, indexof, and
// the numeric helpers sqrt and power.

#include <cstdint>
#include <string_view>
#include <vector>

#include "query/node.h"

namespace tarnfold::zmf {

class PrintTarget;

// "keyword(first second)", the form of the filters that take two arguments
// in parentheses.
void printArgumentPair(PrintTarget& target, std::string_view keyword, const ZMFNode& first,
                       const ZMFNode& second);

// comment (F ...): the arguments' texts joined, as a comment at the position.
class CommentNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Comment;

    CommentNode(OptionalOffset location, std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
};

// message quiet (F ...): the arguments' texts on the console; without
// `quiet` behind a prefix that names the game and the move.
class MessageNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Message;

    MessageNode(OptionalOffset location, std::vector<NodePtr> arguments, bool quiet);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
    std::uint8_t quiet;
};

// str (F ...): the arguments' texts joined into one string.
class StrNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Str;

    StrNode(OptionalOffset location, std::vector<NodePtr> arguments);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::vector<NodePtr> arguments;
};

class LowerNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Lower;

    LowerNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

class UpperNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Upper;

    UpperNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// Which way ascii converts; the operand's type decides, and with it the
// node's own type.
enum class AsciiMode : std::uint8_t {
    CodeToCharacter,  // Numeric operand, String result
    CharacterToCode,  // String operand, Numeric result
};

class AsciiNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Ascii;

    AsciiNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
    AsciiMode mode;
};

// int T: the string read as a decimal integer.
class IntNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Int;

    IntNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

class SqrtNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Sqrt;

    SqrtNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// power S: the material value of the pieces on the squares.
class PowerNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Power;

    PowerNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// indexof (T T): where the left string first occurs in the right one.
class IndexofNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Indexof;

    IndexofNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

}  // namespace tarnfold::zmf
