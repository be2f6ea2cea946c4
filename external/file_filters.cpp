#include "external/file_filters.h"

#include <cerrno>
#include <cstring>

namespace tarnfold::zmf {

namespace {

// "failed to ACTION file 'NAME'MODE while evaluating 'FILTER' filter: REASON"
std::string failure(std::string_view action, const std::string& name, std::string_view mode,
                    std::string_view filter, int code) {
    std::string text = "failed to ";
    text.append(action).append(" file '").append(name).append("'").append(mode);
    text.append(" while evaluating '").append(filter).append("' filter: ").append(std::strerror(code));
    return text;
}

}  // namespace

bool OpenFileTable::write(const std::string& name, std::string_view text, bool noclobber, std::string& error) {
    std::lock_guard hold(lock_);
    auto found = files_.find(name);
    if (found == files_.end()) {
        std::FILE* file = std::fopen(name.c_str(), noclobber ? "ab" : "wb");
        if (!file) {
            error = failure("open", name, " for writing", "writefile", errno);
            return false;
        }
        found = files_.emplace(name, std::unique_ptr<std::FILE, Closer>(file)).first;
    }
    std::FILE* file = found->second.get();
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size()) {
        error = failure("write", name, "", "writefile", errno);
        return false;
    }
    if (std::fflush(file) != 0) {
        error = failure("flush", name, "", "writefile", errno);
        return false;
    }
    return true;
}

std::string fileAccessRefused(const std::string& name, bool writing) {
    return writing ? failure("open", name, " for writing", "writefile", EACCES)
                   : failure("open", name, " for reading", "readfile", EACCES);
}

OpenFileTable& openFileTable() {
    static OpenFileTable table;
    return table;
}

bool readWholeFile(const std::string& name, std::string& text, std::string& error) {
    text.clear();
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name.c_str(), "rb"), &std::fclose);
    if (!file) {
        error = failure("open", name, " for reading", "readfile", errno);
        return false;
    }
    char buffer[65536];
    std::size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) text.append(buffer, got);
    // A directory opens and only fails to read: it is a file that cannot be
    // read all the same.
    if (!std::ferror(file.get())) return true;
    error = failure("open", name, " for reading", "readfile", errno);
    return false;
}

}  // namespace tarnfold::zmf
