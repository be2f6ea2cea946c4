#include "pgn/pgn_writer.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>
#include <utility>

namespace tarnfold::PGN {

namespace {

using AnnotatedGame = Game<AnnotatedGameTreeNode>;

// The words of a game's movetext, their characters back to back in one
// buffer that is kept from game to game, so that a word costs no allocation.
// A move's check mark is known only once the move is played, when NAGs and
// comments may already follow it, so it hangs on its word apart.
class WordList {
public:
    struct Word {
        uint32_t begin = 0;
        uint32_t end = 0;
        std::string_view mark;
        bool spaceBefore = true;
    };

    void clear() {
        chars_.clear();
        words_.clear();
        markBytes_ = 0;
    }
    size_t size() const { return words_.size(); }
    // A new word, its characters appended to chars() until the next one.
    std::string& open(bool spaceBefore) {
        finish();
        const auto at = static_cast<uint32_t>(chars_.size());
        words_.push_back({at, at, {}, spaceBefore});
        return chars_;
    }
    void add(std::string_view text, bool spaceBefore) { open(spaceBefore) += text; }
    // Appends to the last word.
    std::string& chars() { return chars_; }
    void popBack() {
        chars_.resize(words_.back().begin);
        words_.pop_back();
    }
    void setMark(size_t i, std::string_view mark) {
        words_[i].mark = mark;
        markBytes_ += mark.size();
    }
    void setSpaceBefore(size_t i, bool spaceBefore) { words_[i].spaceBefore = spaceBefore; }
    // Every word with its mark, in order.
    template <typename F>
    void forEach(F&& visit) {
        finish();
        for (const Word& word : words_)
            visit(std::string_view(chars_.data() + word.begin, word.end - word.begin), word.mark, word.spaceBefore);
    }
    // The most the words take written, a blank or a line break before each.
    size_t writtenBound() const { return chars_.size() + markBytes_ + words_.size(); }

private:
    void finish() {
        if (!words_.empty()) words_.back().end = static_cast<uint32_t>(chars_.size());
    }

