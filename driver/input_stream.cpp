#include "driver/input_stream.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <vector>

#ifdef ZMFI_HAVE_LIBARCHIVE
#include <archive.h>
#include <archive_entry.h>
#endif

namespace tarnfold::zmf {

namespace {

#ifndef ZMFI_HAVE_LIBARCHIVE
constexpr std::string_view missingLibrary =
    "zmfi was built without libarchive, which reads compressed input (sudo apt-get install libarchive-dev, "
    "then build again)";
#endif

// The first bytes of the compressed forms that are told apart by content.
bool looksCompressed(const std::array<unsigned char, 6>& head, std::size_t size) {
    auto starts = [&](std::initializer_list<unsigned char> magic) {
        if (magic.size() > size) return false;
        std::size_t i = 0;
        for (unsigned char byte : magic)
            if (head[i++] != byte) return false;
        return true;
    };
    return starts({0x1f, 0x8b}) ||                          // gzip
           starts({'B', 'Z', 'h'}) ||                        // bzip2
           starts({0xfd, '7', 'z', 'X', 'Z', 0x00}) ||       // xz
           starts({0x28, 0xb5, 0x2f, 0xfd}) ||               // zstd
           starts({'P', 'K', 0x03, 0x04}) || starts({'P', 'K', 0x05, 0x06});  // zip, empty zip
}

// Read 64 KB at a time: with workers the reads happen under the lock they
// share, and the default 8 KB made a system call of every few games, while
// reads much longer than this outlast a waiting worker's spin and send it to
// sleep.
class PlainFile : public InputSource {
public:
    explicit PlainFile(const std::string& path) : buffer_(std::size_t(1) << 16) {
        file_.rdbuf()->pubsetbuf(buffer_.data(), std::streamsize(buffer_.size()));
        file_.open(path, std::ios::binary);
    }
    bool isOpen() const { return file_.is_open(); }
    std::istream& stream() override { return file_; }
    std::string error() const override { return file_.bad() ? std::string(std::strerror(EIO)) : std::string(); }

private:
    std::vector<char> buffer_;
    std::ifstream file_;
};

#ifndef ZMFI_HAVE_LIBARCHIVE
class StandardInput : public InputSource {
public:
    std::istream& stream() override { return std::cin; }
    std::string error() const override { return std::cin.bad() ? std::string(std::strerror(EIO)) : std::string(); }
};
#endif

#ifdef ZMFI_HAVE_LIBARCHIVE

// The data of every entry of an archive, one after the other, with a line
// end between entries so that a game never runs into the next file's first.
class ArchiveBuffer : public std::streambuf {
public:
    ArchiveBuffer() : archive_(archive_read_new()), buffer_(std::size_t(1) << 16) {
        archive_read_support_filter_all(archive_);
        archive_read_support_format_zip(archive_);
        archive_read_support_format_tar(archive_);
        archive_read_support_format_empty(archive_);
        // Anything else is one stream of data, compressed or not.
        archive_read_support_format_raw(archive_);
    }
    ~ArchiveBuffer() override { archive_read_free(archive_); }
    ArchiveBuffer(const ArchiveBuffer&) = delete;
    ArchiveBuffer& operator=(const ArchiveBuffer&) = delete;

    bool openFile(const std::string& path) {
        return check(archive_read_open_filename(archive_, path.c_str(), buffer_.size()));
    }
    bool openStandardInput() { return check(archive_read_open_fd(archive_, 0, buffer_.size())); }
    const std::string& error() const { return error_; }

protected:
    int_type underflow() override {
        if (gptr() < egptr()) return traits_type::to_int_type(*gptr());
        while (error_.empty() && !finished_) {
            if (!inEntry_) {
                archive_entry* entry = nullptr;
                const int status = archive_read_next_header(archive_, &entry);
                if (status == ARCHIVE_EOF) {
                    // Readers may ask again after the end; the archive must not be.
                    finished_ = true;
                    return traits_type::eof();
                }
                if (!check(status)) return traits_type::eof();
                inEntry_ = true;
                if (entries_++ > 0) {
                    buffer_[0] = '\n';
                    setg(buffer_.data(), buffer_.data(), buffer_.data() + 1);
                    return traits_type::to_int_type(buffer_[0]);
                }
            }
            const la_ssize_t read = archive_read_data(archive_, buffer_.data(), buffer_.size());
            if (read > 0) {
                setg(buffer_.data(), buffer_.data(), buffer_.data() + read);
                return traits_type::to_int_type(buffer_[0]);
            }
            if (read == 0)
                inEntry_ = false;
            else
                check(int(read));
        }
        return traits_type::eof();
    }

private:
    bool check(int status) {
        if (status >= ARCHIVE_WARN) return true;
        const char* text = archive_error_string(archive_);
        error_ = text ? text : "damaged compressed data";
        return false;
    }

    archive* archive_;
    std::vector<char> buffer_;
    std::string error_;
    bool inEntry_ = false;
    bool finished_ = false;
    std::size_t entries_ = 0;
};

class ArchiveInput : public InputSource {
public:
    ArchiveInput() : stream_(&buffer_) {}
    ArchiveBuffer& buffer() { return buffer_; }
    std::istream& stream() override { return stream_; }
    std::string error() const override { return buffer_.error(); }

private:
    ArchiveBuffer buffer_;
    std::istream stream_;
};

#endif

}  // namespace

std::unique_ptr<InputSource> openInput(const std::string& path, std::string& error) {
    if (path == "stdin") {
#ifdef ZMFI_HAVE_LIBARCHIVE
        auto input = std::make_unique<ArchiveInput>();
        if (!input->buffer().openStandardInput()) {
            error = input->error();
            return nullptr;
        }
        return input;
#else
        return std::make_unique<StandardInput>();
#endif
    }
    // A directory opens as a stream on this platform and then reads as an
    // empty file; say what it is instead.
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        error = std::strerror(EISDIR);
        return nullptr;
    }
    std::array<unsigned char, 6> head{};
    std::size_t headSize = 0;
    {
        std::ifstream probe(path, std::ios::binary);
        if (!probe.is_open()) {
            error = std::strerror(errno);
            return nullptr;
        }
        probe.read(reinterpret_cast<char*>(head.data()), std::streamsize(head.size()));
        headSize = std::size_t(probe.gcount());
    }
    if (looksCompressed(head, headSize)) {
#ifdef ZMFI_HAVE_LIBARCHIVE
        auto input = std::make_unique<ArchiveInput>();
        if (!input->buffer().openFile(path)) {
            error = input->error();
            return nullptr;
        }
        return input;
#else
        error = std::string(missingLibrary);
        return nullptr;
#endif
    }
    auto input = std::make_unique<PlainFile>(path);
    if (!input->isOpen()) {
        error = std::strerror(errno);
        return nullptr;
    }
    return input;
}

}  // namespace tarnfold::zmf
