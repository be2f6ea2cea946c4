#include "driver/unnamed_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tarnfold::zmf {

std::FILE* unnamedFileIn(const std::string& folder) {
#ifdef O_TMPFILE
    const int fd = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    std::FILE* file = ::fdopen(fd, "w+");
    if (!file) ::close(fd);
    return file;
#else
    (void)folder;
    return nullptr;
#endif
}

namespace {

// What is at path may be replaced by a new file without anyone noticing a
// difference from writing it over: nothing, or a plain file of ours, writable,
// with one name. Sets mode to the mode the new file should have, or leaves it.
bool replaceable(const std::string& path, bool& exists, mode_t& mode) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        exists = false;
        return errno == ENOENT;
    }
    exists = true;
    mode = status.st_mode & 07777;
    return S_ISREG(status.st_mode) && status.st_nlink == 1 && status.st_uid == ::geteuid() &&
           ::access(path.c_str(), W_OK) == 0;
}

}  // namespace

bool replaceFile(int fd, const std::string& path) {
    bool exists = false;
    mode_t mode = 0;
    if (!replaceable(path, exists, mode)) return false;
    if (exists && ::fchmod(fd, mode) != 0) return false;
    // An unnamed file gets a name through its entry under /proc, which needs
    // no privilege (linking the descriptor itself does). The name is then
    // moved over the output in one step.
    const std::string self = "/proc/self/fd/" + std::to_string(fd);
    const std::string temporary = path + ".zmfi-" + std::to_string(::getpid());
    if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, temporary.c_str(), AT_SYMLINK_FOLLOW) != 0) return false;
    if (::rename(temporary.c_str(), path.c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    return true;
}

}  // namespace tarnfold::zmf
