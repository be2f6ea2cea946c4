#pragma once

// The children of a game-tree node. Almost every position of a game has one
// continuation, so a single child is held in place and only a node with
// variations allocates room for more: reading a game costs one allocation per
// move instead of two.

#include <cstddef>
#include <memory>
#include <vector>

namespace tarnfold::PGN {

// A template only so that Node may still be incomplete where it is used as
// a member.
template <class Node>
class ChildList {
public:
    using Pointer = std::unique_ptr<Node>;

    size_t size() const { return many_.empty() ? (one_ ? 1 : 0) : many_.size(); }
    bool empty() const { return size() == 0; }

    Pointer* begin() { return many_.empty() ? &one_ : many_.data(); }
    Pointer* end() { return begin() + size(); }
    const Pointer* begin() const { return many_.empty() ? &one_ : many_.data(); }
    const Pointer* end() const { return begin() + size(); }

    Pointer& operator[](size_t index) { return begin()[index]; }
    const Pointer& operator[](size_t index) const { return begin()[index]; }
    Pointer& front() { return *begin(); }
    Pointer& back() { return end()[-1]; }

    void push_back(Pointer child) {
        if (many_.empty() && !one_) {
            one_ = std::move(child);
            return;
        }
        if (many_.empty()) {
            many_.reserve(2);
            many_.push_back(std::move(one_));
        }
        many_.push_back(std::move(child));
    }

    // Destroys the child and everything below it; later children move forward.
    void erase(size_t index) {
        if (many_.empty()) {
            one_.reset();
        } else {
            many_.erase(many_.begin() + static_cast<std::ptrdiff_t>(index));
        }
    }
    void pop_back() { erase(size() - 1); }
    void clear() {
        one_.reset();
        many_.clear();
    }

private:
    // With two children or more all of them are in many_ and one_ is null;
    // otherwise many_ is empty.
    Pointer one_;
    std::vector<Pointer> many_;
};

}  // namespace tarnfold::PGN
