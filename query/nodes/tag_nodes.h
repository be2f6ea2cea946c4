#pragma once
// The filters that read or change a game's tags and comments. The reading
// ones have two forms: without a literal they give the text, with one they
// test whether the literal occurs in it.

#include <cstdint>
#include <optional>
#include <string_view>

#include "query/node.h"

namespace tarnfold::zmf {

// date "text"?
class DateNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Date;

    // `literal` is a StringNode or null; it makes the node a test.
    DateNode(OptionalOffset location, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr literal;
};

class EventNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Event;

    EventNode(OptionalOffset location, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr literal;
};

class EventdateNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Eventdate;

    EventdateNode(OptionalOffset location, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr literal;
};

class SiteNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Site;

    SiteNode(OptionalOffset location, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr literal;
};

class EcoNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Eco;

    EcoNode(OptionalOffset location, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr literal;
};

// hascomment "text"? | originalcomment "text"?: the comments the game came
// with, not those the query adds.
class OriginalcommentNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Originalcomment;

    OriginalcommentNode(OptionalOffset location, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr literal;
};

// Whose name or rating a filter reads.
enum class PlayerColor : std::uint32_t { White, Black, Both };

// player white|black? "text"?: both names, one per line, when no colour is given.
class PlayerNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Player;

    PlayerNode(OptionalOffset location, PlayerColor color, NodePtr literal);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    PlayerColor color;
    NodePtr literal;
};

// elo white|black?: the higher of the two when no colour is given.
class EloNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Elo;

    EloNode(OptionalOffset location, PlayerColor color);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    PlayerColor color;
};

class YearNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Year;

    explicit YearNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

// The game results, numbered as the header's `result` setting numbers them.
enum class GameResult : std::uint32_t { WhiteWins, BlackWins, Draw, Unknown };

// "1-0", "0-1", "1/2-1/2" or "*".
std::string_view gameResultText(GameResult result);

// result 1-0|0-1|1/2-1/2|*?: the result tag as text, or a test against one.
class ResultNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Result;

    ResultNode(OptionalOffset location, std::optional<GameResult> result);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::optional<GameResult> result;
};

// tag T: the value of the tag of that name.
class TagNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Tag;

    TagNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// settag (T T): name and value of a tag to set when the game matches.
class SettagNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Settag;

    SettagNode(OptionalOffset location, NodePtr left, NodePtr right);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr left;
    NodePtr right;
};

// removetag T: a tag to remove when the game matches.
class RemovetagNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Removetag;

    RemovetagNode(OptionalOffset location, NodePtr operand);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    NodePtr operand;
};

// removecomment: the position's original comments go when the game matches.
class RemovecommentNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::Removecomment;

    explicit RemovecommentNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;
};

}  // namespace tarnfold::zmf
