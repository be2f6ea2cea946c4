#pragma once
// The study-database filter: one command, looked up in a fixed table, that
// reads the markers in a game's comments and the codes in its tags.

#include <cstdint>
#include <string>

#include "query/hhdb_commands.h"
#include "query/node.h"

namespace tarnfold::zmf {

// Which award the award form accepts.
enum class HHDBAwardKind : std::uint32_t { Any, Prize, HonourableMention, Commendation };

class HHDBNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::HHDB;

    // The node's type is `resultKind`: Boolean, Numeric or String.
    HHDBNode(OptionalOffset location, std::uint32_t code, ValueType resultKind, std::string command);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    std::uint32_t code;
    ValueType resultKind;
    std::string command;  // the words as written, joined by blanks
    // The award form only.
    std::uint8_t special = 0;
    std::uint8_t nonspecial = 0;
    std::uint8_t sortable = 0;
    std::uint8_t max = 0;
    HHDBAwardKind awardKind = HHDBAwardKind::Any;
};

}  // namespace tarnfold::zmf
