// golden_runner <zmfi> <case file> <work root>
//
// Runs zmfi once as a case file describes, in a scratch directory of its own,
// and compares exit status, standard output, standard error and written files
// with the case. With ZMFI_GOLDEN_UPDATE=1 it records what zmfi did into the
// case file instead, for a developer to review.
//
// The build defines ZMFI_VERSION_LINE, the line every start prints, made from
// the project version; and ZMFI_GOLDEN_FIXTURES, the folder of shared files.
#include "case_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <thread>
#include <utility>
#include <vector>

extern char** environ;

namespace fs = std::filesystem;
using golden::CaseFile;
using golden::Section;

namespace {

std::string read_file(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) throw std::runtime_error("cannot read " + path.string());
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void write_file(const fs::path& path, std::string_view content) {
    std::ofstream out(path, std::ios::binary);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
}

// Quoted with C escapes, so that bytes, tabs, trailing blanks and a missing
// final newline all show up in a report.
std::string show(std::string_view line) {
    std::string out = "\"";
    for (unsigned char c : line) {
        if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (c == '"' || c == '\\')
            out += {'\\', static_cast<char>(c)};
        else if (c < 0x20 || c >= 0x7f) {
            char hex[5];
            std::snprintf(hex, sizeof hex, "\\x%02x", c);
            out += hex;
        } else
            out += static_cast<char>(c);
    }
    return out + "\"";
}

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> result;
    for (std::size_t pos = 0, next; pos < text.size(); pos = next) {
        auto newline = text.find('\n', pos);
        next = newline == std::string_view::npos ? text.size() : newline + 1;
        result.push_back(text.substr(pos, next - pos));
    }
    return result;
}

// In expected text "{{*}}" stands for any characters within one line: the
// summary's timings differ from run to run.
constexpr std::string_view wildcard = "{{*}}";

// Expected text names the version line by this placeholder, so that a new
// version is one change to the build and none to the cases.
constexpr std::string_view version_placeholder = "{{version}}";
constexpr std::string_view version_line = ZMFI_VERSION_LINE;

std::string replace_all(std::string text, std::string_view from, std::string_view to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

bool lineMatches(std::string_view want, std::string_view got) {
    const std::size_t star = want.find(wildcard);
    if (star == std::string_view::npos) return want == got;
    if (got.substr(0, star) != want.substr(0, star)) return false;
    const std::string_view rest = want.substr(star + wildcard.size());
    for (std::size_t skip = star; skip <= got.size(); ++skip) {
        if (skip > star && got[skip - 1] == '\n') break;
        if (lineMatches(rest, got.substr(skip))) return true;
    }
    return false;
}

bool matches(std::string_view expected, std::string_view actual) {
    if (expected == actual) return true;
    auto want = lines(expected), got = lines(actual);
    if (want.size() != got.size()) return false;
    for (std::size_t k = 0; k < want.size(); ++k)
        if (!lineMatches(want[k], got[k])) return false;
    return true;
}

void compare(std::ostream& report, const std::string& what, std::string_view expected,
             std::string_view actual) {
    if (matches(expected, actual)) return;
    auto want = lines(expected), got = lines(actual);
    std::size_t at = 0;
    while (at < want.size() && at < got.size() && lineMatches(want[at], got[at])) ++at;
    report << what << " differs at line " << at + 1 << '\n';
    for (auto [label, text] : {std::pair{"expected", &want}, std::pair{"actual", &got}}) {
        report << "  " << label << ":\n";
        for (std::size_t k = at >= 2 ? at - 2 : 0; k < std::min(text->size(), at + 3); ++k)
            report << (k == at ? "  >" : "   ") << std::setw(5) << k + 1 << "  " << show((*text)[k]) << '\n';
        if (at >= text->size()) report << "  >" << std::setw(5) << at + 1 << "  (end of text)\n";
    }
}

struct Outcome {
    bool timed_out = false;
    int status = 0;
};

// Inherited settings must not leak into a case: TF_PATH changes what zmfi
// finds, so only a case's own env: lines may set it.
std::vector<std::string> child_environment(const CaseFile& c) {
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e) {
        std::string_view entry = *e;
        auto name = entry.substr(0, entry.find('=') + 1);
        bool replaced = name == "TF_PATH=" || name == "ZMFI_GOLDEN_UPDATE=";
        for (const auto& own : c.env) replaced = replaced || own.starts_with(name);
        if (!replaced) env.emplace_back(entry);
    }
    env.insert(env.end(), c.env.begin(), c.env.end());
    return env;
}

