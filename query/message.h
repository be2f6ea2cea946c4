#pragma once
// The record of one diagnostic about a query. It is plain data: handlers and
// the engine build it, a sink collects it, and rendering happens in one place.

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/unistr.h>

#include "query/query_source.h"

namespace tarnfold::zmf {

enum class MessageLevel : std::uint32_t { Error = 0, Warning = 1, Info = 2, Note = 3 };

// "error", "warning", "info", "note"; "???" for a value outside the enumeration.
const char* messageLevelWord(MessageLevel level);

// A stretch to underline. Both ends are inclusive; a span with either end
// missing underlines nothing.
struct SourceSpan {
    OptionalOffset begin;
    OptionalOffset end;
};

// Copies of a message share one text; the shared_ptr counts are atomic, so a
// message may travel between worker threads.
using SharedText = std::shared_ptr<const icu::UnicodeString>;

struct Message {
    MessageLevel level = MessageLevel::Error;
    SharedText text;
    OptionalOffset location;  // where the caret goes; absent means no source lines
    std::vector<SourceSpan> spans;
};

SharedText makeSharedText(std::string_view utf8);

Message makeMessage(MessageLevel level, std::string_view utf8, OptionalOffset location = {},
                    std::vector<SourceSpan> spans = {});

// The text of the message in UTF-8; empty when the message has no text.
std::string messageText(const Message& message);

// The pieces one after another, for the texts of messages that put a name
// between fixed words. Built by append: GCC 12 at -O3 warns falsely about
// "literal" + std::string.
std::string joinPieces(std::initializer_list<std::string_view> pieces);

}  // namespace tarnfold::zmf
