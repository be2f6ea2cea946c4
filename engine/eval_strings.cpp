// Strings: pattern matches and their captures, the loop over matches,
// slices and assignment into them, the string functions, and the filters
// that read the game's tags. Lengths, offsets and indices count code
// points, while ICU counts UTF-16 units: the surrogate table of each string
// translates.

#include <algorithm>
#include <charconv>
#include <optional>

#include <unicode/regex.h>

#include "engine/node_cast.h"
#include "engine/zmf_engine.h"

namespace tarnfold::zmf {

namespace {

Value stringValue(icu::UnicodeString text) { return Value::string(makeZmfStringFromUnicode(std::move(text))); }

// The stretch of a string that a slice names, in code points: `low` may be
// below 0, which the translation to code units pins at the start.
struct SliceRange {
    int64_t low = 0;
    int64_t high = 0;
};

std::optional<SliceRange> sliceRange(int64_t length, std::optional<int64_t> low, std::optional<int64_t> high,
                                     bool range) {
    SliceRange result;
    result.low = low.value_or(0);
    if (result.low < 0) result.low += length;
    // One index names one character, which must be there.
    if (!range && result.low >= length) return std::nullopt;
    if (!range) {
        result.high = result.low + 1;
    } else {
        result.high = high.value_or(length);
        if (result.high < 0) result.high += length;
    }
    result.high = std::clamp<int64_t>(result.high, 0, length);
    return result;
}

// The code units of a slice's stretch in `text`: start and length, the
// length 0 when the stretch ends before it begins.
std::pair<int32_t, int32_t> codeUnits(const ZmfStringImpl& text, const SliceRange& range) {
    const int32_t begin = text.codeUnitOffset(range.low), end = text.codeUnitOffset(range.high);
    return {begin, std::max(0, end - begin)};
}

// A sign and decimal digits, nothing else; a number beyond 64 bits is none.
std::optional<int64_t> wholeInteger(const std::string& text) {
    std::string_view digits = text;
    // from_chars reads a minus sign but not a plus.
    if (digits.starts_with('+')) {
        digits.remove_prefix(1);
        if (digits.starts_with('-')) return std::nullopt;
    }
    int64_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return number;
}

// The tag filters without a literal give the tag's text; with one they
// test whether the literal occurs in it, an absent tag failing.
Value readTag(const ZmfString& text, const NodePtr& literal) {
    if (!literal) return text ? Value::string(text) : Value();
    return Value::boolean(text && text->contains(*as<StringNode>(*literal).value));
}

Value optionalNumber(const std::optional<uint32_t>& number) {
    return number ? Value::numeric(*number) : Value();
}

}  // namespace

// T ~~ "pattern": the matched text. A failed search leaves the last match
// where it was, for the captures.
Value ZMFEngine::eval(const PatternMatchNode& node) {
    const Value subject = evaluate(*node.left);
    if (!subject.is(ValueType::String)) return Value();
    ZmfString matched = regex.search(node.pattern, subject.asString());
    return matched ? Value::string(std::move(matched)) : Value();
}

// \N: a group that took no part in the last match, or one the pattern does
// not have, gives None.
Value ZMFEngine::eval(const CapturedGroupStringNode& node) {
    const icu::RegexMatcher* matcher = regex.lastMatcher();
    if (!matcher) return Value();
    UErrorCode status = U_ZERO_ERROR;
    const int32_t start = matcher->start(int32_t(node.group), status);
    if (U_FAILURE(status) || start < 0) return Value();
    icu::UnicodeString text = matcher->group(int32_t(node.group), status);
    return U_SUCCESS(status) ? stringValue(std::move(text)) : Value();
}

// \-N: where group N began, in code points of the matched string.
Value ZMFEngine::eval(const CapturedGroupIndexNode& node) {
    const icu::RegexMatcher* matcher = regex.lastMatcher();
    if (!matcher) return Value();
    UErrorCode status = U_ZERO_ERROR;
    const int32_t start = matcher->start(int32_t(node.group), status);
    if (U_FAILURE(status) || start < 0) return Value();
    return Value::numeric(regex.subject()->codePointOffset(start));
}

Value ZMFEngine::eval(const StringIteratorNode& node) {
    return node.match ? iterateMatches(node) : iterateCharacters(node);
}

// while (T ~~ "pattern") F: the body once for each match, from left to
// right, with the captures of that match. Each search starts afresh from
// the end of the last match, so the body may match what it likes.
Value ZMFEngine::iterateMatches(const StringIteratorNode& node) {
    const PatternMatchNode& match = as<PatternMatchNode>(node.match->unwrapAll());
    const Value subject = evaluate(*match.left);
    if (!subject.is(ValueType::String)) return Value();
    const ZmfString text = subject.asString();
    if (text->text().isBogus()) return Value::boolean(true);
    int64_t start = 0;
    for (;;) {
        regex.noMatchYet = true;
        icu::RegexMatcher* matcher = regex.prepare(match.pattern, text);
        if (!matcher) break;
        regex.keepLast();
        UErrorCode status = U_ZERO_ERROR;
        if (!matcher->find(start, status) || U_FAILURE(status)) break;
        const int32_t begin = matcher->start(status), end = matcher->end(status);
        if (U_FAILURE(status)) break;
        regex.noMatchYet = false;
        evaluate(*node.body);
        // An empty match would be found again where it stands.
        start = end + (end == begin ? 1 : 0);
    }
    return Value::boolean(true);
}

// string V in T F: V is each character of T in turn, as a string.
Value ZMFEngine::iterateCharacters(const StringIteratorNode& node) {
    const Value source = evaluate(*node.target);
    if (!source.is(ValueType::String)) return Value();
    // Held here: the body may assign to the variable it came from.
    const ZmfString text = source.asString();
    const icu::UnicodeString& units = text->text();
    for (int32_t at = 0; at < units.length();) {
        const int32_t next = units.moveIndex32(at, 1);
        variables.resolve(node.slot) = stringValue(units.tempSubStringBetween(at, next));
        evaluate(*node.body);
        at = next;
    }
    return Value::boolean(true);
}

// T[i], T[i:j]: indices count code points, a negative one from the end.
Value ZMFEngine::eval(const SliceNode& node) {
    const Value target = evaluate(*node.operand);
    const Value low = node.lower ? evaluate(*node.lower) : Value();
    const Value high = node.upper ? evaluate(*node.upper) : Value();
    if (!target.is(ValueType::String) || (node.lower && !low.is(ValueType::Numeric)) ||
        (node.upper && !high.is(ValueType::Numeric)))
        return Value();
    const ZmfStringImpl& text = *target.asString();
    const std::optional<SliceRange> range =
        sliceRange(text.length(), node.lower ? std::optional(low.asNumeric()) : std::nullopt,
                   node.upper ? std::optional(high.asNumeric()) : std::nullopt, node.range);
    if (!range) return Value();
    const auto [start, length] = codeUnits(text, *range);
    return stringValue(text.text().tempSubString(start, length));
}

// V[i] = T, V[i:j] = T: the stretch of the variable's string is replaced,
// which makes a new string; other values holding the old one keep it.
Value ZMFEngine::assignSlice(const SliceNode& slice, const ZMFNode& value) {
    const ZMFNode& variable = unwrapParens(*slice.operand);
    if (variable.kind != NodeKind::Identifier) return Value();
    const Value target = evaluate(variable);
    const Value low = slice.lower ? evaluate(*slice.lower) : Value();
    const Value high = slice.upper ? evaluate(*slice.upper) : Value();
    if (!target.is(ValueType::String) || (slice.lower && !low.is(ValueType::Numeric)) ||
        (slice.upper && !high.is(ValueType::Numeric)))
        return Value();
    const std::optional<SliceRange> range =
        sliceRange(target.asString()->length(), slice.lower ? std::optional(low.asNumeric()) : std::nullopt,
                   slice.upper ? std::optional(high.asNumeric()) : std::nullopt, slice.range);
    if (!range) return Value();
    const Value replacement = evaluate(value);
    if (!replacement.is(ValueType::String)) return Value();
    // Looked up afresh: evaluating the value may have moved the store on.
    Value& slot = variables.resolve(as<IdentifierNode>(variable).slot);
    if (!slot.is(ValueType::String)) return Value();
    const auto [start, length] = codeUnits(*slot.asString(), *range);
    icu::UnicodeString text(slot.asString()->text());
    text.replace(start, length, replacement.asString()->text());
    slot = stringValue(std::move(text));
    return Value::boolean(true);
}

// indexof (T T): where the first string first occurs in the second.
Value ZMFEngine::eval(const IndexofNode& node) {
    auto [part, whole] = evaluateOperands(*this, node);
    if (!part.is(ValueType::String) || !whole.is(ValueType::String)) return Value();
    const icu::UnicodeString& wanted = part.asString()->text();
    if (wanted.isBogus()) return Value();
    if (wanted.isEmpty()) return Value::numeric(0);
    const int32_t found = whole.asString()->text().indexOf(wanted);
    return found < 0 ? Value() : Value::numeric(whole.asString()->codePointOffset(found));
}

// Case mapping of the default locale, which may change the length.
Value ZMFEngine::eval(const LowerNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::String)) return Value();
    icu::UnicodeString text(operand.asString()->text());
    text.toLower();
    return stringValue(std::move(text));
}

