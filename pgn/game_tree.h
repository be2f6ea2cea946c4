#pragma once

// The moves of a game as a tree rooted at the start position. At every node
// children[0] is the main continuation and the later children are the
// variations in the order the text gave them. Children are held by pointer so
// that a node never moves once made: the cursor of a game and anything the
// engine remembers stay valid while the tree grows or is reordered.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "chess/move.h"
#include "pgn/child_list.h"

namespace tarnfold::PGN {

// The move of the root, which no position leads to.
inline constexpr Move rootMove{0xC0C000};

enum CommentKind : uint32_t { LineComment = 0, BraceComment = 1 };

// Comments the system adds are brace comments too: only a ';' comment of the
// input is a line comment.
struct GameComment {
    uint32_t kind = BraceComment;
    std::string text;

    bool operator==(const GameComment&) const = default;
};

class GameTreeNode {
public:
    GameTreeNode() = default;
    GameTreeNode(const GameTreeNode&) = delete;
    GameTreeNode& operator=(const GameTreeNode&) = delete;
    virtual ~GameTreeNode();

    // A new node of the node's own class, appended to children.
    virtual GameTreeNode* addChild(Move childMove);
    // The index of each step among its parent's children, from the root down.
    virtual void pathFromRoot(std::vector<uint32_t>& result) const;
    virtual GameTreeNode* parent() const;
    virtual GameTreeNode* child(size_t index) const;

    Move move = rootMove;
    uint32_t ply = 0;
    // How many siblings came before this node when it was added; reordering
    // leaves it alone.
    uint32_t childIndex = 0;
    ChildList<GameTreeNode> children;
    GameTreeNode* parentNode = nullptr;

protected:
    // Links a node made by a subclass's addChild under this one.
    GameTreeNode* adopt(std::unique_ptr<GameTreeNode> node, Move childMove);
};

class AnnotatedGameTreeNode : public GameTreeNode {
public:
    AnnotatedGameTreeNode() = default;
    ~AnnotatedGameTreeNode() override;

    AnnotatedGameTreeNode* addChild(Move childMove) override;

    // Every node of an annotated tree is annotated, so these casts are safe.
    AnnotatedGameTreeNode* parentAnnotated() const { return static_cast<AnnotatedGameTreeNode*>(parentNode); }
    AnnotatedGameTreeNode* childAnnotated(size_t index) const {
        return static_cast<AnnotatedGameTreeNode*>(children[index].get());
    }

    uint32_t mark = 0;
    // On the root: the comments in front of the first move of the game.
    std::vector<GameComment> commentsAfter;
    // Comments that opened a variation before its first move.
    std::vector<GameComment> commentsBefore;
    std::vector<uint8_t> nags;
};

// A fresh annotated node, and the way back for a whole tree of them once
// its game is done: nodes are reused rather than freed and allocated again.
std::unique_ptr<AnnotatedGameTreeNode> newAnnotatedNode();
void recycleTree(std::unique_ptr<AnnotatedGameTreeNode> root);

GameTreeNode* rootOf(GameTreeNode* node);
GameTreeNode* lowestCommonAncestor(GameTreeNode* a, GameTreeNode* b);
GameTreeNode* deepestFirstChild(GameTreeNode* node);
bool isVariationStart(const GameTreeNode* node);
// A null node counts as on the main line.
bool isOnMainLine(const GameTreeNode* node);
bool isLeaf(const GameTreeNode* node);

// The reordering functions move the variation that holds node: node itself or
// its closest ancestor whose parent has at least two children. Each returns
// how many places the variation moved, 0 when nothing changed.
uint32_t promoteVariation(GameTreeNode* node);
// A count below 1 moves it to the front; a count of 0 does nothing.
uint32_t moveVariationUp(GameTreeNode* node, int count);
// A count below 1 moves it to the back; a count of 0 does nothing.
uint32_t moveVariationDown(GameTreeNode* node, int count);

// Destroy the child and everything below it; later children move forward.
void removeVariation(GameTreeNode* node, size_t index);
void removeLastChild(GameTreeNode* node);

// Mark, comments and NAGs of source onto target, then child by child as far
// as both trees have children at the same place.
void copyAnnotations(const AnnotatedGameTreeNode* source, AnnotatedGameTreeNode* target);

// Typed forms: an annotated node in, an annotated node out.
template <std::derived_from<GameTreeNode> Node>
Node* rootOf(Node* node) {
    return static_cast<Node*>(rootOf(static_cast<GameTreeNode*>(node)));
}
template <std::derived_from<GameTreeNode> Node>
Node* lowestCommonAncestor(Node* a, Node* b) {
    return static_cast<Node*>(
        lowestCommonAncestor(static_cast<GameTreeNode*>(a), static_cast<GameTreeNode*>(b)));
}
template <std::derived_from<GameTreeNode> Node>
Node* deepestFirstChild(Node* node) {
    return static_cast<Node*>(deepestFirstChild(static_cast<GameTreeNode*>(node)));
}

}  // namespace tarnfold::PGN
