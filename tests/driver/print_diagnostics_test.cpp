#include "driver/print_diagnostics.h"

#include <gtest/gtest.h>

#include <sstream>

#include "driver/command_line.h"

namespace tarnfold::zmf {
namespace {

std::string printed(const std::vector<Message>& messages, const QuerySource& source,
                    std::uint32_t warnLevel) {
    std::ostringstream out;
    printDiagnostics(messages, source, warnLevel, out);
    return out.str();
}

QuerySource plainSource() {
    injectedTextMap.clear();
    QuerySource source;
    source.add("q.zmf", "x y");
    return source;
}

TEST(PrintDiagnostics, NotesFollowTheFateOfTheMessageBeforeThem) {
    QuerySource source = plainSource();
    std::vector<Message> messages = {
        makeMessage(MessageLevel::Info, "remark", 0),  makeMessage(MessageLevel::Note, "remark note", 0),
        makeMessage(MessageLevel::Note, "again", 0),   makeMessage(MessageLevel::Warning, "suspect", 2),
        makeMessage(MessageLevel::Note, "because", 2), makeMessage(MessageLevel::Error, "wrong", 2),
    };
    EXPECT_EQ(printed(messages, source, 2),
              "q.zmf:1:3 warning: suspect\nx y\n  ^\n"
              "q.zmf:1:3 note: because\nx y\n  ^\n"
              "q.zmf:1:3 error: wrong\nx y\n  ^\n");
    EXPECT_EQ(printed(messages, source, 1), "q.zmf:1:3 error: wrong\nx y\n  ^\n");
    std::string all = printed(messages, source, 3);
    EXPECT_EQ(all.substr(0, all.find("warning")),
              "q.zmf:1:1 info: remark\nx y\n^  \n"
              "q.zmf:1:1 note: remark note\nx y\n^  \n"
              "q.zmf:1:1 note: again\nx y\n^  \n"
              "q.zmf:1:3 ");
}

TEST(PrintDiagnostics, MessagesInInjectedTextNameTheOption) {
    injectedTextMap.clear();
    ZMFDriverOptions options;
    std::string error;
    ASSERT_TRUE(parseCommandLine({"--wtm", "--player", "Anna Z", "--flip"}, options, error)) << error;
    const QuerySource& source = options.querySource;
    ASSERT_EQ(source.text(), "wtm player \"Anna Z\" flip{\ntrue}");

    std::vector<Message> messages = {
        makeMessage(MessageLevel::Error, "unknown player", 11, {{4, 18}}),
        makeMessage(MessageLevel::Note, "from the default query", 26),
        makeMessage(MessageLevel::Note, "closing", 30),
    };
    EXPECT_EQ(printed(messages, source, 2),
              "<injected-text>:1:8 error: unknown player\n"
              "wtm player \"Anna Z\" flip{\n"
              "    ~~~~~~~^~~~~~~~       \n"
              "<cmdline-arg 1> note: Text injected for '--player' option:\n"
              "--player 'Anna Z'\n"
              "^\n"
              "<default query>:1:1 note: from the default query\n"
              "true}\n"
              "^    \n"
              "<injected-text>:1:1 note: closing\n"
              "true}\n"
              "    ^\n"
              "<cmdline-arg 3> note: Text injected for '--flip' option:\n"
              "--flip\n"
              "^\n");
}

}  // namespace
}  // namespace tarnfold::zmf
