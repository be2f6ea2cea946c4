#include "pgn/pgn_reader.h"

#include <algorithm>
#include <cctype>

#include "chess/notation.h"
#include "pgn/pgn_token.h"

namespace tarnfold::PGN {

namespace {

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

}  // namespace

PGNReader::PGNReader(std::istream& stream, bool nested, const std::map<std::string, Variant>& aliases)
    : PGNParser(stream) {
    setNestedComments(nested);
    // Escape lines are taken wherever they stand, not only at column 1.
    setEscapeAnywhere(true);
    for (const auto& [name, variant] : aliases) variantAliases[lowerCase(name)] = variant;
}

int PGNReader::read() { return parseGame(); }

void PGNReader::clearGameState() {
    errors.clear();
    variantTag.clear();
    fenTag.clear();
    setUpTag.clear();
    variationStack.clear();
    pendingComments.clear();
}

void PGNReader::addError(const PGNPosition& position, std::string message) {
    errors.push_back({position, std::move(message)});
}

bool PGNReader::onTag(const PGNTag& tag) {
    game->tags.push_back({tag.name, tag.value});
    if (tag.name == "FEN") fenTag = tag.value;
    if (tag.name == "Variant") variantTag = tag.value;
    if (tag.name == "SetUp") setUpTag = tag.value;
    return true;
}

Variant PGNReader::resolveVariant() const {
    if (variantTag.empty()) return Standard;
    const std::string name = lowerCase(variantTag);
    if (const auto alias = variantAliases.find(name); alias != variantAliases.end()) return alias->second;
    return variantFromName(name);
}

bool PGNReader::onGameStart(const PGNPosition&) {
    Board& board = game->board;
    board.setVariant(resolveVariant());
    // A FEN is only taken when SetUp does not say otherwise; what reading it
    // gives is not looked at: a bad FEN leaves the board as the reader left it.
    if (fenTag.empty() || (!setUpTag.empty() && setUpTag != "1"))
        board.setStartPosition();
    else
        board.setFen(fenTag);
    game->keepRootBoard();
    return true;
}

bool PGNReader::onMove(const std::string& moveText, const PGNToken& token, const PGNPosition&) {
    Board& board = game->board;
    Move move;
    size_t used = 0;
    const MoveError error = parseMove(board, Notation(moveStyle), moveText, move, used);
    if (error != MoveSuccess) {
        std::string message = "failed to parse move '";
        message += moveText;
        message += "': ";
        message += moveErrorText(error);
        addError(token.start, std::move(message));
        return false;
    }
    board.makeMove(move);
    AnnotatedGameTreeNode* node = game->current->addChild(move);
    game->current = node;
    for (const PGNComment& comment : pendingComments)
        node->commentsBefore.push_back({comment.kind, comment.text});
    pendingComments.clear();
    if (used < moveText.size()) {
        // A suffix glued to the move ("e4!?"); an unknown one is dropped.
        const std::string rest = moveText.substr(used);
        if (const int nag = annotationNag(rest); nag >= 0) {
            PGNToken annotation = token;
            annotation.type = PGNTokenType::Annotation;
            annotation.text = rest;
            annotation.value = uint64_t(nag);
            onAnnotation(annotation);
        }
    }
    return true;
}

bool PGNReader::onComment(const PGNComment& comment) {
    // Before the first move of a variation the comment belongs to that move.
    if (!variationStack.empty() && game->current == variationStack.back().first)
        pendingComments.push_back(comment);
    else
        game->current->commentsAfter.push_back({comment.kind, comment.text});
    return true;
}

bool PGNReader::onNag(const PGNToken& token) {
    game->current->nags.push_back(uint8_t(token.value));
    return true;
}

bool PGNReader::onAnnotation(const PGNToken& token) {
    game->current->nags.push_back(uint8_t(token.value));
    return true;
}

bool PGNReader::onVariationBegin(const PGNPosition&) {
    AnnotatedGameTreeNode* replaced = game->current;
    AnnotatedGameTreeNode* branch = replaced->parentAnnotated();
    if (!branch) return false;
    game->board.unmakeMove();
    variationStack.emplace_back(branch, replaced);
    game->current = branch;
    return true;
}

bool PGNReader::onVariationEnd(const PGNPosition&) {
    // An unbalanced ')' is no error.
    if (variationStack.empty()) return true;
    const auto [branch, resume] = variationStack.back();
    variationStack.pop_back();
    while (game->current != branch && game->current->parentAnnotated()) {
        game->board.unmakeMove();
        game->current = game->current->parentAnnotated();
    }
    game->current = resume;
    game->board.makeMove(resume->move);
    // Comments of a variation that held no move have nowhere to go.
    pendingComments.clear();
    return true;
}

bool PGNReader::onGameEnd(uint32_t result, const PGNPosition& position, bool missingTerminator) {
    if (result < NoResult) game->result = result;
    pendingComments.clear();
    if (missingTerminator) addError(position, "missing game termination token");
    return true;
}

bool PGNReader::onInvalidToken(const PGNToken& token) {
    std::string message = "invalid token '";
    message += token.type == PGNTokenType::Eof ? "<EOF>" : token.text;
    message += "' encountered in PGN stream";
    addError(token.start, std::move(message));
    return true;
}

}  // namespace tarnfold::PGN
