#include "engine/variable_store.h"

#include <cstdlib>

namespace tarnfold::zmf {

void VariableStore::reset(std::vector<Value>* base) {
    base_ = base;
    overlay_.clear();
    versions_.resize(1);
    Version& first = versions_[0];
    first.entries.resize(base->size());
    for (uint32_t slot = 0; slot < base->size(); ++slot) first.entries[slot] = {false, slot};
    first.overlaySize = 0;
    currentVersion_ = 0;
}

Value& VariableStore::resolve(uint32_t slot, size_t version) {
    // A slot beyond the store is an internal fault.
    if (version >= versions_.size() || slot >= versions_[version].entries.size()) std::abort();
    const uint32_t index = versions_[version].entries[slot].index;
    return index < base_->size() ? (*base_)[index] : overlay_[index - base_->size()];
}

void VariableStore::fork(const std::vector<uint32_t>& slots) {
    Version next = versions_[currentVersion_];
    for (uint32_t slot : slots) {
        overlay_.push_back(resolve(slot));
        next.entries[slot] = {true, uint32_t(base_->size() + overlay_.size() - 1)};
    }
    next.overlaySize = overlay_.size();
    versions_.push_back(std::move(next));
    currentVersion_ = versions_.size() - 1;
}

void VariableStore::merge(size_t from, size_t to) {
    const std::vector<Entry>& entries = versions_[from].entries;
    for (uint32_t slot = 0; slot < entries.size(); ++slot)
        if (entries[slot].dirty) resolve(slot, to) = resolve(slot, from);
}

void VariableStore::truncate(size_t count) {
    if (count == 0 || count > versions_.size()) std::abort();
    versions_.resize(count);
    overlay_.resize(versions_.back().overlaySize);
    currentVersion_ = count - 1;
}

}  // namespace tarnfold::zmf
