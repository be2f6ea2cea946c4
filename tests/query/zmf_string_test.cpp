#include "query/zmf_string.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace tarnfold::zmf {
namespace {

// "a", U+1D11E (a pair), "b", U+1F600 (a pair), "c".
const char* const clefAndSmile =
    "a\xF0\x9D\x84\x9E"
    "b\xF0\x9F\x98\x80"
    "c";

TEST(ZmfString, LengthsAndOffsetsCountCodePointsAcrossSurrogatePairs) {
    ZmfString s = makeZmfString(clefAndSmile);
    EXPECT_EQ(s->text().length(), 7);
    EXPECT_EQ(s->length(), 5);
    EXPECT_EQ(s->lowSurrogates(), (std::vector<std::uint32_t>{2, 5}));
    std::vector<std::int32_t> offsets;
    for (std::int64_t k = -2; k <= 7; ++k) offsets.push_back(s->codeUnitOffset(k));
    // Clamped below 0 and beyond the length.
    EXPECT_EQ(offsets, (std::vector<std::int32_t>{0, 0, 0, 1, 3, 4, 6, 7, 7, 7}));
    // Back from units, a low half standing for its pair.
    std::vector<std::int64_t> points;
    for (std::int32_t unit = -1; unit <= 8; ++unit) points.push_back(s->codePointOffset(unit));
    EXPECT_EQ(points, (std::vector<std::int64_t>{0, 0, 1, 1, 2, 3, 3, 4, 5, 5}));

    // Pairs back to back, at both ends.
    s = makeZmfString("\xF0\x9F\x98\x80\xF0\x9F\x98\x80");
    EXPECT_EQ(s->length(), 2);
    EXPECT_EQ(s->lowSurrogates(), (std::vector<std::uint32_t>{1, 3}));
    EXPECT_EQ(s->codeUnitOffset(1), 2);
    EXPECT_EQ(s->codeUnitOffset(2), 4);

    // Characters of the BMP take one unit however many bytes they had.
    s = makeZmfString("\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(s->length(), 3);
    EXPECT_TRUE(s->lowSurrogates().empty());
    EXPECT_EQ(s->codeUnitOffset(2), 2);
}

TEST(ZmfString, OnlyWholePairsAreCounted) {
    // A lone high half, a lone low half, and a low half behind a whole pair.
    icu::UnicodeString text;
    text.append(static_cast<char16_t>(0xD83D)).append(u'x').append(static_cast<char16_t>(0xDE00));
    text.append(static_cast<UChar32>(0x1F600)).append(static_cast<char16_t>(0xDE00));
    ZmfStringImpl s(text);
    EXPECT_EQ(s.lowSurrogates(), (std::vector<std::uint32_t>{4}));
    EXPECT_EQ(s.length(), 5);
    EXPECT_EQ(s.codeUnitOffset(3), 3);
    EXPECT_EQ(s.codeUnitOffset(4), 5);
}

// The binary search against ICU's own walk over code points.
TEST(ZmfString, OffsetsAgreeWithIcuOnRandomText) {
    const std::vector<char32_t> alphabet = {u'a', 0xE9, 0x4E2D, 0x1F600, 0x10FFFF, 0x10000, u' '};
    std::mt19937 random(11);
    for (int round = 0; round < 300; ++round) {
        icu::UnicodeString text;
        for (int n = random() % 12; n > 0; --n)
            text.append(static_cast<UChar32>(alphabet[random() % alphabet.size()]));
        ZmfString s = makeZmfStringFromUnicode(text);
        ASSERT_EQ(s->length(), text.countChar32());
        for (std::int32_t k = 0; k <= s->length(); ++k) {
            ASSERT_EQ(s->codeUnitOffset(k), text.moveIndex32(0, k)) << round << " at " << k;
            ASSERT_EQ(s->codePointOffset(text.moveIndex32(0, k)), k) << round << " back from " << k;
        }
    }
}

TEST(ZmfString, EmptyValuesShareOneInstance) {
    const ZmfString& empty = emptyZmfString();
    EXPECT_EQ(empty.get(), emptyZmfString().get());
    EXPECT_EQ(makeZmfString("").get(), empty.get());
    EXPECT_EQ(makeZmfStringFromUnicode(icu::UnicodeString()).get(), empty.get());
    EXPECT_EQ(empty->length(), 0);
    EXPECT_EQ(empty->codeUnitOffset(0), 0);
    EXPECT_EQ(empty->codeUnitOffset(3), 0);
    EXPECT_EQ(empty->toUtf8(), "");

    // A bogus string is empty too, but it is another value: it equals only
    // its own kind.
    icu::UnicodeString bogus;
    bogus.setToBogus();
    ZmfString notEmpty = makeZmfStringFromUnicode(bogus);
    EXPECT_NE(notEmpty.get(), empty.get());
    EXPECT_TRUE(notEmpty->text().isBogus());

    // Anything else is a new instance each time.
    EXPECT_NE(makeZmfString("a").get(), makeZmfString("a").get());
}

TEST(ZmfString, ContainsFindsCodeUnitsExactly) {
    ZmfString whole = makeZmfString(clefAndSmile);
    EXPECT_TRUE(whole->contains(*makeZmfString("\xF0\x9F\x98\x80" "c")));
    EXPECT_TRUE(whole->contains(*whole));
    EXPECT_FALSE(whole->contains(*makeZmfString("ac")));
    // é written whole and as e with a combining accent are different units.
    EXPECT_FALSE(makeZmfString("caf\xC3\xA9")->contains(*makeZmfString("e\xCC\x81")));
    // The empty string is in every string, the empty one too; a bogus one is in none.
    EXPECT_TRUE(emptyZmfString()->contains(*emptyZmfString()));
    icu::UnicodeString bogus;
    bogus.setToBogus();
    EXPECT_FALSE(whole->contains(ZmfStringImpl(bogus)));
    EXPECT_FALSE(ZmfStringImpl(bogus).contains(ZmfStringImpl(bogus)));
}

TEST(ZmfString, Utf8RoundTripAndIllFormedBytes) {
    for (const char* text : {clefAndSmile, "plain", "\xC3\xA9t\xC3\xA9 \xE4\xB8\xAD", "line\nbreak"})
        EXPECT_EQ(makeZmfString(text)->toUtf8(), text);
    // Bytes that are no UTF-8 become U+FFFD, one for each maximal bad piece.
    ZmfString s = makeZmfString(
        "a\xFF"
        "b\xF0\x9F"
        "c");
    EXPECT_EQ(s->toUtf8(),
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c");
    EXPECT_EQ(s->length(), 5);
    // Embedded NUL bytes are characters like any other.
    EXPECT_EQ(makeZmfString(std::string_view("a\0b", 3))->length(), 3);
}

}  // namespace
}  // namespace tarnfold::zmf
