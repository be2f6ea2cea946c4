#include "query/nodes/header_nodes.h"

#include <string>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

namespace {

std::string rangeText(const HeaderRange& range) {
    std::string text = std::to_string(range.first);
    if (range.last != range.first) {
        text.push_back(' ');
        text.append(std::to_string(range.last));
    }
    return text;
}

std::string quoted(std::string_view text) {
    std::string result(1, '"');
    result.append(text);
    result.push_back('"');
    return result;
}

// A name with a blank or a parenthesis reads back only between quotes.
std::string fileName(const std::string& name) {
    if (name.find_first_of(" \t\n\r\v\f)") == std::string::npos) return name;
    return quoted(name);
}

}  // namespace

ZmfHeaderNode::ZmfHeaderNode(OptionalOffset location)
    : ZMFNode(kind, ValueType::Boolean, location) {}

QueryHeaderSettings ZmfHeaderNode::settings() const {
    QueryHeaderSettings settings;
    if (input) settings.input = *input;
    settings.output = output;
    settings.matchCount = matchcount;
    settings.sortMatchCount = sortMatchcount;
    settings.gameNumber = gamenumber;
    if (result) settings.result = static_cast<std::uint32_t>(*result);
    settings.matchString = matchstring;
    settings.silent = silent;
    settings.quiet = quiet;
    settings.variations = variations;
    return settings;
}

// The printed form names only the settings below, in this order; the input
// files and a plain matchcount are not part of it.
void ZmfHeaderNode::print(PrintTarget& target) const {
    target << "zmf(";
    if (output) target << "output " << fileName(*output) << " ";
    if (matchstring) target << "matchstring " << quoted(*matchstring) << " ";
    if (sortMatchcount) target << "sort matchcount " << rangeText(*sortMatchcount) << " ";
    if (gamenumber) target << "gamenumber " << rangeText(*gamenumber) << " ";
    if (result) target << "result " << gameResultText(*result) << " ";
    if (silent) target << "silent ";
    if (variations) target << "variations ";
    if (quiet) target << "quiet ";
    target << ")";
    target.ends = PrintedEnds{};
}

void ZmfHeaderNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("ZmfHeader");
    std::string settings;
    auto add = [&settings](std::string_view item) {
        settings.append(settings.empty() ? " (" : ", ");
        settings.append(item);
    };
    auto addWith = [&add](std::string_view keyword, std::string_view value) {
        std::string item(keyword);
        item.push_back(' ');
        item.append(value);
        add(item);
    };
    if (input)
        for (const std::string& file : *input) addWith("input", file);
    if (output) addWith("output", *output);
    if (matchcount) addWith("matchcount", rangeText(*matchcount));
    if (sortMatchcount) addWith("sort matchcount", rangeText(*sortMatchcount));
    if (gamenumber) addWith("gamenumber", rangeText(*gamenumber));
    if (result) addWith("result", gameResultText(*result));
    if (matchstring) addWith("matchstring", quoted(*matchstring));
    if (silent) add("silent");
    if (quiet) add("quiet");
    if (variations) add("variations");
    if (!settings.empty()) settings.push_back(')');
    name.append(settings);
    dumpNode(*this, target, isLast, name);
}

}  // namespace tarnfold::zmf