Value ZMFEngine::eval(const UpperNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::String)) return Value();
    icu::UnicodeString text(operand.asString()->text());
    text.toUpper();
    return stringValue(std::move(text));
}

// ascii: one ASCII character to its code, or a code to its character;
// NUL and everything beyond ASCII give None.
Value ZMFEngine::eval(const AsciiNode& node) {
    const Value operand = evaluate(*node.operand);
    if (operand.is(ValueType::String)) {
        const ZmfStringImpl& text = *operand.asString();
        if (text.length() != 1) return Value();
        const UChar32 code = text.text().char32At(0);
        return code >= 1 && code <= 127 ? Value::numeric(code) : Value();
    }
    if (operand.is(ValueType::Numeric)) {
        const int64_t code = operand.asNumeric();
        return code >= 1 && code <= 127 ? stringValue(icu::UnicodeString(UChar32(code))) : Value();
    }
    return Value();
}

Value ZMFEngine::eval(const IntNode& node) {
    const Value operand = evaluate(*node.operand);
    if (!operand.is(ValueType::String)) return Value();
    const std::optional<int64_t> number = wholeInteger(operand.asString()->toUtf8());
    return number ? Value::numeric(*number) : Value();
}

// str (F ...): the arguments' texts joined, as comment would write them,
// except that a position is its id.
Value ZMFEngine::eval(const StrNode& node) {
    std::string text;
    for (const NodePtr& argument : node.arguments) text += renderArgument(*argument, false);
    return Value::string(makeZmfString(text));
}

