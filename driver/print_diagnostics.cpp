#include "driver/print_diagnostics.h"

#include "driver/options.h"
#include "query/render_message.h"

namespace tarnfold::zmf {

bool isMessageShown(MessageLevel level, std::uint32_t warnLevel) {
    switch (level) {
        case MessageLevel::Warning: return warnLevel >= 2;
        case MessageLevel::Info: return warnLevel >= 3;
        default: return true;
    }
}

namespace {

void printInjectionNote(const Message& message, const QuerySource& source, std::ostream& out) {
    if (!message.location || source.empty()) return;
    const SourceEntry* entry = source.entryAt(*message.location);
    auto found = injectedTextMap.find(entry->ordinal);
    if (found == injectedTextMap.end()) return;
    const InjectedText& injected = found->second;
    out << "<cmdline-arg " << injected.argumentIndex << "> note: Text injected for '" << injected.option
        << "' option:\n"
        << injected.option;
    for (const std::string& argument : injected.arguments) out << " '" << argument << "'";
    out << "\n^\n";
}

}  // namespace

void printDiagnostics(const std::vector<Message>& messages, const QuerySource& source,
                      std::uint32_t warnLevel, std::ostream& out) {
    // A note belongs to the message before it and shares its fate.
    bool lastShown = false;
    for (const Message& message : messages) {
        bool shown =
            message.level == MessageLevel::Note ? lastShown : isMessageShown(message.level, warnLevel);
        if (message.level != MessageLevel::Note) lastShown = shown;
        if (!shown) continue;
        out << renderMessage(source, message) << "\n";
        printInjectionNote(message, source, out);
    }
}

}  // namespace tarnfold::zmf
