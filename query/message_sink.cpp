#include "query/message_sink.h"

#include <utility>

namespace tarnfold::zmf {

bool MessageSink::accepts(const ReportContext& context, MessageLevel level) {
    // A lookahead never speaks.
    if (context.peekDepth > 0) return false;
    // Transformed copies of a filter are parsed again from the same text; only
    // the first pass reports, or every message would come out once per copy.
    if (context.transformReportingOff) return false;
    // After the first error the parse goes quiet, except for the notes that
    // directly follow that error. Once anything was dropped, a later note
    // would belong to the dropped message, so it goes too.
    if (hasError_ && !goOnAfterErrors_ && (level != MessageLevel::Note || droppedSinceError_)) {
        droppedSinceError_ = true;
        return false;
    }
    return true;
}

bool MessageSink::report(const ReportContext& context, OptionalOffset location, MessageLevel level,
                         std::string_view text, std::vector<SourceSpan> spans) {
    if (!accepts(context, level)) return false;

    messages_.push_back(makeMessage(level, text, location, std::move(spans)));
    if (level == MessageLevel::Error) {
        hasError_ = true;
        droppedSinceError_ = false;
    }
    for (auto it = context.instantiations.rbegin(); it != context.instantiations.rend(); ++it)
        messages_.push_back(
            makeMessage(MessageLevel::Note, "While instantiating function '" + it->name + "'", it->callSite));
    return true;
}

void MessageSink::reset() {
    messages_.clear();
    hasError_ = false;
    droppedSinceError_ = false;
}

}  // namespace tarnfold::zmf
