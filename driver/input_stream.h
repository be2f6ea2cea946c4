#pragma once
// The input PGN as a stream, whatever it comes in: a plain file, a file
// compressed with gzip, bzip2, xz or zstd, a zip archive (its entries read
// one after the other), or standard input holding any of these. The kind is
// told by the content, not by the name. Compressed input is read through
// libarchive; a build without it reads plain text only and says how to get
// the rest.

#include <istream>
#include <memory>
#include <string>

namespace tarnfold::zmf {

class InputSource {
public:
    virtual ~InputSource() = default;
    virtual std::istream& stream() = 0;
    // Empty while the input reads well; after a read failure (a truncated
    // or damaged archive) what went wrong. The stream then ends early.
    virtual std::string error() const = 0;
};

// Opens `path` ("stdin" for standard input). Null when it cannot be opened,
// with the reason in `error`.
std::unique_ptr<InputSource> openInput(const std::string& path, std::string& error);

}  // namespace tarnfold::zmf
