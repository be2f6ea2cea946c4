// Every query of the corpus, printed as text and parsed again, gives the
// same tree: the source form of --parse can be trusted to mean what the
// user wrote.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "query/parser.h"
#include "query/print_target.h"
#include "tree_shape.h"

namespace tarnfold::zmf {
namespace {

namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

TEST(RoundTrip, EveryCorpusQueryReparsesToTheSameTree) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(fs::path(ZMFI_TEST_DATA_DIR) / "queries"))
        if (entry.path().extension() == ".zmf") files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    ASSERT_GE(files.size(), 20u);

    // Parentheses are elided as in a run, so that those the printer adds
    // for safety do not show as nodes.
    Parser parser;
    parser.keepParens = false;
    for (const fs::path& file : files) {
        SCOPED_TRACE(file.filename().string());
        QuerySource source;
        source.add(file.filename().string(), readFile(file));
        ParsedQuery first = parser.parseQuery(source);
        if (!first.root) {
            ADD_FAILURE() << "does not parse: " << messageText(parser.messages().messages().at(0));
            continue;
        }
        std::string original = treeShape(*first.root);
        PrintTarget print;
        first.root->print(print);

        QuerySource printed;
        printed.add("printed", print.text());
        ParsedQuery second = parser.parseQuery(printed);
        if (!second.root) {
            ADD_FAILURE() << "printed form does not parse: " << print.text();
            continue;
        }
        EXPECT_EQ(treeShape(*second.root), original) << print.text();
    }
}

}  // namespace
}  // namespace tarnfold::zmf
