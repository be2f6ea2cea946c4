#include "pgn/pgn_writer.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tarnfold::PGN {

namespace {

using AnnotatedGame = Game<AnnotatedGameTreeNode>;

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

// Braces inside a comment would end it early or open a nested one.
void appendCommentChar(const PGNWriteOptions& options, char c, std::string& word) {
    if (c != '{' && c != '}') {
        word += c;
    } else if (options.braceReplacement != '\0') {
        word += options.braceReplacement;
    }
}

// Adds the words of one comment text and returns how many it added.
size_t addCommentWords(const PGNWriteOptions& options, std::string_view text, std::vector<PGNWord>& words) {
    const size_t start = words.size();
    size_t at = 0;
    while (at < text.size()) {
        while (at < text.size() && isBlank(text[at])) ++at;
        size_t end = at;
        while (end < text.size() && !isBlank(text[end])) ++end;
        if (end == at) break;
        const std::string_view piece = text.substr(at, end - at);
        at = end;
        std::string word;
        if (piece.find_first_of("{}") == std::string_view::npos) {
            word.assign(piece);
        } else {
            for (char c : piece) appendCommentChar(options, c, word);
            if (word.empty()) continue;
        }
        if (!options.splitCommentWords && words.size() > start) {
            words.back().text += ' ';
            words.back().text += word;
        } else {
            words.push_back({std::move(word), words.size() > start});
        }
    }
    return words.size() - start;
}

// A comment as it will stand between its braces: words one blank apart,
// braces replaced.
std::string writtenForm(const PGNWriteOptions& options, std::string_view text) {
    std::vector<PGNWord> words;
    addCommentWords(options, text, words);
    std::string form;
    for (const PGNWord& word : words) {
        if (!form.empty()) form += ' ';
        form += word.text;
    }
    return form;
}

// The texts to write from one place, after the filters of the options; a
// joined text is kept in storage.
std::vector<std::string_view> commentTexts(const PGNWriteOptions& options,
                                           const std::vector<GameComment>& commentList,
                                           std::string& storage) {
    std::vector<std::string_view> texts;
    texts.reserve(commentList.size());
    for (const GameComment& comment : commentList)
        if (comment.kind != LineComment || options.keepLineComments) texts.push_back(comment.text);
    if (texts.size() < 2) return texts;
    if (options.uniqueComments) {
        // Two comments are the same if they are written the same, so that
        // what is written once is written alike the second time.
        std::vector<std::string_view> unique;
        std::vector<std::string> written;
        for (std::string_view text : texts) {
            std::string form = writtenForm(options, text);
            if (std::find(written.begin(), written.end(), form) != written.end()) continue;
            written.push_back(std::move(form));
            unique.push_back(text);
        }
        texts = std::move(unique);
    }
    if (options.coalesceComments && texts.size() >= 2) {
        for (std::string_view text : texts) {
            if (!storage.empty()) storage += ' ';
            storage += text;
        }
        texts.assign(1, storage);
    }
    return texts;
}

constexpr size_t noWord = ~size_t(0);

// The mark of a move just played, onto its word.
void addCheckMark(const PGNWriteOptions& options, Board& board, std::vector<PGNWord>& words, size_t moveWord) {
    if (moveWord != noWord) words[moveWord].text += checkMark(board, options.notation);
}

// With Black to move the number is written only when forced: after a NAG, a
// comment or a variation, or at the start of a variation.
std::string moveNumber(const PGNWriteOptions& options, const Board& board, bool force) {
    if (!options.moveNumbers) return {};
    if (board.sideToMove == White) return std::to_string(board.fullmoveNumber) + ".";
    if (force) return std::to_string(board.fullmoveNumber) + "...";
    return {};
}

// A move that the writer is about to play gets its check or mate mark once
// it is played (`markPending`), which spares playing it once more just for
// the mark.
void writeOneMove(const PGNWriteOptions& options, Board& board, Move move, bool force,
                  std::vector<PGNWord>& words, bool& markPending) {
    std::string number = moveNumber(options, board, force);
    markPending = !move.isNull() && !move.isReverse();
    std::string san = markPending ? moveTextWithoutMark(board, move, options.notation)
                                  : moveToText(board, move, options.notation);
    if (number.empty()) {
        words.push_back({std::move(san), true});
    } else if (!options.splitMoves) {
        if (!options.compactMoves) number += ' ';
        words.push_back({number + san, true});
    } else {
        words.push_back({std::move(number), true});
        words.push_back({std::move(san), !options.compactMoves});
    }
}

// The move of node with its NAGs and comments; returns whether Black's next
// move needs its number. `moveWord` is the index of the word that still
// awaits its check mark, or none.
bool writeAnnotatedMove(const PGNWriteOptions& options, Board& board, const AnnotatedGameTreeNode& node,
                        bool force, std::vector<PGNWord>& words, size_t& moveWord) {
    bool markPending = false;
    writeOneMove(options, board, node.move, force, words, markPending);
    moveWord = markPending ? words.size() - 1 : noWord;
    bool nextForce = false;
    if (writeNags(options, node.nags, words)) nextForce = options.moveNumberAfterNag;
    if (writeComments(options, node.commentsAfter, words) && options.moveNumberAfterComment) nextForce = true;
    return nextForce;
}

void writeVariation(const PGNWriteOptions& options, AnnotatedGame& game, AnnotatedGameTreeNode& start,
                    std::vector<PGNWord>& words) {
    words.push_back({"(", true});
    const size_t opened = words.size();
    writeComments(options, start.commentsBefore, words);
    size_t moveWord = noWord;
    const bool childForce = writeAnnotatedMove(options, game.board, start, true, words, moveWord);
    game.forward(&start);
    addCheckMark(options, game.board, words, moveWord);
    writeMoves(options, game, words, childForce);
    game.back();
    words.push_back({")", !options.compactVariations});
    if (options.compactVariations && opened < words.size()) words[opened].spaceBefore = false;
}

// The alternatives to the first child of node; returns whether any was
// written.
bool writeVariations(const PGNWriteOptions& options, AnnotatedGame& game, const AnnotatedGameTreeNode& node,
                     std::vector<PGNWord>& words) {
    if (!options.variations) return false;
    bool wrote = false;
    for (size_t i = 1; i < node.children.size(); ++i) {
        AnnotatedGameTreeNode& start = *node.childAnnotated(i);
        // Moves that evaluation added to try something out are not part of
        // the game.
        if (start.move.isEdit()) continue;
        writeVariation(options, game, start, words);
        wrote = true;
    }
    return wrote;
}

void writeTags(const PGNWriteOptions& options, const std::vector<GameTag>& tags, std::string& out,
               std::string_view& resultTag) {
    if (options.omitTags) return;
    for (const GameTag& tag : tags) {
        out += '[';
        out += tag.name;
        out += " \"";
        for (char c : tag.value) {
            if (c == '"' || c == '\\') out += '\\';
            out += c == '\n' || c == '\r' ? ' ' : c;
        }
        out += "\"]\n";
        if (tag.name == "Result") resultTag = tag.value;
    }
    if (!tags.empty()) out += '\n';
}

std::string_view resultWord(std::string_view resultTag, uint32_t result) {
    if (resultTag == "1-0" || resultTag == "0-1" || resultTag == "1/2-1/2" || resultTag == "*")
        return resultTag;
    return resultText(result);
}

// A word that does not fit after the column starts a new line, even a
// number's move; a word wider than the line stands alone, uncut.
void breakLines(const std::vector<PGNWord>& words, uint32_t lineWidth, std::string& out) {
    size_t column = 0;
    for (const PGNWord& word : words) {
        const size_t blank = word.spaceBefore ? 1 : 0;
        if (column != 0 && lineWidth != 0 && column + blank + word.text.size() > lineWidth) {
            out += '\n';
            column = 0;
        } else if (word.spaceBefore && column != 0) {
            out += ' ';
            ++column;
        }
        out += word.text;
        column += word.text.size();
    }
    out += '\n';
}

}  // namespace

