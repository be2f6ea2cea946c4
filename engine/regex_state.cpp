#include "engine/regex_state.h"

#include <utility>

namespace tarnfold::zmf {

size_t RegexState::idleEntry(const std::shared_ptr<const icu::RegexPattern>& pattern) {
    size_t index = 0;
    while (index < entries_.size() && (index == last_ || entries_[index].pattern != pattern)) ++index;
    if (index < entries_.size()) return index;
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> made(pattern->matcher(status));
    if (U_FAILURE(status) || !made) return none;
    entries_.push_back({pattern, std::move(made), nullptr, Known::Nothing, nullptr});
    return index;
}

void RegexState::resetOnto(Entry& entry, const ZmfString& subject) {
    // The string goes in before the matcher is pointed at it, and the one it
    // read before stays alive until the reset has let go of it.
    ZmfString previous = std::exchange(entry.subject, subject);
    entry.matcher->reset(entry.subject->text());
    entry.known = Known::Nothing;
    entry.matched = nullptr;
}

ZmfString RegexState::search(const std::shared_ptr<const icu::RegexPattern>& pattern, const ZmfString& subject) {
    prepared_ = none;
    if (last_ != none) {
        const Entry& last = entries_[last_];
        if (last.pattern == pattern && last.subject == subject && last.known == Known::Found) {
            noMatchYet = false;
            return last.matched;
        }
    }
    const size_t index = idleEntry(pattern);
    if (index == none) return nullptr;
    Entry& entry = entries_[index];
    if (entry.subject != subject || entry.known == Known::Nothing) {
        resetOnto(entry, subject);
        UErrorCode status = U_ZERO_ERROR;
        const bool found = entry.matcher->find(0, status) && U_SUCCESS(status);
        icu::UnicodeString matched = found ? entry.matcher->group(status) : icu::UnicodeString();
        entry.known = found && U_SUCCESS(status) ? Known::Found : Known::NotFound;
        if (entry.known == Known::Found) entry.matched = makeZmfStringFromUnicode(std::move(matched));
    }
    if (entry.known != Known::Found) return nullptr;
    last_ = index;
    noMatchYet = false;
    return entry.matched;
}

icu::RegexMatcher* RegexState::prepare(const std::shared_ptr<const icu::RegexPattern>& pattern,
                                       const ZmfString& subject) {
    prepared_ = idleEntry(pattern);
    if (prepared_ == none) return nullptr;
    resetOnto(entries_[prepared_], subject);
    return entries_[prepared_].matcher.get();
}

void RegexState::keepLast() {
    if (prepared_ != none) last_ = prepared_;
}

const icu::RegexMatcher* RegexState::lastMatcher() const {
    if (noMatchYet || last_ == none) return nullptr;
    return entries_[last_].matcher.get();
}

}  // namespace tarnfold::zmf
