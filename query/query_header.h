#pragma once
// The settings a query's zmf(...) header may carry. The driver takes them
// over into its options wherever the command line left them open.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarnfold::zmf {

struct HeaderRange {
    std::uint32_t first = 0;
    std::uint32_t last = 0;
};

struct QueryHeaderSettings {
    std::vector<std::string> input;  // every `input` keyword, in order
    std::optional<std::string> output;
    std::optional<HeaderRange> matchCount;
    std::optional<HeaderRange> sortMatchCount;
    std::optional<HeaderRange> gameNumber;
    std::optional<std::uint32_t> result;  // 0 "1-0", 1 "0-1", 2 "1/2-1/2", 3 "*"
    std::optional<std::string> matchString;
    bool silent = false;
    bool quiet = false;
    bool variations = false;
};

}  // namespace tarnfold::zmf
