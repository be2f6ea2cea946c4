#pragma once

// One game as the engine sees it: its tags, its result, the tree of its moves
// and a cursor into that tree with a Board kept at the cursor's position. A
// Game is made once per thread and reset before each game, so its Board and
// vectors keep their capacity from game to game.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "chess/board.h"
#include "pgn/game_result.h"
#include "pgn/game_tree.h"

namespace tarnfold::PGN {

struct GameTag {
    std::string name;
    std::string value;

    bool operator==(const GameTag&) const = default;
};

template <typename NodeType>
class Game {
public:
    Game() { reset(); }

    std::vector<GameTag> tags;
    uint32_t result = UnknownResult;
    // Always the position reached by the moves from root to current.
    Board board;
    std::unique_ptr<NodeType> root;
    NodeType* current = nullptr;

    void reset() {
        rootKept_ = false;
        tags.clear();
        result = UnknownResult;
        board.setStartPosition();
        if constexpr (std::is_same_v<NodeType, AnnotatedGameTreeNode>) {
            if (root) recycleTree(std::move(root));
            root = newAnnotatedNode();
        } else {
            root = std::make_unique<NodeType>();
        }
        current = root.get();
    }

    // Keeps the board as it stands at root, for rewind: whoever sets the
    // root position up calls it, and again if it changes the board at root
    // other than by moves taken back.
    void keepRootBoard() {
        rootBoard_ = board;
        rootKept_ = true;
    }

    // With the root board kept, one copy instead of taking back every move
    // of a long game.
    void rewind() {
        if (!current->parentNode) return;
        if (rootKept_) {
            board = rootBoard_;
            current = root.get();
            return;
        }
        while (current->parentNode) back();
    }

    // Moves the cursor to a child of current, playing its move.
    void forward(NodeType* child) {
        board.makeMove(child->move);
        current = child;
    }

    void back() {
        board.unmakeMove();
        current = static_cast<NodeType*>(current->parentNode);
    }

private:
    Board rootBoard_;
    bool rootKept_ = false;
};

// What the engine needs of the tags, extracted once per game.
struct GameInfo {
    std::optional<std::string> white, black, site, event, eco, date, eventDate;
    std::optional<uint32_t> year, whiteElo, blackElo;

    bool operator==(const GameInfo&) const = default;
};

void extractGameInfo(const std::vector<GameTag>& tags, GameInfo& info);

// A rating tag's value: a whole positive number, or nothing ("0", "-",
// "?" and the like mean unrated).
std::optional<uint32_t> ratingOf(const std::string& value);

}  // namespace tarnfold::PGN
