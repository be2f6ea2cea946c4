#include "external/command_pipe.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>

namespace tarnfold::zmf {

namespace {

std::string joined(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (std::string_view piece : pieces) text.append(piece);
    return text;
}

std::string reason() { return std::strerror(errno); }

void closeDescriptor(int& fd) {
    if (fd < 0) return;
    ::close(fd);
    fd = -1;
}

struct Pipe {
    int readEnd = -1;
    int writeEnd = -1;

    ~Pipe() {
        closeDescriptor(readEnd);
        closeDescriptor(writeEnd);
    }
};

bool openPipe(Pipe& pipe, std::string_view what, std::string& error) {
    int ends[2];
    if (::pipe(ends) != 0) {
        error = joined({"failed to create pipe for ", what, ": ", reason()});
        return false;
    }
    pipe.readEnd = ends[0];
    pipe.writeEnd = ends[1];
    return true;
}

// How far the child closes what it inherited; an absurd answer counts as
// the cap.
int descriptorLimit() {
    constexpr long cap = 65536;
    const long limit = ::sysconf(_SC_OPEN_MAX);
    return int(limit < 1 || limit > cap ? cap : limit);
}

// Between fork and exec only calls that are safe after a fork of a threaded
// process: the argument array and the limit were made before.
[[noreturn]] void runChild(Pipe& input, Pipe& output, Pipe& confirmation, char* const* argv, int limit) {
    ::close(input.writeEnd);
    ::close(output.readEnd);
    ::close(confirmation.readEnd);
    const int report = confirmation.writeEnd;
    if (::dup2(input.readEnd, 0) >= 0 && ::dup2(output.writeEnd, 1) >= 0) {
        // Whatever else the process had open (the other programs' pipes, the
        // query's files) is none of the program's business.
        for (int fd = 3; fd < limit; ++fd)
            if (fd != report) ::close(fd);
        ::fcntl(report, F_SETFD, FD_CLOEXEC);
        // zmfi ignores both, and an ignored signal stays ignored across exec:
        // a program that writes to a closed pipe should die of it, and a
        // shell script must be able to wait for its own children.
        ::signal(SIGPIPE, SIG_DFL);
        ::signal(SIGCHLD, SIG_DFL);
        ::execvp(argv[0], argv);
    }
    // Only reached when the program could not be run: its reason goes back
    // through the confirmation pipe, which a successful exec closes unread.
    const char* text = std::strerror(errno);
    ssize_t written = ::write(report, text, std::strlen(text));
    (void)written;
    ::fsync(report);
    ::_Exit(1);
}

bool start(CommandPipeProgram& program, std::string& error) {
    program.notStarted = false;
    Pipe input, output, confirmation;
    if (!openPipe(input, "child stdin", error) || !openPipe(output, "child stdout", error) ||
        !openPipe(confirmation, "exec confirmation", error))
        return false;
    std::vector<char*> argv;
    for (std::string& argument : program.arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    const int limit = descriptorLimit();
    const pid_t pid = ::fork();
    if (pid < 0) {
        error = joined({"failed to fork: ", reason()});
        return false;
    }
    if (pid == 0) runChild(input, output, confirmation, argv.data(), limit);
    closeDescriptor(input.readEnd);
    closeDescriptor(output.writeEnd);
    closeDescriptor(confirmation.writeEnd);
    char text[100] = {};
    ssize_t got = 0;
    do got = ::read(confirmation.readEnd, text, sizeof text - 1);
    while (got < 0 && errno == EINTR);
    if (got > 0) {
        error = joined({"failed to start program '", program.arguments.front(), "': ", text});
        return false;
    }
    program.pid = pid;
    program.requestFd = input.writeEnd;
    program.responseFd = output.readEnd;
    input.writeEnd = output.readEnd = -1;
    program.active = true;
    return true;
}

enum class Outcome { Response, Multiple, Gone, ReadError, TooLong, Timeout };

// Waits at most `timeoutMs` (0: for ever) for the descriptor to have
// something to read, or to be closed. poll, unlike select, takes descriptor
// numbers beyond FD_SETSIZE, which a query with many open files can reach.
bool readable(int fd, std::uint32_t timeoutMs, bool& failed) {
    const int wait = timeoutMs == 0 ? -1 : int(std::min<std::uint32_t>(timeoutMs, INT_MAX));
    pollfd entry{fd, POLLIN, 0};
    int ready = 0;
    do ready = ::poll(&entry, 1, wait);
    while (ready < 0 && errno == EINTR);
    failed = ready < 0;
    return ready > 0;
}

Outcome receive(const CommandPipeProgram& program, std::uint32_t timeoutMs, std::string& response) {
    char buffer[CommandPipeTable::maxMessage];
    std::size_t received = 0;
    for (;;) {
        bool failed = false;
        if (!readable(program.responseFd, timeoutMs, failed)) return failed ? Outcome::ReadError : Outcome::Timeout;
        const ssize_t got = ::read(program.responseFd, buffer + received, sizeof buffer - received);
        if (got < 0) {
            if (errno == EINTR) continue;
            return Outcome::ReadError;
        }
        if (got == 0) return Outcome::Gone;
        // What came before had no newline, or it would have ended the wait.
        const char* newline = static_cast<const char*>(std::memchr(buffer + received, '\n', std::size_t(got)));
        received += std::size_t(got);
        if (newline && newline != buffer + received - 1) return Outcome::Multiple;
        if (newline) {
            // The response ends at its newline, or at a NUL before it.
            response.assign(buffer, ::strnlen(buffer, received - 1));
            return Outcome::Response;
        }
        if (received == sizeof buffer) return Outcome::TooLong;
    }
}

bool exchange(CommandPipeProgram& program, std::string_view request, PipeTimeouts timeouts,
              std::string& response) {
    if (program.notStarted && !start(program, response)) return false;
    std::string line(request);
    line.push_back('\n');
    const std::string name = describe(program);
    if (!program.active) {
        response = joined({"attempt to communicate with inactive command-pipe program ", name});
        return false;
    }
    if (line.size() > CommandPipeTable::maxMessage) {
        response = joined({"size of request (", std::to_string(line.size()), ") exceeds message size limit (",
                           std::to_string(CommandPipeTable::maxMessage), ")"});
        return false;
    }
    const std::uint32_t timeout = program.requests++ == 0 ? timeouts.first : timeouts.later;
    ssize_t written = 0;
    do written = ::write(program.requestFd, line.data(), line.size());
    while (written < 0 && errno == EINTR);
    if (written != ssize_t(line.size())) {
        program.active = false;
        response = joined({"io error attempting to send request to command-pipe program ", name});
        return false;
    }
    const Outcome outcome = receive(program, timeout, response);
    if (outcome == Outcome::Response) return true;
    program.active = false;
    switch (outcome) {
        case Outcome::Multiple:
            response = joined({"command-pipe program ", name, " sent multiple responses to request"});
            break;
        case Outcome::Gone: response = joined({"command-pipe program ", name, " is no longer responding"}); break;
        case Outcome::ReadError:
            response = joined({"io error attempting to receive response from command-pipe program ", name});
            break;
        case Outcome::TooLong:
            response = joined({"command-pipe program ", name, " response exceeded max length (",
                               std::to_string(CommandPipeTable::maxMessage), ")"});
            break;
        case Outcome::Timeout:
            response = joined({"command-pipe program ", name, " failed to respond within allotted time (",
                               std::to_string(timeout), " milliseconds)"});
            break;
        case Outcome::Response: break;
    }
    return false;
}

}  // namespace

CommandPipeProgram::~CommandPipeProgram() {
    if (pid == 0) return;
    closeDescriptor(requestFd);
    closeDescriptor(responseFd);
}

std::string programStartRefused(const std::vector<std::string>& arguments) {
    return joined({"failed to start program '", arguments.empty() ? std::string_view() : arguments.front(),
                   "': ", std::strerror(EACCES)});
}

std::string describe(const CommandPipeProgram& program) {
    std::string text = "'";
    for (std::size_t i = 0; i < program.arguments.size(); ++i) {
        if (i > 0) text.push_back(' ');
        text.append(program.arguments[i]);
    }
    return text.append("' (pid ").append(std::to_string(program.pid)).append(")");
}

bool CommandPipeTable::send(const std::vector<std::string>& arguments, std::string_view request,
                            PipeTimeouts timeouts, std::string& response) {
    // Held through the whole exchange: a program answers one request at a
    // time, whichever worker asks.
    std::lock_guard hold(lock_);
    if (arguments.empty()) {
        response = joined({"failed to start program '': ", std::strerror(ENOENT)});
        return false;
    }
    auto found = programs_.find(arguments);
    if (found == programs_.end()) {
        if (programs_.size() >= maxPrograms) {
            response = "maximum number of command-pipe programs (100) reached";
            return false;
        }
        auto program = std::make_unique<CommandPipeProgram>();
        program->arguments = arguments;
        found = programs_.emplace(arguments, std::move(program)).first;
    }
    return exchange(*found->second, request, timeouts, response);
}

std::size_t CommandPipeTable::size() {
    std::lock_guard hold(lock_);
    return programs_.size();
}

pid_t CommandPipeTable::pidOf(const std::vector<std::string>& arguments) {
    std::lock_guard hold(lock_);
    auto found = programs_.find(arguments);
    return found == programs_.end() ? 0 : found->second->pid;
}

CommandPipeTable& commandPipeTable() {
    static CommandPipeTable table;
    return table;
}

}  // namespace tarnfold::zmf
