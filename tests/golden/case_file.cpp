#include "case_file.h"

#include <charconv>
#include <filesystem>

namespace golden {
namespace {

constexpr auto npos = std::string_view::npos;

bool is_blank(char c) { return c == ' ' || c == '\t'; }

std::string_view trim_end(std::string_view s) {
    while (!s.empty() && is_blank(s.back())) s.remove_suffix(1);
    return s;
}

// Backslashes followed by "--- ": such content lines are written with one
// extra backslash, so that a line reading "\--- " itself stays expressible.
bool needs_escape(std::string_view line) {
    auto n = line.find_first_not_of('\\');
    return n != npos && line.substr(n).starts_with("--- ");
}

// The scratch directory is wiped before every run, so nothing a case names
// may point outside it.
void check_path(int line, const std::string& path) {
    if (path.empty() || path.front() == '/') throw ParseError(line, "path must be relative: '" + path + "'");
    for (const auto& part : std::filesystem::path(path))
        if (part == "..") throw ParseError(line, "path must not contain '..': '" + path + "'");
}

// The other kinds only name a path.
bool takes_content(std::string_view kind) { return kind != "dir" && kind != "absent" && kind != "fixture"; }

int parse_number(int line, std::string_view value, int low, int high) {
    int n = 0;
    auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), n);
    if (error != std::errc() || end != value.data() + value.size() || n < low || n > high)
        throw ParseError(line, "expected a number from " + std::to_string(low) + " to " +
                                   std::to_string(high) + ", got '" + std::string(value) + "'");
    return n;
}

}  // namespace

const Section* CaseFile::find(std::string_view kind) const {
    for (const auto& s : sections)
        if (s.kind == kind) return &s;
    return nullptr;
}

std::vector<std::string> split_words(std::string_view text) {
    std::vector<std::string> words;
    std::size_t i = 0;
    auto escape = [&](std::string& out) {  // text[i] is the backslash
        if (++i == text.size()) throw std::invalid_argument("backslash at end of line");
        char c = text[i++];
        if (c == '\\' || c == '"' || c == '\'')
            out += c;
        else if (c == 'n')
            out += '\n';
        else if (c == 't')
            out += '\t';
        else if (unsigned char byte = 0;
                 c == 'x' && i + 2 <= text.size() &&
                 std::from_chars(&text[i], &text[i] + 2, byte, 16).ptr == &text[i] + 2) {
            out += static_cast<char>(byte);
            i += 2;
        } else
            throw std::invalid_argument(std::string("bad escape \\") + c);
    };
    for (;;) {
        while (i < text.size() && is_blank(text[i])) ++i;
        if (i == text.size()) return words;
        std::string word;
        while (i < text.size() && !is_blank(text[i])) {
            if (text[i] == '\'') {
                auto close = text.find('\'', i + 1);
                if (close == npos) throw std::invalid_argument("unterminated ' quote");
                word.append(text.substr(i + 1, close - i - 1));
                i = close + 1;
            } else if (text[i] == '"') {
                for (++i;;) {
                    if (i == text.size()) throw std::invalid_argument("unterminated \" quote");
                    if (text[i] == '"') break;
                    if (text[i] == '\\')
                        escape(word);
                    else
                        word += text[i++];
                }
                ++i;
            } else if (text[i] == '\\') {
                escape(word);
            } else {
                word += text[i++];
            }
        }
        words.push_back(std::move(word));
    }
}

namespace {

// Each line of a generate section is a count and one quoted word; the file
// is every word repeated its count of times, in order.
std::string generate_content(int marker_line, std::string_view recipe) {
    std::string out;
    int line = marker_line;
    for (std::size_t pos = 0, next; pos < recipe.size(); pos = next) {
        ++line;
        auto newline = recipe.find('\n', pos);
        next = newline == npos ? recipe.size() : newline + 1;
        auto body = recipe.substr(pos, (newline == npos ? recipe.size() : newline) - pos);
        if (trim_end(body).empty()) continue;
        std::vector<std::string> words;
        try {
            words = split_words(body);
        } catch (const std::invalid_argument& e) {
            throw ParseError(line, e.what());
        }
        if (words.size() != 2) throw ParseError(line, "expected COUNT \"TEXT\"");
        const int count = parse_number(line, words[0], 0, 10'000'000);
        if (out.size() + std::size_t(count) * words[1].size() > (64u << 20))
            throw ParseError(line, "generated file larger than 64 MB");
        for (int i = 0; i < count; ++i) out += words[1];
    }
    return out;
}

Section parse_marker(std::string_view body, int line, bool& noeol) {
    std::vector<std::string> words;
    try {
        words = split_words(body.substr(4));
    } catch (const std::invalid_argument& e) {
        throw ParseError(line, e.what());
    }
    Section s;
    s.line = line;
    s.head = std::string(body);
    if (!words.empty()) s.kind = words[0];
    std::size_t arity;
    if (s.kind == "stdin" || s.kind == "stdout" || s.kind == "stderr")
        arity = 1;
    else if (s.kind == "file" || s.kind == "dir" || s.kind == "output" || s.kind == "absent" ||
             s.kind == "fixture" || s.kind == "generate")
        arity = 2;
    else
        throw ParseError(line, "unknown section '" + s.kind + "'");

    auto trimmed = trim_end(body);
    noeol = takes_content(s.kind) && words.size() == arity + 1 && words.back() == "noeol" &&
            trimmed.size() > 6 && is_blank(trimmed[trimmed.size() - 6]) && trimmed.ends_with("noeol");
    if (noeol) {
        words.pop_back();
        s.head = std::string(trim_end(trimmed.substr(0, trimmed.size() - 5)));
    }
    if (words.size() != arity)
        throw ParseError(
            line, arity == 1 ? "'" + s.kind + "' takes no path" : "'" + s.kind + "' takes exactly one path");
    if (arity == 2) {
        s.path = words[1];
        check_path(line, s.path);
    }
    return s;
}

}  // namespace

