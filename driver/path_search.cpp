#include "driver/path_search.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>

namespace tarnfold::zmf {

std::vector<std::string> queryPathList;

std::vector<std::string> splitPath(std::string_view text, char separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    for (;;) {
        std::size_t at = text.find(separator, start);
        if (at == std::string_view::npos) {
            pieces.emplace_back(text.substr(start));
            return pieces;
        }
        pieces.emplace_back(text.substr(start, at - start));
        start = at + 1;
    }
}

namespace {
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;
}  // namespace

bool fileExists(const std::string& name) { return FileHandle(std::fopen(name.c_str(), "rb")) != nullptr; }

std::string resolveFile(const std::string& name, const std::vector<std::string>& pathList) {
    if (!name.empty() && name.front() == '/') return name;
    if (fileExists(name)) return name;
    for (const std::string& directory : pathList) {
        std::string candidate = directory + "/" + name;
        if (fileExists(candidate)) return candidate;
    }
    return name;
}

std::string readQueryFile(const std::string& name) {
    std::string resolved = resolveFile(name, queryPathList);
    FileHandle file(std::fopen(resolved.c_str(), "rb"));
    auto fail = [&resolved] {
        std::cout << "Failed to open ZMF file '" << resolved << "': " << std::strerror(errno) << "\n";
        return std::string();
    };
    if (!file) return fail();
    std::string text;
    char buffer[1 << 16];
    std::size_t count;
    while ((count = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) text.append(buffer, count);
    // A directory opens on Linux and fails only when read.
    if (std::ferror(file.get())) return fail();
    return text;
}

std::string fileStem(std::string_view name) {
    std::size_t slash = name.rfind('/');
    std::string_view last = slash == std::string_view::npos ? name : name.substr(slash + 1);
    std::size_t dot = last.rfind('.');
    return std::string(dot == std::string_view::npos ? last : last.substr(0, dot));
}

}  // namespace tarnfold::zmf
