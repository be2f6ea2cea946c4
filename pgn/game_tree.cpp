#include "pgn/game_tree.h"

#include <algorithm>
#include <utility>

namespace tarnfold::PGN {

// A game of thousands of moves is a chain thousands of nodes deep; tearing it
// down node by node from here keeps the stack flat.
GameTreeNode::~GameTreeNode() {
    std::vector<std::unique_ptr<GameTreeNode>> pending;
    for (auto& child : children) pending.push_back(std::move(child));
    while (!pending.empty()) {
        std::unique_ptr<GameTreeNode> node = std::move(pending.back());
        pending.pop_back();
        for (auto& grandchild : node->children) pending.push_back(std::move(grandchild));
        node->children.clear();
    }
}

GameTreeNode* GameTreeNode::adopt(std::unique_ptr<GameTreeNode> node, Move childMove) {
    node->move = childMove;
    node->ply = ply + 1;
    node->childIndex = static_cast<uint32_t>(children.size());
    node->parentNode = this;
    children.push_back(std::move(node));
    return children.back().get();
}

GameTreeNode* GameTreeNode::addChild(Move childMove) {
    return adopt(std::make_unique<GameTreeNode>(), childMove);
}

void GameTreeNode::pathFromRoot(std::vector<uint32_t>& result) const {
    result.clear();
    for (const GameTreeNode* node = this; node->parentNode; node = node->parentNode) {
        const auto& siblings = node->parentNode->children;
        auto found = std::find_if(siblings.begin(), siblings.end(),
                                  [node](const auto& sibling) { return sibling.get() == node; });
        if (found == siblings.end()) break;
        result.push_back(static_cast<uint32_t>(found - siblings.begin()));
    }
    std::reverse(result.begin(), result.end());
}

GameTreeNode* GameTreeNode::parent() const { return parentNode; }

GameTreeNode* GameTreeNode::child(size_t index) const {
    return index < children.size() ? children[index].get() : nullptr;
}

AnnotatedGameTreeNode::~AnnotatedGameTreeNode() = default;

namespace {

// The nodes of finished games wait here to be handed out again, their lists
// emptied but keeping their capacity: reading the next game then costs no
// allocation per move. Each thread keeps its own, up to a bound, so that one
// huge game does not hold its memory for the rest of the run.
thread_local std::vector<std::unique_ptr<AnnotatedGameTreeNode>> spareNodes;
constexpr std::size_t maximumSpareNodes = std::size_t(1) << 16;

}  // namespace

std::unique_ptr<AnnotatedGameTreeNode> newAnnotatedNode() {
    if (spareNodes.empty()) return std::make_unique<AnnotatedGameTreeNode>();
    std::unique_ptr<AnnotatedGameTreeNode> node = std::move(spareNodes.back());
    spareNodes.pop_back();
    return node;
}

void recycleTree(std::unique_ptr<AnnotatedGameTreeNode> root) {
    std::vector<std::unique_ptr<GameTreeNode>> pending;
    pending.push_back(std::move(root));
    while (!pending.empty()) {
        std::unique_ptr<GameTreeNode> node = std::move(pending.back());
        pending.pop_back();
        for (auto& child : node->children) pending.push_back(std::move(child));
        node->children.clear();
        if (spareNodes.size() >= maximumSpareNodes) continue;
        auto* annotated = static_cast<AnnotatedGameTreeNode*>(node.release());
        annotated->move = rootMove;
        annotated->ply = 0;
        annotated->childIndex = 0;
        annotated->parentNode = nullptr;
        annotated->mark = 0;
        annotated->commentsAfter.clear();
        annotated->commentsBefore.clear();
        annotated->nags.clear();
        spareNodes.emplace_back(annotated);
    }
}

AnnotatedGameTreeNode* AnnotatedGameTreeNode::addChild(Move childMove) {
    return static_cast<AnnotatedGameTreeNode*>(adopt(newAnnotatedNode(), childMove));
}

GameTreeNode* rootOf(GameTreeNode* node) {
    if (!node) return nullptr;
    while (node->parentNode) node = node->parentNode;
    return node;
}

GameTreeNode* lowestCommonAncestor(GameTreeNode* a, GameTreeNode* b) {
    if (!a || !b) return nullptr;
    while (a->ply > b->ply && a->parentNode) a = a->parentNode;
    while (b->ply > a->ply && b->parentNode) b = b->parentNode;
    // Nodes of two different trees meet nowhere: both walks end at null.
    while (a && b && a != b) {
        a = a->parentNode;
        b = b->parentNode;
    }
    return a == b ? a : nullptr;
}

GameTreeNode* deepestFirstChild(GameTreeNode* node) {
    if (!node) return nullptr;
    while (!node->children.empty()) node = node->children[0].get();
    return node;
}

bool isVariationStart(const GameTreeNode* node) {
    return node && node->parentNode && node->parentNode->children[0].get() != node;
}

bool isOnMainLine(const GameTreeNode* node) {
    for (; node && node->parentNode; node = node->parentNode)
        if (node->parentNode->children[0].get() != node) return false;
    return true;
}

bool isLeaf(const GameTreeNode* node) { return node->children.empty(); }

namespace {

// The node that stands for the variation holding node, or null when no
// ancestor has a sibling.
GameTreeNode* variationNode(GameTreeNode* node) {
    while (node && node->parentNode && node->parentNode->children.size() < 2) node = node->parentNode;
    return node && node->parentNode ? node : nullptr;
}

size_t indexAmongSiblings(const GameTreeNode* node) {
    const auto& siblings = node->parentNode->children;
    for (size_t i = 0; i < siblings.size(); ++i)
        if (siblings[i].get() == node) return i;
    return siblings.size();
}

uint32_t swapSiblings(GameTreeNode* parent, size_t from, size_t to) {
    std::swap(parent->children[from], parent->children[to]);
    return static_cast<uint32_t>(from > to ? from - to : to - from);
}

}  // namespace

uint32_t promoteVariation(GameTreeNode* node) {
    GameTreeNode* variation = variationNode(node);
    if (!variation) return 0;
    return swapSiblings(variation->parentNode, indexAmongSiblings(variation), 0);
}

uint32_t moveVariationUp(GameTreeNode* node, int count) {
    if (count == 0) return 0;
    GameTreeNode* variation = variationNode(node);
    if (!variation) return 0;
    const size_t index = indexAmongSiblings(variation);
    if (count < 1) return swapSiblings(variation->parentNode, index, 0);
    if (index < size_t(count)) return 0;
    return swapSiblings(variation->parentNode, index, index - size_t(count));
}

uint32_t moveVariationDown(GameTreeNode* node, int count) {
    if (count == 0) return 0;
    GameTreeNode* variation = variationNode(node);
    if (!variation) return 0;
    const size_t index = indexAmongSiblings(variation);
    const size_t last = variation->parentNode->children.size() - 1;
    if (count < 1) return swapSiblings(variation->parentNode, index, last);
    if (last - index < size_t(count)) return 0;
    return swapSiblings(variation->parentNode, index, index + size_t(count));
}

void removeVariation(GameTreeNode* node, size_t index) {
    if (index >= node->children.size()) return;
    node->children.erase(index);
}

void removeLastChild(GameTreeNode* node) {
    if (!node->children.empty()) node->children.pop_back();
}

void copyAnnotations(const AnnotatedGameTreeNode* source, AnnotatedGameTreeNode* target) {
    std::vector<std::pair<const AnnotatedGameTreeNode*, AnnotatedGameTreeNode*>> pending{{source, target}};
    while (!pending.empty()) {
        auto [from, to] = pending.back();
        pending.pop_back();
        to->mark = from->mark;
        to->commentsAfter = from->commentsAfter;
        to->commentsBefore = from->commentsBefore;
        to->nags = from->nags;
        const size_t shared = std::min(from->children.size(), to->children.size());
        for (size_t i = 0; i < shared; ++i)
            pending.emplace_back(from->childAnnotated(i), to->childAnnotated(i));
    }
}

}  // namespace tarnfold::PGN