Outcome run(const fs::path& zmfi, const CaseFile& c, const fs::path& scratch, const fs::path& io) {
    // Everything the child needs is prepared here: after fork only
    // async-signal-safe calls are allowed.
    std::vector<std::string> env = child_environment(c);
    std::vector<char*> argv{const_cast<char*>("zmfi")}, envp;
    for (const auto& a : c.args) argv.push_back(const_cast<char*>(a.c_str()));
    for (const auto& e : env) envp.push_back(const_cast<char*>(e.c_str()));
    argv.push_back(nullptr);
    envp.push_back(nullptr);
    std::string stdin_path = "/dev/null", stdout_path = io / "stdout", stderr_path = io / "stderr";
    std::string program = zmfi, directory = scratch;
    if (const Section* in = c.find("stdin")) {
        stdin_path = io / "stdin";
        write_file(stdin_path, in->content);
    }

    // The child reports a failed exec through this pipe; a successful exec
    // closes it.
    int report[2];
    if (pipe2(report, O_CLOEXEC) != 0) throw std::runtime_error("pipe failed");
    pid_t pid = fork();
    if (pid < 0) throw std::runtime_error("fork failed");
    if (pid == 0) {
        setpgid(0, 0);
        int in = open(stdin_path.c_str(), O_RDONLY | O_CLOEXEC);
        int out = open(stdout_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        int err = open(stderr_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (in >= 0 && out >= 0 && err >= 0 && chdir(directory.c_str()) == 0 && dup2(in, 0) == 0 &&
            dup2(out, 1) == 1 && dup2(err, 2) == 2)
            execve(program.c_str(), argv.data(), envp.data());
        int error = errno;
        (void)!write(report[1], &error, sizeof error);
        _exit(127);
    }
    setpgid(pid, pid);
    close(report[1]);
    int exec_error = 0;
    ssize_t got = read(report[0], &exec_error, sizeof exec_error);
    close(report[0]);

    Outcome outcome;
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(c.timeout_seconds);
    for (;;) {
        pid_t done = waitpid(pid, &outcome.status, WNOHANG);
        if (done == pid) break;
        if (done < 0 && errno != EINTR) throw std::runtime_error("waitpid failed");
        if (std::chrono::steady_clock::now() >= deadline) {
            outcome.timed_out = true;
            kill(-pid, SIGKILL);
            kill(pid, SIGKILL);
            waitpid(pid, &outcome.status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    if (got == sizeof exec_error)
        throw std::runtime_error("cannot run " + program + ": " + std::strerror(exec_error));
    return outcome;
}

std::string hash_name(const std::string& text) {
    std::uint32_t h = 2166136261u;
    for (unsigned char c : text) h = (h ^ c) * 16777619u;
    char hex[9];
    std::snprintf(hex, sizeof hex, "%08x", h);
    return hex;
}

int run_case(const fs::path& zmfi, const fs::path& case_path, const fs::path& root) {
    const std::string text = read_file(case_path);
    CaseFile c;
    try {
        c = golden::parse_case(text);
    } catch (const golden::ParseError& e) {
        std::cerr << case_path.string() << ':' << e.line << ": " << e.what() << '\n';
        return 2;
    }
    const std::string name = case_path.stem().string() + '-' + hash_name(case_path.string());
    const fs::path scratch = root / name, io = root / (name + ".io");
    for (const auto& dir : {scratch, io}) {
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    for (auto& s : c.sections) {
        if (s.kind == "stdout" || s.kind == "stderr" || s.kind == "output")
            s.content = replace_all(std::move(s.content), version_placeholder, version_line);
        if (s.kind == "file" || s.kind == "fixture" || s.kind == "generate")
            fs::create_directories((scratch / s.path).parent_path());
        if (s.kind == "file" || s.kind == "generate") {
            write_file(scratch / s.path, s.content);
        } else if (s.kind == "fixture") {
            write_file(scratch / s.path, read_file(fs::path(ZMFI_GOLDEN_FIXTURES) / s.path));
        } else if (s.kind == "dir") {
            fs::create_directories(scratch / s.path);
        }
    }

    const Outcome outcome = run(zmfi, c, scratch, io);
    std::ostringstream report;
    if (outcome.timed_out) {
        report << "zmfi did not finish within " << c.timeout_seconds << " s and was killed\n";
    } else if (WIFSIGNALED(outcome.status)) {
        report << "zmfi died of signal " << WTERMSIG(outcome.status) << " ("
               << strsignal(WTERMSIG(outcome.status)) << ")\n";
    } else {
        const int status = WEXITSTATUS(outcome.status);
        const std::string out = read_file(io / "stdout"), err = read_file(io / "stderr");
        const char* update = std::getenv("ZMFI_GOLDEN_UPDATE");
        const bool updating = update && std::string_view(update) == "1";

        if (status != c.exit_status && !updating) {
            report << "exit status: expected " << c.exit_status << ", got " << status << '\n';
            auto err_lines = lines(err);
            if (!c.find("stderr"))  // the likeliest explanation, shown when not compared anyway
                for (std::size_t k = 0; k < std::min<std::size_t>(err_lines.size(), 5); ++k)
                    report << "  stderr: " << show(err_lines[k]) << '\n';
        }
        // Recorded sections are replaced back to front so that the byte
        // offsets of earlier ones stay valid; the exit value precedes them all.
        std::vector<std::pair<const Section*, std::string>> records;
        for (const auto& s : c.sections) {
            const fs::path path = scratch / s.path;
            const bool written = s.kind == "output" && fs::is_regular_file(path);
            if (s.kind == "output" && !written) report << "output file " << s.path << " was not written\n";
            if (s.kind == "absent" && fs::symlink_status(path).type() != fs::file_type::not_found)
                report << s.path << " exists but should not\n";
            if (s.kind != "stdout" && s.kind != "stderr" && !written) continue;
            const std::string actual = s.kind == "stdout" ? out : s.kind == "stderr" ? err : read_file(path);
            if (updating && !matches(s.content, actual))
                records.emplace_back(&s, replace_all(actual, version_line, version_placeholder));
            else if (!updating)
                compare(report, s.kind == "output" ? "output file " + s.path : s.kind, s.content, actual);
        }
        std::string updated = text;
        for (auto r = records.rbegin(); r != records.rend(); ++r)
            updated.replace(r->first->begin, r->first->end - r->first->begin,
                            golden::render_section(*r->first, r->second));
        if (updating && status != c.exit_status)
            updated.replace(c.exit_begin, c.exit_end - c.exit_begin, std::to_string(status));
        if (updating && updated != text) {
            const fs::path temporary = case_path.string() + ".tmp";
            write_file(temporary, updated);
            fs::rename(temporary, case_path);
            std::cout << "updated " << case_path.string() << '\n';
        }
    }
    if (report.str().empty()) return 0;
    std::cerr << "golden case " << case_path.string() << " failed (scratch " << scratch.string() << ")\n"
              << report.str();
    return 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: golden_runner <zmfi> <case file> <work root>\n";
        return 2;
    }
    try {
        return run_case(fs::absolute(argv[1]).lexically_normal(), fs::absolute(argv[2]).lexically_normal(),
                        fs::absolute(argv[3]).lexically_normal());
    } catch (const std::exception& e) {
        std::cerr << "golden: " << argv[2] << ": " << e.what() << '\n';
        return 2;
    }
}
