#pragma once
// Programs behind pipes that a query talks to: each is started on first use
// and kept running, and every use is one line sent to its standard input and
// one line read back from its standard output. One table serves the whole
// process, so a command line named in two places of a query, or by two
// workers, is one program with one conversation at a time.

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tarnfold::zmf {

struct CommandPipeProgram {
    CommandPipeProgram() = default;
    CommandPipeProgram(const CommandPipeProgram&) = delete;
    CommandPipeProgram& operator=(const CommandPipeProgram&) = delete;
    // Closes both pipes: the program sees the end of its input and is
    // expected to leave. It is neither waited for nor signalled.
    ~CommandPipeProgram();

    bool notStarted = true;  // a program is started at most once
    bool active = false;     // false after a failed start or any broken exchange
    std::vector<std::string> arguments;
    pid_t pid = 0;
    int requestFd = -1;
    int responseFd = -1;
    // Requests written so far: the first waits longer, for the program to
    // get ready.
    std::uint64_t requests = 0;
};

// Milliseconds to wait for a response, 0 for ever: the first for a
// program's first request, the later one for every other. The wait is for
// each read, not for the whole response.
struct PipeTimeouts {
    std::uint32_t first = 1000;
    std::uint32_t later = 1000;
};

class CommandPipeTable {
public:
    // Room for this many programs; the message of the refusal names one less.
    static constexpr std::size_t maxPrograms = 101;
    // A request or a response, its newline included.
    static constexpr std::size_t maxMessage = 4096;

    CommandPipeTable() = default;
    CommandPipeTable(const CommandPipeTable&) = delete;
    CommandPipeTable& operator=(const CommandPipeTable&) = delete;

    // Sends `request` (without its newline) to the program `arguments`,
    // starting it on first use. True with the response, without its newline,
    // in `response`; false with the text of the failure there, after which
    // the program is not spoken to again.
    bool send(const std::vector<std::string>& arguments, std::string_view request, PipeTimeouts timeouts,
              std::string& response);

    std::size_t size();
    // The process id of the program, 0 when it was never started.
    pid_t pidOf(const std::vector<std::string>& arguments);

private:
    std::mutex lock_;
    std::map<std::vector<std::string>, std::unique_ptr<CommandPipeProgram>> programs_;
};

// The table of the process.
CommandPipeTable& commandPipeTable();

// The failure of a program in a run that may not start any, as the system
// would word a refused exec.
std::string programStartRefused(const std::vector<std::string>& arguments);

// "'ARGUMENTS' (pid N)", how messages name a program.
std::string describe(const CommandPipeProgram& program);

}  // namespace tarnfold::zmf
