#pragma once

// The values of a query's variables, versioned so that a tentative path can
// make assignments and throw them away: a version maps every slot either to
// the base vector or to an element of the overlay.

#include <cstdint>
#include <vector>

#include "engine/value.h"

namespace tarnfold::zmf {

class VariableStore {
public:
    struct Entry {
        bool dirty = false;
        // Below the base size: the base slot; at or above: the overlay
        // element at index minus the base size.
        uint32_t index = 0;
    };
    struct Version {
        std::vector<Entry> entries;
        size_t overlaySize = 0;
    };

    // At the start of each game: only version 0, mapping every slot to
    // itself in base.
    void reset(std::vector<Value>* base);

    Value& resolve(uint32_t slot) { return resolve(slot, currentVersion_); }
    Value& resolve(uint32_t slot, size_t version);

    // A new current version, a copy of the current one in which the listed
    // slots get private copies of their values.
    void fork(const std::vector<uint32_t>& slots);
    // Every slot dirty in `from` is copied to its storage in `to`.
    void merge(size_t from, size_t to);
    // Keeps the first `count` versions; the last one kept becomes current.
    void truncate(size_t count);

    size_t currentVersion() const { return currentVersion_; }
    // A line's path reads and writes the version it carries.
    void setCurrentVersion(size_t version) { currentVersion_ = version; }
    size_t versionCount() const { return versions_.size(); }

private:
    std::vector<Version> versions_;
    std::vector<Value> overlay_;
    std::vector<Value>* base_ = nullptr;
    size_t currentVersion_ = 0;
};

}  // namespace tarnfold::zmf
