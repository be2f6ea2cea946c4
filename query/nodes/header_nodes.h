#pragma once
// The query header zmf(...): settings for the run, not a filter. It does
// its work while being parsed and has no place in the tree that runs.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "query/node.h"
#include "query/nodes/tag_nodes.h"
#include "query/query_header.h"

namespace tarnfold::zmf {

class ZmfHeaderNode : public ZMFNode {
public:
    static constexpr NodeKind kind = NodeKind::ZmfHeader;

    explicit ZmfHeaderNode(OptionalOffset location);

    void print(PrintTarget& target) const override;
    void dump(DumpTarget& target, bool isLast) const override;

    // The settings as the driver takes them over.
    QueryHeaderSettings settings() const;

    std::optional<std::vector<std::string>> input;
    std::optional<std::string> output;
    std::optional<HeaderRange> matchcount;
    std::optional<HeaderRange> sortMatchcount;
    std::optional<HeaderRange> gamenumber;
    std::optional<GameResult> result;
    std::optional<std::string> matchstring;
    std::uint8_t silent = 0;
    std::uint8_t quiet = 0;
    std::uint8_t variations = 0;
};

}  // namespace tarnfold::zmf
