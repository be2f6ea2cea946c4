// libFuzzer target: any byte string as a query gives a tree or a
// diagnostic, and a tree prints and dumps.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "query/dump_target.h"
#include "query/parser.h"
#include "query/print_target.h"
#include "query/render_message.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnfold::zmf;
    static Parser parser;
    QuerySource source;
    source.add("fuzz.zmf", std::string(reinterpret_cast<const char*>(data), size));
    ParsedQuery query = parser.parseQuery(source);
    for (const Message& message : parser.messages().messages()) (void)renderMessage(parser.source(), message);
    if (query.root == nullptr) {
        if (!parser.errorReported()) std::abort();
        return 0;
    }
    PrintTarget print;
    query.root->print(print);
    DumpTarget dump(&parser.source(), true, true);
    query.root->dump(dump, true);
    return 0;
}
