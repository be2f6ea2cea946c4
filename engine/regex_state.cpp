#include "engine/regex_state.h"

#include <utility>

namespace tarnfold::zmf {

icu::RegexMatcher* RegexState::prepare(const std::shared_ptr<const icu::RegexPattern>& pattern,
                                       const ZmfString& subject) {
    prepared_ = none;
    size_t index = 0;
    while (index < entries_.size() && (index == last_ || entries_[index].pattern != pattern)) ++index;
    if (index == entries_.size()) {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<icu::RegexMatcher> made(pattern->matcher(status));
        if (U_FAILURE(status) || !made) return nullptr;
        entries_.push_back({pattern, std::move(made), nullptr});
    }
    Entry& entry = entries_[index];
    // The string goes in before the matcher is pointed at it, and the one it
    // read before stays alive until the reset has let go of it.
    ZmfString previous = std::exchange(entry.subject, subject);
    entry.matcher->reset(entry.subject->text());
    prepared_ = index;
    return entry.matcher.get();
}

void RegexState::keepLast() {
    if (prepared_ != none) last_ = prepared_;
}

const icu::RegexMatcher* RegexState::lastMatcher() const {
    if (noMatchYet || last_ == none) return nullptr;
    return entries_[last_].matcher.get();
}

}  // namespace tarnfold::zmf
