#pragma once

// What the pattern filters leave for the capture filters: the matcher of the
// last match and the string it ran on. A capture reads that match until the
// next one replaces it, across filters and positions, but never one of an
// earlier game.
//
// Matchers are made once per pattern and then reset onto each new string:
// making one allocates, and a pattern is typically tried at every position.
// Each pattern may have two, so that a search that fails, or one made while
// the last match is still being read, leaves that match alone. A pattern
// tried at every position mostly meets the same string (a tag's, a
// literal), and strings never change: a search of the string a matcher
// already searched from its start is answered from that matcher.

#include <memory>
#include <vector>

#include <unicode/regex.h>

#include "query/zmf_string.h"

namespace tarnfold::zmf {

class RegexState {
public:
    // Searches `subject` from its start. A match makes the matcher the last
    // one and gives the matched text; otherwise the result is null, and the
    // last match stands.
    ZmfString search(const std::shared_ptr<const icu::RegexPattern>& pattern, const ZmfString& subject);

    // A matcher of `pattern` reset onto `subject`, to search from its start,
    // and never the last one; null when ICU cannot make it. It stays valid
    // until the next call of prepare or search.
    icu::RegexMatcher* prepare(const std::shared_ptr<const icu::RegexPattern>& pattern,
                               const ZmfString& subject);

    // The matcher that `prepare` gave last becomes the one captures read.
    void keepLast();

    // Set at the start of each game and before each search of the string
    // iterator; cleared by a match, which makes captures readable.
    bool noMatchYet = true;

    // The last match, or null when captures may not read one.
    const icu::RegexMatcher* lastMatcher() const;
    // The string of the last match; only while lastMatcher() is not null.
    const ZmfString& subject() const { return entries_[last_].subject; }

private:
    // What a matcher knows of a search of its string from the start.
    enum class Known { Nothing, Found, NotFound };

    struct Entry {
        // Held so that a pattern outlives its matchers and its address is
        // never reused for another pattern while the entry stands.
        std::shared_ptr<const icu::RegexPattern> pattern;
        std::unique_ptr<icu::RegexMatcher> matcher;
        // ICU reads the string in place: the entry keeps it alive, which
        // also keeps its address from meaning another string.
        ZmfString subject;
        Known known = Known::Nothing;
        ZmfString matched;
    };

    // An entry of the pattern that is not the last, made if need be; none
    // when ICU cannot make a matcher.
    size_t idleEntry(const std::shared_ptr<const icu::RegexPattern>& pattern);
    void resetOnto(Entry& entry, const ZmfString& subject);

    std::vector<Entry> entries_;
    static constexpr size_t none = size_t(-1);
    size_t last_ = none;
    size_t prepared_ = none;
};

}  // namespace tarnfold::zmf
