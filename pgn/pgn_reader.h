#pragma once

// Turns what the PGN parser reports into a game tree: every move is played
// on the game's board, comments and NAGs are attached to the nodes they
// follow, and whatever goes wrong is recorded while reading goes on.

#include <cstdint>
#include <istream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "chess/variant.h"
#include "pgn/game.h"
#include "pgn/game_tree.h"
#include "pgn/pgn_parser.h"

namespace tarnfold::PGN {

class PGNReader : public PGNParser {
public:
    // Aliases map lower-case names to variants and are consulted before the
    // built-in names; their keys are folded to lower case here.
    PGNReader(std::istream& stream, bool nestedComments, const std::map<std::string, Variant>& aliases = {});

    // Reads the next game into `game` (which the caller has reset): 0 read,
    // 1 read with errors, 2 no game left.
    int read();

    // Clears what one game leaves behind: errors, the three tags and the
    // open variations.
    void clearGameState();

    std::map<std::string, Variant> variantAliases;
    Game<AnnotatedGameTreeNode>* game = nullptr;
    // 0: the tolerant SAN grammar; 1: descriptive notation.
    uint32_t moveStyle = 0;
    std::string variantTag;
    std::string fenTag;
    std::string setUpTag;
    // Per open variation: the node it branches from and the node to return to.
    std::vector<std::pair<AnnotatedGameTreeNode*, AnnotatedGameTreeNode*>> variationStack;
    // Comments that wait for the first move of a variation.
    std::vector<PGNComment> pendingComments;

    bool onTag(const PGNTag& tag) override;
    bool onComment(const PGNComment& comment) override;
    bool onNag(const PGNToken& token) override;
    bool onAnnotation(const PGNToken& token) override;
    bool onGameEnd(uint32_t result, const PGNPosition& position, bool missingTerminator) override;
    bool onVariationBegin(const PGNPosition& position) override;
    bool onVariationEnd(const PGNPosition& position) override;
    bool onMove(const std::string& moveText, const PGNToken& token, const PGNPosition& position) override;
    bool onInvalidToken(const PGNToken& token) override;
    bool onGameStart(const PGNPosition& position) override;

private:
    void addError(const PGNPosition& position, std::string message);
    Variant resolveVariant() const;
};

}  // namespace tarnfold::PGN