bool writeNags(const PGNWriteOptions& options, const std::vector<uint8_t>& nags,
               std::vector<PGNWord>& words) {
    if (!options.nags || nags.empty()) return false;
    for (uint8_t nag : nags) {
        std::string text(1, '$');
        text += std::to_string(nag);
        words.push_back({std::move(text), true});
    }
    return true;
}

bool writeComments(const PGNWriteOptions& options, const std::vector<GameComment>& commentList,
                   std::vector<PGNWord>& words) {
    if (!options.comments || commentList.empty()) return false;
    std::string joined;
    bool wrote = false;
    for (std::string_view text : commentTexts(options, commentList, joined)) {
        const size_t brace = words.size();
        words.push_back({"{", true});
        if (addCommentWords(options, text, words) == 0) {
            words.pop_back();
            continue;
        }
        words.push_back({"}", !options.compactComments});
        words[brace + 1].spaceBefore = !options.compactComments;
        wrote = true;
    }
    return wrote;
}

// The main line is followed in a loop rather than by recursion, so that the
// depth of the stack grows with the nesting of variations, not with the
// length of the game.
void writeMoves(const PGNWriteOptions& options, AnnotatedGame& game, std::vector<PGNWord>& words,
                bool forceNumber) {
    AnnotatedGameTreeNode* node = game.current;
    if (!node->parentNode) {
        writeComments(options, node->commentsBefore, words);
        writeComments(options, node->commentsAfter, words);
        writeNags(options, node->nags, words);
    }
    size_t played = 0;
    bool force = forceNumber;
    while (!node->children.empty()) {
        AnnotatedGameTreeNode* first = node->childAnnotated(0);
        const bool edit = first->move.isEdit();
        bool nextForce = false;
        size_t moveWord = noWord;
        if (!edit) {
            writeComments(options, first->commentsBefore, words);
            nextForce = writeAnnotatedMove(options, game.board, *first, force, words, moveWord);
        }
        const bool wroteVariation = writeVariations(options, game, *node, words);
        if (edit) break;
        game.forward(first);
        addCheckMark(options, game.board, words, moveWord);
        ++played;
        // A move after a variation always carries its number.
        force = nextForce || wroteVariation;
        node = first;
    }
    for (; played > 0; --played) game.back();
}

std::string gameToPgn(const PGNWriteOptions& options, AnnotatedGame& game) {
    std::string out;
    std::string_view resultTag;
    writeTags(options, game.tags, out, resultTag);
    std::vector<PGNWord> words;
    words.reserve(64);
    writeMoves(options, game, words, true);
    if (options.result) words.push_back({std::string(resultWord(resultTag, game.result)), true});
    size_t size = out.size() + 1;
    for (const PGNWord& word : words) size += word.text.size() + 1;
    out.reserve(size + (options.lineWidth != 0 ? size / options.lineWidth : 0));
    breakLines(words, options.lineWidth, out);
    return out;
}

}  // namespace tarnfold::PGN