    std::string chars_;
    std::vector<Word> words_;
    size_t markBytes_ = 0;
};

// Most characters are above the blank: one compare for them.
bool isBlank(char c) {
    return static_cast<unsigned char>(c) <= ' ' &&
           (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f');
}

// Calls visit with each blank-separated piece of a comment text.
template <typename F>
void forEachPiece(std::string_view text, F&& visit) {
    size_t at = 0;
    while (at < text.size()) {
        while (at < text.size() && isBlank(text[at])) ++at;
        size_t end = at;
        while (end < text.size() && !isBlank(text[end])) ++end;
        if (end == at) return;
        visit(text.substr(at, end - at));
        at = end;
    }
}

// Appends a piece of a comment with its braces replaced or dropped; returns
// whether it appended anything.
bool appendPiece(const PGNWriteOptions& options, std::string_view piece, std::string& out) {
    // A loop of compares, not find_first_of, which calls memchr per byte.
    bool braces = false;
    for (char c : piece) braces |= c == '{' || c == '}';
    if (!braces) {
        out += piece;
        return true;
    }
    const size_t before = out.size();
    for (char c : piece) {
        if (c != '{' && c != '}') {
            out += c;
        } else if (options.braceReplacement != '\0') {
            out += options.braceReplacement;
        }
    }
    return out.size() != before;
}

// Adds the words of one comment text and returns how many it added. Braces
// inside a comment would end it early or open a nested one: they are
// replaced, or dropped with NUL for replacement.
size_t addCommentWords(const PGNWriteOptions& options, std::string_view text, WordList& words) {
    const size_t start = words.size();
    forEachPiece(text, [&](std::string_view piece) {
        if (!options.splitCommentWords && words.size() > start) {
            std::string& chars = words.chars();
            const size_t before = chars.size();
            chars += ' ';
            if (!appendPiece(options, piece, chars)) chars.resize(before);
        } else if (!appendPiece(options, piece, words.open(words.size() > start))) {
            // Nothing but dropped braces.
            words.popBack();
        }
    });
    return words.size() - start;
}

// Each returns whether it added a word.
bool writeComments(const PGNWriteOptions& options, const std::vector<GameComment>& commentList, WordList& words);
bool writeNags(const PGNWriteOptions& options, const std::vector<uint8_t>& nags, WordList& words);
// The continuation of current, variations included.
void writeMoves(const PGNWriteOptions& options, AnnotatedGame& game, WordList& words, bool forceNumber,
                const BoardLookup* lookup = nullptr);

// A comment as it will stand between its braces: words one blank apart,
// braces replaced.
void writtenForm(const PGNWriteOptions& options, std::string_view text, std::string& form) {
    form.clear();
    forEachPiece(text, [&](std::string_view piece) {
        const size_t before = form.size();
        if (before != 0) form += ' ';
        if (!appendPiece(options, piece, form)) form.resize(before);
    });
}

// The characters of a comment's written form, one by one, without building
// it; for a brace replacement other than NUL, where no word vanishes.
class WrittenChars {
public:
    WrittenChars(std::string_view text, char braceReplacement) : text_(text), brace_(braceReplacement) {}

    // The next character, or -1 at the end.
    int next() {
        if (at_ < text_.size() && isBlank(text_[at_])) {
            while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
            if (at_ < text_.size() && started_) return ' ';
        }
        if (at_ == text_.size()) return -1;
        started_ = true;
        const char c = text_[at_++];
        return static_cast<unsigned char>(c == '{' || c == '}' ? brace_ : c);
    }

private:
    std::string_view text_;
    char brace_;
    size_t at_ = 0;
    bool started_ = false;
};

// Whether two comments are written alike; most differ in their first
// characters, so walking both beats writing both out.
bool sameWrittenForm(const PGNWriteOptions& options, std::string_view a, std::string_view b) {
    if (options.braceReplacement == '\0') {
        thread_local std::string formA, formB;
        writtenForm(options, a, formA);
        writtenForm(options, b, formB);
        return formA == formB;
    }
    WrittenChars first(a, options.braceReplacement), second(b, options.braceReplacement);
    for (;;) {
        const int c = first.next();
        if (c != second.next()) return false;
        if (c < 0) return true;
    }
}

// The texts to write from one place, after the filters of the options; a
// joined text is kept in storage. Comments are written a few million times a
// run, so the lists are kept from call to call.
const std::vector<std::string_view>& commentTexts(const PGNWriteOptions& options,
                                                  const std::vector<GameComment>& commentList,
                                                  std::string& storage) {
    thread_local std::vector<std::string_view> texts;
    texts.clear();
    for (const GameComment& comment : commentList)
        if (comment.kind != LineComment || options.keepLineComments) texts.push_back(comment.text);
    if (texts.size() < 2) return texts;
    if (options.uniqueComments) {
        // Two comments are the same if they are written the same, so that
        // what is written once is written alike the second time.
        size_t kept = 0;
        for (std::string_view text : texts) {
            const auto same = [&](std::string_view earlier) { return sameWrittenForm(options, earlier, text); };
            if (std::any_of(texts.begin(), texts.begin() + kept, same)) continue;
            texts[kept++] = text;
        }
        texts.resize(kept);
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
void addCheckMark(const PGNWriteOptions& options, Board& board, WordList& words, size_t moveWord) {
    if (moveWord != noWord) words.setMark(moveWord, checkMark(board, options.notation));
}

void appendNumber(std::string& text, uint64_t number) {
    char digits[24];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    text.append(digits, result.ptr);
}

// With Black to move the number is written only when forced: after a NAG, a
// comment or a variation, or at the start of a variation.
bool hasMoveNumber(const PGNWriteOptions& options, const Board& board, bool force) {
    return options.moveNumbers && (board.sideToMove == White || force);
}

void appendMoveNumber(std::string& text, const Board& board) {
    appendNumber(text, board.fullmoveNumber);
    text += board.sideToMove == White ? "." : "...";
}

// A move that the writer is about to play gets its check or mate mark once
// it is played (`markPending`), which spares playing it once more just for
// the mark.
void writeOneMove(const PGNWriteOptions& options, Board& board, Move move, bool force, WordList& words,
                  bool& markPending) {
    bool spaceBefore = true;
    if (hasMoveNumber(options, board, force)) {
        std::string& number = words.open(true);
        appendMoveNumber(number, board);
        if (!options.splitMoves) {
            if (!options.compactMoves) number += ' ';
        } else {
            spaceBefore = !options.compactMoves;
        }
        if (options.splitMoves) words.open(spaceBefore);
    } else {
        words.open(true);
    }
    markPending = !move.isNull() && !move.isReverse();
    if (markPending) {
        appendMoveTextWithoutMark(words.chars(), board, move, options.notation);
    } else {
        words.chars() += moveToText(board, move, options.notation);
    }
}

// The move of node with its NAGs and comments; returns whether Black's next
// move needs its number. `moveWord` is the index of the word that still
// awaits its check mark, or none.
bool writeAnnotatedMove(const PGNWriteOptions& options, Board& board, const AnnotatedGameTreeNode& node,
                        bool force, WordList& words, size_t& moveWord) {
    bool markPending = false;
    writeOneMove(options, board, node.move, force, words, markPending);
    moveWord = markPending ? words.size() - 1 : noWord;
    bool nextForce = false;
    if (writeNags(options, node.nags, words)) nextForce = options.moveNumberAfterNag;
    if (writeComments(options, node.commentsAfter, words) && options.moveNumberAfterComment) nextForce = true;
    return nextForce;
}

void writeVariation(const PGNWriteOptions& options, AnnotatedGame& game, AnnotatedGameTreeNode& start,
                    WordList& words) {
    words.add("(", true);
    const size_t opened = words.size();
    writeComments(options, start.commentsBefore, words);
    size_t moveWord = noWord;
    const bool childForce = writeAnnotatedMove(options, game.board, start, true, words, moveWord);
    game.forward(&start);
    addCheckMark(options, game.board, words, moveWord);
    writeMoves(options, game, words, childForce);
    game.back();
    words.add(")", !options.compactVariations);
    if (options.compactVariations && opened < words.size()) words.setSpaceBefore(opened, false);
}

// The alternatives to the first child of node; returns whether any was
// written.
bool writeVariations(const PGNWriteOptions& options, AnnotatedGame& game, const AnnotatedGameTreeNode& node,
                     WordList& words) {
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
// Most words are a few bytes, for which a call of memcpy costs more than
// the copy: up to 16 bytes go as two overlapping fixed-size copies, which
// read and write nothing outside the word.
[[gnu::always_inline]] inline char* copyWord(char* to, std::string_view word) {
    const char* from = word.data();
    const size_t size = word.size();
    if (size > 16) {
        std::memcpy(to, from, size);
    } else if (size >= 8) {
        std::memcpy(to, from, 8);
        std::memcpy(to + size - 8, from + size - 8, 8);
    } else if (size >= 4) {
        std::memcpy(to, from, 4);
        std::memcpy(to + size - 4, from + size - 4, 4);
    } else if (size > 0) {
        to[0] = from[0];
        to[size / 2] = from[size / 2];
        to[size - 1] = from[size - 1];
    }
    return to + size;
}

void breakLines(WordList& words, uint32_t lineWidth, std::string& out) {
    // Written through a pointer into room made beforehand: a game has
    // hundreds of words, and appending each to a string checks its capacity.
    const size_t start = out.size();
    out.resize(start + words.writtenBound() + 1);
    char* const first = out.data() + start;
    char* at = first;
    char* lineStart = first;
    words.forEach([&](std::string_view text, std::string_view mark, bool spaceBefore) {
        const auto column = static_cast<size_t>(at - lineStart);
        const size_t width = text.size() + mark.size();
        const size_t blank = spaceBefore ? 1 : 0;
        if (column != 0 && lineWidth != 0 && column + blank + width > lineWidth) {
            *at++ = '\n';
            lineStart = at;
        } else if (spaceBefore && column != 0) {
            *at++ = ' ';
        }
        at = copyWord(at, text);
        if (!mark.empty()) at = copyWord(at, mark);
    });
    *at++ = '\n';
    out.resize(start + static_cast<size_t>(at - first));
}

bool writeNags(const PGNWriteOptions& options, const std::vector<uint8_t>& nags,
               WordList& words) {
    if (!options.nags || nags.empty()) return false;
    for (uint8_t nag : nags) {
        std::string& text = words.open(true);
        text += '$';
        appendNumber(text, nag);
    }
    return true;
}

// One comment between its braces; false when nothing of it is left.
bool writeComment(const PGNWriteOptions& options, std::string_view text, WordList& words) {
    // Most comments the run adds are one word ("ZMF"): three words at once.
    bool oneWord = !text.empty();
    for (char c : text) oneWord = oneWord && static_cast<unsigned char>(c) > ' ' && c != '{' && c != '}';
    if (oneWord) {
        words.add("{", true);
        words.add(text, !options.compactComments);
        words.add("}", !options.compactComments);
        return true;
    }
    const size_t brace = words.size();
    words.add("{", true);
    if (addCommentWords(options, text, words) == 0) {
        words.popBack();
        return false;
    }
    words.add("}", !options.compactComments);
    words.setSpaceBefore(brace + 1, !options.compactComments);
    return true;
}

bool writeComments(const PGNWriteOptions& options, const std::vector<GameComment>& commentList,
                   WordList& words) {
    if (!options.comments || commentList.empty()) return false;
    // Most places hold one comment, which needs no list.
    if (commentList.size() == 1) {
        const GameComment& comment = commentList.front();
        return (comment.kind != LineComment || options.keepLineComments) &&
               writeComment(options, comment.text, words);
    }
    std::string joined;
    bool wrote = false;
    for (std::string_view text : commentTexts(options, commentList, joined))
        wrote = writeComment(options, text, words) || wrote;
    return wrote;
}

// The main line is followed in a loop rather than by recursion, so that the
// depth of the stack grows with the nesting of variations, not with the
// length of the game.
void writeMoves(const PGNWriteOptions& options, AnnotatedGame& game, WordList& words, bool forceNumber,
                const BoardLookup* lookup) {
    AnnotatedGameTreeNode* const start = game.current;
    AnnotatedGameTreeNode* node = start;
    const bool fromRoot = !node->parentNode;
    if (fromRoot) {
        writeComments(options, node->commentsBefore, words);
        writeComments(options, node->commentsAfter, words);
        writeNags(options, node->nags, words);
    }
    // On the main line the game's own board follows only as far as it must:
    // up to a position whose board the lookup lacks or whose variations are
    // written from it.
    const BoardLookup* const rows = fromRoot ? lookup : nullptr;
    size_t played = 0;
    bool force = forceNumber;
    while (!node->children.empty()) {
        AnnotatedGameTreeNode* first = node->childAnnotated(0);
        const bool edit = first->move.isEdit();
        Board* before = nullptr;
        Board* after = nullptr;
        if (rows && !(options.variations && node->children.size() > 1)) {
            before = (*rows)(*node);
            if (before) after = (*rows)(*first);
        }
        if (!after) {
            while (game.current != node) game.forward(game.current->childAnnotated(0));
            before = &game.board;
        }
        bool nextForce = false;
        size_t moveWord = noWord;
        if (!edit) {
            writeComments(options, first->commentsBefore, words);
            nextForce = writeAnnotatedMove(options, *before, *first, force, words, moveWord);
        }
        const bool wroteVariation = writeVariations(options, game, *node, words);
        if (edit) break;
        if (after) {
            addCheckMark(options, *after, words, moveWord);
        } else {
            game.forward(first);
            addCheckMark(options, game.board, words, moveWord);
            ++played;
        }
        // A move after a variation always carries its number.
        force = nextForce || wroteVariation;
        node = first;
    }
    // From root, the whole game goes back in one rewind.
    if (fromRoot) {
        game.rewind();
    } else {
        for (; played > 0; --played) game.back();
    }
}

}  // namespace

void appendGameToPgn(const PGNWriteOptions& options, AnnotatedGame& game, std::string& out,
                     const BoardLookup* lookup) {
    std::string_view resultTag;
    writeTags(options, game.tags, out, resultTag);
    thread_local WordList words;
    words.clear();
    writeMoves(options, game, words, true, lookup);
    if (options.result) words.add(resultWord(resultTag, game.result), true);
    breakLines(words, options.lineWidth, out);
}

std::string gameToPgn(const PGNWriteOptions& options, AnnotatedGame& game, const BoardLookup* lookup) {
    std::string out;
    appendGameToPgn(options, game, out, lookup);
    return out;
}

}  // namespace tarnfold::PGN
