#pragma once
// Collects the messages of one parse and decides which of them are kept. The
// parser owns one sink and hands it, with each report, the part of its own
// state that bears on the decision.

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "query/message.h"

namespace tarnfold::zmf {

// A user function whose body is being instantiated at a call.
struct FunctionInstantiation {
    std::string name;
    OptionalOffset callSite;
};

struct ReportContext {
    unsigned peekDepth = 0;
    // True when some entry of the transform stack has its reporting switched off.
    bool transformReportingOff = false;
    // Instantiations in progress, outermost first.
    std::span<const FunctionInstantiation> instantiations;
};

class MessageSink {
public:
    // Returns whether the message was kept.
    bool report(const ReportContext& context, OptionalOffset location, MessageLevel level,
                std::string_view text, std::vector<SourceSpan> spans = {});

    // A new parse starts from a clean list.
    void reset();

    const std::vector<Message>& messages() const { return messages_; }
    bool hasError() const { return hasError_; }

    bool goOnAfterErrors() const { return goOnAfterErrors_; }
    void setGoOnAfterErrors(bool goOn) { goOnAfterErrors_ = goOn; }

private:
    bool accepts(const ReportContext& context, MessageLevel level);

    std::vector<Message> messages_;
    bool hasError_ = false;
    bool droppedSinceError_ = false;
    bool goOnAfterErrors_ = false;
};

}  // namespace tarnfold::zmf
