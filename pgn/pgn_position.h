#pragma once

// Where something is in a PGN stream, and an error found there.

#include <cstdint>
#include <string>

namespace tarnfold::PGN {

struct PGNPosition {
    // Counted from 0; messages print it plus 1.
    uint64_t line = 0;
    // Characters read on this line: the first character of a line is column 1.
    uint64_t column = 0;
    // Characters read from the stream.
    uint64_t offset = 0;

    bool operator==(const PGNPosition&) const = default;
};

struct PGNError {
    PGNPosition position;
    std::string message;

    bool operator==(const PGNError&) const = default;
};

}  // namespace tarnfold::PGN
