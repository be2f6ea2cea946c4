#pragma once
// The run-time value of the String type. A string is built once and never
// changed; copies of a value share one instance, so concatenation or slice
// assignment make a new one. Lengths and offsets are in code points, which
// is what a query counts, while ICU works in UTF-16 code units: the indices
// of the surrogate pairs translate between the two.

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/unistr.h>

namespace tarnfold::zmf {

class ZmfStringImpl {
public:
    explicit ZmfStringImpl(icu::UnicodeString text);

    const icu::UnicodeString& text() const { return text_; }

    // Code points, not code units.
    std::int64_t length() const { return text_.length() - static_cast<std::int64_t>(lowSurrogates_.size()); }

    // The code unit at which code point `codePoint` begins; offsets below 0
    // or beyond the length are clamped to the string's ends.
    std::int32_t codeUnitOffset(std::int64_t codePoint) const;

    // The other way: the code points before code unit `codeUnit`, which ICU
    // gives for a match or a search. The low half of a pair gives the pair's
    // own offset; offsets outside the string are clamped to its ends.
    std::int64_t codePointOffset(std::int32_t codeUnit) const;

    // Ascending indices of the low halves of the surrogate pairs.
    const std::vector<std::uint32_t>& lowSurrogates() const { return lowSurrogates_; }

    // Whether `part` occurs in this string: the empty string occurs in every
    // string, and one in the bogus state in none.
    bool contains(const ZmfStringImpl& part) const;

    std::string toUtf8() const;

private:
    icu::UnicodeString text_;
    std::vector<std::uint32_t> lowSurrogates_;
};

// The reference counts are atomic, so a value may be read by several workers.
using ZmfString = std::shared_ptr<const ZmfStringImpl>;

// One instance for every empty value, the default of a String.
const ZmfString& emptyZmfString();

// Ill-formed UTF-8 becomes U+FFFD, as the query text is not validated.
ZmfString makeZmfString(std::string_view utf8);
ZmfString makeZmfStringFromUnicode(icu::UnicodeString text);

}  // namespace tarnfold::zmf
