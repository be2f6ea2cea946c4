#include "query/message.h"

#include <utility>

namespace tarnfold::zmf {

const char* messageLevelWord(MessageLevel level) {
    switch (level) {
        case MessageLevel::Error: return "error";
        case MessageLevel::Warning: return "warning";
        case MessageLevel::Info: return "info";
        case MessageLevel::Note: return "note";
    }
    return "???";
}

SharedText makeSharedText(std::string_view utf8) {
    return std::make_shared<const icu::UnicodeString>(
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size()))));
}

Message makeMessage(MessageLevel level, std::string_view utf8, OptionalOffset location,
                    std::vector<SourceSpan> spans) {
    return Message{level, makeSharedText(utf8), location, std::move(spans)};
}

std::string messageText(const Message& message) {
    std::string utf8;
    if (message.text) message.text->toUTF8String(utf8);
    return utf8;
}

std::string joinPieces(std::initializer_list<std::string_view> pieces) {
    std::size_t size = 0;
    for (std::string_view piece : pieces) size += piece.size();
    std::string text;
    text.reserve(size);
    for (std::string_view piece : pieces) text.append(piece);
    return text;
}

}  // namespace tarnfold::zmf
