#include "driver/output_spool.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "driver/brief_lock.h"
#include "driver/unnamed_file.h"
#include "engine/collate.h"

namespace tarnfold::zmf {

namespace {

// Games without a value go last, whatever the direction.
bool keyLess(const SortKey& a, const SortKey& b) {
    if (!a.hasValue || !b.hasValue) return a.hasValue && !b.hasValue;
    const SortKey& low = a.ascending ? a : b;
    const SortKey& high = a.ascending ? b : a;
    if (std::holds_alternative<int64_t>(low.value))
        return std::get<int64_t>(low.value) < std::get<int64_t>(high.value);
    return collate(icu::UnicodeString::fromUTF8(std::get<std::string>(low.value)),
                   icu::UnicodeString::fromUTF8(std::get<std::string>(high.value))) < 0;
}

// A run file holds records of: key count, each key (has value, ascending,
// kind, then an integer or a length and bytes), then the text's length and
// bytes. It is read back only by the process that wrote it.
class RecordWriter {
public:
    explicit RecordWriter(std::FILE* file) : file_(file) {}
    void bytes(const void* data, std::size_t size) { ok_ = ok_ && std::fwrite(data, 1, size, file_) == size; }
    void number(uint64_t value) { bytes(&value, sizeof value); }
    void text(const std::string& value) {
        number(value.size());
        bytes(value.data(), value.size());
    }
    void game(const OutputGame& game) {
        number(game.sortKeys.size());
        for (const SortKey& key : game.sortKeys) {
            const bool isText = std::holds_alternative<std::string>(key.value);
            number(uint64_t(key.hasValue) | uint64_t(key.ascending) << 1 | uint64_t(isText) << 2);
            if (isText)
                text(std::get<std::string>(key.value));
            else
                number(uint64_t(std::get<int64_t>(key.value)));
        }
        text(game.text);
    }
    bool ok() const { return ok_; }

private:
    std::FILE* file_;
    bool ok_ = true;
};

class RecordReader {
public:
    explicit RecordReader(std::FILE* file) : file_(file) {}
    bool bytes(void* data, std::size_t size) { return std::fread(data, 1, size, file_) == size; }
    bool number(uint64_t& value) { return bytes(&value, sizeof value); }
    bool text(std::string& value) {
        uint64_t size = 0;
        if (!number(size)) return false;
        value.resize(size);
        return bytes(value.data(), size);
    }
    // False at the end of the run, or when it cannot be read.
    bool game(OutputGame& game) {
        uint64_t keys = 0;
        if (!number(keys)) return false;
        game.sortKeys.resize(keys);
        for (SortKey& key : game.sortKeys) {
            uint64_t flags = 0;
            if (!number(flags)) return false;
            key.hasValue = flags & 1;
            key.ascending = flags & 2;
            if (flags & 4) {
                std::string value;
                if (!text(value)) return false;
                key.value = std::move(value);
            } else {
                uint64_t value = 0;
                if (!number(value)) return false;
                key.value = int64_t(value);
            }
        }
        return text(game.text);
    }

private:
    std::FILE* file_;
};

bool copyFile(std::FILE* file, std::ostream& out) {
    if (std::fflush(file) != 0 || std::fseek(file, 0, SEEK_SET) != 0) return false;
    std::vector<char> buffer(std::size_t(1) << 16);
    for (;;) {
        const std::size_t read = std::fread(buffer.data(), 1, buffer.size(), file);
        if (read > 0) out.write(buffer.data(), std::streamsize(read));
        if (read < buffer.size()) return !std::ferror(file);
    }
}

}  // namespace

bool gameLess(const OutputGame& a, const OutputGame& b) {
    const std::size_t common = std::min(a.sortKeys.size(), b.sortKeys.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (keyLess(a.sortKeys[i], b.sortKeys[i])) return true;
        if (keyLess(b.sortKeys[i], a.sortKeys[i])) return false;
    }
    return a.sortKeys.size() < b.sortKeys.size();
}

OutputSpool::OutputSpool() = default;

OutputSpool::~OutputSpool() { reset(false); }

void OutputSpool::reset(bool sorted, const std::string& outputPath) {
    std::lock_guard guard(lock_);
    if (spool_) std::fclose(spool_);
    spool_ = nullptr;
    spoolBesideOutput_ = false;
    outputFolder_.clear();
    if (!outputPath.empty()) {
        const std::size_t slash = outputPath.rfind('/');
        outputFolder_ = slash == std::string::npos ? "." : slash == 0 ? "/" : outputPath.substr(0, slash);
    }
    for (std::FILE* run : runs_) std::fclose(run);
    runs_.clear();
    gathered_.clear();
    gatheredBytes_ = 0;
    early_.clear();
    earlyCount_ = 0;
    nextNumber_ = 1;
    sorted_ = sorted;
    abandoned_ = false;
    failed_ = false;
    pending_.clear();
    writing_.clear();
}

// The spool file; it is written a megabyte at a time (pending_).
std::FILE* OutputSpool::temporaryFile(bool besideOutput) {
    std::FILE* file = nullptr;
    if (besideOutput && !outputFolder_.empty()) file = unnamedFileIn(outputFolder_);
    spoolBesideOutput_ = file != nullptr;
    return file ? file : std::tmpfile();
}

void OutputSpool::appendText(const std::string& text) {
    pending_.append(text);
    pending_.push_back('\n');
}

// Under the lock, with a megabyte of games pending: they are handed to the
// file lock and written after the spool's lock is let go, so that a worker
// settling its game does not wait for the system to take a megabyte. The
// file lock, taken before the spool's is let go, keeps the writes in order.
void OutputSpool::writePendingOutside(std::unique_lock<std::mutex>& guard) {
    std::unique_lock file(fileLock_);
    std::swap(pending_, writing_);
    std::FILE* const spool = spool_;
    guard.unlock();
    writeChunk(spool, writing_);
    writing_.clear();
}

void OutputSpool::writeChunk(std::FILE* file, const std::string& chunk) {
    if (!file || std::fwrite(chunk.data(), 1, chunk.size(), file) != chunk.size()) failed_ = true;
}

// At the end of the run: what is pending, and the file flushed.
bool OutputSpool::writeAllPending() {
    std::lock_guard file(fileLock_);
    writeChunk(spool_, pending_);
    pending_.clear();
    return !failed_ && std::fflush(spool_) == 0;
}

void OutputSpool::openSpool() {
    if (!spool_ && !failed_ && !(spool_ = temporaryFile(true))) failed_ = true;
}

// Under the lock: the game due next, then every early one that follows it.
void OutputSpool::writeInOrder(uint32_t number, const std::string* text) {
    openSpool();
    if (text) appendText(*text);
    nextNumber_ = number + 1;
    while (earlyCount_ > 0) {
        EarlyGame& due = earlySlot(nextNumber_);
        if (!due.settled) break;
        takeFromSlot(due);
        ++nextNumber_;
    }
}

// Writes the slot's game, if it has one, and frees the slot.
void OutputSpool::takeFromSlot(EarlyGame& slot) {
    if (slot.hasText) appendText(slot.text);
    slot.text.clear();
    // Every slot meets the longest games sooner or later: were their room
    // kept, memory would creep up with the number of games read. Games of
    // more than 8 KB (one in a hundred or so) take room of their own.
    if (slot.text.capacity() > (std::size_t(1) << 13)) std::string().swap(slot.text);
    slot.settled = slot.hasText = false;
    --earlyCount_;
}

OutputSpool::EarlyGame& OutputSpool::earlySlot(uint32_t number) {
    const std::size_t ahead = number - nextNumber_;
    if (ahead >= early_.size()) {
        std::size_t size = early_.empty() ? 64 : early_.size();
        while (size <= ahead || size < windowGames * 2) size *= 2;
        std::vector<EarlyGame> grown(size);
        for (std::size_t i = 0; i < early_.size(); ++i) {
            const uint32_t held = nextNumber_ + uint32_t(i);
            grown[held & (size - 1)] = std::move(early_[held & (early_.size() - 1)]);
        }
        early_ = std::move(grown);
    }
    return early_[number & (early_.size() - 1)];
}

void OutputSpool::settle(uint32_t number, const OutputGame* game) {
    auto guard = lockBriefly(lock_);
    if (sorted_) {
        if (!game) return;
        gatheredBytes_ += game->text.size();
        gathered_.push_back(*game);
        if (gatheredBytes_ >= runBytes) spillRun();
        return;
    }
    if (number == nextNumber_) {
        writeInOrder(number, game ? &game->text : nullptr);
        room_.notify_all();
        if (pending_.size() >= pendingBytes) writePendingOutside(guard);
        return;
    }
    EarlyGame& slot = earlySlot(number);
    slot.settled = true;
    slot.hasText = game != nullptr;
    if (game) slot.text.assign(game->text);
    ++earlyCount_;
    // Running too far ahead of a slow game would pile up texts: wait for it.
    room_.wait(guard, [&] { return abandoned_ || earlyCount_ < windowGames || number < nextNumber_; });
}

void OutputSpool::abandon() {
    std::lock_guard guard(lock_);
    abandoned_ = true;
    room_.notify_all();
}

// Under the lock: the gathered games, sorted, into a run file of their own.
void OutputSpool::spillRun() {
    std::stable_sort(gathered_.begin(), gathered_.end(), gameLess);
    std::FILE* run = std::tmpfile();
    if (!run) {
        failed_ = true;
    } else {
        RecordWriter writer(run);
        for (const OutputGame& game : gathered_) writer.game(game);
        if (!writer.ok()) failed_ = true;
        runs_.push_back(run);
    }
    gathered_.clear();
    gathered_.shrink_to_fit();
    gatheredBytes_ = 0;
}

// Every run holds its games in order; the next game out is the least of the
// runs' heads, the earlier run first on a tie, which keeps the input order.
bool OutputSpool::mergeRuns(std::ostream& out, std::string& error) {
    std::vector<RecordReader> readers;
    std::vector<OutputGame> heads(runs_.size());
    std::vector<bool> live(runs_.size());
    for (std::size_t i = 0; i < runs_.size(); ++i) {
        if (std::fflush(runs_[i]) != 0 || std::fseek(runs_[i], 0, SEEK_SET) != 0) {
            error = std::strerror(errno);
            return false;
        }
        readers.emplace_back(runs_[i]);
        live[i] = readers[i].game(heads[i]);
    }
    for (;;) {
        std::size_t least = runs_.size();
        for (std::size_t i = 0; i < runs_.size(); ++i)
            if (live[i] && (least == runs_.size() || gameLess(heads[i], heads[least]))) least = i;
        if (least == runs_.size()) break;
        out << heads[least].text << "\n";
        live[least] = readers[least].game(heads[least]);
    }
    for (std::FILE* run : runs_)
        if (std::ferror(run)) {
            error = "the temporary file could not be read back";
            return false;
        }
    return true;
}

// Numbers never settled leave gaps; what follows them still goes out in order.
void OutputSpool::writeEarlyLeft() {
    if (earlyCount_ > 0) openSpool();
    for (; earlyCount_ > 0; ++nextNumber_) {
        EarlyGame& slot = earlySlot(nextNumber_);
        if (slot.settled) takeFromSlot(slot);
    }
}

bool OutputSpool::becomeFile(const std::string& path) {
    std::lock_guard guard(lock_);
    if (sorted_ || failed_ || !spool_ || !spoolBesideOutput_) return false;
    writeEarlyLeft();
    if (!writeAllPending()) return false;
    if (!replaceFile(fileno(spool_), path)) return false;
    std::fclose(spool_);
    spool_ = nullptr;
    return true;
}

bool OutputSpool::copyTo(std::ostream& out, std::string& error) {
    std::lock_guard guard(lock_);
    if (sorted_) {
        if (runs_.empty()) {
            std::stable_sort(gathered_.begin(), gathered_.end(), gameLess);
            for (const OutputGame& game : gathered_) out << game.text << "\n";
        } else {
            if (!gathered_.empty()) spillRun();
            if (!failed_ && !mergeRuns(out, error)) return false;
        }
    } else {
        writeEarlyLeft();
        if (spool_ && (!writeAllPending() || !copyFile(spool_, out))) failed_ = true;
    }
    if (failed_) {
        if (error.empty()) error = "the temporary file for the games could not be written";
        return false;
    }
    out << std::flush;
    return true;
}

OutputSpool& outputSpool() {
    static OutputSpool spool;
    return spool;
}

}  // namespace tarnfold::zmf
