#pragma once
// Files a query reads and writes while it runs. A file written is opened
// once per run and stays open: the first write of the run replaces what was
// there (unless the query asked not to clobber it), every later one goes on
// behind it, whichever worker makes it.

#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace tarnfold::zmf {

class OpenFileTable {
public:
    OpenFileTable() = default;
    OpenFileTable(const OpenFileTable&) = delete;
    OpenFileTable& operator=(const OpenFileTable&) = delete;

    // Writes `text` to the file `name` and flushes it, under the table's
    // lock so that the writes of two workers never interleave. False with
    // the message in `error` when the file cannot be opened, written or
    // flushed. With `noclobber` a file first met in this run keeps what it
    // held.
    bool write(const std::string& name, std::string_view text, bool noclobber, std::string& error);

private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::mutex lock_;
    std::map<std::string, std::unique_ptr<std::FILE, Closer>> files_;
};

// The table of the process.
OpenFileTable& openFileTable();

// The whole content of the file `name`, read as it stands (no path search).
// False with the message in `error`.
bool readWholeFile(const std::string& name, std::string& text, std::string& error);

// The failure of a file filter in a run that may not touch files at all, as
// the system would word a refused open.
std::string fileAccessRefused(const std::string& name, bool writing);

}  // namespace tarnfold::zmf