Value ZMFEngine::eval(const EventNode& node) { return readTag(tagCache.values().event, node.literal); }

Value ZMFEngine::eval(const SiteNode& node) { return readTag(tagCache.values().site, node.literal); }

Value ZMFEngine::eval(const EcoNode& node) { return readTag(tagCache.values().eco, node.literal); }

Value ZMFEngine::eval(const DateNode& node) { return readTag(tagCache.values().date, node.literal); }

Value ZMFEngine::eval(const EventdateNode& node) { return readTag(tagCache.values().eventDate, node.literal); }

// player without a colour: both names one per line; as a test, the literal
// in either name.
Value ZMFEngine::eval(const PlayerNode& node) {
    const TagValues& tags = tagCache.values();
    if (node.color == PlayerColor::White) return readTag(tags.white, node.literal);
    if (node.color == PlayerColor::Black) return readTag(tags.black, node.literal);
    if (!node.literal) return readTag(tagCache.bothPlayers(), nullptr);
    return Value::boolean(readTag(tags.white, node.literal).asBoolean() ||
                          readTag(tags.black, node.literal).asBoolean());
}

// elo without a colour: the higher rating, when both players have one.
Value ZMFEngine::eval(const EloNode& node) {
    const TagValues& tags = tagCache.values();
    if (node.color == PlayerColor::White) return optionalNumber(tags.whiteElo);
    if (node.color == PlayerColor::Black) return optionalNumber(tags.blackElo);
    if (!tags.whiteElo || !tags.blackElo) return Value();
    return Value::numeric(std::max(*tags.whiteElo, *tags.blackElo));
}

Value ZMFEngine::eval(const YearNode&) { return optionalNumber(tagCache.values().year); }

}  // namespace tarnfold::zmf
