// libFuzzer target: any byte string as a query gives a tree or a diagnostic;
// and a tree, printed as --parse prints it and read back, is the same tree.
// Seeds: tests/query/parser_fuzz_seeds/.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "query/dump_target.h"
#include "query/parser.h"
#include "query/print_target.h"
#include "query/render_message.h"
#include "tree_shape.h"

namespace {

using namespace tarnfold::zmf;

// The printed header leaves out the input files and a plain matchcount by
// design, so a header's own dump line cannot survive the round trip. Headers
// are compared by the settings they hand on instead, less those two.
std::string withoutHeaderSettings(std::string shape) {
    const std::string name = "ZmfHeader", end = " {Boolean} <???:0:0";
    for (std::size_t at = 0; (at = shape.find(name, at)) != std::string::npos;) {
        at += name.size();
        if (at > name.size() && shape[at - name.size() - 1] != '-' && shape[at - name.size() - 1] != '\n')
            continue;
        const std::size_t close = shape.find(end, at);
        if (close == std::string::npos) break;
        shape.erase(at, close - at);
    }
    return shape;
}

std::string printedSettings(const QueryHeaderSettings& header) {
    auto range = [](const std::optional<HeaderRange>& r) {
        return r ? std::to_string(r->first) + "-" + std::to_string(r->last) : std::string("none");
    };
    return "output " + header.output.value_or("none") + "\nsort matchcount " + range(header.sortMatchCount) +
           "\ngamenumber " + range(header.gameNumber) + "\nresult " +
           (header.result ? std::to_string(*header.result) : "none") + "\nmatchstring " +
           header.matchString.value_or("none") + "\nflags " + std::to_string(header.silent) +
           std::to_string(header.quiet) + std::to_string(header.variations) + "\n";
}

std::string comparable(const ParsedQuery& query) {
    return withoutHeaderSettings(treeShape(*query.root)) + printedSettings(query.header);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Parser parser;
    // Parentheses are elided as in a run, so that those the printer adds for
    // safety do not show as nodes.
    parser.keepParens = false;
    // Instrumented, the parser runs some twenty times slower than built for
    // use: a twentieth of its expression budget keeps any one input's parse,
    // nested transforms re-parsing their bodies included, inside the fuzzer's
    // time limit, as evaluationLimit does for the evaluation.
    parser.expressionBudget = 50000;
    QuerySource source;
    source.add("fuzz.zmf", std::string(reinterpret_cast<const char*>(data), size));
    ParsedQuery query = parser.parseQuery(source);
    for (const Message& message : parser.messages().messages()) (void)renderMessage(parser.source(), message);
    if (query.root == nullptr) {
        if (!parser.errorReported()) std::abort();
        return 0;
    }
    DumpTarget located(&parser.source(), true, true);
    query.root->dump(located, true);
    const std::string original = comparable(query);
    PrintTarget print;
    query.root->print(print);

    QuerySource printed;
    printed.add("printed.zmf", print.text());
    ParsedQuery again = parser.parseQuery(printed);
    if (again.root == nullptr) {
        std::fprintf(stderr, "printed form does not parse:\n%s\n", print.text().c_str());
        for (const Message& message : parser.messages().messages())
            std::fprintf(stderr, "%s\n", renderMessage(parser.source(), message).c_str());
        std::abort();
    }
    const std::string reread = comparable(again);
    if (reread != original) {
        std::fprintf(stderr, "printed form reads as another tree:\n%s\n--- first\n%s--- again\n%s",
                     print.text().c_str(), original.c_str(), reread.c_str());
        std::abort();
    }
    return 0;
}