CaseFile parse_case(std::string_view text) {
    CaseFile c;
    bool have_args = false, have_exit = false, noeol = false;
    int line = 0, header_end = 0;

    auto close_section = [&](std::size_t end) {
        if (c.sections.empty()) return;
        Section& s = c.sections.back();
        s.end = end;
        if (noeol && s.content.ends_with('\n')) s.content.pop_back();
        if (s.kind == "generate") s.content = generate_content(s.line, s.content);
        if (!takes_content(s.kind) && !s.content.empty())
            throw ParseError(s.line + 1, "'" + s.kind + "' section takes no content");
    };

    for (std::size_t pos = 0, next; pos < text.size(); pos = next) {
        ++line;
        auto newline = text.find('\n', pos);
        next = newline == npos ? text.size() : newline + 1;
        auto full = text.substr(pos, next - pos);
        auto body = full.substr(0, newline == npos ? full.size() : full.size() - 1);

        if (body.starts_with("--- ")) {
            close_section(pos);
            if (c.sections.empty()) header_end = line;
            Section s = parse_marker(body, line, noeol);
            if (s.path.empty() && c.find(s.kind)) throw ParseError(line, "second '" + s.kind + "' section");
            s.begin = pos;
            c.sections.push_back(std::move(s));
        } else if (!c.sections.empty()) {
            if (full.starts_with('\\') && needs_escape(full)) full.remove_prefix(1);
            c.sections.back().content.append(full);
        } else {
            auto start = body.find_first_not_of(" \t");
            if (start == npos || body[start] == '#') continue;
            auto colon = body.find(':');
            auto name = colon == npos ? body : body.substr(0, colon);
            auto value_at = colon == npos ? body.size() : body.find_first_not_of(" \t", colon + 1);
            if (value_at == npos) value_at = body.size();
            auto value = body.substr(value_at);
            if (name == "args") {
                if (have_args) throw ParseError(line, "second 'args:' directive");
                have_args = true;
                try {
                    c.args = split_words(value);
                } catch (const std::invalid_argument& e) {
                    throw ParseError(line, e.what());
                }
            } else if (name == "env") {
                auto eq = value.find('=');
                if (eq == 0 || eq == npos) throw ParseError(line, "expected env: NAME=VALUE");
                std::erase_if(c.env,
                              [&](const std::string& e) { return e.starts_with(value.substr(0, eq + 1)); });
                c.env.emplace_back(value);
            } else if (name == "exit") {
                if (have_exit) throw ParseError(line, "second 'exit:' directive");
                have_exit = true;
                auto number = trim_end(value);
                c.exit_status = parse_number(line, number, 0, 255);
                c.exit_begin = pos + value_at;
                c.exit_end = c.exit_begin + number.size();
            } else if (name == "timeout") {
                c.timeout_seconds = parse_number(line, trim_end(value), 1, 3600);
            } else {
                throw ParseError(line, "unknown directive '" + std::string(body) + "'");
            }
        }
    }
    close_section(text.size());
    if (header_end == 0) header_end = line + 1;
    if (!have_args) throw ParseError(header_end, "missing 'args:' directive");
    if (!have_exit) throw ParseError(header_end, "missing 'exit:' directive");
    if (!c.find("stdout")) throw ParseError(line + 1, "missing '--- stdout' section");
    return c;
}

std::string render_section(const Section& section, std::string_view content) {
    bool noeol = !content.empty() && !content.ends_with('\n');
    std::string out = section.head + (noeol ? " noeol\n" : "\n");
    for (std::size_t pos = 0, next; pos < content.size(); pos = next) {
        auto newline = content.find('\n', pos);
        next = newline == npos ? content.size() : newline + 1;
        auto line = content.substr(pos, next - pos);
        if (needs_escape(line)) out += '\\';
        out.append(line);
    }
    if (noeol) out += '\n';
    return out;
}

}  // namespace golden
