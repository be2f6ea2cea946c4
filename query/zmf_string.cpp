#include "query/zmf_string.h"

#include <algorithm>

#include <unicode/utf16.h>

namespace tarnfold::zmf {

ZmfStringImpl::ZmfStringImpl(icu::UnicodeString text) : text_(std::move(text)) {
    const std::int32_t size = text_.length();
    for (std::int32_t i = 1; i < size; ++i)
        if (U16_IS_TRAIL(text_.charAt(i)) && U16_IS_LEAD(text_.charAt(i - 1)))
            lowSurrogates_.push_back(static_cast<std::uint32_t>(i++));
}

std::int32_t ZmfStringImpl::codeUnitOffset(std::int64_t codePoint) const {
    if (codePoint <= 0) return 0;
    if (codePoint >= length()) return text_.length();
    // The pair whose low half is the i-th entry starts code point
    // lowSurrogates_[i] - 1 - i. Every pair that starts before the wanted
    // code point adds one code unit to its offset.
    std::size_t below = 0, above = lowSurrogates_.size();
    while (below < above) {
        std::size_t middle = below + (above - below) / 2;
        if (static_cast<std::int64_t>(lowSurrogates_[middle]) - 1 - static_cast<std::int64_t>(middle) <
            codePoint)
            below = middle + 1;
        else
            above = middle;
    }
    return static_cast<std::int32_t>(codePoint + static_cast<std::int64_t>(below));
}

std::int64_t ZmfStringImpl::codePointOffset(std::int32_t codeUnit) const {
    if (codeUnit <= 0) return 0;
    if (codeUnit >= text_.length()) return length();
    // Every low half at or below the unit belongs to a pair that started
    // before it and took two units for one code point.
    const auto pairs = std::upper_bound(lowSurrogates_.begin(), lowSurrogates_.end(),
                                        static_cast<std::uint32_t>(codeUnit)) -
                       lowSurrogates_.begin();
    return codeUnit - static_cast<std::int64_t>(pairs);
}

bool ZmfStringImpl::contains(const ZmfStringImpl& part) const {
    if (part.text_.isBogus()) return false;
    if (part.text_.isEmpty()) return true;
    return text_.indexOf(part.text_) >= 0;
}

std::string ZmfStringImpl::toUtf8() const {
    std::string utf8;
    text_.toUTF8String(utf8);
    return utf8;
}

const ZmfString& emptyZmfString() {
    static const ZmfString empty = std::make_shared<const ZmfStringImpl>(icu::UnicodeString());
    return empty;
}

ZmfString makeZmfString(std::string_view utf8) {
    return makeZmfStringFromUnicode(
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<std::int32_t>(utf8.size()))));
}

ZmfString makeZmfStringFromUnicode(icu::UnicodeString text) {
    if (text.isEmpty() && !text.isBogus()) return emptyZmfString();
    return std::make_shared<const ZmfStringImpl>(std::move(text));
}

}  // namespace tarnfold::zmf
