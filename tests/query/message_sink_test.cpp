#include "query/message_sink.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarnfold::zmf {
namespace {

// Level, text and location of each kept message, one line each.
std::string listing(const MessageSink& sink) {
    std::string out;
    for (const Message& message : sink.messages()) {
        out += messageLevelWord(message.level);
        out += ' ' + messageText(message) + " @";
        out += message.location ? std::to_string(*message.location) : "-";
        out += " spans=" + std::to_string(message.spans.size()) + "\n";
    }
    return out;
}

const ReportContext kPlain{};

TEST(MessageSink, QuietAfterFirstErrorExceptItsNotes) {
    MessageSink sink;
    EXPECT_TRUE(sink.report(kPlain, 1, MessageLevel::Warning, "w1"));
    EXPECT_FALSE(sink.hasError());
    EXPECT_TRUE(sink.report(kPlain, 2, MessageLevel::Error, "e1", {{2, 4}}));
    EXPECT_TRUE(sink.hasError());
    EXPECT_TRUE(sink.report(kPlain, 3, MessageLevel::Note, "n1"));
    EXPECT_TRUE(sink.report(kPlain, 4, MessageLevel::Note, "n2"));
    EXPECT_FALSE(sink.report(kPlain, 5, MessageLevel::Error, "e2"));
    // This note belongs to the dropped error.
    EXPECT_FALSE(sink.report(kPlain, 6, MessageLevel::Note, "n3"));
    EXPECT_FALSE(sink.report(kPlain, 7, MessageLevel::Info, "i1"));
    // A dropped error brings no instantiation notes either.
    std::vector<FunctionInstantiation> calls = {{"f", 9}};
    EXPECT_FALSE(sink.report({0, false, calls}, 8, MessageLevel::Error, "e3"));
    EXPECT_EQ(listing(sink),
              "warning w1 @1 spans=0\n"
              "error e1 @2 spans=1\n"
              "note n1 @3 spans=0\n"
              "note n2 @4 spans=0\n");

    sink.reset();
    EXPECT_FALSE(sink.hasError());
    EXPECT_EQ(listing(sink), "");
    EXPECT_TRUE(sink.report(kPlain, 1, MessageLevel::Error, "again"));
    EXPECT_TRUE(sink.report(kPlain, 2, MessageLevel::Note, "its note"));
    EXPECT_EQ(listing(sink), "error again @1 spans=0\nnote its note @2 spans=0\n");
}

TEST(MessageSink, LookaheadAndSilencedTransformsNeverSpeak) {
    MessageSink sink;
    ReportContext peeking{1, false, {}};
    ReportContext silenced{0, true, {}};
    EXPECT_FALSE(sink.report(peeking, 1, MessageLevel::Error, "peeked"));
    EXPECT_FALSE(sink.report(silenced, 2, MessageLevel::Error, "transformed"));
    EXPECT_FALSE(sink.hasError());

    EXPECT_TRUE(sink.report(kPlain, 3, MessageLevel::Error, "real"));
    // Dropped before the error rule is reached, so they do not count as
    // dropped since the error: the note after them still belongs to it.
    EXPECT_FALSE(sink.report(peeking, 4, MessageLevel::Warning, "peeked"));
    EXPECT_FALSE(sink.report(silenced, 5, MessageLevel::Note, "transformed"));
    EXPECT_TRUE(sink.report(kPlain, 6, MessageLevel::Note, "follows"));
    EXPECT_EQ(listing(sink), "error real @3 spans=0\nnote follows @6 spans=0\n");
}

TEST(MessageSink, InstantiationNotesInnermostFirst) {
    MessageSink sink;
    std::vector<FunctionInstantiation> calls = {{"outer", 10}, {"inner", 20}, {"unplaced", std::nullopt}};
    EXPECT_TRUE(sink.report({0, false, calls}, 30, MessageLevel::Warning, "odd", {{28, 31}, {40, 41}}));
    EXPECT_TRUE(sink.report({0, false, calls}, 35, MessageLevel::Error, "wrong"));
    EXPECT_EQ(listing(sink),
              "warning odd @30 spans=2\n"
              "note While instantiating function 'unplaced' @- spans=0\n"
              "note While instantiating function 'inner' @20 spans=0\n"
              "note While instantiating function 'outer' @10 spans=0\n"
              "error wrong @35 spans=0\n"
              "note While instantiating function 'unplaced' @- spans=0\n"
              "note While instantiating function 'inner' @20 spans=0\n"
              "note While instantiating function 'outer' @10 spans=0\n");
    // The notes behind the error do not count as dropped messages.
    EXPECT_TRUE(sink.report(kPlain, 36, MessageLevel::Note, "more"));
    EXPECT_EQ(sink.messages().size(), 9u);
}

}  // namespace
}  // namespace tarnfold::zmf
